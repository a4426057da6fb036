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

// Returns whether a sorts before b. Bytes compare as unsigned, ASCII letters without regard to
// case. A text sorts before every longer text that begins with it.
inline bool lessIgnoringCase(const SipString& a, const SipString& b) {
  const std::string_view left = view(a);
  const std::string_view right = view(b);
  return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                      [](char x, char y) { return foldCase(x) < foldCase(y); });
}

#endif  // SIPUTILITY_BASE_EQUALITY_H
