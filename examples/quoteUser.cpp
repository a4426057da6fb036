// quoteUser.cpp - percent-encodes the user parts of a list of SIP URIs.
#include <cstdio>

#include "imsdpl.h"
#include "wySipCommon.h"

int main() {
  char uris[] = "<sip:alice:secret@host.test>,<sip:b ob@host.test;lr>";
  char* quoted = nullptr;
  if (wyQuoteUserInfoInSipUri(uris, &quoted) == 0) {
    return 1;
  }
  std::printf("%s\n", quoted);
  __free(quoted);  // the result is a block of the platform
  return 0;
}
