// allocationWatch.h - tells whether memory ran out in between, where nothing else says so.
#ifndef SIPUTILITY_BASE_ALLOCATION_WATCH_H
#define SIPUTILITY_BASE_ALLOCATION_WATCH_H

#include "wySipString.h"

// A matcher only gives lengths: one that had no memory for looking does not match. Watches the
// allocations of the thread, so that a refusal for that reason is told from others.
class AllocationWatch {
 public:
  AllocationWatch() : before_(failures_) {}

  // Returns whether an allocation has failed since the watch was made.
  bool hasFailure() const { return failures_ != before_; }

  // Returns the code of a refusal.
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
