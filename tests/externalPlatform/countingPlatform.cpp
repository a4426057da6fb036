// countingPlatform.cpp - the least platform that the library runs on; it counts what it sees.
#include "countingPlatform.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "imsdpl.h"
#include "imsvarn.h"
#include "imsvarnZlib.h"
#include "imsxml.h"

SeenByPlatform& seenByPlatform() {
  static SeenByPlatform seen;
  return seen;
}

void* __malloc(size_t size) { return std::malloc(size); }

void* __calloc(size_t count, size_t size) { return std::calloc(count, size); }

void __free(void* block) { std::free(block); }

char* __strdup(const char* cstr) { return strdup(cstr); }

int wyDplInetPton(void* /*record*/, const char* /*cstr*/) { return 0; }

void wyDplStrURIQuote(char* out, unsigned char* in, unsigned int /*outSize*/) {
  std::strcpy(out, reinterpret_cast<char*>(in));
}

void wyDplStrURIDequote(char* /*text*/) {}

void* wyDplTlsGet() { return nullptr; }

int __atoi(const char* cstr) { return std::atoi(cstr); }

char* __itoaL(long value, char* text, int /*base*/) {
  std::sprintf(text, "%ld", value);
  return text;
}

void wyLogModuleEventSimple(int /*level*/, int /*moduleId*/, const char* /*sourceFile*/,
                            int /*line*/, const char* format, uintptr_t /*a1*/, uintptr_t /*a2*/,
                            uintptr_t /*a3*/) {
  seenByPlatform().logFormats.emplace_back(format);
}

void pzmemlog_add(int /*category*/, const char* /*sourceFile*/, int /*line*/,
                  const void* /*pointer*/, size_t /*size*/) {
  ++seenByPlatform().allocations;
  ++seenByPlatform().liveBlocks;
}

void pzmemlog_remove(int /*category*/, const void* /*pointer*/) { --seenByPlatform().liveBlocks; }

void MafErrorHandler::AssertString(const char* /*message*/, const char* /*sourceFile*/,
                                   int /*line*/) {
  ++seenByPlatform().assertions;
}

WySingletonBaseClass::WySingletonBaseClass() = default;
WySingletonBaseClass::~WySingletonBaseClass() = default;
WySingletonBaseClass* Globals::GetSingObj(signed char /*id*/) { return nullptr; }
void Globals::RegisterSingObj(signed char /*id*/, WySingletonBaseClass* /*object*/) {}
SingoConfig::SingoConfig() = default;
SingoConfig::~SingoConfig() = default;
int SingoConfig::Init() { return 1; }

int varnDeflateInit2_(z_streamp /*stream*/, int /*level*/, int /*method*/, int /*windowBits*/,
                      int /*memLevel*/, int /*strategy*/, const char* /*version*/,
                      int /*streamSize*/) {
  return Z_MEM_ERROR;
}
int varnDeflate(z_streamp /*stream*/, int /*flush*/) { return Z_STREAM_ERROR; }
int varnDeflateEnd(z_streamp /*stream*/) { return Z_OK; }
int varnInflateInit2_(z_streamp /*stream*/, int /*windowBits*/, const char* /*version*/,
                      int /*streamSize*/) {
  return Z_MEM_ERROR;
}
int varnInflate(z_streamp /*stream*/, int /*flush*/) { return Z_STREAM_ERROR; }
int varnInflateEnd(z_streamp /*stream*/) { return Z_OK; }

char* XmlCommon::RemoveQuotes(char* text) { return text; }
