// input.cpp - a file or standard input, read once from start to end; its first bytes are known
// first.
#include "input/input.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "input/interrupt.h"

namespace {

constexpr int kMoment = 200;  // milliseconds

}  // namespace

Input::Input(const std::string& name, bool follow)
    : file_(name == "-" ? STDIN_FILENO : open(name.c_str(), O_RDONLY | O_CLOEXEC)),
      error_(file_ < 0 ? errno : 0),
      position_(0),
      fileRead_(0),
      pipe_(false),
      follow_(false),
      shorter_(false),
      quietKnown_(false) {
  struct stat status = {};
  if (fstat(file_, &status) == 0) {
    pipe_ = !S_ISREG(status.st_mode);
    follow_ = follow && !pipe_;
  }
}

Input::~Input() {
  if (file_ > STDIN_FILENO) {
    close(file_);
  }
}

std::string Input::error() const {
  return readable() ? "" : std::system_category().message(error_);
}

void Input::begin() {
  head_ = firstBytes();
  if (head_.compare(0, 2, "\x1F\x8B") != 0) {
    return;
  }
  gzip_ =
      std::make_unique<GzipReader>([this, first = head_](char* buffer, std::size_t length) mutable {
        const std::size_t count = first.copy(buffer, length);
        first.erase(0, count);
        return count != 0 ? count : readFile(buffer, length);
      });
  head_ = firstBytes();
}

std::string Input::firstBytes() {
  std::string head(12, 0);
  std::size_t count = 0;
  while (const std::size_t more = readExpanded(&head[count], head.size() - count)) {
    count += more;
  }
  head.resize(count);
  return head;
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

std::size_t Input::readFile(char* buffer, std::size_t length) {
  while (readable() && length != 0 && !shorter_ && !Interrupt::requested()) {
    if (pipe_ && !waitForBytes()) {
      continue;
    }
    const ssize_t count = ::read(file_, buffer, length);
    if (count > 0) {
      quietKnown_ = false;
      fileRead_ += static_cast<std::size_t>(count);
      return static_cast<std::size_t>(count);
    }
    error_ = count < 0 && errno != EINTR ? errno : 0;
    if (count == 0 && !waitForMore()) {
      break;
    }
  }
  return 0;
}

// Returns whether a pipe has bytes, or its end, within a moment. The end of a file is no event: for
// a file only the moment passes.
bool Input::waitForBytes() {
  pollfd awaited = {pipe_ ? file_ : -1, POLLIN, 0};
  const int ready = poll(&awaited, 1, kMoment);
  if (ready == 0 && quiet_ != nullptr && !quietKnown_) {
    quietKnown_ = true;
    quiet_();
  }
  return ready > 0;
}

// Waits a moment at the end of a file. Returns false where that is the end of the input. A file
// that became shorter is at its start then.
bool Input::waitForMore() {
  struct stat status = {};
  shorter_ = follow_ && fstat(file_, &status) == 0 && status.st_size < lseek(file_, 0, SEEK_CUR) &&
             lseek(file_, 0, SEEK_SET) == 0;
  if (follow_ && !shorter_) {
    static_cast<void>(waitForBytes());
  }
  return follow_ && !shorter_;
}
