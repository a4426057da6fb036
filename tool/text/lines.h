// lines.h - the numbers of the lines of a text.
#ifndef TOOL_LINES_H
#define TOOL_LINES_H

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string_view>

// Returns the number of the line at an offset in a text.
using LineAt = std::function<std::size_t(std::size_t offset)>;

// Numbers the lines of a text. The time is that of the way from the last offset.
class LineCounter {
 public:
  LineCounter(std::string_view text, std::size_t firstLine) : text_(text), line_(firstLine) {}

  std::size_t at(std::size_t offset) {
    line_ += lineFeeds(offset_, offset);
    line_ -= lineFeeds(offset, offset_);
    offset_ = offset;
    return line_;
  }

 private:
  std::size_t lineFeeds(std::size_t begin, std::size_t end) const {
    const std::string_view passed = text_.substr(begin, end - std::min(begin, end));
    return static_cast<std::size_t>(std::count(passed.begin(), passed.end(), '\n'));
  }

  std::string_view text_;
  std::size_t offset_ = 0;
  std::size_t line_;
};

#endif  // TOOL_LINES_H
