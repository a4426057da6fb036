// sipMultipartmessagebodyUtility.cpp - takes a multipart body apart into a tree of its parts.
#include "sipMultipartmessagebodyUtility.h"

#include <algorithm>
#include <cinttypes>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string_view>
#include <utility>

#include "base/equality.h"
#include "base/log.h"
#include "base/platformBlock.h"
#include "base/recorded.h"
#include "grammar/borrowed.h"
#include "imsxml.h"
#include "wySipUtils.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/sipMultipartmessagebodyUtility";

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kHeadersEnd = "\r\n\r\n";
constexpr std::string_view kDashes = "--";

// What ValidateCloseDelimiter() returns.
constexpr int kWrongBoundary = 1;
constexpr int kNothing = 2;
constexpr int kClosed = 3;
constexpr int kNotClosed = 4;

// What the epilogues of one body may take, each a copy of its whole rest: a body with many parts
// that all have one must not take memory by the square of its length.
constexpr std::uint64_t kEpilogueFactor = 4;
constexpr std::uint64_t kMebibyte = 1U << 20U;
constexpr std::uint64_t kEpilogueRoom = 64 * kMebibyte;

using Node = SipMultipartMessageBody;

SipMultipartMessageBodyUtility* instance = nullptr;

bool startsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

// Returns whether a pointer is one to a byte of a text or to its end.
bool isWithin(std::string_view text, const char* p) {
  const std::less_equal<> notAfter;
  return notAfter(text.data(), p) && notAfter(p, text.data() + text.size());
}

bool isMultipart(const SipHeader& contentType) {
  return view(contentType.getValue()).find("multipart") != std::string_view::npos;
}

// Returns the boundary without the double quotes around it, a text in front of it; null without
// memory.
PlatformText unquotedBoundary(std::string_view front, const char* boundary) {
  PlatformText text = joined(front, boundary);
  if (text != nullptr) {
    XmlCommon::RemoveQuotes(text.get() + front.size());
  }
  return text;
}

void freeText(std::string_view text) { __free(const_cast<char*>(text.data())); }

using DashBoundary = SipMultipartMessageBodyUtility::DashBoundary;

DashBoundary* latestOf(DashBoundary* list) {
  while (list->next != nullptr) {
    list = list->next;
  }
  return list;
}

bool contains(const DashBoundary* list, const DashBoundary* node) {
  while (list != nullptr && list != node) {
    list = list->next;
  }
  return list != nullptr;
}

void deleteBoundary(DashBoundary* node) {
  if (node != nullptr) {
    __free(node->boundary);
    deleteRecorded(node);
  }
}

// Returns the number of lines of a header block, 8 bits of it.
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

// Returns a header field made from these texts, null without memory, and its code. Null for the
// value counts as empty.
SipHeader* newHeader(std::string_view name, const char* value, VARN_EXCEPTION_CODES& code) {
  const BorrowedString nameText(name);
  const BorrowedString valueText(value == nullptr ? std::string_view() : value);
  auto* const header = newRecorded<SipHeader>(kSourceFile, *nameText, *valueText);
  code = header == nullptr ? VARN_RESOURCE_FAILURE : header->GetLastErrorCode();
  return header;
}

// Takes the header that was stored last out of its node and deletes it.
void removeLatestHeader(Node& node, SipHeader* header) {
  SipHeader** slot = node.headers;
  while (*slot != header) {
    ++slot;
  }
  *slot = nullptr;
  ++node.freeHeaderSlots;
  deleteRecorded(header);
}

// Returns a copy of a body; null without memory and for one of 2 GiB or more.
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

// Puts the children of a node's siblings in front of a chain of parent links. Returns the chain.
Node* chainNephews(const Node* node, Node* chain) {
  for (const Node* sibling = node->next; sibling != nullptr; sibling = sibling->next) {
    if (sibling->child != nullptr) {
      sibling->child->parent = chain;
      chain = sibling->child;
    }
  }
  return chain;
}

// Deletes a tree. deleteChild() and deleteNext() of a node do not reach the children of siblings;
// those wait in a chain until it is their turn.
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

// The search for "--" boundary, after Knuth, Morris and Pratt: boundaries come from the network,
// and one like "-----x" must not make it slow.
class DelimiterSearch {
 public:
  explicit DelimiterSearch(std::string_view boundary)
      : boundary_(boundary), borders_(newZeroed<unsigned int>(length())) {
    if (valid()) {
      findBorders();
    }
  }

  // Returns whether there was memory.
  bool valid() const { return borders_ != nullptr; }

  // Returns the position of the first delimiter that begins where hyphens are taken in pairs;
  // npos for none.
  std::size_t findIn(std::string_view text) const {
    unsigned int matched = 0;
    for (std::size_t i = text.find('-'); i < text.size();
         i = matched == 0 ? text.find('-', i + 1) : i + 1) {
      matched = advanced(matched, text[i]);
      if (matched < length()) {
        continue;
      }
      const std::size_t begin = i + 1 - matched;
      if (hyphensBefore(text, begin) % 2 == 0) {
        return begin;
      }
      matched = borders_[matched - 1];
    }
    return std::string_view::npos;
  }

 private:
  std::size_t length() const { return kDashes.size() + boundary_.size(); }

  char at(std::size_t i) const {
    return i < kDashes.size() ? kDashes[i] : boundary_[i - kDashes.size()];
  }

  // borders_[i] is the length of the longest text that begins and ends the first i + 1 bytes, and
  // is shorter than they are.
  void findBorders() {
    borders_[0] = 0;
    for (std::size_t i = 1; i < length(); ++i) {
      borders_[i] = advanced(borders_[i - 1], at(i));
    }
  }

  // Returns how much of the delimiter has matched behind one byte more.
  unsigned int advanced(unsigned int matched, char byte) const {
    while (matched != 0 && byte != at(matched)) {
      matched = borders_[matched - 1];
    }
    return byte == at(matched) ? matched + 1 : 0;
  }

  // A run of hyphens is looked through once: behind an odd number of them, only a boundary with
  // another byte than hyphens can begin, and it ends the run.
  static std::size_t hyphensBefore(std::string_view text, std::size_t position) {
    std::size_t count = 0;
    while (count < position && text[position - count - 1] == '-') {
      ++count;
    }
    return count;
  }

  std::string_view boundary_;
  PlatformBlock<unsigned int> borders_;
};

}  // namespace

// One run over a body: the copy that is cut up, and the positions in it.
class SipMultipartMessageBodyUtility::Parse {
 public:
  Parse(SipMultipartMessageBodyUtility& owner, char* content)
      : owner_(owner), content_(content), length_(owner.contentLength) {}

  // Takes the whole body apart. Returns whether it could.
  bool run() {
    if (!copyContent() || !cutPreamble()) {
      return false;
    }
    Step step = cut(line_, kLineEnd, rest_) ? Step::kNextPart : Step::kDone;
    while (step == Step::kNextPart) {
      step = takePart();
    }
    return storeEpilogue() && step == Step::kDone;
  }

  // Returns whether a pointer is one into the copy.
  bool holds(const char* p) const { return isWithin({work_.get(), length_}, p); }

  // Returns the copy from here to its end.
  std::string_view bytesFrom(const char* p) const {
    return {p, static_cast<std::size_t>(work_.get() + length_ - p)};
  }

  // Returns the copy from here to the next zero byte. To be asked from front to back: the zero
  // byte that was found is remembered, so that all the texts together cost one look at the copy.
  std::string_view textFrom(const char* p) {
    if (zero_ < p) {
      const std::string_view bytes = bytesFrom(p);
      zero_ = p + std::min(bytes.find('\0'), bytes.size());
    }
    return {p, static_cast<std::size_t>(zero_ - p)};
  }

 private:
  enum class Step { kNextPart, kDone, kFailed };

  bool copyContent() {
    work_ = copyOf({content_, length_});
    if (work_ == nullptr) {
      logTrace(kSourceFile, "SipConnection::wySipProcessMultipartMsgBody | strdup failed");
    }
    line_ = work_.get();
    return work_ != nullptr;
  }

  // Cuts off what stands in front of the first delimiter that begins a line.
  bool cutPreamble() {
    const PlatformText delimiter = unquotedBoundary("\r\n--", owner_.m_pCurrentboundary);
    if (delimiter == nullptr) {
      logTrace(kSourceFile,
               "SipConnection::wySipProcessMultipartMsgBody | Calloc for Boundary failed");
      return false;
    }
    if (startsWith(line_, "-") || (length_ > 1 && line_[1] == '-')) {
      return true;
    }
    const char* const found = std::strstr(line_, delimiter.get());
    preambleLength_ = found == nullptr ? 0 : static_cast<std::size_t>(found - line_);
    if (preambleLength_ > 0) {
      logTrace(kSourceFile,
               "SipConnection::wySipProcessMultipartMsgBody |Preamble of lenght %d found",
               preambleLength_);
      length_ -= preambleLength_;
      front_ = content_ + preambleLength_;
      std::memmove(line_, front_, length_ + 1);
    }
    return true;
  }

  // Ends the text here at the first delimiter. Returns whether there is one, and where the text
  // behind it begins.
  bool cut(char* text, std::string_view delimiter, char*& rest) {
    const std::size_t length = textFrom(text).find(delimiter);
    if (length == std::string_view::npos) {
      return false;
    }
    text[length] = '\0';
    rest = text + length + delimiter.size();
    return true;
  }

  Step takePart() {
    if (!skipLine()) {
      logFailure(kSourceFile, "SipConnection::wySipProcessMultipartMsgBody | no CRLF found");
      return Step::kFailed;
    }
    if (owner_.Validateboundary(line_) == 0) {
      logFailure(kSourceFile, "SipConnection::wySipProcessMultipartMsgBody | open boundary failed");
      return Step::kFailed;
    }
    char* headers = nullptr;
    if (!cutHeaders(headers)) {
      logFailure(kSourceFile, "SipConnection::wySipProcessMultipartMsgBody | no body delimiter");
      return Step::kFailed;
    }
    if (owner_.wySipProcessMessageBody(reinterpret_cast<unsigned char*>(rest_)) == 0) {
      logFailure(kSourceFile,
                 "SipConnection::wySipProcessMultipartMsgBody | message headers failed");
      return Step::kFailed;
    }
    return storePart(headers) ? takeCloseDelimiters() : Step::kFailed;
  }

  // In front of the first delimiter of a multipart one line may stand, and no more.
  bool skipLine() {
    if (owner_.firstBoundary == 1 && !startsWith(line_, kDashes)) {
      line_ = rest_;
      if (!cut(line_, kLineEnd, rest_)) {
        return false;
      }
    }
    owner_.firstBoundary = 0;
    return true;
  }

  // Cuts the header block off, null for none.
  bool cutHeaders(char*& headers) {
    if (startsWith(bytesFrom(rest_), kLineEnd)) {
      rest_ += kLineEnd.size();
      return true;
    }
    headers = rest_;
    return cut(headers, kHeadersEnd, rest_);
  }

  // Makes the node of a part, with content, headers and, for the first one, the preamble. A block
  // of headers with faults is no fault of the part.
  bool storePart(char* headers) {
    if (!storeEpilogue() || owner_.wySipConstructMultipartMessageStructure() == 0) {
      return false;
    }
    const auto length = static_cast<unsigned int>(owner_.partContentLength);
    if (!owner_.current->SetMessageBody(reinterpret_cast<unsigned char*>(rest_), length) &&
        length != 0) {
      return false;
    }
    const bool lost = headers != nullptr && owner_.ParseAndStoreMsgHeaders(headers) == 0;
    return !(lost && owner_.outOfMemory_) && storePreamble();
  }

  bool storePreamble() {
    if (preambleLength_ == 0) {
      return true;
    }
    const PlatformText preamble = copyOf({content_, preambleLength_});
    if (preamble == nullptr) {
      logTrace(kSourceFile, "SipConnection::wySipProcessMultipartMsgBody | Preamble Calloc failed");
      return false;
    }
    preambleLength_ = 0;
    owner_.current->SetPreamble(preamble.get());
    return owner_.current->preamble != nullptr;
  }

  // Takes the close delimiters behind a content, each with its epilogue, and the line behind them.
  Step takeCloseDelimiters() {
    char* cursor = rest_ + owner_.partContentLength;
    while (startsWith(bytesFrom(cursor), kDashes)) {
      const int found = owner_.ValidateCloseDelimiter(cursor);
      if (found == kNotClosed) {
        logTrace(kSourceFile,
                 "SipConnection::wySipProcessMultipartMsgBody | not a Close delimiter");
        break;
      }
      if (found != kClosed) {
        logFailure(
            kSourceFile,
            "SipConnection::wySipProcessMultipartMsgBody | error in validating close delimiter");
        return Step::kFailed;
      }
      if (startsWith(bytesFrom(cursor), kDashes)) {
        continue;
      }
      epilogue_ = front_ + (cursor - work_.get());
      if (!cut(cursor, kLineEnd, cursor)) {
        logFailure(kSourceFile, "SipConnection::wySipProcessMultipartMsgBody | did not found CRLF");
        return Step::kDone;
      }
    }
    line_ = cursor;
    return cut(line_, kLineEnd, rest_) ? Step::kNextPart : Step::kDone;
  }

  // Gives the current node its epilogue, the last one that it had.
  bool storeEpilogue() {
    char* const epilogue = std::exchange(epilogue_, nullptr);
    if (epilogue == nullptr) {
      return true;
    }
    epilogueSize_ += std::strlen(epilogue) + 1;
    if (epilogueSize_ > kEpilogueFactor * owner_.contentLength + kEpilogueRoom) {
      logFailure(kSourceFile,
                 "SipConnection::wySipProcessMultipartMsgBody | epilogues take more than %d times "
                 "the body and %d MiB",
                 kEpilogueFactor, kEpilogueRoom / kMebibyte);
      return false;
    }
    owner_.current->SetEpilogue(epilogue);
    return owner_.current->epilogue != nullptr;
  }

  SipMultipartMessageBodyUtility& owner_;
  char* content_;           // the body as it came
  char* front_ = content_;  // what of it the copy begins with
  std::size_t length_;      // of the copy
  PlatformText work_;
  const char* zero_ = nullptr;
  char* line_ = nullptr;
  char* rest_ = nullptr;  // behind the line, behind the headers
  std::size_t preambleLength_ = 0;
  char* epilogue_ = nullptr;  // in the body as it came
  std::uint64_t epilogueSize_ = 0;
};

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
      parse_(nullptr),
      outOfMemory_(false) {
  // The words are those of the nodes, and meant to be.
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
  PlatformText earlier;  // the Content-Type value may be in it
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
    return takeWhole();
  }
  return takeParts(*header) ? m_pMultipartMsgHead : nullptr;
}

int SipMultipartMessageBodyUtility::wySipProcessMultipartMsgBody(unsigned char* body) {
  if (body == nullptr || m_pCurrentboundary == nullptr) {
    logFailure(kSourceFile,
               "SC::wySipProcessMultipartMsgBody | api input parameter/m_pCurrentboundary is null");
    return 0;
  }
  Parse parse(*this, reinterpret_cast<char*>(body));
  parse_ = &parse;
  const bool done = parse.run();
  parse_ = nullptr;
  return done ? 1 : 0;
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
  const PlatformText boundary = unquotedBoundary(kDashes, m_pCurrentboundary);
  if (boundary == nullptr) {
    logFailure(kSourceFile, "SipConnection::Validateboundary | invalid temp dash boundary");
    return 0;
  }
  const std::size_t length = std::strlen(boundary.get());
  if (std::strncmp(line, boundary.get(), length) != 0) {
    logFailure(kSourceFile, "SipConnection::Validateboundary | boundary dosent match");
    return 0;
  }
  const char* const end = line + length + std::strspn(line + length, " ");
  if (*end != '\0' && !startsWith(end, kLineEnd)) {
    logFailure(kSourceFile, "SipConnection::Validateboundary | wrong dash boundary");
    return 0;
  }
  if (Storedashboundary(line + kDashes.size()) == 0) {
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
  const bool inParse = parse_ != nullptr && parse_->holds(text);
  const std::string_view bytes = inParse ? parse_->bytesFrom(text) : text;
  if (startsWith(bytes, kDashes) && beginsWithStored(bytes.substr(kDashes.size()))) {
    logFailure(kSourceFile,
               "SipConnection::wySipProcessMessageBody |found dash boundary in the message body");
    return 0;
  }
  logTrace(kSourceFile, "SipConnection::wySipProcessMessageBody iContentLen:%d iLength:%d", 0,
           inParse ? parse_->textFrom(text).size() : bytes.size());
  if (m_pCurrentboundary == nullptr) {
    return 0;
  }
  const DelimiterSearch search(m_pCurrentboundary);
  const std::size_t length = search.valid() ? search.findIn(bytes) : std::string_view::npos;
  if (length > INT_MAX) {
    return 0;
  }
  partContentLength = static_cast<int>(length);
  return 1;
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
  } else if (isLastBoundary()) {
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
    return kNothing;
  }
  const bool inParse = parse_ != nullptr && parse_->holds(cursor);
  std::string_view rest = inParse ? parse_->bytesFrom(cursor) : cursor;
  const char* const end = rest.data() + rest.size();
  rest.remove_prefix(std::min(kDashes.size(), rest.size()));
  if (m_pCurrentboundary == nullptr || !startsWith(rest, m_pCurrentboundary)) {
    logFailure(kSourceFile,
               "SipMultipartMessageBody::ValidateCloseDelimiter | wrong dash boundary");
    return kWrongBoundary;
  }
  rest.remove_prefix(std::strlen(m_pCurrentboundary));
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
    return kNothing;
  }
  // The blanks count a second time, whatever stands there; the end of the text is the limit.
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

bool SipMultipartMessageBodyUtility::storeFirstBoundary(const char* boundary) {
  auto* const node = newRecorded<DashBoundary>(kSourceFile);
  if (node == nullptr) {
    logTrace(kSourceFile, "SipMultipartMessageBody::Storedashboundary | new failed");
    return false;
  }
  node->boundary = __strdup(boundary);
  if (node->boundary == nullptr || !showCopy(m_pCurrentboundary, node->boundary) ||
      !showCopy(lastBoundary, node->boundary)) {
    logTrace(kSourceFile, "SipConnection::Storedashboundary | strdup failed");
    deleteBoundary(node);
    return false;
  }
  dashBoundaryList = node;
  growthEnd_ = node;
  return true;
}

bool SipMultipartMessageBodyUtility::storeFurtherBoundary(const char* boundary) {
  DashBoundary* const latest = latestOf(dashBoundaryList);
  const bool isNew = std::strcmp(latest->boundary, boundary) != 0;
  DashBoundary* const node = isNew ? newRecorded<DashBoundary>(kSourceFile) : nullptr;
  if (node != nullptr) {
    node->boundary = __strdup(boundary);
  }
  // The first boundary of the list was the last one from its storing on.
  if ((latest != dashBoundaryList && !showCopy(lastBoundary, latest->boundary)) ||
      (isNew && (node == nullptr || node->boundary == nullptr ||
                 !showCopy(m_pCurrentboundary, node->boundary)))) {
    logTrace(kSourceFile, "SipConnection::Storedashboundary |  strdup failed");
    deleteBoundary(node);
    return false;
  }
  latest->next = node;
  if (node != nullptr && latest == growthEnd_ && startsWith(node->boundary, latest->boundary)) {
    growthEnd_ = node;
  }
  return true;
}

SipMultipartMessageBody* SipMultipartMessageBodyUtility::takeWhole() {
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

bool SipMultipartMessageBodyUtility::enterNested(SipHeader* header) {
  if (!equalIgnoringCase(header->getName(), "Content-Type") || !isMultipart(*header)) {
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

bool SipMultipartMessageBodyUtility::beginsWithStored(std::string_view text) const {
  const bool grows = contains(dashBoundaryList, growthEnd_);  // callers may change the list
  const DashBoundary* each = dashBoundaryList;
  while (each != nullptr && !startsWith(text, each->boundary)) {
    each = grows && each == dashBoundaryList ? growthEnd_->next : each->next;
  }
  return each != nullptr;
}

bool SipMultipartMessageBodyUtility::leaveBoundary() {
  if (isLastBoundary()) {
    // The two may show a text of the list, which goes.
    const bool kept =
        showCopy(m_pCurrentboundary, m_pCurrentboundary) && showCopy(lastBoundary, lastBoundary);
    if (kept) {
      forgetBoundaries();
    }
    return kept;
  }
  return dashBoundaryList == nullptr ||
         showCopy(m_pCurrentboundary, latestOf(dashBoundaryList)->boundary);
}

bool SipMultipartMessageBodyUtility::showCopy(const char*& boundary, std::string_view text) {
  for (const std::string_view copy : copies_) {
    if (copy.data() != nullptr && copy == text) {
      boundary = copy.data();
      return true;
    }
  }
  const char* const copy = copyOf(text).release();
  if (copy == nullptr) {
    return false;
  }
  boundary = copy;
  // The other boundary can show one of the earlier copies, and no more.
  const bool firstIsShown =
      isWithin(copies_[0], m_pCurrentboundary) || isWithin(copies_[0], lastBoundary);
  std::string_view& place = copies_[firstIsShown ? 1 : 0];
  freeText(place);
  place = {copy, text.size()};
  return true;
}

bool SipMultipartMessageBodyUtility::isLastBoundary() const {
  return m_pCurrentboundary != nullptr && lastBoundary != nullptr &&
         std::strcmp(m_pCurrentboundary, lastBoundary) == 0;
}

void SipMultipartMessageBodyUtility::forgetBoundaries() {
  while (dashBoundaryList != nullptr) {
    DashBoundary* const next = dashBoundaryList->next;
    deleteBoundary(dashBoundaryList);
    dashBoundaryList = next;
  }
  growthEnd_ = nullptr;
}

SipMultipartMessageBodyUtility* initSipMultipartMessageBodyUtilityObj() {
  return SipMultipartMessageBodyUtility::getInstance();
}
