// allocations.cpp - counts every block of the C library, whoever asks: operator new, the platform,
// zlib, the floor.
//
// The program's own malloc, calloc and realloc stand in front of glibc's for all its libraries.
#include <cstddef>

#include "harness.h"

namespace {

unsigned long allocations = 0;

}  // namespace

unsigned long allocationsSoFar() { return allocations; }

// NOLINTBEGIN(bugprone-reserved-identifier,readability-inconsistent-declaration-parameter-name):
// glibc's names.
extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);

void* malloc(std::size_t size) noexcept {
  ++allocations;
  return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) noexcept {
  ++allocations;
  return __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size) noexcept {
  ++allocations;
  return __libc_realloc(block, size);
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier,readability-inconsistent-declaration-parameter-name)
