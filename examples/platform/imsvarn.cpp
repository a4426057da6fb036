// imsvarn.cpp - a minimal framework library: assertions on standard error, singletons, zlib.
#include "imsvarn.h"

#include <cstdio>

#include "imsvarnZlib.h"
#include "registry.h"

namespace {

// Globals has no fields. Its address is that of the registry, which wyDplTlsGet() returned.
Registry* registryOf(Globals* globals) { return reinterpret_cast<Registry*>(globals); }

}  // namespace

void MafErrorHandler::AssertString(const char* message, const char* sourceFile, int line) {
  std::fprintf(stderr, "%s %s:%d\n", message, sourceFile, line);
}

WySingletonBaseClass::WySingletonBaseClass() = default;
WySingletonBaseClass::~WySingletonBaseClass() = default;

WySingletonBaseClass* Globals::GetSingObj(signed char id) {
  return static_cast<WySingletonBaseClass*>(
      registryOf(this)->objects[static_cast<unsigned char>(id)]);
}

void Globals::RegisterSingObj(signed char id, WySingletonBaseClass* object) {
  registryOf(this)->objects[static_cast<unsigned char>(id)] = object;
  registryOf(this)->deleteObject = [](void* each) {
    delete static_cast<WySingletonBaseClass*>(each);
  };
}

SingoConfig::SingoConfig() = default;
SingoConfig::~SingoConfig() = default;
int SingoConfig::Init() { return 0; }

int varnDeflateInit2_(z_streamp stream, int level, int method, int windowBits, int memLevel,
                      int strategy, const char* version, int streamSize) {
  return deflateInit2_(stream, level, method, windowBits, memLevel, strategy, version, streamSize);
}
int varnDeflate(z_streamp stream, int flush) { return deflate(stream, flush); }
int varnDeflateEnd(z_streamp stream) { return deflateEnd(stream); }

int varnInflateInit2_(z_streamp stream, int windowBits, const char* version, int streamSize) {
  return inflateInit2_(stream, windowBits, version, streamSize);
}
int varnInflate(z_streamp stream, int flush) { return inflate(stream, flush); }
int varnInflateEnd(z_streamp stream) { return inflateEnd(stream); }
