// imsvarn.h - the handset's framework library, as far as the SIP text library needs it.
//
// The contract that lib-imsvarn fulfils. Every function may be called on any thread.
#ifndef IMSVARN_H
#define IMSVARN_H

// Receives broken preconditions.
class MafErrorHandler {
 public:
  // Reports a failed assertion and returns: the caller carries on without effect. The texts are
  // read before the call returns.
  static void AssertString(const char* message, const char* sourceFile, int line);
};

#endif  // IMSVARN_H
