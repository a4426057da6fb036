// failStop.cpp - the two ways in which the library ends the process.
#include "base/failStop.h"

#include <unistd.h>

#include <cstdlib>

#include "base/log.h"

void failStopArithmetic() { std::abort(); }

void failStopCopy(const char* sourceFile, int line) {
  logEvent(kFailure, kModuleCopyGuard, sourceFile, line,
           "wyDplMemscpy - dst buffer size less than source size");
  _exit(0);  // status 0 is meant; no destructor or exit handler runs
}
