// stringAccess.h - what the library may do with strings and cursors beyond their public
// operations.
#ifndef SIPUTILITY_INTERNAL_STRING_ACCESS_H
#define SIPUTILITY_INTERNAL_STRING_ACCESS_H

#include <algorithm>
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

  // Moves a cursor to a position in its text, forward or back.
  static void moveTo(SipStrStream& stream, unsigned int position) {
    stream.position_ = std::min(position, stream.text_.length());
  }
};

#endif  // SIPUTILITY_INTERNAL_STRING_ACCESS_H
