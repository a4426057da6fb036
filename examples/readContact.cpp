// readContact.cpp - reads a Contact header field, and the address in it.
#include <cstdio>

#include "wySipAddress.h"
#include "wySipHeader.h"

int main() {
  SipHeader contact("Contact", "\"Alice\" <sip:alice@10.0.0.1:5070;lr>;expires=600;q=0.5");
  if (contact.GetLastErrorCode() != VARN_OK) {
    return 1;
  }
  for (const SipParam* each = contact.firstParam(); each != nullptr;
       each = contact.nextParam(each)) {
    std::printf("%s is %s\n", each->getName().c_str(), each->getValue().c_str());
  }
  SipAddress address(contact.getValue());
  std::printf("%s at %s, port %d\n", address.getUser().c_str(), address.getHost().c_str(),
              address.getPort());
  return address.GetLastErrorCode() == VARN_OK ? 0 : 1;
}
