// input.cpp - a file or standard input, read once from start to end; its first bytes are known
// first.
#include "input/input.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

Input::Input(const std::string& name)
    : file_(STDIN_FILENO), error_(0), head_(12, 0), size_(0), position_(0), fileRead_(0) {
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

void Input::expand() {
  if (head_.compare(0, 2, "\x1F\x8B") != 0) {
    return;
  }
  gzip_ =
      std::make_unique<GzipReader>([this, first = head_](char* buffer, std::size_t length) mutable {
        const std::size_t count = first.copy(buffer, length);
        first.erase(0, count);
        return count + readFile(buffer + count, length - count);
      });
  head_.assign(12, 0);
  std::size_t count = 0;
  while (const std::size_t more = gzip_->read(&head_[count], head_.size() - count)) {
    count += more;
  }
  head_.resize(count);
}

const char* Input::fault() const {
  return gzip_ != nullptr && gzip_->damaged() ? "the gzip data is damaged or ends early" : "";
}

std::size_t Input::read(char* buffer, std::size_t length) {
  std::size_t count = 0;
  if (position_ < head_.size()) {
    count = head_.copy(buffer, length, position_);
  } else {
    count = readExpanded(buffer, length);
  }
  position_ += count;
  return count;
}

void Input::readAll(std::string& text) {
  std::string piece(kPieceSize, 0);
  while (const std::size_t length = read(piece.data(), piece.size())) {
    text.append(piece, 0, length);
  }
}

std::size_t Input::readExpanded(char* buffer, std::size_t length) {
  return gzip_ != nullptr ? gzip_->read(buffer, length) : readFile(buffer, length);
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
  fileRead_ += filled;
  return filled;
}
