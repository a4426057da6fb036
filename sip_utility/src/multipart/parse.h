// parse.h - one parse of a multipart body: a copy of the body that is cut into texts, and the
// places in it.
#ifndef SIPUTILITY_MULTIPART_PARSE_H
#define SIPUTILITY_MULTIPART_PARSE_H

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "base/platformBlock.h"
#include "sipMultipartmessagebodyUtility.h"

namespace siputility {

class MultipartParse {
 public:
  // A parse of content[0, contentLength of the owner). A zero byte follows the content.
  MultipartParse(SipMultipartMessageBodyUtility& owner, char* content);

  // Takes the body apart into nodes of the owner. Returns false for a faulty body and if out of
  // memory.
  bool run();

 private:
  enum class Step { kNextPart, kDone, kFailed };

  bool copyContent();
  bool cutPreamble();
  Step takePart();
  bool skipLine();
  bool cutHeaders(char*& headers);
  bool storePart(char* headers);
  bool storePreamble();
  Step takeCloseDelimiters();
  bool storeEpilogue();

  // Ends the text at its first delimiter with a zero byte. Returns whether there is a delimiter,
  // and sets rest to the byte after it.
  bool cut(char* text, std::string_view delimiter, char*& rest);

  // Returns the copy from p to its end.
  std::string_view bytesFrom(const char* p) const;

  // Returns the copy from p to the next zero byte. The zero byte is remembered, so the texts of a
  // parse together cost one scan of the copy.
  // Requires: p never goes back.
  std::string_view textFrom(const char* p);

  SipMultipartMessageBodyUtility& owner_;
  char* content_;                   // the body as received
  char* front_ = content_;          // its byte with which the copy begins, after the preamble
  std::size_t length_;              // of the copy
  PlatformText work_;               // the copy, which is cut into texts
  const char* zero_ = nullptr;      // the zero byte that textFrom() found last
  char* line_ = nullptr;            // where a delimiter line is expected
  char* rest_ = nullptr;            // what follows that line: the header block, then the content
  std::size_t preambleLength_ = 0;  // 0 once a node has the preamble
  char* epilogue_ = nullptr;        // of the current node, in content_; null once stored
  std::uint64_t epilogueSize_ = 0;  // of all epilogues so far
};

}  // namespace siputility

using siputility::MultipartParse;

#endif  // SIPUTILITY_MULTIPART_PARSE_H
