// input.cpp - a file or standard input, read once from start to end; its first bytes are known
// first.
#include "input.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

Input::Input(const std::string& name)
    : file_(STDIN_FILENO), error_(0), head_(12, 0), size_(0), position_(0) {
  if (name != "-") {
    file_ = open(name.c_str(), O_RDONLY | O_CLOEXEC);
    error_ = file_ < 0 ? errno : 0;
    std::error_code none;
    const std::uintmax_t size = std::filesystem::file_size(name, none);
    size_ = none ? 0 : static_cast<std::size_t>(size);
  }
  head_.resize(readFile(head_.data(), head_.size()));
}

Input::~Input() {
  if (file_ > STDIN_FILENO) {
    close(file_);
  }
}

std::string Input::error() const {
  return readable() ? "" : std::system_category().message(error_);
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

// A pipe has fewer bytes at a time than are asked for.
std::size_t Input::readFile(char* buffer, std::size_t length) {
  std::size_t filled = 0;
  while (readable() && filled < length) {
    const ssize_t count = ::read(file_, buffer + filled, length - filled);
    if (count == 0) {
      break;
    }
    error_ = count < 0 && errno != EINTR ? errno : 0;
    filled += count > 0 ? static_cast<std::size_t>(count) : 0;
  }
  return filled;
}
