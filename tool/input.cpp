// input.cpp - a file or standard input, read once from start to end; its first bytes are known
// first.
#include "input.h"

#include <filesystem>
#include <iostream>

Input::Input(const std::string& name)
    : in_(name == "-" ? std::cin : file_), readable_(true), head_(12, 0), size_(0), position_(0) {
  if (name != "-") {
    file_.open(name, std::ios::binary);
    std::error_code none;
    const std::uintmax_t size = std::filesystem::file_size(name, none);
    size_ = none ? 0 : static_cast<std::size_t>(size);
    readable_ = file_.is_open();
  }
  head_.resize(readFile(head_.data(), head_.size()));
}

std::size_t Input::read(char* buffer, std::size_t length) {
  std::size_t count = 0;
  if (position_ < head_.size()) {
    count = head_.copy(buffer, length, position_);
  } else {
    count = readFile(buffer, length);
  }
  position_ += count;
  return count;
}

bool Input::readAll(std::string& text, std::size_t most) {
  std::string piece(kPieceSize, 0);
  while (const std::size_t length = read(piece.data(), piece.size())) {
    if (text.size() + length > most) {
      return false;
    }
    text.append(piece, 0, length);
  }
  return true;
}

// The stream sets its bad bit when a read fails.
std::size_t Input::readFile(char* buffer, std::size_t length) {
  in_.read(buffer, static_cast<std::streamsize>(length));
  readable_ = readable_ && !in_.bad();
  return static_cast<std::size_t>(in_.gcount());
}
