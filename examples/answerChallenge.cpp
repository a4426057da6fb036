// answerChallenge.cpp - reads a challenge and writes a header field of credentials.
#include <cstdio>

#include "wySipHeader.h"

int main() {
  SipHeader challenge("WWW-Authenticate", R"(Digest realm="home.test",nonce="84a4",qop="auth")");
  const SipString* nonce = challenge.getParameter("nonce");
  if (nonce == nullptr) {
    return 1;
  }
  SipHeader answer("Authorization", challenge.getValue());
  answer.setParameter("nonce", *nonce);  // the quotes are part of the value
  answer.setParameter("username", "\"alice\"");
  std::printf("%s\n", answer.toString().c_str());
  return 0;
}
