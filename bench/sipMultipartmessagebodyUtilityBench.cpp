// sipMultipartmessagebodyUtilityBench.cpp - multipart bodies into their parts.
#include "sipMultipartmessagebodyUtility.h"

#include "harness.h"
#include "inputs.h"
#include "pieces.h"

void addBodyCases() {
  using namespace inputs;
  const std::string body(kMultipart);
  addCase("BM_MultipartBody_Parse/twoParts", body.size(), "#12 492 0", [body](auto& sink) {
    SipMultipartMessageBodyUtility utility;
    touchPieces(sink, utility.wySipGetMultiPartMessageBody(
                          bytesOf(body), static_cast<unsigned int>(body.size()), kMultipartType));
  });
}
