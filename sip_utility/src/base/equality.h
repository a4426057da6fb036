// equality.h - equality and order of texts for every look-up inside the library.
//
// SipString::compare() ends the process when its string is the beginning of a longer text. Such
// texts come from the network, so the library compares with these functions instead, which accept
// any two texts.
#ifndef SIPUTILITY_BASE_EQUALITY_H
#define SIPUTILITY_BASE_EQUALITY_H

#include <algorithm>
#include <string_view>

#include "base/charClass.h"
#include "wySipCxx.h"
#include "wySipString.h"

using siputility::equal;
using siputility::equalIgnoringCase;
using siputility::view;

// Returns a negative number if a sorts before b, a positive one if b sorts before a, else 0. Bytes
// compare as unsigned, ASCII letters without regard to case. A text sorts before every longer text
// that begins with it.
inline int orderIgnoringCase(const SipString& a, const SipString& b) {
  const unsigned int common = std::min(a.length(), b.length());
  const char* const left = a.c_str();
  const char* const right = b.c_str();
  for (unsigned int i = 0; i < common; ++i) {
    if (left[i] != right[i] && foldCase(left[i]) != foldCase(right[i])) {
      return foldCase(left[i]) - foldCase(right[i]);
    }
  }
  return a.length() == b.length() ? 0 : (a.length() < b.length() ? -1 : 1);
}
inline bool lessIgnoringCase(const SipString& a, const SipString& b) {
  return orderIgnoringCase(a, b) < 0;
}

#endif  // SIPUTILITY_BASE_EQUALITY_H
