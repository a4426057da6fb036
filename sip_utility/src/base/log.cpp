// log.cpp - the library's side of the module log, the memory log and the assertion reports.
#include "base/log.h"

#include "imsvarn.h"

void logLine(const LogLine& line) {
  const HandlerCall call;
  call.forward(line);
  wyLogModuleEventSimple(line.level, line.module, line.sourceFile, line.line, line.format, line.a1,
                         line.a2, 0);
}

void logFailure(const char* sourceFile, const char* format, uintptr_t a1, uintptr_t a2, int line) {
  logEvent(kFailure, kModuleLibrary, sourceFile, line, format, a1, a2);
}

void logTrace(const char* sourceFile, const char* format, uintptr_t a1, uintptr_t a2, int line) {
  logEvent(kTrace, kModuleLibrary, sourceFile, line, format, a1, a2);
}

void reportAssertion(Source source) {
  const HandlerCall call;
  MafErrorHandler::AssertString("ASSERT Failure:", source.sourceFile, source.line);
}

void recordUnheard(const char* sourceFile, const void* pointer, std::size_t size, int line) {
  const HandlerCall call;
  pzmemlog_add(kMemoryCategory, sourceFile, line, pointer, size);
}

void forgetUnheard(const void* pointer) {
  const HandlerCall call;
  pzmemlog_remove(kMemoryCategory, pointer);
}
