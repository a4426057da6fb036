// paramNode.h - makes, deletes and watches the nodes of parameter lists.
#ifndef SIPUTILITY_INTERNAL_PARAM_NODE_H
#define SIPUTILITY_INTERNAL_PARAM_NODE_H

#include <atomic>
#include <new>

#include "log.h"
#include "wySipParam.h"

// Returns a recorded node, first on the chain with this head; null without memory.
inline SipParam* newParam(SipParam** head, const char* sourceFile) {
  auto* param = new (std::nothrow) SipParam(head);
  if (param != nullptr) {
    recordBlock(sourceFile, param, sizeof(SipParam));
  }
  return param;
}

// Deletes a recorded node, which takes it off its chain.
inline void deleteParam(SipParam* param) {
  forgetBlock(param);
  delete param;
}

// Tells the lists that keep an index over their nodes when a node may have left its chain or
// changed its name anywhere in the process. Costs nothing while no list keeps one.
class ParamIndexWatch {
 public:
  // An index is made, or is gone.
  static void addIndex() { ++indexes_; }
  static void removeIndex() { --indexes_; }

  // A node was taken off, renamed or relinked.
  static void nodeChanged() {
    if (indexes_.load(std::memory_order_relaxed) != 0) {
      changes_.fetch_add(1, std::memory_order_relaxed);
    }
  }

  // Returns a number that differs from an earlier one when a node has changed in between.
  static unsigned long changes() { return changes_.load(std::memory_order_relaxed); }

 private:
  static inline std::atomic<unsigned long> indexes_{0};
  static inline std::atomic<unsigned long> changes_{0};
};

#endif  // SIPUTILITY_INTERNAL_PARAM_NODE_H
