// paramNode.h - makes the nodes of parameter lists and fills them from bytes.
#ifndef SIPUTILITY_PARAMS_PARAM_NODE_H
#define SIPUTILITY_PARAMS_PARAM_NODE_H

#include <string_view>

#include "base/recorded.h"
#include "base/stringAccess.h"
#include "wySipParam.h"

// Returns a recorded node, first on the chain with this head; null without memory.
inline SipParam* newParam(SipParam** head, Source source) {
  return newRecorded<SipParam>(source, head);
}

namespace siputility {

struct SipParamAccess {
  // Returns where a node keeps its pointer to the next one.
  static SipParam** link(SipParam& param) { return &param.next_; }

  // Prepares the node that a link of the chain leads to for its deletion. setNext() changes a chain
  // and no prevLink_, so that of the node may be wrong, and others may name the pointer that goes.
  // A node off the chain that still leads to this one keeps doing so until this one goes.
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

  // Each assigns bytes that lie elsewhere, at least one.
  // Fails: VARN_RESOURCE_FAILURE, also where a piece that never had bytes gets none.
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
