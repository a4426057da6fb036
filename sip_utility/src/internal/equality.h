// equality.h - equality of texts for every look-up inside the library.
//
// Lengths are tested first, so a text that begins another is ordinary input; unlike
// SipString::compare, nothing here ends the process.
#ifndef SIPUTILITY_INTERNAL_EQUALITY_H
#define SIPUTILITY_INTERNAL_EQUALITY_H

#include <string_view>

#include "charClass.h"
#include "wySipString.h"

// Returns the content of a string; the view lives until the string next changes.
inline std::string_view view(const SipString& text) { return {text.c_str(), text.length()}; }

// Returns whether both texts are the same bytes.
inline bool equal(const SipString& a, std::string_view b) { return view(a) == b; }

// Returns whether both texts are the same, ASCII letters compared without regard to case.
inline bool equalIgnoringCase(const SipString& text, std::string_view other) {
  const std::string_view own = view(text);
  if (own.size() != other.size()) {
    return false;
  }
  for (std::size_t i = 0; i < own.size(); ++i) {
    if (foldCase(own[i]) != foldCase(other[i])) {
      return false;
    }
  }
  return true;
}

#endif  // SIPUTILITY_INTERNAL_EQUALITY_H
