// matchOf.h - short questions to a stream.
#ifndef SIPUTILITY_INTERNAL_MATCH_OF_H
#define SIPUTILITY_INTERNAL_MATCH_OF_H

#include <string_view>

#include "charClass.h"
#include "checkedMath.h"
#include "wySipString.h"

// Returns how many bytes a rule, made for this one question, covers.
template <typename Rule>
unsigned int matchOf(const SipStrStream& stream, unsigned int offset) {
  Rule rule;
  return rule.match(stream, offset);
}

// Returns whether this byte stands at the offset.
inline bool byteIs(const SipStrStream& stream, unsigned int offset, char byte) {
  return stream.peek(offset) == static_cast<unsigned char>(byte);
}

// Returns whether this text stands at the offset, letter case included.
inline bool literalIs(const SipStrStream& stream, unsigned int offset, std::string_view literal) {
  unsigned int i = 0;
  for (const char byte : literal) {
    if (!byteIs(stream, checkedSum(offset, i), byte)) {
      return false;
    }
    ++i;
  }
  return true;
}

// Returns how many blanks and tabs stand at the offset.
inline unsigned int whiteSpaceLength(const SipStrStream& stream, unsigned int offset) {
  unsigned int count = 0;
  while (isIn(kWhiteSpace, stream.peek(checkedSum(offset, count)))) {
    count = checkedSum(count, 1);
  }
  return count;
}

#endif  // SIPUTILITY_INTERNAL_MATCH_OF_H
