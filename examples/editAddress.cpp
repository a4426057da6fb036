// editAddress.cpp - reads a SIP address, changes it and writes it back.
#include <cstdio>

#include "wySipAddress.h"

int main() {
  SipAddress address("\"Alice\" <sip:alice@example.test;transport=tcp>");
  if (address.GetLastErrorCode() != VARN_OK) {
    return 1;
  }
  std::printf("user %s, port %d\n", address.getUser().c_str(), address.getPort());
  if (const SipString* transport = address.getParameter("transport")) {
    std::printf("transport %s\n", transport->c_str());
  }
  address.setPort(5070);
  address.setParameter("lr", "");
  std::printf("%s\n", address.toString().c_str());

  const VARN_EXCEPTION_CODES code = address.setHost("not a host");
  std::printf("setHost: code %u, still %s\n", code, address.getURI().c_str());
  return 0;
}
