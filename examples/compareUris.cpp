// compareUris.cpp - compares two SIP URIs: user, port and host.
#include <cstdio>

#include "wySipUtils.h"

int main() {
  const char* const pairs[][2] = {
      {"sip:alice@[::1]:5060", "sip:alice@[0:0::1]:5060;lr"},
      {"sip:alice@host.test", "sip:alice@host.test:5060"},  // no port is not port 5060
  };
  for (const auto& pair : pairs) {
    std::printf("%s\n", CompareSIPURI(pair[0], pair[1]) == 1 ? "the same" : "different");
  }
  return 0;
}
