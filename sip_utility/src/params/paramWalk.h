// paramWalk.h - the parameters of a list, in the order in which they are written.
#ifndef SIPUTILITY_PARAMS_PARAM_WALK_H
#define SIPUTILITY_PARAMS_PARAM_WALK_H

#include <cstddef>

#include "base/recorded.h"
#include "wySipParam.h"

// A walk over a list that does not change meanwhile. It asks the list for each step, with one
// exception. Each step of a TelAddrParamList looks through the complete list, so the walk sorts a
// long one once, if there is memory for that. A derived class may order its parameters differently
// and is always asked.
class ParamWalk {
 public:
  // Requires: the chain of this list.
  ParamWalk(const SipParamList& list, const SipParam* chain);

  // Returns the first parameter, then the ones after it; null at the end.
  const SipParam* next();

 private:
  struct Place {
    const SipParam* param;
    std::size_t position;  // on the chain
  };

  static bool isBefore(const Place& a, const Place& b);
  static bool hasSameName(const Place& a, const Place& b);
  void sort(const SipParam* chain, std::size_t count);

  const SipParamList& list_;
  const SipParam* latest_ = nullptr;  // used if the list is asked
  bool begun_ = false;
  RecordedArray<Place> sorted_;  // null if the list is asked
  const Place* place_ = nullptr;
  const Place* end_ = nullptr;
};

#endif  // SIPUTILITY_PARAMS_PARAM_WALK_H
