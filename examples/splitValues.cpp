// splitValues.cpp - splits the value of a header field that is a list.
#include <cstdio>

#include "sipFields.h"
#include "sipText.h"
#include "wySipCxx.h"
#include "wySipHeader.h"

int main() {
  const char* const identity = R"("Smith, A" <sip:alice@home.test>, <tel:+4930123456>)";
  for (const std::string_view value : siputility::splitList(identity)) {
    const SipHeader header("P-Asserted-Identity",
                           siputility::toSipString(siputility::trimmed(value)));
    std::printf("identity %s\n", header.getValue().c_str());
  }

  const char* const via = "SIP/2.0/UDP a.test;branch=z9hG4bK1, SIP/2.0/TCP b.test;branch=z9hG4bK2";
  for (const std::string_view value : siputility::splitList(via)) {
    const SipHeader header("Via", siputility::toSipString(siputility::trimmed(value)));
    const SipString* branch = header.getParameter("branch");
    std::printf("via %s, branch %s\n", header.getValue().c_str(),
                branch != nullptr ? branch->c_str() : "-");
  }
  return 0;
}
