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

using TextsToStore = std::initializer_list<TextToStore>;

// Returns the room that the texts need in a shared block.
inline std::size_t roomFor(TextsToStore texts) {
  std::size_t room = 0;
  for (const TextToStore& each : texts) {
    room += SipStringAccess::isFresh(each.string) ? SipStringAccess::roomFor(each.bytes) : 0;
  }
  return room;
}

// Stores the texts that are not empty: those of strings that have never had content in the block.
// The others are assigned to: a caller's class may let a parse step write to strings in use.
// Fails: VARN_RESOURCE_FAILURE. Without the block no string that never had content has changed.
inline VARN_EXCEPTION_CODES storeTexts(TextsToStore texts, SharedBlock& block) {
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

// As above, with a block of their own.
inline VARN_EXCEPTION_CODES storeTexts(TextsToStore texts) {
  SharedBlock block(roomFor(texts));
  return storeTexts(texts, block);
  // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the block belongs to its items
}

#endif  // SIPUTILITY_BASE_STORE_TEXTS_H
