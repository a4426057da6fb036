// logMessages.cpp - cuts the lines of a log into SIP messages.
#include "finding/logMessages.h"

#include <algorithm>
#include <utility>

#include "text/sip.h"

LogMessages::LogMessages(std::function<void(std::string_view)> found) : found_(std::move(found)) {}

void LogMessages::add(std::string_view line, std::string_view end, std::size_t number) {
  lines_.push_back({total_, lineFeeds_, number});
  held_.append(line).append(end);
  total_ += line.size() + end.size();
  lineFeeds_ += end == "\n" ? 1U : 0U;
  work();
}

void LogMessages::finish() {
  ended_ = true;
  work();  // nothing is held then
  ended_ = false;
}

std::size_t LogMessages::missing() const {
  return state_ == State::kBody ? length_ - std::min(length_, received()) : 0;
}

std::size_t LogMessages::lineAt(std::size_t offset) const {
  const auto after =
      std::upper_bound(lines_.begin(), lines_.end(), lines_.front().begin + offset,
                       [](std::size_t wanted, const Line& line) { return wanted < line.begin; });
  return std::prev(after)->number;
}

// Handles the lines that are there, and drops those that are done with.
void LogMessages::work() {
  while (step()) {
  }
  if (!lines_.empty() && total_ - beginOf(0) > kLongest) {
    deliver(total_);
  }
  const std::size_t done = beginOf(0) - base_;
  if (done > held_.size() / 2) {
    held_.erase(0, done);
    base_ += done;
  }
}

// Returns whether there is more to do with the lines that are there.
bool LogMessages::step() {
  switch (state_) {
    case State::kSeeking:
      if (lines_.empty()) {
        return false;
      }
      if (isStart(0)) {
        state_ = State::kHeader;
        next_ = 1;
      } else {
        drop(beginOf(1));
      }
      return true;
    case State::kHeader:
      return readHeader();
    case State::kBody:
      return readBody();
    default:
      return readToStartLine();
  }
}

bool LogMessages::readHeader() {
  if (next_ == lines_.size()) {
    if (ended_) {
      deliver(total_);
    }
    return false;
  }
  if (isStart(next_)) {
    deliver(beginOf(next_));
    return true;
  }
  const std::string_view line = text(beginOf(next_), beginOf(next_ + 1));
  ++next_;
  if (line.find_first_not_of("\r\n") == std::string_view::npos) {
    endHeader();
  }
  return true;
}

void LogMessages::endHeader() {
  body_ = next_;
  restored_ = lineFeedsBefore(body_) - lineFeedsBefore(0) == body_;
  const std::string_view header = text(beginOf(0), beginOf(body_));
  length_ = statedLength(header).value_or(kLongest);
  state_ =
      length_ > kLongest - std::min(kLongest, header.size()) ? State::kToStartLine : State::kBody;
}

bool LogMessages::readBody() {
  if (received() < length_) {
    state_ = ended_ ? State::kToStartLine : State::kBody;
    return ended_;
  }
  const std::size_t end = statedEnd();
  if (isLineEnd(end)) {
    deliver(end);
    return true;
  }
  // The bytes that likelyEnd() looks at may still come.
  if (restored_ && !ended_ && total_ - beginOf(body_) < length_) {
    return false;
  }
  deliver(likelyEnd(end));
  return true;
}

bool LogMessages::readToStartLine() {
  while (next_ < lines_.size()) {
    if (isStart(next_)) {
      deliver(beginOf(next_));
      return true;
    }
    ++next_;
  }
  if (ended_) {
    deliver(total_);
  }
  return false;
}

// Returns where a body ends that is all there.
std::size_t LogMessages::statedEnd() const {
  const std::size_t begin = beginOf(body_);
  if (!restored_ || length_ == 0) {
    return begin + length_;
  }
  const std::size_t known = lineFeedsBefore(body_);
  const auto countBefore = [begin, known](const Line& line) {
    return line.begin - begin + line.lineFeeds - known;
  };
  const auto after = std::partition_point(
      lines_.begin() + static_cast<std::ptrdiff_t>(body_), lines_.end(),
      [this, countBefore](const Line& line) { return countBefore(line) <= length_; });
  const Line& last = *std::prev(after);
  const std::size_t end = after == lines_.end() ? total_ : after->begin;
  return std::min(last.begin + length_ - countBefore(last), end);
}

// A length that ends inside a line counts line ends in another way. Returns the start line in the
// body, or where the body ends if it counts a bare LF as one, or else where it is stated to end.
std::size_t LogMessages::likelyEnd(std::size_t stated) const {
  const std::size_t plain = beginOf(body_) + length_;
  const std::size_t end = restored_ && plain <= total_ && isLineEnd(plain) ? plain : stated;
  for (std::size_t line = body_; line < lines_.size() && beginOf(line) < end; ++line) {
    if (isStart(line)) {
      return beginOf(line);
    }
  }
  return end;
}

bool LogMessages::isLineEnd(std::size_t offset) const {
  return offset == total_ || text(offset - 1, offset) == "\n" || text(offset, offset + 1) == "\r" ||
         text(offset, offset + 1) == "\n";
}

// Returns how many bytes of a body there are, counted as its length counts them.
std::size_t LogMessages::received() const {
  return total_ - beginOf(body_) + (restored_ ? lineFeeds_ - lineFeedsBefore(body_) : 0);
}

std::size_t LogMessages::beginOf(std::size_t line) const {
  return line < lines_.size() ? lines_[line].begin : total_;
}

std::size_t LogMessages::lineFeedsBefore(std::size_t line) const {
  return line < lines_.size() ? lines_[line].lineFeeds : lineFeeds_;
}

bool LogMessages::isStart(std::size_t line) const {
  return beginsMessage(withoutLineEnd(text(beginOf(line), beginOf(line + 1))));
}

std::string_view LogMessages::text(std::size_t begin, std::size_t end) const {
  return std::string_view{held_}.substr(begin - base_, end - begin);
}

void LogMessages::deliver(std::size_t end) {
  state_ = State::kSeeking;
  found_(text(beginOf(0), end));
  drop(end);
}

// What is left of a line is a line.
void LogMessages::drop(std::size_t end) {
  while (!lines_.empty() && beginOf(1) <= end) {
    lines_.pop_front();
  }
  if (!lines_.empty()) {
    lines_.front().begin = std::max(lines_.front().begin, end);
  }
}
