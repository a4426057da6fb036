// telToSip.cpp - turns a tel URI into a SIP address.
#include <cstdio>

#include "wySipAddress.h"
#include "wyTelAddress.h"

int main() {
  TelAddress number("\"Bob\" <tel:7042;phone-context=example.test>");
  SipAddress target("sip:gateway.test");  // scheme, host and port of the result
  if (number.toSipAddress(target) != VARN_OK) {
    return 1;
  }
  std::printf("%s\n", target.toString().c_str());
  return 0;
}
