// parse.h - one run over a multipart body: the copy that is cut into texts, and the places in it.
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
  // A run over content[0, contentLength of the owner) and the zero byte after it.
  MultipartParse(SipMultipartMessageBodyUtility& owner, char* content);

  // Takes the complete body apart. Returns whether it could.
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

  // Ends the text here at the first delimiter. Returns whether there is one, and where the text
  // after it begins.
  bool cut(char* text, std::string_view delimiter, char*& rest);

  // Returns the copy from here to its end.
  std::string_view bytesFrom(const char* p) const;

  // Returns the copy from here to the next zero byte. To be asked from front to back: the zero byte
  // that was found is remembered, so that all the texts together cost one look at the copy.
  std::string_view textFrom(const char* p);

  SipMultipartMessageBodyUtility& owner_;
  char* content_;                   // the body as it came
  char* front_ = content_;          // the byte of it that the copy begins with, after the preamble
  std::size_t length_;              // of the copy
  PlatformText work_;               // the copy, which is cut into texts
  const char* zero_ = nullptr;      // the zero byte that textFrom() found last
  char* line_ = nullptr;            // where a delimiter line is expected
  char* rest_ = nullptr;            // what follows that line: the header block, then the content
  std::size_t preambleLength_ = 0;  // until a node has the preamble
  char* epilogue_ = nullptr;        // of the current node, in the body as it came; null once stored
  std::uint64_t epilogueSize_ = 0;  // of all epilogues so far
};

}  // namespace siputility

using siputility::MultipartParse;

#endif  // SIPUTILITY_MULTIPART_PARSE_H
