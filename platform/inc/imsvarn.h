// imsvarn.h - the part of the handset's framework library that the SIP text library needs.
//
// This is the contract of lib-imsvarn. Every function may be called on any thread.
#ifndef IMSVARN_H
#define IMSVARN_H

#include "imsdpl.h"

// Receives failed assertions.
class MafErrorHandler {
 public:
  // Reports a failed assertion and returns; the caller then continues without effect. The texts are
  // read before the call returns.
  static void AssertString(const char* message, const char* sourceFile, int line);
};

// The base of the singletons of a thread.
class WySingletonBaseClass {
 public:
  WySingletonBaseClass();
  WySingletonBaseClass(const WySingletonBaseClass&) = delete;
  WySingletonBaseClass& operator=(const WySingletonBaseClass&) = delete;
  virtual ~WySingletonBaseClass();
};

// The registry of the singletons of a thread. Only that thread uses it.
class Globals {
 public:
  // Returns the registry of the calling thread; null for a thread without one.
  static Globals* Instance() { return static_cast<Globals*>(wyDplTlsGet()); }

  // Returns the object that is registered under the id; null for none.
  WySingletonBaseClass* GetSingObj(signed char id);

  // Registers an object under an id that has none.
  // Owns: the registry owns the object and deletes it at the latest when the thread ends.
  void RegisterSingObj(signed char id, WySingletonBaseClass* object);
};

// The configuration of the framework. The library allocates the object, so a platform whose object
// has fields declares them here.
class SingoConfig : public WySingletonBaseClass {
 public:
  SingoConfig();
  ~SingoConfig() override;

  // Reads the configuration again at each call. Returns 0 for success.
  int Init();
};

#endif  // IMSVARN_H
