// countingPlatform.cpp - the least platform that the library runs on; it counts what it sees.
#include "countingPlatform.h"

#include <cstdio>
#include <cstdlib>

#include "imsdpl.h"
#include "imsvarn.h"

SeenByPlatform& seenByPlatform() {
  static SeenByPlatform seen;
  return seen;
}

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
