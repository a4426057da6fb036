// platformBlock.h - owners of blocks from the platform's allocator.
#ifndef SIPUTILITY_BASE_PLATFORM_BLOCK_H
#define SIPUTILITY_BASE_PLATFORM_BLOCK_H

#include <cstddef>
#include <memory>
#include <string_view>
#include <type_traits>

#include "imsdpl.h"
#include "wySipCxx.h"

using siputility::PlatformBlock;

// Owns a zero-terminated text, or nothing.
using PlatformText = PlatformBlock<char>;

// Returns an array of elements that are all zero bytes; null if out of memory.
template <typename Element>
PlatformBlock<Element> newZeroed(std::size_t count) {
  // NOLINTNEXTLINE(bugprone-sizeof-expression): an element may be a pointer
  return PlatformBlock<Element>(static_cast<Element*>(__calloc(count, sizeof(Element))));
}

// Returns an uninitialised block for a text of this length and its terminator; null if out of
// memory.
inline PlatformText newText(std::size_t length) {
  return PlatformText(static_cast<char*>(__malloc(length + 1)));
}

// Returns the two texts one after the other, terminated; null if out of memory.
inline PlatformText joined(std::string_view front, std::string_view back) {
  PlatformText text = newText(front.size() + back.size());
  if (text != nullptr) {
    char* const middle = text.get() + front.copy(text.get(), front.size());
    middle[back.copy(middle, back.size())] = '\0';
  }
  return text;
}

// Returns a copy of a text, terminated; null if out of memory.
inline PlatformText copyOf(std::string_view text) { return joined(text, {}); }

// Frees a block and sets the pointer to null.
template <typename Element>
void releaseBlock(Element*& block) {
  __free(const_cast<std::remove_const_t<Element>*>(block));
  block = nullptr;
}

#endif  // SIPUTILITY_BASE_PLATFORM_BLOCK_H
