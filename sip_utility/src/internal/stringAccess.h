// stringAccess.h - what the library may see of a string beyond its public operations.
#ifndef SIPUTILITY_INTERNAL_STRING_ACCESS_H
#define SIPUTILITY_INTERNAL_STRING_ACCESS_H

#include "wySipString.h"

struct SipStringAccess {
  // Returns whether the string has ever got a buffer and still holds it; a failed assignment
  // takes it away.
  static bool hasBuffer(const SipString& text) { return text.buffer_ != nullptr; }
};

#endif  // SIPUTILITY_INTERNAL_STRING_ACCESS_H
