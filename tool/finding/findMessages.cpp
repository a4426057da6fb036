// findMessages.cpp - finds the SIP messages in a TCP stream.
#include "finding/findMessages.h"

#include <algorithm>
#include <utility>

#include "text/sip.h"

namespace {

constexpr std::string_view kLineEnds = "\r\n";

}  // namespace

MessageFinder::MessageFinder(std::function<void(std::string_view)> found)
    : found_(std::move(found)),
      state_(State::kSeeking),
      begin_(0),
      line_(0),
      searched_(0),
      body_(0),
      end_(0),
      ended_(false),
      insideLine_(false),
      passedOver_(0) {}

void MessageFinder::add(std::string_view bytes) {
  // A piece at a time, so that what is held stays near the bound.
  while (!bytes.empty()) {
    const std::string_view piece = bytes.substr(0, kLongest / 16);
    held_.append(piece);
    bytes.remove_prefix(piece.size());
    work();
  }
}

void MessageFinder::finish() {
  ended_ = true;
  work();  // nothing is held then
  ended_ = false;
  insideLine_ = false;
}

// Handles the bytes that are there, and drops those that are done with.
void MessageFinder::work() {
  while (step()) {
  }
  if (rest().size() > kLongest) {
    insideLine_ = rest().back() != '\n';
    if (state_ == State::kSeeking) {
      drop(rest().size());
    } else {
      deliver(rest().size());
    }
  }
  held_.erase(0, begin_);
  begin_ = 0;
  if (held_.empty()) {
    std::string().swap(held_);
  }
}

// Returns whether there is more to do with the bytes that are there.
bool MessageFinder::step() {
  switch (state_) {
    case State::kSeeking:
      return seek();
    case State::kHeader:
      return readHeader();
    case State::kBody:
      return readBody();
    default:
      return readToStartLine();
  }
}

// Checks whether the current line begins a message. Line ends between messages keep a connection
// alive (RFC 5626 4.4.1).
bool MessageFinder::seek() {
  if (!insideLine_ && line_ == 0) {
    const std::size_t ends = std::min(rest().find_first_not_of(kLineEnds), rest().size());
    begin_ += ends;
    searched_ -= std::min(searched_, ends);
  }
  const std::optional<std::string_view> line = nextLine();
  if (!line) {
    return false;
  }
  if (!insideLine_ && beginsMessage(*line)) {
    state_ = State::kHeader;
  } else {
    drop(line_);
    insideLine_ = false;
  }
  return true;
}

bool MessageFinder::readHeader() {
  const std::size_t line = line_;
  const std::optional<std::string_view> text = nextLine();
  if (!text) {
    if (ended_) {
      deliver(rest().size());
    }
    return false;
  }
  if (beginsMessage(*text)) {
    deliver(line);
    return true;
  }
  if (text->empty()) {
    body_ = line_;
    const std::size_t length = statedLength(rest().substr(0, body_)).value_or(kLongest);
    end_ = body_ + std::min(length, kLongest);
    state_ = end_ > kLongest ? State::kToStartLine : State::kBody;
  }
  return true;
}

bool MessageFinder::readBody() {
  if (rest().size() < end_ && !ended_) {
    return false;
  }
  if (rest().size() >= end_) {
    deliver(end_);
  } else {
    state_ = State::kToStartLine;
  }
  return true;
}

bool MessageFinder::readToStartLine() {
  const std::size_t line = line_;
  const std::optional<std::string_view> text = nextLine();
  if (text && !beginsMessage(*text)) {
    return true;
  }
  if (text || ended_) {
    deliver(text ? line : rest().size());
  }
  return text.has_value();
}

// Returns the next line without its end and moves past it; nothing while its end is not there.
std::optional<std::string_view> MessageFinder::nextLine() {
  const std::size_t start = line_;
  std::size_t end = rest().find('\n', std::max(line_, searched_));
  searched_ = rest().size();
  if (end == std::string_view::npos) {
    if (!ended_ || start == rest().size()) {
      return std::nullopt;
    }
    end = rest().size() - 1;
  }
  line_ = end + 1;
  searched_ = line_;
  return withoutLineEnd(rest().substr(start, line_ - start));
}

void MessageFinder::deliver(std::size_t length) {
  const std::size_t begin = begin_;
  begin_ += length;
  line_ = 0;
  searched_ = 0;
  state_ = State::kSeeking;
  found_(std::string_view{held_}.substr(begin, length));
}

void MessageFinder::drop(std::size_t length) {
  passedOver_ += withoutLineEnd(rest().substr(0, length)).size();
  begin_ += length;
  line_ = 0;
  searched_ = 0;
}
