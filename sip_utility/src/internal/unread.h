// unread.h - the unread rest of a stream, as the rules of the grammar look at it.
#ifndef SIPUTILITY_INTERNAL_UNREAD_H
#define SIPUTILITY_INTERNAL_UNREAD_H

#include <string_view>

#include "charClass.h"
#include "checkedMath.h"
#include "stringAccess.h"

// Shows bytes that someone else owns. Offsets are counted from the first unread byte and may lie
// behind the last one; what is asked for there is not.
struct Unread {
  // Returns the byte at the offset as 0 to 255, -1 at and behind the end.
  int peek(unsigned int offset) const {
    return offset < length ? static_cast<unsigned char>(bytes[offset]) : -1;
  }

  // Returns whether this byte stands at the offset.
  bool has(unsigned int offset, char byte) const {
    return offset < length && bytes[offset] == byte;
  }

  // Returns whether a member of the class stands at the offset.
  bool has(unsigned int offset, CharClass charClass) const {
    return offset < length && isIn(charClass, bytes[offset]);
  }

  // Returns whether this text stands at the offset, letter case included.
  bool has(unsigned int offset, std::string_view text) const {
    return from(offset).substr(0, text.size()) == text;
  }

  // Returns the bytes from the offset on.
  std::string_view from(unsigned int offset) const {
    return offset < length ? std::string_view(bytes + offset, length - offset) : std::string_view();
  }

  // Returns how many members of the class stand at the offset.
  unsigned int run(unsigned int offset, CharClass charClass) const {
    return offset < length ? endOfRun(offset, charClass) - offset : 0;
  }

  // Returns the offset behind those that stand at the offset, which is not behind the end.
  unsigned int endOfRun(unsigned int offset, CharClass charClass) const {
    const char* const end = bytes + length;
    const char* at = bytes + offset;
    while (at != end && isIn(charClass, *at)) {
      ++at;
    }
    return static_cast<unsigned int>(at - bytes);
  }

  const char* bytes;
  unsigned int length;
};

// Returns what a stream has left, until the stream next moves.
inline Unread unread(const SipStrStream& stream) {
  const std::string_view rest = SipStringAccess::rest(stream);
  return {rest.data(), static_cast<unsigned int>(rest.size())};
}

// As unread(), for what looks at the offset: position + offset must not wrap, which ends the
// process.
inline Unread unreadFor(const SipStrStream& stream, unsigned int offset) {
  checkedSum(stream.pos(), offset);
  return unread(stream);
}

// A rule of the grammar: how many bytes it covers at the offset, 0 for none.
using Rule = unsigned int(Unread text, unsigned int offset);

#endif  // SIPUTILITY_INTERNAL_UNREAD_H
