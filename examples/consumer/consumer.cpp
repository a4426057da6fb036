// consumer.cpp - a separate program, which docs/linking.md links with the library in each way.
#include <cstdio>

#include <siputility/wySipHeader.h>

#include "imsdpl.h"  // a platform header, for __free
#include "wySipCommon.h"
#include "wySipInit.h"

int main() {
  InitServiceModules();  // once on each thread
  if (Globals::Instance()->GetSingObj(3) != SingoConfig_SO::Instance()) {
    return 1;
  }
  SipHeader contact("Contact", "\"Bob\" <sip:bob@host.test;transport=tcp>;expires=60");
  if (contact.GetLastErrorCode() != VARN_OK) {
    return 1;
  }
  contact.setParameter("expires", "0");
  std::printf("%s\n", contact.toString().c_str());

  char uri[] = "sip:a:b@host.test";
  char* quoted = nullptr;
  if (wyQuoteUserInfo(uri, &quoted) == 0) {
    return 1;
  }
  std::printf("%s\n", quoted);
  __free(quoted);  // NOLINT(bugprone-reserved-identifier): a block of the platform
  return 0;
}
