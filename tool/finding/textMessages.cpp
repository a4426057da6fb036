// textMessages.cpp - cuts a text of nothing but SIP messages into these.
#include "finding/textMessages.h"

#include <algorithm>
#include <utility>

TextMessages::TextMessages(std::function<void(const Message& message)> found)
    : found_(std::move(found)), lines_("", 1) {}

bool TextMessages::add(std::string_view bytes) {
  held_.append(bytes);
  if (held_.size() >= wanted_) {
    report(After::kMore);
  }
  return held_.size() <= kLongest;
}

void TextMessages::quiet() { report(After::kMoment); }

void TextMessages::finish() { report(After::kEnd); }

// Reports what is certain, or all at the end. Each look at an incomplete message has twice the
// bytes of the look before.
void TextMessages::report(After after) {
  lines_ = LineCounter(held_, lines_.at(0));
  MessageReader reader(held_);
  std::size_t done = 0;
  while (const std::optional<Message> message = reader.next()) {
    if (!hasEnd(*message, reader.position(), after)) {
      break;
    }
    const std::string_view text = held_;
    const std::size_t next =
        std::min(text.find_first_not_of("\r\n", reader.position()), text.size());
    before_ = text.substr(done, message->offset - done);
    after_ = text.substr(reader.position(), next - reader.position());
    found_(*message);
    done = next;
  }
  lines_ = LineCounter("", lines_.at(done));
  held_.erase(0, done);
  wanted_ = 2 * held_.size();
}

bool TextMessages::hasEnd(const Message& message, std::size_t end, After after) const {
  return after == After::kEnd || isSettled(message, end) ||
         (after == After::kMoment && isStated(message));
}

// Returns whether header and body are there, and no more than the header states.
bool TextMessages::isStated(const Message& message) const {
  const std::string_view header =
      std::string_view{held_}.substr(message.offset, message.bodyOffset - message.offset);
  return message.complete && statedLength(header) == message.contentSize();
}

// Returns whether all that decides where a message ends is there: its body, counted either way, and
// the line after it.
bool TextMessages::isSettled(const Message& message, std::size_t end) const {
  const std::size_t reach = std::max(end, message.bodyOffset + message.contentSize());
  const std::size_t line = held_.find_first_not_of("\r\n", reach);
  return message.complete && line != std::string::npos &&
         held_.find('\n', line) != std::string::npos;
}
