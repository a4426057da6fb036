// textMessages.h - cuts a text of nothing but SIP messages into these.
#ifndef TOOL_TEXT_MESSAGES_H
#define TOOL_TEXT_MESSAGES_H

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "text/lines.h"
#include "text/sip.h"

// Takes a text in pieces and reports its messages as a MessageReader cuts the complete text: each
// once it is clear where it ends, which the line after it says, or that no more comes for a moment.
// The time is linear in the bytes.
class TextMessages {
 public:
  // Bytes of one message that are held at most.
  static constexpr std::size_t kLongest = std::size_t{1} << 28;

  explicit TextMessages(std::function<void(const Message& message)> found);

  // Returns false, and takes no more, when a message is longer than kLongest.
  bool add(std::string_view bytes);

  // Says that no more comes for a moment: reports messages that have all that they state.
  void quiet();

  // Reports what is left.
  void finish();

  // Returns the number of the line at an offset of the message that is being reported.
  std::size_t lineAt(std::size_t offset) { return lines_.at(offset); }

  // Return the line ends that are no part of a message: those after the one that is being reported,
  // and those before it, if it is the first. They live until the report ends.
  std::string_view before() const { return before_; }
  std::string_view after() const { return after_; }

  // Returns, after finish(), the line ends that came after the last message was reported.
  std::string_view rest() const { return held_; }

 private:
  enum class After { kMore, kMoment, kEnd };

  void report(After after);
  bool hasEnd(const Message& message, std::size_t end, After after) const;
  bool isStated(const Message& message) const;
  bool isSettled(const Message& message, std::size_t end) const;

  std::function<void(const Message& message)> found_;
  std::string held_;
  std::size_t wanted_ = 0;  // how many bytes are worth another look
  LineCounter lines_;       // of held_
  std::string_view before_;
  std::string_view after_;
};

#endif  // TOOL_TEXT_MESSAGES_H
