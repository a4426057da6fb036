// allocationWatch.h - shows whether an allocation failed while a matcher ran.
#ifndef SIPUTILITY_BASE_ALLOCATION_WATCH_H
#define SIPUTILITY_BASE_ALLOCATION_WATCH_H

#include "wySipString.h"

// A matcher returns only a length: one that runs out of memory returns 0, as if the text did not
// match. The watch looks at the failed allocations of its thread, so that its user can report the
// two cases with different codes.
class AllocationWatch {
 public:
  AllocationWatch() : before_(failures_) {}

  // Returns whether an allocation has failed since the watch was made.
  bool hasFailure() const { return failures_ != before_; }

  // Returns the code for a text that the matcher refused.
  VARN_EXCEPTION_CODES refusal() const {
    return hasFailure() ? VARN_RESOURCE_FAILURE : VARN_INVALID_INPUT;
  }

  // Notes that an allocation has failed.
  static void noteFailure() { ++failures_; }

 private:
  static inline thread_local unsigned long failures_ = 0;
  unsigned long before_;
};

#endif  // SIPUTILITY_BASE_ALLOCATION_WATCH_H
