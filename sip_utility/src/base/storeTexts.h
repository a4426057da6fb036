// storeTexts.h - stores several texts with one allocation.
#ifndef SIPUTILITY_BASE_STORE_TEXTS_H
#define SIPUTILITY_BASE_STORE_TEXTS_H

#include <cstddef>
#include <initializer_list>
#include <string_view>

#include "base/sharedBlock.h"
#include "base/stringAccess.h"

// A string, and the bytes from outside it that it gets.
struct TextToStore {
  SipString& string;
  std::string_view bytes;
};

// Stores the texts that are not empty. Strings that have never had content share one block. The
// others are assigned to: a caller's class may let a parse step write to strings in use.
// Fails: VARN_RESOURCE_FAILURE. Without the block no string has changed.
inline VARN_EXCEPTION_CODES storeTexts(std::initializer_list<TextToStore> texts) {
  std::size_t room = 0;
  for (const TextToStore& each : texts) {
    room += SipStringAccess::isFresh(each.string) ? SipStringAccess::roomFor(each.bytes) : 0;
  }
  SharedBlock block(room);
  VARN_EXCEPTION_CODES code = VARN_OK;
  for (const TextToStore& each : texts) {
    if (code == VARN_OK && !each.bytes.empty()) {
      code = SipStringAccess::isFresh(each.string)
                 ? SipStringAccess::share(each.string, each.bytes, block)
                 : SipStringAccess::assign(each.string, each.bytes);
    }
  }
  return code;
}

#endif  // SIPUTILITY_BASE_STORE_TEXTS_H
