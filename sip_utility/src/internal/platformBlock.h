// platformBlock.h - owners of blocks that the platform's allocator gives.
#ifndef SIPUTILITY_INTERNAL_PLATFORM_BLOCK_H
#define SIPUTILITY_INTERNAL_PLATFORM_BLOCK_H

#include <cstddef>
#include <memory>
#include <string_view>
#include <type_traits>

#include "imsdpl.h"

struct PlatformFree {
  void operator()(void* block) const { __free(block); }
};

// Owns an array of plain elements, or nothing.
template <typename Element>
using PlatformBlock = std::unique_ptr<Element[], PlatformFree>;

// Owns a zero-terminated text, or nothing.
using PlatformText = PlatformBlock<char>;

// Returns an array of elements that are all zero bytes; null without memory.
template <typename Element>
PlatformBlock<Element> newZeroed(std::size_t count) {
  return PlatformBlock<Element>(static_cast<Element*>(__calloc(count, sizeof(Element))));
}

// Returns an uninitialised block for a text of the length and its terminator; null without memory.
inline PlatformText newText(std::size_t length) {
  return PlatformText(static_cast<char*>(__malloc(length + 1)));
}

// Returns a copy of a text, terminated; null without memory.
inline PlatformText copyOf(std::string_view text) {
  PlatformText copy = newText(text.size());
  if (copy != nullptr) {
    copy[text.copy(copy.get(), text.size())] = '\0';
  }
  return copy;
}

// Frees a block and forgets it.
template <typename Element>
void releaseBlock(Element*& block) {
  __free(const_cast<std::remove_const_t<Element>*>(block));
  block = nullptr;
}

#endif  // SIPUTILITY_INTERNAL_PLATFORM_BLOCK_H
