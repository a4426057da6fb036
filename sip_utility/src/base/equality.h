// equality.h - equality and order of texts for every look-up inside the library.
//
// Lengths are tested first, so a text that begins another is ordinary input; unlike
// SipString::compare, nothing here ends the process.
#ifndef SIPUTILITY_BASE_EQUALITY_H
#define SIPUTILITY_BASE_EQUALITY_H

#include <algorithm>
#include <string_view>

#include "base/charClass.h"
#include "wySipString.h"

// Returns the content of a string; the view lives until the string next changes.
inline std::string_view view(const SipString& text) { return {text.c_str(), text.length()}; }

// Returns whether both texts are the same bytes.
inline bool equal(const SipString& a, std::string_view b) { return view(a) == b; }

// Returns whether both texts are the same, ASCII letters compared without regard to case.
inline bool equalIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return foldCase(x) == foldCase(y); });
}
inline bool equalIgnoringCase(const SipString& text, std::string_view other) {
  return equalIgnoringCase(view(text), other);
}

// Returns whether a comes before b: byte by byte as unsigned ones, ASCII letters without regard
// to case, a text in front of the longer ones that it begins.
inline bool lessIgnoringCase(const SipString& a, const SipString& b) {
  const std::string_view left = view(a);
  const std::string_view right = view(b);
  return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                      [](char x, char y) { return foldCase(x) < foldCase(y); });
}

#endif  // SIPUTILITY_BASE_EQUALITY_H
