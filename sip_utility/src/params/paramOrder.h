// paramOrder.h - the parameters of a list in order of their names, and a walk over them.
//
// An index over the nodes of one list, each name once, ASCII letters without regard to case. It
// knows when it no longer holds, see ParamIndexWatch; it is then made anew or not asked.
#ifndef SIPUTILITY_PARAMS_PARAM_ORDER_H
#define SIPUTILITY_PARAMS_PARAM_ORDER_H

#include "wySipParam.h"

namespace siputility {

class ParamOrder {
 public:
  // Returns an index over the count nodes of a list's chain, null without memory.
  static ParamOrder* make(const SipParamList* list, const SipParam* chain, unsigned int count);

  // Deletes an index; does nothing for null.
  static void destroy(ParamOrder* order);

  ParamOrder(const ParamOrder&) = delete;
  ParamOrder& operator=(const ParamOrder&) = delete;

  // Returns whether the chain is the one that was indexed: with the same first node nothing was
  // added, without a change nothing was taken off or renamed.
  bool holds(const SipParam* chain) const;

  // Each returns a parameter and moves the walk there; null behind the last.
  const SipParam* first() { return at(0); }
  const SipParam* above(const SipParam* param);

 private:
  struct Place {
    const SipParam* param;
    unsigned int position;  // on the chain

    bool operator<(const Place& other) const;
  };

  ParamOrder(const SipParamList* list, const SipParam* chain, unsigned int count);
  ~ParamOrder();

  void fill(const SipParam* param);
  const SipParam* at(unsigned int place);

  const SipParamList* list_;
  const SipParam* chain_;
  unsigned long changes_;
  Place* places_;
  unsigned int count_;
  unsigned int cursor_;
};

}  // namespace siputility

using siputility::ParamOrder;

#endif  // SIPUTILITY_PARAMS_PARAM_ORDER_H
