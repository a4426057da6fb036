// sipMultipartmessagebodyTest.cpp - what a part of a multipart body holds, owns and reaches.
#include "sipMultipartmessagebody.h"

#include <algorithm>

#include "base/platformBlock.h"
#include "base/recorded.h"
#include "libraryTest.h"

namespace {

constexpr const char* kSource = "sip_utility/src/sipMultipartmessagebody";

// Each returns a line of the log; "SipMultipartMessageBody::" is left out of the message.
std::string traces(const std::string& message) {
  return traceLine(kSource, "SipMultipartMessageBody::" + message);
}

std::string fails(const std::string& message) {
  return failureLine(kSource, "SipMultipartMessageBody::" + message);
}

using Node = SipMultipartMessageBody;

// A node that shows when it is deleted.
class NamedNode : public Node {
 public:
  NamedNode(char name, std::string& gone) : name_(name), gone_(gone) {}
  ~NamedNode() override { gone_.push_back(name_); }

 private:
  char name_;
  std::string& gone_;
};

SipHeader* newHeader(const char* name) {
  return newRecorded<SipHeader>(kSource, SipString(name), SipString("v"));
}

unsigned char* bytes(std::string& text) { return reinterpret_cast<unsigned char*>(text.data()); }

using MultipartBodyTest = LibraryTest;

TEST_F(MultipartBodyTest, BeginsEmptyAndFreesWhatItWasGiven) {
  auto* const node = newRecorded<Node>(kSource);
  const std::string address = addressText(node);
  EXPECT_EQ(Lines{traces("SipMultipartMessageBody | " + address)}, takeLog());
  EXPECT_TRUE(node->parent == nullptr && node->next == nullptr && node->child == nullptr);
  EXPECT_TRUE(node->preamble == nullptr && node->epilogue == nullptr && node->body == nullptr);
  EXPECT_TRUE(node->headers == nullptr && node->nestedList == nullptr);
  EXPECT_EQ(0, node->bodyLength + node->freeHeaderSlots);
  SipHeader* const headers[] = {newHeader("a"), newHeader("b"), newHeader("c")};
  const auto adds = [&](SipHeader* header) {
    const bool added = node->AddSipHeaders(header);
    const Lines log = takeLog();
    EXPECT_EQ(traceLine(kSource, "SipMultipartMessageBody[" + address + "]::AddSipHeaders header[" +
                                     addressText(header) + "]| Enter"),
              log.front());
    return added ? log.back() : "refused " + log.back();
  };
  const std::string full = "refused " + fails("AddSipHeaders | array is full");
  EXPECT_EQ(full, adds(headers[0]));
  EXPECT_TRUE(node->AllocSipHeaders(2));
  EXPECT_EQ("refused " + fails("AddSipHeaders | input parameter is Null"), adds(nullptr));
  EXPECT_EQ(traces("AddSipHeaders | Exit [icount: 0]"), adds(headers[0]));
  EXPECT_EQ(traces("AddSipHeaders | Exit [icount: 1]"), adds(headers[1]));
  EXPECT_EQ(full, adds(headers[2]));
  EXPECT_TRUE(node->headers[1] == headers[1] && node->headers[2] == nullptr);
  EXPECT_EQ(0, node->freeHeaderSlots);
  std::string text("text");
  node->SetPreamble(text.data());
  node->SetEpilogue(text.data());
  EXPECT_TRUE(node->SetMessageBody(bytes(text), 4));
  takeLog();
  Lines expected = {traces("~SipMultipartMessageBody | " + address)};
  for (const SipHeader* header : {headers[0], headers[1]}) {
    expected.push_back(traces("~SipMultipartMessageBody | " + address + ", deleting sipHeader[" +
                              addressText(header) + ']'));
  }
  deleteRecorded(node);
  EXPECT_EQ(expected, takeLog());
  deleteRecorded(headers[2]);
}

TEST_F(MultipartBodyTest, CopiesContentOfAnyLengthAndStoresTheLowSixteenBitsOfIt) {
  const Lines done = {traces("SetMessageBody | Enter"), traces("SetMessageBody | Exit")};
  Node node;
  takeLog();
  for (const unsigned int length : {1U, 65535U, 65536U, 70000U}) {
    SCOPED_TRACE(length);
    std::string text(length, 'x');
    text.front() = '\0';
    text.back() = 'z';
    EXPECT_TRUE(node.SetMessageBody(bytes(text), length));
    EXPECT_EQ(done, takeLog());
    EXPECT_EQ(length % 65536, node.bodyLength);
    EXPECT_TRUE(std::equal(text.begin(), text.end(), reinterpret_cast<char*>(node.body)));
  }
  EXPECT_TRUE(node.SetMessageBody(node.body + 69990, 10));  // of its own content
  takeLog();
  for (const bool null : {true, false}) {
    EXPECT_FALSE(node.SetMessageBody(null ? nullptr : node.body, null ? 1 : 0));
    EXPECT_EQ((Lines{done[0], fails(null ? "SetMessageBody | input parameter is null"
                                         : "SetMessageBody | no content length")}),
              takeLog());
    EXPECT_EQ("xxxxxxxxxz", std::string(node.body, node.body + node.bodyLength));
  }
}

TEST_F(MultipartBodyTest, LeavesReplacedTextsAndArraysToTheCaller) {
  Node node;
  char first[] = "first";
  char second[] = "";
  node.SetPreamble(first);
  node.SetEpilogue(first);
  EXPECT_TRUE(node.AllocSipHeaders(255));
  const PlatformText preamble(node.preamble);
  const PlatformText epilogue(node.epilogue);
  const siputility::PlatformBlock<SipHeader*> headers(node.headers);
  node.SetPreamble(second);
  node.SetEpilogue(second);
  EXPECT_TRUE(node.AllocSipHeaders(0));
  takeLog();
  node.SetPreamble(nullptr);
  node.SetEpilogue(nullptr);
  EXPECT_EQ((Lines{fails("SetPreamble | input parameter is null"),
                   fails("SetEpilogue | input parameter is null")}),
            takeLog());
  EXPECT_STREQ("first", preamble.get());
  EXPECT_STREQ("first", epilogue.get());
  EXPECT_STREQ("", node.preamble);
  EXPECT_STREQ("", node.epilogue);
  EXPECT_TRUE(std::all_of(headers.get(), headers.get() + 256, [](auto* h) { return !h; }));
  EXPECT_TRUE(node.headers != headers.get() && *node.headers == nullptr);
}

TEST_F(MultipartBodyTest, CountsItsChildrenInAListOfNullPointers) {
  std::string gone;
  Node node;
  takeLog();
  EXPECT_EQ(nullptr, node.GetNestedMessagebodyList());
  const std::string enters = traces("GetNestedMessagebodyList | Enter");
  EXPECT_EQ((Lines{enters, fails("GetNestedMessagebodys | no nested messages")}), takeLog());
  node.child = newRecorded<NamedNode>(kSource, 'a', gone);
  node.child->next = newRecorded<NamedNode>(kSource, 'b', gone);
  node.child->next->next = newRecorded<NamedNode>(kSource, 'c', gone);
  takeLog();
  Node** const list = node.GetNestedMessagebodyList();
  EXPECT_TRUE(std::all_of(list, list + 3, [](auto* each) { return each == nullptr; }));
  EXPECT_EQ(list, node.GetNestedMessagebodyList());
  EXPECT_EQ((Lines{enters, enters}), takeLog());
  list[0] =
      std::exchange(node.child, nullptr);  // a caller may fill it: the list then owns the node
  list[1] = list[0]->next;
  list[2] = list[1]->next;
  node.~SipMultipartMessageBody();
  EXPECT_EQ("abc", gone);
  new (&node) Node;
}

TEST_F(MultipartBodyTest, ReportsOutOfMemoryAndHoldsNothingThen) {
  Node node;
  std::string text("text");
  EXPECT_TRUE(node.SetMessageBody(bytes(text), 4));
  node.child = &node;
  takeLog();
  const auto check = [&](bool failed, const char* message, Lines expected = {}) {
    EXPECT_TRUE(failed && hostFailAllocation(1) == 0);
    expected.push_back(severeLine(kSource, std::string("SipMultipartMessageBody::") + message));
    EXPECT_EQ(expected, takeLog());
  };
  hostFailAllocation(1);
  check(!node.SetMessageBody(bytes(text), 4) && !node.body, "SetMessageBody | malloc failed",
        {traces("SetMessageBody | Enter")});
  node.SetPreamble(text.data());
  check(node.preamble == nullptr, "SetPreamble | strdup failed");
  node.SetEpilogue(text.data());
  check(node.epilogue == nullptr, "SetEpilogue | strdup failed");
  check(!node.AllocSipHeaders(3) && node.freeHeaderSlots == 0, "AllocSipHeaders | failed");
  check(!node.GetNestedMessagebodyList(), "GetNestedMessagebodys | malloc failure",
        {traces("GetNestedMessagebodyList | Enter")});
  hostFailAllocation(0);
  node.child = nullptr;
}

//   r -child-> a -next-> b -next-> c      b and e have children, g and h, which are
//              d -next-> e                 not reached
//              f
TEST_F(MultipartBodyTest, DeletesFromTheFarEndWhatFirstChildrenReach) {
  std::string gone;
  std::map<char, Node*> nodes;
  for (const char name : std::string("rabcdefgh")) {
    nodes[name] = newRecorded<NamedNode>(kSource, name, gone);
  }
  for (const char* link : {"ra", "ad", "df", "bg", "eh"}) {
    nodes[link[0]]->child = nodes[link[1]];
  }
  for (const char* link : {"ab", "bc", "de"}) {
    nodes[link[0]]->next = nodes[link[1]];
  }
  nodes['r']->next = nodes['g'];
  nodes['g']->next = nodes['h'];
  nodes['r']->deleteChild();
  EXPECT_EQ("fedcba", gone);
  nodes['r']->deleteNext();
  EXPECT_EQ("fedcbahg", gone);
  deleteRecorded(nodes['r']);
}

TEST_F(MultipartBodyTest, DeletesAMillionNodesWithoutRecursion) {
  hostSetLogHandler(nullptr, nullptr);
  for (Node* Node::*link : {&Node::next, &Node::child}) {
    Node node;
    for (int i = 0; i < 1000000; ++i) {
      auto* const added = newRecorded<Node>(kSource);
      added->*link = std::exchange(node.*link, added);
    }
    node.deleteChild();
    if (link == &Node::next) {
      node.deleteNext();
    }
  }
}

}  // namespace
