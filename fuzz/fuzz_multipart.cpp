// fuzz_multipart.cpp - multipart bodies: the first line is the Content-Type value, the rest the
// body.
#include "law.h"
#include "sipMultipartmessagebodyUtility.h"

namespace {

// Returns the node that was made after this one: its sibling or its child.
const SipMultipartMessageBody* following(const SipMultipartMessageBody* node) {
  require(node->next == nullptr || node->child == nullptr, "one link a node", "", "");
  return node->next != nullptr ? node->next : node->child;
}

// The contents are in the body one after the other.
void checkNode(const SipMultipartMessageBody& node, std::string_view body, std::size_t& position) {
  const std::string_view content(reinterpret_cast<const char*>(node.body), node.bodyLength);
  position = body.find(content, position);
  require(position != std::string_view::npos, "a content is a piece of the body", content, body);
  position += content.size();
  if (node.epilogue != nullptr) {
    const std::string_view epilogue(node.epilogue);
    const bool after = body.find(epilogue, position) != std::string_view::npos;
    require(after, "an epilogue is after its part", epilogue, body);
  }
  if (node.preamble != nullptr) {
    require(body.find(node.preamble) == 0, "a preamble is in front", node.preamble, body);
  }
}

void checkTree(const SipMultipartMessageBody* root, std::string_view body, unsigned int count) {
  std::size_t position = 0;
  for (const SipMultipartMessageBody* node = root; node != nullptr; node = following(node)) {
    checkNode(*node, body, position);
    --count;
  }
  require(count % 256 == 0, "all nodes are in the tree", body, "");
}

void check(const char* contentType, std::string_view body) {
  const Text copy = blockOf(body);
  auto* const data = reinterpret_cast<unsigned char*>(copy.get());
  SipMultipartMessageBodyUtility utility;
  const auto* const root = utility.wySipGetMultiPartMessageBody(
      data, static_cast<unsigned int>(body.size()), contentType);
  require(root == nullptr || root == utility.m_pMultipartMsgHead, "the root", contentType, body);
  checkTree(utility.m_pMultipartMsgHead, body, utility.nodeCount);
  if (utility.m_pMultipartMsgHead != nullptr) {
    const auto* const again = utility.wySipGetMultiPartMessageBody(data, 0, nullptr);
    require(again == utility.m_pMultipartMsgHead, "the same root again", contentType, body);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), std::min(size, kLongestInput));
  const std::size_t typeLength = std::min(input.find('\n'), input.size());
  const std::size_t before = hostLiveBlocks();
  check(copyOf(input.substr(0, typeLength)).get(),
        input.substr(std::min(typeLength + 1, input.size())));
  require(before == hostLiveBlocks(), "no block is left behind", input, "");
  return 0;
}
