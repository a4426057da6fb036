// sharedBlock.h - one block of memory for several texts and objects.
//
// A block counts its items that are in use. Before each item is its distance from the start of the
// block, so that an item can be released without the others. The last release frees the block.
//
//     count | distance, item | distance, item | ...
//
// Under AddressSanitizer each item begins at a multiple of 8 and has its size before it. The bytes
// around the items are poisoned, and so is an item that is released.
//
// The items of a block are used by one thread at a time.
#ifndef SIPUTILITY_BASE_SHARED_BLOCK_H
#define SIPUTILITY_BASE_SHARED_BLOCK_H

#include <cstddef>
#include <cstring>
#include <new>

#include "base/allocationWatch.h"

#ifdef __SANITIZE_ADDRESS__
#define SIPUTILITY_POISONS_GAPS
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define SIPUTILITY_POISONS_GAPS
#endif
#endif

#ifdef SIPUTILITY_POISONS_GAPS
#include <sanitizer/asan_interface.h>
#endif

namespace siputility {

class SharedBlock {
 public:
  // Returns how much of a block an item takes, at most.
  static constexpr std::size_t roomFor(std::size_t size, std::size_t alignment = 1) {
    return sizeof(Head) + size + (alignment < kGrain ? kGrain : alignment) - 1;
  }

  // Makes a block for items that take this room in all; no room needs no memory. The block belongs
  // to its items and, while it lives, to this object.
  explicit SharedBlock(std::size_t room) : start_(nullptr), end_(nullptr) {
    if (room != 0) {
      allocate(room);
    }
  }

  ~SharedBlock() {
    if (start_ != nullptr) {
      leave(start_);
    }
  }

  SharedBlock(const SharedBlock&) = delete;
  SharedBlock& operator=(const SharedBlock&) = delete;

  // Returns the place of the next item; null if there was no memory for the block.
  // Requires: room for the item.
  void* add(std::size_t size, std::size_t alignment = 1) {
    if (start_ == nullptr) {
      return nullptr;
    }
    const std::size_t mask = (alignment < kGrain ? kGrain : alignment) - 1;
    const auto used = static_cast<std::size_t>(end_ - start_);
    const std::size_t distance = (used + sizeof(Head) + mask) & ~mask;
    char* const item = start_ + distance;
    writeHead(item, distance, size);
    write(start_, read<std::size_t>(start_) + 1);
    end_ = item + size;
    return item;
  }

  // Ends the use of an item.
  static void release(void* item) {
    char* const bytes = static_cast<char*>(item);
    leave(bytes - distanceOf(bytes));
  }

 private:
#ifdef SIPUTILITY_POISONS_GAPS
  struct Head {
    std::size_t distance;
    std::size_t size;
  };
  static constexpr std::size_t kGrain = 8;  // what one byte of the sanitizer's shadow stands for

  static void poison(const void* bytes, std::size_t size) {
    __asan_poison_memory_region(bytes, size);
  }
  static void writeHead(char* item, std::size_t distance, std::size_t size) {
    char* const head = item - sizeof(Head);
    __asan_unpoison_memory_region(head, sizeof(Head) + size);
    write(head, Head{distance, size});
    poison(head, sizeof(Head));
  }
  // Also poisons the item, which is released.
  static std::size_t distanceOf(char* item) {
    char* const bytes = item - sizeof(Head);
    __asan_unpoison_memory_region(bytes, sizeof(Head));
    const Head head = read<Head>(bytes);
    poison(bytes, sizeof(Head) + head.size);
    return head.distance;
  }
#else
  using Head = std::size_t;  // the distance
  static constexpr std::size_t kGrain = 1;

  static void poison(const void* /*bytes*/, std::size_t /*size*/) {}
  static void writeHead(char* item, std::size_t distance, std::size_t /*size*/) {
    write(item - sizeof(Head), distance);
  }
  static std::size_t distanceOf(const char* item) { return read<Head>(item - sizeof(Head)); }
#endif

  void allocate(std::size_t room) {
    start_ = static_cast<char*>(::operator new(sizeof(std::size_t) + room, std::nothrow));
    if (start_ == nullptr) {
      AllocationWatch::noteFailure();
      return;
    }
    write(start_, std::size_t{1});  // this object
    end_ = start_ + sizeof(std::size_t);
    poison(end_, room);
  }

  // Counts one user less of a block.
  static void leave(char* start) {
    const std::size_t left = read<std::size_t>(start) - 1;
    write(start, left);
    if (left == 0) {
      ::operator delete(start);
    }
  }

  // Items of one byte's alignment leave what is before them unaligned.
  template <typename Value>
  static Value read(const char* bytes) {
    Value value = {};
    std::memcpy(&value, bytes, sizeof value);
    return value;
  }
  template <typename Value>
  static void write(char* bytes, Value value) {
    std::memcpy(bytes, &value, sizeof value);
  }

  char* start_;
  char* end_;  // of the last item
};

}  // namespace siputility

using siputility::SharedBlock;

#endif  // SIPUTILITY_BASE_SHARED_BLOCK_H
