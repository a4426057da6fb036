// sharedBlock.h - one block of memory for several texts and objects.
//
// A block counts its items that are in use. Before each item is its distance from the start of the
// block, so that an item can be released without the others. The last release frees the block.
//
//     count | distance, item | distance, item | ...
//
// Under AddressSanitizer each item begins at a multiple of 8, and the bytes around it are poisoned.
//
// The items of a block are used by one thread at a time.
#ifndef SIPUTILITY_BASE_SHARED_BLOCK_H
#define SIPUTILITY_BASE_SHARED_BLOCK_H

#include <cstddef>
#include <cstdint>
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
    return sizeof(Distance) + size + (alignment < kGrain ? kGrain : alignment) - 1;
  }

  // Makes a block for items that take this room in all; no room needs no memory. The block belongs
  // to its items; without one it goes with this object.
  explicit SharedBlock(std::size_t room) : start_(nullptr), end_(nullptr), count_(0) {
    if (room != 0) {
      allocate(room);
    }
  }

  ~SharedBlock() {
    if (count_ != 0) {
      write(start_, count_);
    } else {
      ::operator delete(start_);
    }
  }

  SharedBlock(const SharedBlock&) = delete;
  SharedBlock& operator=(const SharedBlock&) = delete;

  // Returns the place of the next item; null if there was no memory for the block.
  // Requires: room for the item. It must not be released before this object is gone.
  void* add(std::size_t size, std::size_t alignment = 1) {
    if (start_ == nullptr) {
      return nullptr;
    }
    const std::size_t mask = (alignment < kGrain ? kGrain : alignment) - 1;
    const auto used = static_cast<std::size_t>(end_ - start_);
    const std::size_t distance = (used + sizeof(Distance) + mask) & ~mask;
    char* const item = start_ + distance;
    unpoison(item - sizeof(Distance), sizeof(Distance) + size);
    write(item - sizeof(Distance), static_cast<Distance>(distance));
    poison(item - sizeof(Distance), sizeof(Distance));
    end_ = item + size;
    ++count_;
    return item;
  }

  // Ends the use of an item.
  static void release(void* item) {
    char* const distance = static_cast<char*>(item) - sizeof(Distance);
    unpoison(distance, sizeof(Distance));
    char* const start = static_cast<char*>(item) - read<Distance>(distance);
    poison(distance, sizeof(Distance));
    const Count left = read<Count>(start) - 1;
    write(start, left);
    if (left == 0) {
      ::operator delete(start);
    }
  }

 private:
#ifdef SIPUTILITY_POISONS_GAPS
  using Count = std::uint64_t;
  using Distance = std::uint64_t;
  static constexpr std::size_t kGrain = 8;  // what one byte of the sanitizer's shadow stands for

  static void poison(const void* bytes, std::size_t size) {
    __asan_poison_memory_region(bytes, size);
  }
  static void unpoison(const void* bytes, std::size_t size) {
    __asan_unpoison_memory_region(bytes, size);
  }
#else
  using Count = std::uint32_t;
  using Distance = std::uint32_t;
  static constexpr std::size_t kGrain = 1;

  static void poison(const void* /*bytes*/, std::size_t /*size*/) {}
  static void unpoison(const void* /*bytes*/, std::size_t /*size*/) {}
#endif

  void allocate(std::size_t room) {
    start_ = static_cast<char*>(::operator new(sizeof(Count) + room, std::nothrow));
    if (start_ == nullptr) {
      AllocationWatch::noteFailure();
      return;
    }
    end_ = start_ + sizeof(Count);
    poison(end_, room);
  }

  // Items of one byte's alignment leave counts and distances unaligned.
  template <typename Number>
  static Number read(const char* bytes) {
    Number number = 0;
    std::memcpy(&number, bytes, sizeof number);
    return number;
  }
  template <typename Number>
  static void write(char* bytes, Number number) {
    std::memcpy(bytes, &number, sizeof number);
  }

  char* start_;
  char* end_;  // of the last item
  Count count_;
};

}  // namespace siputility

using siputility::SharedBlock;

#endif  // SIPUTILITY_BASE_SHARED_BLOCK_H
