// compareNames.cpp - compares the name of a header field that came from the network.
#include <cstdio>

#include "wySipCxx.h"
#include "wySipHeader.h"

int main() {
  const char* const received[] = {"CONTACT", "Con", "", "m"};
  for (const char* name : received) {
    const SipHeader header(name, "<sip:alice@host.test>");
    const bool contact = siputility::equalIgnoringCase(header.getName(), "Contact") ||
                         siputility::equalIgnoringCase(header.getName(), "m");
    std::printf("'%s' %s\n", name, contact ? "is Contact" : "is another name");
  }
  return 0;
}
