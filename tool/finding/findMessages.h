// findMessages.h - finds the SIP messages in a TCP stream.
#ifndef TOOL_FIND_MESSAGES_H
#define TOOL_FIND_MESSAGES_H

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

// Takes bytes in pieces and reports each message once it is complete. A message begins with a line
// that is nothing but a start line. It ends as its Content-Length says; if its header has no end,
// or no length that can be right, it ends before the next start line or at the end. Other lines are
// passed over. Holds little more than kLongest bytes; of a longer message the first kLongest or so
// are reported. The time is linear in the bytes, whatever the pieces.
class MessageFinder {
 public:
  static constexpr std::size_t kLongest = std::size_t{1} << 20;

  explicit MessageFinder(std::function<void(std::string_view message)> found);

  void add(std::string_view bytes);

  // Reports a message that is not complete, and restarts.
  void finish();

  // Returns how much memory is held.
  std::size_t held() const { return held_.empty() ? 0 : held_.capacity(); }

  // Returns how many bytes were outside messages, line ends not counted.
  std::size_t passedOver() const { return passedOver_; }

 private:
  enum class State { kSeeking, kHeader, kBody, kToStartLine };

  void work();
  bool step();
  bool seek();
  bool readHeader();
  bool readBody();
  bool readToStartLine();
  std::optional<std::string_view> nextLine();
  void deliver(std::size_t length);
  void drop(std::size_t length);
  std::string_view rest() const { return std::string_view{held_}.substr(begin_); }

  std::function<void(std::string_view)> found_;
  State state_;
  std::string held_;
  std::size_t begin_;     // of the message or of the current line, in held_
  std::size_t line_;      // from begin_ to the next line
  std::size_t searched_;  // from begin_ to where no line end has been found yet
  std::size_t body_;      // from begin_ to the body
  std::size_t end_;       // from begin_ to the end of the message, as its header has it
  bool ended_;            // nothing follows
  bool insideLine_;       // the start of the current line is dropped
  std::size_t passedOver_;
};

#endif  // TOOL_FIND_MESSAGES_H
