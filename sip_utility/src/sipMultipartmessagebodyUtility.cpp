// sipMultipartmessagebodyUtility.cpp - takes a multipart body apart into a tree of its parts.
#include "sipMultipartmessagebodyUtility.h"

#include <algorithm>
#include <cinttypes>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <utility>

#include "base/equality.h"
#include "base/log.h"
#include "base/platformBlock.h"
#include "base/recorded.h"
#include "grammar/borrowed.h"
#include "multipart/boundaries.h"
#include "multipart/delimiterSearch.h"
#include "multipart/parse.h"
#include "multipart/syntax.h"
#include "multipart/tree.h"
#include "wySipUtils.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/sipMultipartmessagebodyUtility";

using Node = SipMultipartMessageBody;

SipMultipartMessageBodyUtility* instance = nullptr;

bool isMultipart(const SipHeader& contentType) {
  return view(contentType.getValue()).find("multipart") != std::string_view::npos;
}

// Returns the low 8 bits of the number of lines of a header block.
unsigned char lineCount(std::string_view headers) {
  std::size_t lines = 0;
  for (; !headers.empty(); ++lines) {
    const std::size_t end = headers.find(kLineEnd);
    headers.remove_prefix(end == std::string_view::npos ? headers.size() : end + kLineEnd.size());
  }
  return static_cast<unsigned char>(lines);
}

// Returns the boundary parameter, null for none.
const SipString* findBoundary(const SipHeader& contentType) {
  return contentType.getParameter(*BorrowedString("boundary"));
}

// Returns a header field made from these texts and its code; null if out of memory. A null value
// counts as empty.
SipHeader* newHeader(std::string_view name, const char* value, VARN_EXCEPTION_CODES& code) {
  const BorrowedString nameText(name);
  const BorrowedString valueText(value == nullptr ? std::string_view() : value);
  auto* const header = newRecorded<SipHeader>(kSourceFile, *nameText, *valueText);
  code = header == nullptr ? VARN_RESOURCE_FAILURE : header->GetLastErrorCode();
  return header;
}

// Returns a copy of a body; null if out of memory and for a body of 2 GiB or more.
PlatformText copyOfBody(const unsigned char* data, unsigned int length) {
  logTrace(kSourceFile, "SipConnection::wySipGetMultiPartMessageBody | Decode App MsgBody");
  PlatformText copy;
  if (length <= INT_MAX) {
    copy = copyOf({reinterpret_cast<const char*>(data), length});
  }
  if (copy == nullptr) {
    logTrace(kSourceFile,
             "SipConnection::wySipGetMultiPartMessageBody : setmessagebody failed. Malloc failed");
  }
  return copy;
}

}  // namespace

SipMultipartMessageBodyUtility::SipMultipartMessageBodyUtility()
    : dashBoundaryList(nullptr),
      m_pCurrentboundary(nullptr),
      lastBoundary(nullptr),
      m_pMultipartMsgHead(nullptr),
      current(nullptr),
      content(nullptr),
      contentLength(0),
      partContentLength(0),
      nodeCount(0),
      firstBoundary(0),
      copies_{},
      growthEnd_(nullptr),
      outOfMemory_(false) {
  // The text names the class of the nodes, on purpose.
  logTrace(kSourceFile, "SipMultipartMessageBody::SipMultipartMessageBody | %x", logArgument(this));
}

SipMultipartMessageBodyUtility::~SipMultipartMessageBodyUtility() {
  logTrace(kSourceFile, "SipMultipartMessageBodyUtility::~SipMultipartMessageBodyUtility | %x",
           logArgument(this));
  if (instance == this) {
    instance = nullptr;
  }
  forgetBoundaries();
  for (const std::string_view copy : copies_) {
    freeText(copy);
  }
  if (m_pMultipartMsgHead != nullptr) {
    deleteTree(m_pMultipartMsgHead);
  }
  __free(content);
}

// Makes a new object at every call and does not delete the one before; callers rely on both.
SipMultipartMessageBodyUtility* SipMultipartMessageBodyUtility::getInstance() {
  instance = newRecorded<SipMultipartMessageBodyUtility>(kSourceFile);
  logTrace(kSourceFile, "SipMultipartMessageBodyUtility::creating new object %x",
           logArgument(instance));
  return instance;
}

void SipMultipartMessageBodyUtility::deleteInstance() {
  logTrace(kSourceFile, "SipMultipartMessageBodyUtility::deleting object %x",
           logArgument(instance));
  deleteRecorded(instance);
  instance = nullptr;
}

SipMultipartMessageBody* SipMultipartMessageBodyUtility::wySipGetMultiPartMessageBody(
    unsigned char* data, unsigned int length, const char* contentType) {
  PlatformText earlier;  // lives to the end: the caller's Content-Type may point into it
  if (data != nullptr && length > 0) {
    PlatformText copy = copyOfBody(data, length);
    if (copy == nullptr) {
      return nullptr;
    }
    earlier.reset(std::exchange(content, copy.release()));
    contentLength = length;
  }
  if (content == nullptr) {
    logFailure(kSourceFile,
               "SipConnection::wySipGetMultiPartMessageBody | message content is null");
    return nullptr;
  }
  if (m_pMultipartMsgHead != nullptr) {
    // The log text has %s for a pointer, so the line gets its digits as a text.
    char address[2 * sizeof(std::uintptr_t) + 1] = {};
    std::snprintf(address, sizeof(address), "%" PRIxPTR, logArgument(m_pMultipartMsgHead));
    logFailure(kSourceFile, "SipConnection::wySipGetMultiPartMessageBody | m_pMultipartMsgHead: %s",
               logArgument(address));
    return m_pMultipartMsgHead;
  }
  if (contentType == nullptr) {
    logFailure(kSourceFile,
               "SipMultipartMessageBody::wySipGetMultiPartMessageBody | No content-type");
  }
  VARN_EXCEPTION_CODES code = VARN_OK;
  const Recorded<SipHeader> header(newHeader("Content-Type", contentType, code));
  if (code != VARN_OK) {
    logFailure(kSourceFile,
               "SipMultipartMessageBody::ParseAndStoreMsgHeaders| header parsing failed");
    return nullptr;
  }
  if (!isMultipart(*header)) {
    return takeSinglePart();
  }
  return takeParts(*header) ? m_pMultipartMsgHead : nullptr;
}

int SipMultipartMessageBodyUtility::wySipProcessMultipartMsgBody(unsigned char* body) {
  if (body == nullptr || m_pCurrentboundary == nullptr) {
    logFailure(kSourceFile,
               "SC::wySipProcessMultipartMsgBody | api input parameter/m_pCurrentboundary is null");
    return 0;
  }
  return MultipartParse(*this, reinterpret_cast<char*>(body)).run() ? 1 : 0;
}

int SipMultipartMessageBodyUtility::Validateboundary(char* line) {
  if (line == nullptr) {
    logFailure(kSourceFile, "SipConnection::Validateboundary | input parameter is null");
    return 0;
  }
  if (!startsWith(line, kDashes)) {
    logFailure(kSourceFile, "SipMultipartMessageBody::Validateboundary |invalid dash boundary");
    return 0;
  }
  if (m_pCurrentboundary == nullptr) {
    logFailure(kSourceFile, "SipConnection::Validateboundary | invalid dash boundary");
    return 0;
  }
  PlatformText copy;
  const char* const boundary = unquoted(m_pCurrentboundary, copy);
  if (boundary == nullptr) {
    logFailure(kSourceFile, "SipConnection::Validateboundary | invalid temp dash boundary");
    return 0;
  }
  char* const text = line + kDashes.size();
  const std::size_t length = std::strlen(boundary);
  if (std::strncmp(text, boundary, length) != 0) {
    logFailure(kSourceFile, "SipConnection::Validateboundary | boundary dosent match");
    return 0;
  }
  const char* const end = text + length + std::strspn(text + length, " ");
  if (*end != '\0' && !startsWith(end, kLineEnd)) {
    logFailure(kSourceFile, "SipConnection::Validateboundary | wrong dash boundary");
    return 0;
  }
  if (Storedashboundary(text) == 0) {
    logFailure(kSourceFile, "SipConnection::Validateboundary  | Storedashboundary return error");
    return 0;
  }
  return 1;
}

int SipMultipartMessageBodyUtility::wySipProcessMessageBody(unsigned char* body) {
  const char* const text = reinterpret_cast<const char*>(body);
  if (text == nullptr) {
    logFailure(kSourceFile, "SipConnection::wySipProcessMessageBody | input parameter is null");
    return 0;
  }
  return measureContent(text, std::strlen(text)) ? 1 : 0;
}

bool SipMultipartMessageBodyUtility::measureContent(std::string_view rest, std::size_t textLength) {
  if (startsWith(rest, kDashes) && beginsWithStored(rest.substr(kDashes.size()))) {
    logFailure(kSourceFile,
               "SipConnection::wySipProcessMessageBody |found dash boundary in the message body");
    return false;
  }
  // The first number is always 0: the content has not been measured yet.
  logTrace(kSourceFile, "SipConnection::wySipProcessMessageBody iContentLen:%d iLength:%d", 0,
           textLength);
  if (m_pCurrentboundary == nullptr) {
    return false;
  }
  const std::size_t length = findDelimiter(rest, m_pCurrentboundary);
  if (length > INT_MAX) {  // npos, for no delimiter, is greater as well
    return false;
  }
  partContentLength = static_cast<int>(length);
  return true;
}

int SipMultipartMessageBodyUtility::wySipConstructMultipartMessageStructure() {
  if (m_pMultipartMsgHead != nullptr && current == nullptr) {
    return 0;
  }
  auto* const node = newRecorded<Node>(kSourceFile);
  logTrace(kSourceFile,
           "SipConnection::wySipConstructMultipartMessageStructure new SipMultipartMessageBody[%x]",
           logArgument(node));
  if (node == nullptr) {
    return 0;
  }
  if (m_pMultipartMsgHead == nullptr) {
    m_pMultipartMsgHead = node;
  } else if (isLastBoundary()) {  // not yet so for the first part of a nested multipart
    node->parent = current->parent;
    node->next = std::exchange(current->next, node);
  } else {
    node->parent = current;
    node->next = std::exchange(current->child, node);
  }
  current = node;
  ++nodeCount;
  return 1;
}

int SipMultipartMessageBodyUtility::ParseAndStoreMsgHeaders(char* headers) {
  if (headers == nullptr) {
    logFailure(kSourceFile, "SipConnection::ParseAndStoreMsgHeaders |input parameter is null");
    return 0;
  }
  logTrace(kSourceFile, "SipConnection::ParseAndStoreMsgHeaders");
  const unsigned char lines = lineCount(headers);
  if (lines == 0) {
    logFailure(kSourceFile, "SipConnection::ParseAndStoreMsgHeaders | no Headers");
    return 1;
  }
  if (current != nullptr) {
    current->deleteHeaders();
  }
  outOfMemory_ = current != nullptr && !current->AllocSipHeaders(lines);
  if (current == nullptr || outOfMemory_) {
    logFailure(kSourceFile,
               "SipConnection::ParseAndStoreMsgHeaders | AllocSipHeaders return false");
    return 0;
  }
  char* rest = headers;
  for (unsigned char i = 0; i < lines; ++i) {
    char* const line = rest;
    NSIP_strtok(line, kLineEnd.data(), &rest);
    if (!storeHeader(line)) {
      return 0;
    }
  }
  return outOfMemory_ ? 0 : 1;
}

int SipMultipartMessageBodyUtility::ValidateCloseDelimiter(char*& cursor) {
  if (cursor == nullptr) {
    logFailure(kSourceFile,
               "SipConnection::ValidateCloseDelimiter | ValidateCloseDelimiter return error");
    return kNotRead;
  }
  return passCloseDelimiter(cursor, cursor);
}

int SipMultipartMessageBodyUtility::passCloseDelimiter(char*& cursor, std::string_view rest) {
  const char* const end = rest.data() + rest.size();
  rest.remove_prefix(std::min(kDashes.size(), rest.size()));
  const std::string_view boundary = m_pCurrentboundary == nullptr ? "" : m_pCurrentboundary;
  if (m_pCurrentboundary == nullptr || !startsWith(rest, boundary)) {
    logFailure(kSourceFile,
               "SipMultipartMessageBody::ValidateCloseDelimiter | wrong dash boundary");
    return kWrongBoundary;
  }
  rest.remove_prefix(boundary.size());
  if (!startsWith(rest, kDashes)) {
    logFailure(kSourceFile, "SipConnection::ValidateCloseDelimiter | not a close delimiter");
    return kNotClosed;
  }
  rest.remove_prefix(kDashes.size());
  const std::size_t blanks = std::min(rest.find_first_not_of(' '), rest.size());
  rest.remove_prefix(blanks);
  if (startsWith(rest, kLineEnd)) {
    rest.remove_prefix(kLineEnd.size());
  } else {
    logTrace(kSourceFile, "SipConnection::ValidateCloseDelimiter | end of the message body");
  }
  if (!leaveBoundary()) {
    logFailure(kSourceFile,
               "SipConnection::ValidateCloseDelimiter | ValidateCloseDelimiter return error");
    return kNotRead;
  }
  // The cursor moves by the blanks a second time, whatever bytes are there; callers know it so. The
  // end of the text is the limit.
  const std::size_t position = static_cast<std::size_t>(rest.data() - cursor) + blanks;
  cursor += std::min(position, static_cast<std::size_t>(end - cursor));
  return kClosed;
}

int SipMultipartMessageBodyUtility::Storedashboundary(char* text) {
  if (text == nullptr) {
    logFailure(kSourceFile, "SipConnection::Storedashboundary | input parameter is null");
    return 0;
  }
  const char* const boundary = RemoveSpaces(text);
  if (dashBoundaryList == nullptr) {
    return storeFirstBoundary(boundary) ? 1 : 0;
  }
  return storeFurtherBoundary(boundary) ? 1 : 0;
}

// Makes the content the only node.
SipMultipartMessageBody* SipMultipartMessageBodyUtility::takeSinglePart() {
  Recorded<Node> node(newRecorded<Node>(kSourceFile));
  if (node == nullptr) {
    logTrace(kSourceFile, "SipConnection::wySipGetMultiPartMessageBody | new failed");
    return nullptr;
  }
  if (!node->SetMessageBody(reinterpret_cast<unsigned char*>(content), contentLength)) {
    return nullptr;
  }
  current = node.release();
  m_pMultipartMsgHead = current;
  ++nodeCount;
  return m_pMultipartMsgHead;
}

bool SipMultipartMessageBodyUtility::takeParts(const SipHeader& contentType) {
  const SipString* const boundary = findBoundary(contentType);
  if (boundary == nullptr || boundary->length() == 0) {
    logFailure(kSourceFile, "SipConnection::wySipGetMultiPartMessageBody | no boundary parameter");
    return false;
  }
  firstBoundary = 1;
  if (!showCopy(m_pCurrentboundary, boundary->c_str()) ||
      wySipProcessMultipartMsgBody(reinterpret_cast<unsigned char*>(content)) != 1) {
    logFailure(kSourceFile,
               "SipConnection::wySipGetMultiPartMessageBody | failure in parsing Sip message");
    return false;
  }
  return true;
}

// Stores a line as a header of the current node. A line with a colon that is no header field is
// left out; only a line without a colon fails the block.
bool SipMultipartMessageBodyUtility::storeHeader(char* line) {
  char* value = nullptr;
  if (NSIP_strtok(line, ":", &value) == nullptr) {
    logFailure(kSourceFile, "SipConnection::ParseAndStoreMsgHeaders | illegal header");
    return false;
  }
  value = RemoveSpaces(value);
  logTrace(kSourceFile, "ParseAndStoreMsgHeaders | header-name: %s", logArgument(line));
  logTrace(kSourceFile, "ParseAndStoreMsgHeaders | header-value: %s", logArgument(value));
  VARN_EXCEPTION_CODES code = VARN_OK;
  Recorded<SipHeader> header(newHeader(line, value, code));
  if (code != VARN_OK) {
    outOfMemory_ = outOfMemory_ || code == VARN_RESOURCE_FAILURE;
    logTrace(kSourceFile, "SipConnection::ParseAndStoreMsgHeaders | sip header returns exception");
    return true;
  }
  return !current->AddSipHeaders(header.get()) || enterNested(header.release());
}

// Makes the boundary of a nested multipart the current one, if the header announces one. A
// multipart without a boundary fails the block, and its Content-Type is not stored.
bool SipMultipartMessageBodyUtility::enterNested(SipHeader* header) {
  if (!isMultipart(*header) || !equalIgnoringCase(header->getName(), "Content-Type")) {
    return true;
  }
  const SipString* const boundary = findBoundary(*header);
  if (boundary == nullptr || boundary->length() == 0) {
    logFailure(kSourceFile, boundary == nullptr
                                ? "SipConnection::ParseAndStoreMsgHeaders| no boundary"
                                : "SipConnection::ParseAndStoreMsgHeaders| empty boundary");
    removeLatestHeader(*current, header);
    return false;
  }
  firstBoundary = 1;
  outOfMemory_ = !showCopy(m_pCurrentboundary, boundary->c_str()) || outOfMemory_;
  return true;
}

SipMultipartMessageBodyUtility* initSipMultipartMessageBodyUtilityObj() {
  return SipMultipartMessageBodyUtility::getInstance();
}
