// logLayout.h - how a log shows the lines of a message: what it puts before them, what it makes of
// their ends.
#ifndef TOOL_LOG_LAYOUT_H
#define TOOL_LOG_LAYOUT_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// What is before the text on the lines of a message, such as a time and a program: any digits match
// digits, any blanks match blanks.
class Prefix {
 public:
  explicit Prefix(std::string_view text = "");

  bool empty() const { return shape_.empty() && blanks_.empty(); }

  // Returns the line without the prefix; nothing for a line that has none. The blanks at the end of
  // the prefix may be missing from an empty line.
  std::optional<std::string_view> removedFrom(std::string_view line) const;

 private:
  std::string shape_;   // with one 0 for each run of digits, one blank for each run of blanks
  std::string blanks_;  // at the end, as they are: blanks after them belong to the text
};

// Where a start line is in a line without its end.
struct LogStart {
  std::size_t offset;     // from the prefix on
  std::string_view mark;  // what the log may have made of the CR: `.`, `#015`, `\r`, `^M`; or ""
};

// Returns where the line has a start line up to its end, after any prefix; nothing for a line of
// another kind and for a header field.
std::optional<LogStart> findStart(std::string_view line);

// How a log shows the lines of a message after the start line.
struct Layout {
  Prefix prefix;
  std::string_view mark;
};

// Returns the layout of a message by its start line and the line after that, which is a header
// field of a known name: without a prefix, after one of the same shape or after blanks. Nothing if
// it is no such field.
std::optional<Layout> layoutOf(std::string_view line, const LogStart& start, std::string_view next);

// Returns whether a line may have a start line, or a Via.
bool hasVersion(std::string_view line);

// Returns a line in which JSON has `SIP\/2.0` with a "/" for each `\/`, another line as it is.
std::string withPlainSlashes(std::string_view line);

// Messages in one line, line ends written as `\r\n`, `\n` or `#015#012`.
struct EscapedMessages {
  std::string text;
  std::size_t end;  // from where on the line has something else
};

// Returns the messages from the first start line on, up to the end of the quoted string that it is
// in, or of the line.
std::optional<EscapedMessages> findEscaped(std::string_view line);

bool endsWith(std::string_view text, std::string_view end);

#endif  // TOOL_LOG_LAYOUT_H
