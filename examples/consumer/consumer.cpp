// consumer.cpp - a program of somebody else, built against the installed library.
//
// With pkg-config; the last argument only where the loader does not look into the folder by itself:
//
//   c++ -std=c++17 consumer.cpp $(pkg-config --cflags --libs siputility siputility-host) \
//     -Wl,-rpath,$(pkg-config --variable=libdir siputility)
//
// With eval before c++ it is right for an installed tree whose path has blanks as well.
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
  __free(quoted);  // NOLINT(bugprone-reserved-identifier): what is handed out is the platform's
  return 0;
}
