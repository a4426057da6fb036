// parse.cpp - one parse of a multipart body.
#include "multipart/parse.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "base/log.h"
#include "multipart/boundaries.h"
#include "multipart/syntax.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/sipMultipartmessagebodyUtility";

// The memory that the epilogues of one body may take in total. An epilogue is a copy of all the
// body after its part, so without a limit a body of many small parts takes memory by the square of
// its length.
constexpr std::uint64_t kEpilogueFactor = 4;
constexpr std::uint64_t kMebibyte = 1U << 20U;
constexpr std::uint64_t kEpilogueRoom = 64 * kMebibyte;

}  // namespace

MultipartParse::MultipartParse(SipMultipartMessageBodyUtility& owner, char* content)
    : owner_(owner), content_(content), length_(owner.contentLength) {}

bool MultipartParse::run() {
  if (!copyContent() || !cutPreamble()) {
    return false;
  }
  Step step = cut(line_, kLineEnd, rest_) ? Step::kNextPart : Step::kDone;
  while (step == Step::kNextPart) {
    step = takePart();
  }
  return storeEpilogue() && step == Step::kDone;
}

std::string_view MultipartParse::bytesFrom(const char* p) const {
  return {p, static_cast<std::size_t>(work_.get() + length_ - p)};
}

std::string_view MultipartParse::textFrom(const char* p) {
  if (zero_ < p) {
    const std::string_view bytes = bytesFrom(p);
    zero_ = p + std::min(bytes.find('\0'), bytes.size());
  }
  return {p, static_cast<std::size_t>(zero_ - p)};
}

bool MultipartParse::copyContent() {
  work_ = copyOf({content_, length_});
  if (work_ == nullptr) {
    logTrace(kSourceFile, "SipConnection::wySipProcessMultipartMsgBody | strdup failed");
  }
  line_ = work_.get();
  return work_ != nullptr;
}

// Cuts off what is before the first delimiter that begins a line. A body with a hyphen as its first
// or second byte has no preamble.
bool MultipartParse::cutPreamble() {
  if (startsWith(bytesFrom(line_), "-") || (length_ > 1 && line_[1] == '-')) {
    return true;
  }
  PlatformText copy;
  const char* const boundary = unquoted(owner_.m_pCurrentboundary, copy);
  const PlatformText delimiter = boundary == nullptr ? nullptr : joined("\r\n--", boundary);
  if (delimiter == nullptr) {
    logTrace(kSourceFile,
             "SipConnection::wySipProcessMultipartMsgBody | Calloc for Boundary failed");
    return false;
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

bool MultipartParse::cut(char* text, std::string_view delimiter, char*& rest) {
  const std::size_t length = textFrom(text).find(delimiter);
  if (length == std::string_view::npos) {
    return false;
  }
  text[length] = '\0';
  rest = text + length + delimiter.size();
  return true;
}

MultipartParse::Step MultipartParse::takePart() {
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
  if (!owner_.measureContent(bytesFrom(rest_), textFrom(rest_).size())) {
    logFailure(kSourceFile, "SipConnection::wySipProcessMultipartMsgBody | message headers failed");
    return Step::kFailed;
  }
  return storePart(headers) ? takeCloseDelimiters() : Step::kFailed;
}

// One line may come before the first delimiter of a multipart, and no more.
bool MultipartParse::skipLine() {
  if (owner_.firstBoundary == 1 && !startsWith(line_, kDashes)) {
    line_ = rest_;
    if (!cut(line_, kLineEnd, rest_)) {
      return false;
    }
  }
  owner_.firstBoundary = 0;
  return true;
}

// Cuts off the header block; null if the part has none.
bool MultipartParse::cutHeaders(char*& headers) {
  if (startsWith(bytesFrom(rest_), kLineEnd)) {
    rest_ += kLineEnd.size();
    return true;
  }
  headers = rest_;
  return cut(headers, kHeadersEnd, rest_);
}

// Makes the node of a part, with content, headers and, for the first one, the preamble. Faulty
// headers do not fail the part; a lack of memory for them does.
bool MultipartParse::storePart(char* headers) {
  if (!storeEpilogue() || owner_.wySipConstructMultipartMessageStructure() == 0) {
    return false;
  }
  const auto length = static_cast<unsigned int>(owner_.partContentLength);
  // SetMessageBody() refuses an empty content; an empty part has none.
  if (!owner_.current->SetMessageBody(reinterpret_cast<unsigned char*>(rest_), length) &&
      length != 0) {
    return false;
  }
  const bool lost = headers != nullptr && owner_.ParseAndStoreMsgHeaders(headers) == 0;
  return !(lost && owner_.outOfMemory_) && storePreamble();
}

bool MultipartParse::storePreamble() {
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

// Reads the close delimiters after a content, each with its epilogue, and the line after them. A
// body that ends here, even without the final CRLF, is complete.
MultipartParse::Step MultipartParse::takeCloseDelimiters() {
  char* cursor = rest_ + owner_.partContentLength;
  while (startsWith(bytesFrom(cursor), kDashes)) {
    const int found = owner_.passCloseDelimiter(cursor, bytesFrom(cursor));
    if (found == kNotClosed) {
      logTrace(kSourceFile, "SipConnection::wySipProcessMultipartMsgBody | not a Close delimiter");
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

// Stores the epilogue of the current node. Only the last of several is stored, so this waits until
// the next node or the end of the body.
bool MultipartParse::storeEpilogue() {
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
