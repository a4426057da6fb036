// tree.cpp - changes of a tree of body parts for which its nodes have no operation.
#include "multipart/tree.h"

#include "base/recorded.h"

using Node = SipMultipartMessageBody;

namespace {

// Adds the children of a node's siblings to a chain. Returns the chain. Its links are the parent
// pointers, which nobody needs any more.
Node* chainNephews(const Node* node, Node* chain) {
  for (const Node* sibling = node->next; sibling != nullptr; sibling = sibling->next) {
    if (sibling->child != nullptr) {
      sibling->child->parent = chain;
      chain = sibling->child;
    }
  }
  return chain;
}

}  // namespace

// deleteChild() and deleteNext() of a node do not reach the children of its siblings. Those wait in
// a chain until it is their turn, so that no recursion is needed.
void deleteTree(Node* root) {
  root->parent = nullptr;
  while (root != nullptr) {
    Node* waiting = root->parent;
    for (const Node* node = root; node != nullptr; node = node->child) {
      waiting = chainNephews(node, waiting);
    }
    root->deleteChild();
    root->deleteNext();
    deleteRecorded(root);
    root = waiting;
  }
}

void removeLatestHeader(Node& node, SipHeader* header) {
  SipHeader** slot = node.headers;
  while (*slot != header) {
    ++slot;
  }
  *slot = nullptr;
  ++node.freeHeaderSlots;
  deleteRecorded(header);
}
