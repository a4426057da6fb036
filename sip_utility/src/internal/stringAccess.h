// stringAccess.h - what the library may see of a string beyond its public operations.
#ifndef SIPUTILITY_INTERNAL_STRING_ACCESS_H
#define SIPUTILITY_INTERNAL_STRING_ACCESS_H

#include <utility>

#include "wySipString.h"

struct SipStringAccess {
  // Returns whether the string has ever got a buffer and still holds it; a failed assignment
  // takes it away.
  static bool hasBuffer(const SipString& text) { return text.buffer_ != nullptr; }

  // Exchanges two strings with their buffers; cannot fail.
  static void swap(SipString& a, SipString& b) {
    std::swap(a.buffer_, b.buffer_);
    std::swap(a.length_, b.length_);
    std::swap(a.capacity_, b.capacity_);
  }
};

#endif  // SIPUTILITY_INTERNAL_STRING_ACCESS_H
