// log.h - finds the SIP messages in a log, whatever it puts around their lines.
#ifndef TOOL_LOG_H
#define TOOL_LOG_H

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "finding/logLayout.h"
#include "finding/logMessages.h"

// Takes a log in pieces and reports each message once it is complete, without what the log adds to
// its lines. What is before the start line is the prefix: the lines below have one of the same
// shape all, or they have no more than blanks before them. Of lines of more than
// LogMessages::kLongest bytes only so many are read. The time is linear in the bytes.
class Log {
 public:
  using Found = std::function<void(std::string_view message)>;

  explicit Log(Found found) : messages_(std::move(found)) {}

  void add(std::string_view bytes);

  // Says that no more comes for a moment: a body may end without a line end.
  void quiet();

  // Reports a message that is not complete.
  void finish();

  // Returns the number of the line at an offset in the message that is being reported.
  std::size_t lineAt(std::size_t offset) const { return messages_.lineAt(offset); }

 private:
  struct Line {
    std::string text;
    std::string_view end;
    std::size_t number;
  };

  // A line that may be the start line of a message in another layout: one of the next lines says
  // so.
  struct Candidate {
    Line line;
    LogStart start;
    std::vector<Line> foreign;  // lines after it that do not say so
  };

  static constexpr std::size_t kMaxForeign = 3;

  void addToLine(std::string_view bytes);
  void endLine();
  bool takeEscaped(const Line& line);
  void takeLine(const Line& line);
  void takeText(const Line& line);
  bool isForeign(std::string_view line) const;
  void settle(std::string_view next);
  void add(std::string_view text, const Line& line);
  std::size_t prefixLength(std::string_view line) const;

  LogMessages messages_;
  Layout layout_;            // of the last message
  std::string line_;         // the start of a line of which the end is not there
  bool insideLine_ = false;  // the rest of a long line is passed over
  std::size_t number_ = 0;   // of the last line
  std::optional<Candidate> candidate_;
};

#endif  // TOOL_LOG_H
