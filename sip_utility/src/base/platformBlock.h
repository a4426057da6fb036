// platformBlock.h - owners of blocks that the platform's allocator gives.
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

// Returns an array of elements that are all zero bytes; null without memory.
template <typename Element>
PlatformBlock<Element> newZeroed(std::size_t count) {
  // NOLINTNEXTLINE(bugprone-sizeof-expression): arrays of pointers are among them
  return PlatformBlock<Element>(static_cast<Element*>(__calloc(count, sizeof(Element))));
}

// Returns an uninitialised block for a text of the length and its terminator; null without memory.
inline PlatformText newText(std::size_t length) {
  return PlatformText(static_cast<char*>(__malloc(length + 1)));
}

// Returns a copy of two texts in a row, terminated; null without memory.
inline PlatformText joined(std::string_view front, std::string_view back) {
  PlatformText text = newText(front.size() + back.size());
  if (text != nullptr) {
    char* const middle = text.get() + front.copy(text.get(), front.size());
    middle[back.copy(middle, back.size())] = '\0';
  }
  return text;
}

// Returns a copy of a text, terminated; null without memory.
inline PlatformText copyOf(std::string_view text) { return joined(text, {}); }

// Frees a block and forgets it.
template <typename Element>
void releaseBlock(Element*& block) {
  __free(const_cast<std::remove_const_t<Element>*>(block));
  block = nullptr;
}

#endif  // SIPUTILITY_BASE_PLATFORM_BLOCK_H
