// sipMultipartmessagebody.cpp - one part of a multipart body, a node of the tree of parts.
#include "sipMultipartmessagebody.h"

#include <algorithm>
#include <cstring>

#include "base/log.h"
#include "base/platformBlock.h"
#include "base/recorded.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/sipMultipartmessagebody";

using Node = SipMultipartMessageBody;

// Reverses a chain of links, so that it can be deleted from its far end without recursion. Returns
// that end.
Node* reversed(Node* first, Node* Node::*link) {
  Node* done = nullptr;
  while (first != nullptr) {
    Node* const rest = first->*link;
    first->*link = done;
    done = first;
    first = rest;
  }
  return done;
}

}  // namespace

SipMultipartMessageBody::SipMultipartMessageBody()
    : parent(nullptr),
      next(nullptr),
      child(nullptr),
      preamble(nullptr),
      epilogue(nullptr),
      body(nullptr),
      bodyLength(0),
      freeHeaderSlots(0),
      headers(nullptr),
      nestedList(nullptr) {
  logTrace(kSourceFile, "SipMultipartMessageBody::SipMultipartMessageBody | %x", logArgument(this));
}

SipMultipartMessageBody::~SipMultipartMessageBody() {
  logTrace(kSourceFile, "SipMultipartMessageBody::~SipMultipartMessageBody | %x",
           logArgument(this));
  releaseBlock(preamble);
  releaseBlock(epilogue);
  releaseBlock(body);
  deleteHeaders();
  for (Node** slot = nestedList; slot != nullptr && *slot != nullptr; ++slot) {
    deleteRecorded(*slot);
  }
  releaseBlock(nestedList);
}

void SipMultipartMessageBody::deleteNext() {
  Node* last = reversed(next, &Node::next);
  next = nullptr;
  while (last != nullptr) {
    Node* const before = last->next;
    deleteRecorded(last);
    last = before;
  }
}

// Walks first children only. Children of their siblings stay, as callers know it; deleteTree()
// reaches them.
void SipMultipartMessageBody::deleteChild() {
  Node* deepest = reversed(child, &Node::child);
  child = nullptr;
  while (deepest != nullptr) {
    Node* const above = deepest->child;
    deepest->deleteNext();
    deleteRecorded(deepest);
    deepest = above;
  }
}

bool SipMultipartMessageBody::SetMessageBody(unsigned char* data, unsigned int length) {
  logTrace(kSourceFile, "SipMultipartMessageBody::SetMessageBody | Enter");
  if (data == nullptr) {
    logFailure(kSourceFile, "SipMultipartMessageBody::SetMessageBody | input parameter is null");
    return false;
  }
  if (length == 0) {
    logFailure(kSourceFile, "SipMultipartMessageBody::SetMessageBody | no content length");
    return false;
  }
  auto* const copy = static_cast<unsigned char*>(__malloc(length));
  if (copy != nullptr) {
    std::memcpy(copy, data, length);  // before the old content is freed: the data may be in it
  }
  releaseBlock(body);
  body = copy;
  // Only the low 16 bits are stored, on purpose; the buffer has all bytes.
  bodyLength = static_cast<unsigned short>(copy == nullptr ? 0 : length);
  if (copy == nullptr) {
    logSevere(kSourceFile, "SipMultipartMessageBody::SetMessageBody | malloc failed");
    return false;
  }
  logTrace(kSourceFile, "SipMultipartMessageBody::SetMessageBody | Exit");
  return true;
}

// These two do not free a text that is there already: it is left to the caller.
void SipMultipartMessageBody::SetEpilogue(char* text) {
  if (text == nullptr) {
    logFailure(kSourceFile, "SipMultipartMessageBody::SetEpilogue | input parameter is null");
    return;
  }
  epilogue = __strdup(text);
  if (epilogue == nullptr) {
    logSevere(kSourceFile, "SipMultipartMessageBody::SetEpilogue | strdup failed");
  }
}

void SipMultipartMessageBody::SetPreamble(char* text) {
  if (text == nullptr) {
    logFailure(kSourceFile, "SipMultipartMessageBody::SetPreamble | input parameter is null");
    return;
  }
  preamble = __strdup(text);
  if (preamble == nullptr) {
    logSevere(kSourceFile, "SipMultipartMessageBody::SetPreamble | strdup failed");
  }
}

bool SipMultipartMessageBody::AllocSipHeaders(unsigned char count) {
  // The calloc() of glibc takes no block from the thread's cache, so malloc() is faster here.
  // NOLINTNEXTLINE(bugprone-sizeof-expression): a slot is a pointer
  auto* const slots = static_cast<SipHeader**>(__malloc((count + 1U) * sizeof(SipHeader*)));
  if (slots == nullptr) {
    logSevere(kSourceFile, "SipMultipartMessageBody::AllocSipHeaders | failed");
    return false;
  }
  std::fill_n(slots, count + 1U, nullptr);
  headers = slots;
  freeHeaderSlots = count;
  return true;
}

bool SipMultipartMessageBody::AddSipHeaders(SipHeader* header) {
  logTrace(kSourceFile, "SipMultipartMessageBody[%x]::AddSipHeaders header[%x]| Enter",
           logArgument(this), logArgument(header));
  if (header == nullptr) {
    logFailure(kSourceFile, "SipMultipartMessageBody::AddSipHeaders | input parameter is Null");
    return false;
  }
  if (freeHeaderSlots == 0 || headers == nullptr) {
    logFailure(kSourceFile, "SipMultipartMessageBody::AddSipHeaders | array is full");
    return false;
  }
  unsigned int slot = 0;
  while (headers[slot] != nullptr) {
    ++slot;
  }
  headers[slot] = header;
  --freeHeaderSlots;
  logTrace(kSourceFile, "SipMultipartMessageBody::AddSipHeaders | Exit [icount: %d]", slot);
  return true;
}

SipMultipartMessageBody** SipMultipartMessageBody::GetNestedMessagebodyList() {
  logTrace(kSourceFile, "SipMultipartMessageBody::GetNestedMessagebodyList | Enter");
  if (nestedList != nullptr) {
    return nestedList;
  }
  if (child == nullptr) {
    logFailure(kSourceFile, "SipMultipartMessageBody::GetNestedMessagebodys | no nested messages");
    return nullptr;
  }
  std::size_t count = 0;
  for (const Node* each = child; each != nullptr; each = each->next) {
    ++count;
  }
  // The slots stay null, on purpose: callers count them. The extra slot ends the array for the
  // destructor, in case a caller fills them.
  nestedList = newZeroed<Node*>(count + 1).release();
  if (nestedList == nullptr) {
    logSevere(kSourceFile, "SipMultipartMessageBody::GetNestedMessagebodys | malloc failure");
  }
  return nestedList;
}

void SipMultipartMessageBody::deleteHeaders() {
  for (SipHeader** slot = headers; slot != nullptr && *slot != nullptr; ++slot) {
    logTrace(kSourceFile,
             "SipMultipartMessageBody::~SipMultipartMessageBody | %x, deleting sipHeader[%x]",
             logArgument(this), logArgument(*slot));
    deleteRecorded(*slot);
    *slot = nullptr;
  }
  releaseBlock(headers);
  freeHeaderSlots = 0;
}
