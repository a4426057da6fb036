// consumer.cpp - a separate program, built against the installed library.
//
// With pkg-config; the last argument is needed only if the loader does not search the folder:
//
//   c++ -std=c++17 consumer.cpp $(pkg-config --cflags --libs siputility siputility-host) \
//     -Wl,-rpath,$(pkg-config --variable=libdir siputility)
//
// Put eval before c++ if the path of the installed tree has blanks.
#include <cstdio>

#include <siputility/wySipHeader.h>

#include "imsdpl.h"
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
