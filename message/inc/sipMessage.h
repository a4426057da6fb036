/// \file
/// Cuts a text with SIP messages into messages, and these into start line, fields and body.
///
/// Nothing here judges a field: its name and value are what SipHeader takes. The static library
/// siputility::message has this. Unlike the library below it, it throws std::bad_alloc when it is
/// out of memory.
#ifndef SIP_MESSAGE_H
#define SIP_MESSAGE_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sipFields.h"

namespace siputility {

/// The pieces of a start line, as views into it. Those of the other kind of message are "".
struct StartLine {
  explicit StartLine(std::string_view line);

  bool response;             ///< whether it begins with "SIP/"
  std::string_view version;  ///< such as "SIP/2.0"
  std::string_view method;
  std::string_view uri;
  std::string_view status;  ///< the status code and all after it

  /// Returns the three bytes of the status code.
  std::string_view code() const { return status.substr(0, 3); }

  /// Returns the reason phrase.
  std::string_view reason() const;
};

/// One value of a header field: a field that is a list has several.
struct Field {
  std::string name;         ///< the long form of a compact one, else as received
  std::string value;        ///< unfolded, without the white space around it
  const FieldKind* kind;    ///< null for an unknown field
  std::size_t offset;       ///< of the field's line, in bytes from the start of the text
  std::string_view line;    ///< in the text: the line, those that continue it and their ends
  std::string_view source;  ///< in the text: the value alone, folds and white space included

  /// Returns the name and the value as received, unfolded.
  std::string raw() const;
};

/// What is wrong with a message.
struct Fault {
  std::string words;   ///< with bytes of the text, whatever they are
  std::size_t offset;  ///< of the place, in bytes from the start of the text
};

/// A message. The views are into the text that it was read from.
struct Message {
  std::string startLine;
  std::vector<Field> fields;
  std::string_view body;
  bool restored = false;       ///< the lines ended in CRLF before the text was saved
  bool complete = true;        ///< the header has its end, the body its Content-Length
  std::vector<Fault> faults;   ///< apart from what its fields' values are
  std::size_t offset = 0;      ///< of its start line, in bytes from the start of the text
  std::size_t bodyOffset = 0;  ///< of its body, in the same way

  /// Returns the first field of this long name, ignoring the case of letters; null for none.
  const Field* find(std::string_view name) const;

  /// Returns the body as it was sent: with CRLF for each bare LF of a restored message.
  std::string content() const;

  /// Returns the length of the content.
  std::size_t contentSize() const;
};

/// Returns whether a line without its end is a status line or a request line.
bool isStartLine(std::string_view line);

/// Returns whether a line among others begins a message: METHOD URI SIP/2.0 or SIP/2.0 CODE...,
/// without the blanks in the URI that a line of a log has. `12:00 received INVITE sip:b.test
/// SIP/2.0` begins none.
bool beginsMessage(std::string_view line);

/// Returns the body length that the Content-Length fields of a header say; nothing when there is
/// none or they say nothing certain. The header begins with its start line.
std::optional<std::size_t> statedLength(std::string_view header);

/// Takes messages off the front of a text, which must outlive them. Lines end in CRLF or LF; a
/// body has the length that its Content-Length says; without one it extends to the end. Where the
/// lines of the header end in a bare LF, one in the body counts as CRLF, unless only a body without
/// that ends where the next message begins or at the end.
///
/// Of a text that is no SIP at all, the message has faults; no text is refused. The time is linear
/// in the length of the text. A reader is used by one thread at a time.
class MessageReader {
 public:
  explicit MessageReader(std::string_view text);

  /// Returns the next message; nothing when only line ends are left.
  std::optional<Message> next();

  /// Returns how many bytes are read.
  std::size_t position() const { return position_; }

 private:
  std::optional<std::string_view> nextLine();
  std::string_view nextHeaderLine();
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

}  // namespace siputility

#endif  // SIP_MESSAGE_H
