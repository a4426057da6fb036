// wySipInit.cpp - start-up of the library, and the records of connections and credentials.
#include "wySipInit.h"

#include <cstddef>
#include <cstring>
#include <new>

#include "base/log.h"
#include "base/platformBlock.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wySipInit";
constexpr const char* kRecordSourceFile = "sip_utility/src/wySipCommon";
constexpr const char* kFrameworkSourceFile = "framework/inc/singoConfig";

constexpr signed char kSingoConfigId = 3;

static_assert(offsetof(wySipConnParams, shortValue) == 300, "users know the layout");
static_assert(offsetof(wySipConnParams, firstValue) == 304, "users know the layout");
static_assert(offsetof(wySipConnParams, secondText) == 316, "users know the layout");
static_assert(offsetof(wySipConnParams, thirdText) == 616, "users know the layout");
static_assert(offsetof(wySipConnParams, fourthText) == 766, "users know the layout");
static_assert(sizeof(wySipConnParams) == 868, "users know the layout");
static_assert(offsetof(wyCredentialsStruct, value) == 3 * sizeof(char*), "users know the layout");
static_assert(offsetof(wyCredentialsStruct, fourthString) == 4 * sizeof(char*),
              "users know the layout");
static_assert(sizeof(wyCredentialsStruct) == 9 * sizeof(char*), "users know the layout");

// Makes the compiler keep stores to an object that is about to end. It would leave them out, since
// nothing reads them.
void keepStores(const void* object) { __asm__ volatile("" : : "r"(object) : "memory"); }

}  // namespace

SingoConfig* SingoConfig_SO::Instance() {
  Globals* const globals = Globals::Instance();
  if (!assertHolds(globals != nullptr, kFrameworkSourceFile)) {
    logEvent(kSevere, kModuleFramework, kFrameworkSourceFile, __builtin_LINE(), "Globals is NULL");
    return nullptr;
  }
  if (WySingletonBaseClass* const registered = globals->GetSingObj(kSingoConfigId)) {
    return static_cast<SingoConfig*>(registered);
  }
  auto* const config = new (std::nothrow) SingoConfig;
  if (config != nullptr) {
    globals->RegisterSingObj(kSingoConfigId, config);
  }
  return config;
}

void InitServiceModules() {
  SingoConfig* const config = SingoConfig_SO::Instance();
  if (config == nullptr) {
    logSevere(kSourceFile, "InitServiceModules | SingoConfig is NULL");
    return;
  }
  if (config->Init() != 0) {
    logSevere(kSourceFile, "InitServiceModules | pSingoConfig->Init() Failed");
  }
}

wySipConnParams::wySipConnParams()
    : firstText(),
      shortValue(0),
      firstValue(0),
      secondValue(3),  // not zero, and meant not to be
      thirdValue(0),
      secondText(),
      thirdText(),
      fourthText() {
  logTrace(kRecordSourceFile, "wySipConnParams::wySipConnParams: %x", logArgument(this));
}

wySipConnParams::~wySipConnParams() {
  logTrace(kRecordSourceFile, "wySipConnParams::~wySipConnParams: %x", logArgument(this));
  // The third text is not wiped, on purpose.
  std::memset(firstText, 0, sizeof(firstText));
  std::memset(secondText, 0, sizeof(secondText));
  std::memset(fourthText, 0, sizeof(fourthText));
  keepStores(this);
}

wyCredentialsStruct::wyCredentialsStruct()
    : firstString(nullptr),
      secondString(nullptr),
      thirdString(nullptr),
      value(0),
      fourthString(nullptr),
      fifthString(nullptr),
      sixthString(nullptr),
      seventhString(nullptr),
      eighthString(nullptr) {
  logTrace(kRecordSourceFile, "wyCredentialsStruct::wyCredentialsStruct : %x", logArgument(this));
}

wyCredentialsStruct::~wyCredentialsStruct() {
  logTrace(kRecordSourceFile, "wyCredentialsStruct::~wyCredentialsStruct : %x", logArgument(this));
  releaseBlock(firstString);
  releaseBlock(secondString);
  releaseBlock(thirdString);
  releaseBlock(fourthString);
  releaseBlock(fifthString);
  releaseBlock(sixthString);
  releaseBlock(seventhString);
  releaseBlock(eighthString);
  keepStores(this);
}
