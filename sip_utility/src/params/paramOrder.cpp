// paramOrder.cpp - the parameters of a list in order of their names, and a walk over them.
#include "params/paramOrder.h"

#include <algorithm>
#include <new>

#include "base/equality.h"
#include "base/log.h"
#include "params/paramNode.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wyTelAddress";

}  // namespace

bool ParamOrder::Place::operator<(const Place& other) const {
  return lessIgnoringCase(param->getName(), other.param->getName()) ||
         (!lessIgnoringCase(other.param->getName(), param->getName()) && position < other.position);
}

ParamOrder* ParamOrder::make(const SipParamList* list, const SipParam* chain, unsigned int count) {
  auto* order = new (std::nothrow) ParamOrder(list, chain, count);
  if (order == nullptr) {
    return nullptr;
  }
  recordBlock(kSourceFile, order, sizeof(ParamOrder));
  if (order->places_ == nullptr) {
    destroy(order);
    return nullptr;
  }
  order->fill(chain);
  return order;
}

void ParamOrder::destroy(ParamOrder* order) {
  if (order != nullptr) {
    forgetBlock(order);
    delete order;
  }
}

bool ParamOrder::holds(const SipParam* chain) const {
  return chain_ == chain && changes_ == ParamIndexWatch::changes(list_);
}

const SipParam* ParamOrder::above(const SipParam* param) {
  if (cursor_ < count_ && places_[cursor_].param == param) {
    return at(cursor_ + 1);
  }
  const Place* found = std::upper_bound(
      places_, places_ + count_, param, [](const SipParam* wanted, const Place& place) {
        return lessIgnoringCase(wanted->getName(), place.param->getName());
      });
  return at(static_cast<unsigned int>(found - places_));
}

ParamOrder::ParamOrder(const SipParamList* list, const SipParam* chain, unsigned int count)
    : list_(list),
      chain_(chain),
      changes_(ParamIndexWatch::changes(list)),
      places_(new (std::nothrow) Place[count]),
      count_(0),
      cursor_(0) {
  ParamIndexWatch::addIndex();
  if (places_ != nullptr) {
    recordBlock(kSourceFile, places_, sizeof(Place) * count);
  }
}

ParamOrder::~ParamOrder() {
  ParamIndexWatch::removeIndex();
  if (places_ != nullptr) {
    forgetBlock(places_);
    delete[] places_;
  }
}

// Takes each name once, from the node that is first on the chain.
void ParamOrder::fill(const SipParam* param) {
  for (; param != nullptr; param = param->next()) {
    places_[count_] = {param, count_};
    ++count_;
  }
  std::sort(places_, places_ + count_);
  const Place* end = std::unique(places_, places_ + count_, [](const Place& a, const Place& b) {
    return equalIgnoringCase(a.param->getName(), view(b.param->getName()));
  });
  count_ = static_cast<unsigned int>(end - places_);
}

const SipParam* ParamOrder::at(unsigned int place) {
  cursor_ = place;
  return place < count_ ? places_[place].param : nullptr;
}
