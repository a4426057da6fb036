// imsvarn.cpp - the framework library for desktop hosts: assertions, singletons, zlib.
#include "imsvarn.h"

#include <atomic>
#include <climits>
#include <memory>

#include "hostControl.h"
#include "hostRegistry.h"
#include "imsvarnZlib.h"

namespace {

void (*assertionHandler)(void*, const HostAssertion&) = nullptr;
void* assertionContext = nullptr;

std::atomic<int> initResult{0};
std::atomic<unsigned long> initCalls{0};
std::atomic<unsigned long> liveConfigs{0};

// Every Globals of this platform is a HostGlobals.
struct HostGlobals : Globals {
  std::unique_ptr<WySingletonBaseClass> objects[UCHAR_MAX + 1];  // by the id as an unsigned byte
  bool present = true;
};

thread_local HostGlobals registry;

[[maybe_unused]] const bool installed = [] {
  hostInstallRegistry(
      []() -> void* { return registry.present ? static_cast<Globals*>(&registry) : nullptr; });
  return true;
}();

std::unique_ptr<WySingletonBaseClass>& slotOf(Globals* globals, signed char id) {
  return static_cast<HostGlobals*>(globals)->objects[static_cast<unsigned char>(id)];
}

}  // namespace

void hostSetAssertionHandler(void (*handler)(void*, const HostAssertion&), void* context) {
  assertionHandler = handler;
  assertionContext = context;
}

void hostSetRegistry(bool present) { registry.present = present; }

void hostSetInitResult(int result) { initResult = result; }

unsigned long hostInitCalls() { return initCalls; }

unsigned long hostLiveConfigs() { return liveConfigs; }

void MafErrorHandler::AssertString(const char* message, const char* sourceFile, int line) {
  if (assertionHandler != nullptr) {
    assertionHandler(assertionContext, {message, sourceFile, line});
  }
}

WySingletonBaseClass::WySingletonBaseClass() = default;
WySingletonBaseClass::~WySingletonBaseClass() = default;

WySingletonBaseClass* Globals::GetSingObj(signed char id) { return slotOf(this, id).get(); }

void Globals::RegisterSingObj(signed char id, WySingletonBaseClass* object) {
  slotOf(this, id).reset(object);
}

SingoConfig::SingoConfig() { ++liveConfigs; }

SingoConfig::~SingoConfig() { --liveConfigs; }

int SingoConfig::Init() {
  ++initCalls;
  return initResult;
}

// The blocks of zlib do not count as blocks of the platform, but each set-up counts as one
// allocation, which can be made to fail.
int varnDeflateInit2_(z_streamp stream, int level, int method, int windowBits, int memLevel,
                      int strategy, const char* version, int streamSize) {
  return hostMayAllocate() ? deflateInit2_(stream, level, method, windowBits, memLevel, strategy,
                                           version, streamSize)
                           : Z_MEM_ERROR;
}

int varnDeflate(z_streamp stream, int flush) { return deflate(stream, flush); }

int varnDeflateEnd(z_streamp stream) { return deflateEnd(stream); }

int varnInflateInit2_(z_streamp stream, int windowBits, const char* version, int streamSize) {
  return hostMayAllocate() ? inflateInit2_(stream, windowBits, version, streamSize) : Z_MEM_ERROR;
}

int varnInflate(z_streamp stream, int flush) { return inflate(stream, flush); }

int varnInflateEnd(z_streamp stream) { return inflateEnd(stream); }
