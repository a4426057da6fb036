// splitBody.cpp - splits a multipart body into its parts.
#include <cstdio>

#include "sipMultipartmessagebodyUtility.h"

int main() {
  char body[] =
      "--b1\r\nContent-Type: application/sdp\r\n\r\nv=0\r\n"
      "--b1\r\nContent-Type: text/plain\r\n\r\nhello\r\n--b1--\r\n";
  SipMultipartMessageBodyUtility parser;  // owns the parts
  const SipMultipartMessageBody* part = parser.wySipGetMultiPartMessageBody(
      reinterpret_cast<unsigned char*>(body), sizeof(body) - 1, "multipart/mixed;boundary=b1");
  for (; part != nullptr; part = part->next) {
    std::printf("%s, %d bytes from '%.3s' on\n", part->headers[0]->getValue().c_str(),
                part->bodyLength, reinterpret_cast<const char*>(part->body));
  }
  return 0;
}
