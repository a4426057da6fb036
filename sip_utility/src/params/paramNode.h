// paramNode.h - makes, deletes and watches the nodes of parameter lists.
#ifndef SIPUTILITY_PARAMS_PARAM_NODE_H
#define SIPUTILITY_PARAMS_PARAM_NODE_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "base/recorded.h"
#include "base/stringAccess.h"
#include "wySipParam.h"

// Returns a recorded node, first on the chain with this head; null without memory.
inline SipParam* newParam(SipParam** head, Source source) {
  return newRecorded<SipParam>(source, head);
}

// Tells a list that keeps an index over its nodes when one of them may have left the chain or
// changed its name. Costs nothing while no list keeps an index.
//
// A list that changes its nodes says so for itself. A caller who changes one behind the lists'
// backs, as find() lets him, cannot say whose it is; that counts for all lists.
class ParamIndexWatch {
 public:
  // An index is made, or is gone.
  static void addIndex() { ++indexes_; }
  static void removeIndex() { --indexes_; }

  // A node was taken off, renamed or relinked.
  static void nodeChanged() {
    if (watched() && listChanges_ == 0) {
      anywhere_.fetch_add(1, std::memory_order_relaxed);
    }
  }

  // Returns a number that differs from an earlier one when a node of the list has changed in
  // between; seldom also when one of another list has.
  static unsigned long changes(const SipParamList* list) {
    return anywhere_.load(std::memory_order_relaxed) + slotOf(list).load(std::memory_order_relaxed);
  }

 private:
  friend class ParamListChange;

  static bool watched() { return indexes_.load(std::memory_order_relaxed) != 0; }

  static std::atomic<unsigned long>& slotOf(const SipParamList* list) {
    return slots_[(reinterpret_cast<std::uintptr_t>(list) >> 4U) % kSlots];
  }

  static constexpr std::size_t kSlots = 1021;
  static inline std::atomic<unsigned long> indexes_{0};
  static inline std::atomic<unsigned long> anywhere_{0};
  static inline std::atomic<unsigned long> slots_[kSlots] = {};
  static inline thread_local unsigned int listChanges_ = 0;
};

// While one lives, the changes of nodes are those that this list makes.
class ParamListChange {
 public:
  explicit ParamListChange(const SipParamList* list) : watched_(ParamIndexWatch::watched()) {
    if (watched_) {
      ParamIndexWatch::slotOf(list).fetch_add(1, std::memory_order_relaxed);
      ++ParamIndexWatch::listChanges_;
    }
  }
  ~ParamListChange() {
    if (watched_) {
      --ParamIndexWatch::listChanges_;
    }
  }
  ParamListChange(const ParamListChange&) = delete;
  ParamListChange& operator=(const ParamListChange&) = delete;

 private:
  bool watched_;
};

namespace siputility {

struct SipParamAccess {
  // Returns where a node keeps its pointer to the next one.
  static SipParam** link(SipParam& param) { return &param.next_; }

  // Each assigns bytes that lie elsewhere, at least one.
  // Fails: VARN_RESOURCE_FAILURE, also where a piece that never had bytes gets none.
  static VARN_EXCEPTION_CODES setName(SipParam& param, std::string_view name) {
    ParamIndexWatch::nodeChanged();
    return SipStringAccess::replace(param.name_, name);
  }
  static VARN_EXCEPTION_CODES setValue(SipParam& param, std::string_view value) {
    return SipStringAccess::replace(param.value_, value);
  }
};

}  // namespace siputility

using siputility::SipParamAccess;

// Deletes a recorded node of the list, which takes it off its chain.
inline void deleteParam(SipParam* param, const SipParamList* list) {
  const ParamListChange change(list);
  deleteRecorded(param);
}

#endif  // SIPUTILITY_PARAMS_PARAM_NODE_H
