/// \file
/// Start-up of the library, and the records of connections and credentials.
///
/// The library does not interpret the fields of the records. Their names show type and position.
///
/// C can include this header; it then has InitServiceModules().
#ifndef WY_SIP_INIT_H
#define WY_SIP_INIT_H

#include "wySipExport.h"

#ifdef __cplusplus
#include "imsvarn.h"

/// Access to the configuration of the framework.
class SIPUTILITY_EXPORT SingoConfig_SO {
 public:
  /// Returns the SingoConfig of the calling thread. The first call of a thread makes the object and
  /// registers it under the id 3.
  ///
  /// Fails: null out of memory; also null, with a failed assertion and "Globals is NULL" (level 5,
  /// module 6053), for a thread without a registry.
  ///
  /// Owns: the registry owns the object.
  static SingoConfig* Instance();
};

extern "C" {
#endif

/// Sets up the configuration of the framework for the calling thread: calls `Init()` of
/// SingoConfig_SO::Instance(). Each thread that uses the framework calls this once.
///
/// Fails: logs "InitServiceModules | SingoConfig is NULL" if there is no object, and
/// "InitServiceModules | pSingoConfig->Init() Failed" (level 5, module 6054).
SIPUTILITY_EXPORT void InitServiceModules(void);  // NOLINT(modernize-redundant-void-arg): for C

#ifdef __cplusplus
}  // extern "C"

/// The parameters of a connection, as a record.
///
/// Construction and destruction are logged (level 3, module 6054); of a copy only the destruction.
class SIPUTILITY_EXPORT wySipConnParams {
 public:
  /// Sets secondValue to 3 and everything else to zero.
  wySipConnParams();
  wySipConnParams(const wySipConnParams&) = default;
  wySipConnParams& operator=(const wySipConnParams&) = default;

  /// Overwrites the first, second and fourth text with zero bytes; the rest keeps its values.
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

/// Credentials, as a record: strings that are blocks of the platform, or null.
///
/// Construction and destruction are logged (level 3, module 6054).
class SIPUTILITY_EXPORT wyCredentialsStruct {
 public:
  /// Sets the strings to null and the number to 0.
  wyCredentialsStruct();
  wyCredentialsStruct(const wyCredentialsStruct&) = delete;
  wyCredentialsStruct& operator=(const wyCredentialsStruct&) = delete;

  /// Frees the strings with `__free` and sets them to null.
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

#endif  // __cplusplus

#endif  // WY_SIP_INIT_H
