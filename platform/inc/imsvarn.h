// imsvarn.h - the handset's framework library, as far as the SIP text library needs it.
//
// The contract that lib-imsvarn fulfils. Every function may be called on any thread.
#ifndef IMSVARN_H
#define IMSVARN_H

#include "imsdpl.h"

// Receives broken preconditions.
class MafErrorHandler {
 public:
  // Reports a failed assertion and returns: the caller carries on without effect. The texts are
  // read before the call returns.
  static void AssertString(const char* message, const char* sourceFile, int line);
};

// The base of the objects of which a thread has one each.
class WySingletonBaseClass {
 public:
  WySingletonBaseClass();
  WySingletonBaseClass(const WySingletonBaseClass&) = delete;
  WySingletonBaseClass& operator=(const WySingletonBaseClass&) = delete;
  virtual ~WySingletonBaseClass();
};

// The registry of a thread's singletons. Used by its thread alone.
class Globals {
 public:
  // Returns the registry of the calling thread; null for a thread without one.
  static Globals* Instance() { return static_cast<Globals*>(wyDplTlsGet()); }

  // Returns the object that is registered under the id; null for none.
  WySingletonBaseClass* GetSingObj(signed char id);

  // Registers an object under an id that has none.
  // Owns: the registry, which deletes it no later than the thread ends.
  void RegisterSingObj(signed char id, WySingletonBaseClass* object);
};

// The configuration of the framework. The library makes the object: a platform with fields in it
// declares them here.
class SingoConfig : public WySingletonBaseClass {
 public:
  SingoConfig();
  ~SingoConfig() override;

  // Reads the configuration, anew at every call. Returns 0 for success.
  int Init();
};

#endif  // IMSVARN_H
