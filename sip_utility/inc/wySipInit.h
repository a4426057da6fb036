// wySipInit.h - start-up of the library, and the records of connections and credentials.
//
// What the fields of the records mean is their users' business; names tell type and position.
#ifndef WY_SIP_INIT_H
#define WY_SIP_INIT_H

#include "imsvarn.h"
#include "wySipExport.h"

// The way to the framework's configuration. A program that asks Globals itself links the
// framework's library as well (siputility::imsvarn, or siputility-host with pkg-config).
class SIPUTILITY_EXPORT SingoConfig_SO {
 public:
  // Returns the calling thread's SingoConfig, made and registered under the id 3 at the first call.
  // Fails: null without memory; also, with a failed assertion and "Globals is NULL" (level 5,
  // module 6053), for a thread without a registry.
  // Owns: the registry.
  static SingoConfig* Instance();
};

// Sets the framework's configuration up for the calling thread, to be called once by each thread
// that uses the framework: takes SingoConfig_SO::Instance() and calls its Init(). Failures are
// logged (level 5, module 6054): "InitServiceModules | SingoConfig is NULL" for no object, and
// "InitServiceModules | pSingoConfig->Init() Failed".
extern "C" SIPUTILITY_EXPORT void InitServiceModules();

// Parameters of a connection. Both ends of its life are logged (level 3, module 6054), of a copy
// the end only.
class SIPUTILITY_EXPORT wySipConnParams {
 public:
  // Sets everything to zero but secondValue, which is 3.
  wySipConnParams();
  wySipConnParams(const wySipConnParams&) = default;
  wySipConnParams& operator=(const wySipConnParams&) = default;

  // Overwrites the first, second and fourth text with zero bytes; the rest keeps its values.
  ~wySipConnParams();

  char firstText[300];
  unsigned short shortValue;
  int firstValue;
  int secondValue;
  int thirdValue;
  char secondText[300];
  char thirdText[150];
  char fourthText[100];
};

// Credentials: strings that are blocks of the platform, or null. Both ends of its life are logged
// (level 3, module 6054).
class SIPUTILITY_EXPORT wyCredentialsStruct {
 public:
  // Sets everything to null and 0.
  wyCredentialsStruct();
  wyCredentialsStruct(const wyCredentialsStruct&) = delete;
  wyCredentialsStruct& operator=(const wyCredentialsStruct&) = delete;

  // Frees the strings with __free and sets them to null.
  ~wyCredentialsStruct();

  char* firstString;
  char* secondString;
  char* thirdString;
  int value;
  char* fourthString;
  char* fifthString;
  char* sixthString;
  char* seventhString;
  char* eighthString;
};

#endif  // WY_SIP_INIT_H
