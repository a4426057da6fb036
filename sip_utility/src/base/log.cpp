// log.cpp - the library's side of the module log, the memory log and the assertion reports.
#include "base/log.h"

#include "imsvarn.h"

void logLine(const LogLine& line) {
  const HandlerCall call;
  call.tell(line);
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
