// equality.h - equality and order of texts for every look-up inside the library.
//
// Lengths are tested first, so a text that begins another is ordinary input; unlike
// SipString::compare, nothing here ends the process.
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

// Returns whether a comes before b: byte by byte as unsigned ones, ASCII letters without regard
// to case, a text before the longer ones that it begins.
inline bool lessIgnoringCase(const SipString& a, const SipString& b) {
  const std::string_view left = view(a);
  const std::string_view right = view(b);
  return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                      [](char x, char y) { return foldCase(x) < foldCase(y); });
}

#endif  // SIPUTILITY_BASE_EQUALITY_H
