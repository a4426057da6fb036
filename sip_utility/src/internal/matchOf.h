// matchOf.h - asks the rules of the grammar and keeps their contract in view.
#ifndef SIPUTILITY_INTERNAL_MATCH_OF_H
#define SIPUTILITY_INTERNAL_MATCH_OF_H

#include "checkedMath.h"
#include "unread.h"

// Reports an offset past the end of a text as a failed assertion. In wySipMatch.cpp, whatever the
// rule: SipMatch::match() is the place that asserts.
[[gnu::cold]] void reportPastEnd();

// Reports an offset or the end of a match past the end of the text as a failed assertion.
inline void assertWithin(unsigned int offset, Unread text) {
  if (offset > text.length) {
    reportPastEnd();
  }
}

// Returns how many bytes a rule covers.
template <Rule* rule>
[[gnu::always_inline]] inline unsigned int matchOf(Unread text, unsigned int offset) {
  assertWithin(offset, text);
  const unsigned int count = rule(text, offset);
  assertWithin(checkedSum(offset, count), text);
  return count;
}

// Returns how many of the bytes next to be read a rule covers.
template <Rule* rule>
[[gnu::always_inline]] inline unsigned int matchOf(const SipStrStream& stream) {
  return matchOf<rule>(unread(stream), 0);
}

#endif  // SIPUTILITY_INTERNAL_MATCH_OF_H
