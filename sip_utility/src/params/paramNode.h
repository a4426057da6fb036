// paramNode.h - makes the nodes of parameter lists and fills them from bytes.
#ifndef SIPUTILITY_PARAMS_PARAM_NODE_H
#define SIPUTILITY_PARAMS_PARAM_NODE_H

#include <string_view>

#include "base/recorded.h"
#include "base/stringAccess.h"
#include "wySipParam.h"

// Returns a recorded node at the front of the chain with this head; null if out of memory.
inline SipParam* newParam(SipParam** head, Source source) {
  return newRecorded<SipParam>(source, head);
}

namespace siputility {

struct SipParamAccess {
  // Returns the pointer of a node to the next one, as a link of the chain.
  static SipParam** link(SipParam& param) { return &param.next_; }

  // Mends the back links around the node at a link of the chain, which is about to be deleted.
  //
  // A node's prevLink_ is the pointer that leads to it; the destructor writes through it. A caller
  // may rearrange a chain with setNext(), which leaves each prevLink_ as it was. Then the prevLink_
  // of this node may no longer lead to it: it gets the link. And those of other nodes may still be
  // the next_ of this node, so that their destructors would write into freed memory: they get the
  // link that leads to them now. A prevLink_ that still leads to this node from outside the chain
  // stays: the destructor then takes this node off there, and removeParameter() off the chain.
  static void mendLinks(SipParam** head, SipParam** link) {
    SipParam& param = **link;
    if (param.prevLink_ == nullptr || *param.prevLink_ != &param) {
      param.prevLink_ = link;
    }
    for (SipParam** each = head; *each != nullptr; each = &(*each)->next_) {
      if ((*each)->prevLink_ == &param.next_) {
        (*each)->prevLink_ = each;
      }
    }
  }

  // Each assigns at least one byte from outside the piece.
  // Fails: VARN_RESOURCE_FAILURE.
  static VARN_EXCEPTION_CODES setName(SipParam& param, std::string_view name) {
    return SipStringAccess::replace(param.name_, name);
  }
  static VARN_EXCEPTION_CODES setValue(SipParam& param, std::string_view value) {
    return SipStringAccess::replace(param.value_, value);
  }
};

}  // namespace siputility

using siputility::SipParamAccess;

#endif  // SIPUTILITY_PARAMS_PARAM_NODE_H
