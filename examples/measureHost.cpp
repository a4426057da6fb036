// measureHost.cpp - measures with a matcher how much of a text is a host.
#include <cstdio>

#include "wySipMatch.h"

int main() {
  SipStrStream stream("[2001:db8::1]:5060;lr");
  SipMatchHost host;
  const unsigned int length = host.match(stream, 0);
  SipString text;
  if (length == 0 || stream.get(length, text) != VARN_OK) {
    return 1;
  }
  std::printf("%u bytes: %s, then '%c'\n", length, text.c_str(), stream.peek(0));
  return 0;
}
