// changeHost.cpp - replaces the host of a SIP address.
#include <cstdio>

#include "wySipAddress.h"

int main() {
  SipAddress address("<sip:alice@old.test:5070;transport=tcp>");
  if (address.setHost("[2001:db8::1]") != VARN_OK) {
    return 1;
  }
  std::printf("%s\n", address.toString().c_str());

  const bool refused = address.setHost("2001:db8::1") == VARN_INVALID_INPUT;
  std::printf("without brackets %s\n", refused ? "refused" : "accepted");
  std::printf("%s\n", address.getHost().c_str());
  return 0;
}
