// harness.cpp - the check of a result, and the count of blocks.
//
// The program defines malloc, calloc and realloc. Its libraries call these, so every block counts,
// also those of operator new, the platform, zlib and the floor.
#include "harness.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>

namespace {

unsigned long allocations = 0;

}  // namespace

void requireResult(const std::string& name, const Record& record, const std::string& wanted) {
  const std::string got = wanted[0] == '#' ? record.tally() : record.value();
  if (got != wanted) {
    static_cast<void>(std::fprintf(stderr, "%s is wrong:\ngot    %.2000s\nwanted %.2000s\n",
                                   name.c_str(), got.c_str(), wanted.c_str()));
    std::exit(1);
  }
}

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
