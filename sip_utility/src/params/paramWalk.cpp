// paramWalk.cpp - the parameters of a list, in the order in which they are written.
#include "params/paramWalk.h"

#include <algorithm>
#include <typeinfo>

#include "base/equality.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wyTelAddress";

constexpr std::size_t kMaxUnsorted = 16;  // parameters; sorting fewer costs more than asking

}  // namespace

ParamWalk::ParamWalk(const SipParamList& list, const SipParam* chain) : list_(list) {
  std::size_t count = 0;
  for (const SipParam* param = chain; param != nullptr; param = param->next()) {
    ++count;
  }
  if (count > kMaxUnsorted && &typeid(list) == &typeid(TelAddrParamList)) {
    sort(chain, count);
  }
}

const SipParam* ParamWalk::next() {
  if (sorted_ != nullptr) {
    return place_ == end_ ? nullptr : (place_++)->param;
  }
  latest_ = begun_ ? list_.nextParam(latest_) : list_.firstParam();
  begun_ = true;
  return latest_;
}

// Sorts by name and keeps one node of each name, the first on the chain, as the steps of the list
// do. Out of memory is no failure: the list is asked then.
void ParamWalk::sort(const SipParam* chain, std::size_t count) {
  sorted_.reset(newRecordedArray<Place>(kSourceFile, count));
  if (sorted_ == nullptr) {
    return;
  }
  Place* const begin = sorted_.get();
  for (std::size_t i = 0; i < count; ++i) {
    begin[i] = {chain, i};
    chain = chain->next();
  }
  std::sort(begin, begin + count, isBefore);
  place_ = begin;
  end_ = std::unique(begin, begin + count, hasSameName);
}

bool ParamWalk::isBefore(const Place& a, const Place& b) {
  const int order = orderIgnoringCase(a.param->getName(), b.param->getName());
  return order < 0 || (order == 0 && a.position < b.position);
}

bool ParamWalk::hasSameName(const Place& a, const Place& b) {
  return equalIgnoringCase(a.param->getName(), view(b.param->getName()));
}
