// countingPlatform.h - what the test's own platform has seen so far.
#ifndef TESTS_COUNTING_PLATFORM_H
#define TESTS_COUNTING_PLATFORM_H

#include <string>
#include <vector>

struct SeenByPlatform {
  std::vector<std::string> logFormats;
  unsigned int allocations = 0;
  int liveBlocks = 0;
  unsigned int assertions = 0;
};

SeenByPlatform& seenByPlatform();

#endif  // TESTS_COUNTING_PLATFORM_H
