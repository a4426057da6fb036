// findMessages.h - finds SIP messages among other bytes: in logs and in TCP streams.
#ifndef TOOL_FIND_MESSAGES_H
#define TOOL_FIND_MESSAGES_H

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

// Takes bytes as they come and tells each message once it is whole. A message begins with a line
// that is nothing but a start line. It ends with the length that its Content-Length says; where
// its header has no end, or no length that can be right, in front of the next start line or at
// the end. Other lines are passed over. Holds little more than kLongest bytes; of a message that is
// longer the first kLongest or so are told. The time is linear in the bytes, whatever the pieces in
// which they come.
class MessageFinder {
 public:
  static constexpr std::size_t kLongest = std::size_t{1} << 20;

  // In a stream lengths are right. In a log, line ends may have been changed: a length that ends
  // inside a line does not take along a start line in front of there.
  enum class Source { kStream, kLog };

  MessageFinder(Source source, std::function<void(std::string_view message)> found);

  void add(std::string_view bytes);

  // Tells of a message that is not whole, and begins anew.
  void finish();

  // Returns the memory that is held.
  std::size_t held() const { return held_.empty() ? 0 : held_.capacity(); }

  // Returns how many bytes stood outside messages, line ends left out.
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
  std::size_t lengthInLog() const;
  void tell(std::size_t length);
  void drop(std::size_t length);
  std::string_view rest() const { return std::string_view{held_}.substr(begin_); }

  Source source_;
  std::function<void(std::string_view)> found_;
  State state_;
  std::string held_;
  std::size_t begin_;     // of the message or of the line in hand, in held_
  std::size_t line_;      // from begin_ to the next line
  std::size_t searched_;  // from begin_ to where no line end has been found yet
  std::size_t body_;      // from begin_ to the body
  std::size_t whole_;     // the length of the whole message, as its header has it
  bool ended_;            // nothing follows
  bool insideLine_;       // the front of the line in hand is dropped
  std::size_t passedOver_;
};

#endif  // TOOL_FIND_MESSAGES_H
