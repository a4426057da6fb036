// message.h - cuts a text with SIP messages into messages, and these into their parts.
#ifndef TOOL_MESSAGE_H
#define TOOL_MESSAGE_H

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fields.h"

// One value of a header field: a field that is a list has several.
struct Field {
  std::string name;                 // the long form of a compact one, else as received
  std::string value;                // unfolded, without the white space around it
  std::size_t offset = 0;           // of its line in the text
  std::string raw;                  // name and value as received, unfolded
  const FieldKind* kind = nullptr;  // null for an unknown field
};

struct Message {
  std::string startLine;
  std::vector<Field> fields;
  std::string_view body;
  bool restored = false;            // the lines ended in CRLF before the text was saved
  std::vector<std::string> faults;  // what is wrong with the message, apart from its fields
  std::size_t offset = 0;           // of its start line in the text
  std::size_t bodyOffset = 0;       // of its body in the text

  // Returns the body as it was sent: with CRLF for each bare LF of a restored message.
  std::string content() const;

  // Returns the length of the content.
  std::size_t contentSize() const;
};

// Returns the number of the line at an offset in a text; the offsets come in their order.
using LineAt = std::function<std::size_t(std::size_t offset)>;

// Numbers the lines of a text, from 1.
class LineCounter {
 public:
  explicit LineCounter(std::string_view text);

  // Offsets come in their order.
  std::size_t at(std::size_t offset);

 private:
  std::string_view text_;
  std::size_t offset_;
  std::size_t line_;
};

// Returns whether a line without its end is a status line or a request line.
bool isStartLine(std::string_view line);

// Returns whether a line among others begins a message: METHOD URI SIP/2.0 or SIP/2.0 CODE...,
// without the blanks in the URI that a line of a log has. `12:00 received INVITE sip:b.test
// SIP/2.0` begins none.
bool beginsMessage(std::string_view line);

// Returns the body length that the Content-Length fields of a header say, start line included;
// nothing when there is none or they say nothing certain.
std::optional<std::size_t> statedLength(std::string_view header);

// Takes messages off the front of a text, which must outlive them. Lines end in CRLF or LF; a
// body has the length that its Content-Length says; without one it extends to the end. Where the
// lines of the header end in a bare LF, one in the body counts as CRLF, unless only a body without
// that ends where the next message begins or at the end.
class MessageReader {
 public:
  explicit MessageReader(std::string_view text);

  // Returns the next message; nothing when only line ends are left.
  std::optional<Message> next();

  // Returns how many bytes are read.
  std::size_t position() const { return position_; }

 private:
  std::optional<std::string_view> nextLine();
  std::optional<std::string> nextHeaderLine();
  void readFields(Message& message);
  void readBody(Message& message);
  void readRestOfBody(Message& message, std::size_t stated);
  std::optional<std::size_t> bodyLength(Message& message, std::size_t stated);
  bool isMessageEnd(std::size_t position) const;
  std::size_t beforeStartLine(std::size_t position) const;
  std::string_view lineFrom(std::size_t position) const;
  std::size_t bareLineFeedsLeft();
  std::size_t lengthToStartLine();

  std::string_view text_;
  std::size_t position_;
  std::size_t counted_;           // up to where bareLineFeeds_ is known
  std::size_t bareLineFeeds_;     // from there on
  bool carriageReturns_ = false;  // in the lines read since it was cleared
};

#endif  // TOOL_MESSAGE_H
