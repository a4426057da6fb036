// logMessages.h - cuts the lines of a log into SIP messages.
#ifndef TOOL_LOG_MESSAGES_H
#define TOOL_LOG_MESSAGES_H

#include <cstddef>
#include <deque>
#include <functional>
#include <string>
#include <string_view>

// Takes lines and reports each message once it is complete. A message begins with a start line. It
// ends as its Content-Length says; if its header has no end, or no length that can be right, it
// ends before the next start line or at the end. Other lines are passed over. Holds little more
// than kLongest bytes; of a longer message the first kLongest or so are reported. The time is
// linear in the bytes.
class LogMessages {
 public:
  static constexpr std::size_t kLongest = std::size_t{1} << 20;

  explicit LogMessages(std::function<void(std::string_view message)> found);

  // Takes a line, its end and its number in the file.
  void add(std::string_view line, std::string_view end, std::size_t number);

  // Reports a message that is not complete, and restarts.
  void finish();

  // Returns how many bytes a body lacks that has begun; 0 for none.
  std::size_t missing() const;

  // Returns the number of the line at an offset in the message that is being reported.
  std::size_t lineAt(std::size_t offset) const;

 private:
  enum class State { kSeeking, kHeader, kBody, kToStartLine };

  // Offsets count from the start of the log.
  struct Line {
    std::size_t begin;
    std::size_t lineFeeds;  // bare ones before it
    std::size_t number;
  };

  void work();
  bool step();
  bool readHeader();
  void endHeader();
  bool readBody();
  bool readToStartLine();
  std::size_t statedEnd() const;
  std::size_t likelyEnd(std::size_t stated) const;
  bool isLineEnd(std::size_t offset) const;
  std::size_t received() const;
  std::size_t beginOf(std::size_t line) const;
  std::size_t lineFeedsBefore(std::size_t line) const;
  bool isStart(std::size_t line) const;
  std::string_view text(std::size_t begin, std::size_t end) const;
  void deliver(std::size_t end);
  void drop(std::size_t end);

  std::function<void(std::string_view)> found_;
  State state_ = State::kSeeking;
  std::string held_;
  std::size_t base_ = 0;       // the offset of held_
  std::size_t total_ = 0;      // the offset of its end
  std::size_t lineFeeds_ = 0;  // bare ones in all lines
  std::deque<Line> lines_;     // from the start of the message on
  std::size_t next_ = 0;       // the line to look at
  std::size_t body_ = 0;       // the first line of the body
  std::size_t length_ = 0;     // of the body, as its header has it
  bool restored_ = false;      // a bare LF of the body counts as CRLF
  bool ended_ = false;         // nothing follows
};

#endif  // TOOL_LOG_MESSAGES_H
