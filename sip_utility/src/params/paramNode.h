// paramNode.h - makes the nodes of parameter lists.
#ifndef SIPUTILITY_PARAMS_PARAM_NODE_H
#define SIPUTILITY_PARAMS_PARAM_NODE_H

#include <cstddef>
#include <string_view>

#include "base/recorded.h"
#include "base/sharedBlock.h"
#include "base/stringAccess.h"
#include "wySipParam.h"

// The texts of a parameter. It has no constructor, so that an array of it costs nothing.
struct ParamTexts {
  std::string_view name() const { return {nameBytes, nameLength}; }
  std::string_view value() const { return {valueBytes, valueLength}; }

  const char* nameBytes;
  std::size_t nameLength;
  const char* valueBytes;
  std::size_t valueLength;
};

// A node that shares a block with its texts and with other nodes. Whoever deletes it, a caller as
// well, releases its place there.
class BlockParam final : public SipParam {
 public:
  using SipParam::SipParam;

  // NOLINTNEXTLINE(misc-new-delete-overloads): nodes are made in place, in a block
  static void operator delete(void* node) { SharedBlock::release(node); }
};

namespace siputility {

struct SipParamAccess {
  // Returns the head of a list's chain.
  static SipParam** head(SipParamList& list) { return &list.head_; }

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

  // Assigns a name, of at least one byte, from outside the node.
  // Fails: VARN_RESOURCE_FAILURE.
  static VARN_EXCEPTION_CODES setName(SipParam& param, std::string_view name) {
    return SipStringAccess::replace(param.name_, name);
  }

  // Gives a new node its texts, in the block that the node is in.
  static void share(SipParam& param, const ParamTexts& texts, SharedBlock& block) {
    SipStringAccess::share(param.name_, texts.name(), block);
    if (texts.valueLength != 0) {
      SipStringAccess::share(param.value_, texts.value(), block);
    }
  }
};

}  // namespace siputility

using siputility::SipParamAccess;

// Returns the room that nodes of these texts need in a shared block.
inline std::size_t roomForParams(const ParamTexts* texts, std::size_t count) {
  std::size_t room = 0;
  for (std::size_t i = 0; i < count; ++i) {
    room += SharedBlock::roomFor(sizeof(BlockParam), alignof(BlockParam)) +
            SipStringAccess::roomFor(texts[i].name()) + SipStringAccess::roomFor(texts[i].value());
  }
  return room;
}

// Makes recorded nodes of the texts in the block, each in turn at the front of the chain with this
// head.
// Fails: VARN_RESOURCE_FAILURE if there was no memory for the block; the chain has not changed.
inline VARN_EXCEPTION_CODES addParams(SipParam** head, const ParamTexts* texts, std::size_t count,
                                      SharedBlock& block, Source source) {
  for (std::size_t i = 0; i < count; ++i) {
    void* const place = block.add(sizeof(BlockParam), alignof(BlockParam));
    if (place == nullptr) {
      return VARN_RESOURCE_FAILURE;
    }
    auto* const param = ::new (place) BlockParam(head);
    recordBlock(source.sourceFile, param, sizeof(SipParam), source.line);
    SipParamAccess::share(*param, texts[i], block);
  }
  return VARN_OK;
}

#endif  // SIPUTILITY_PARAMS_PARAM_NODE_H
