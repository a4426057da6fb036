// log.cpp - the library's side of the module log, the memory log and the assertion reports.
#include "log.h"

#include "imsvarn.h"

void logEvent(LogLevel level, LogModule module, const char* sourceFile, int line,
              const char* format, uintptr_t a1, uintptr_t a2) {
  if (LogTape::recording_ != nullptr) {
    LogTape::recording_->add({level, module, sourceFile, line, format, a1, a2});
  }
  wyLogModuleEventSimple(level, module, sourceFile, line, format, a1, a2, 0);
}

void logFailure(const char* sourceFile, const char* format, uintptr_t a1, uintptr_t a2, int line) {
  logEvent(kFailure, kModuleLibrary, sourceFile, line, format, a1, a2);
}

void logTrace(const char* sourceFile, const char* format, uintptr_t a1, uintptr_t a2, int line) {
  logEvent(kTrace, kModuleLibrary, sourceFile, line, format, a1, a2);
}

void LogTape::replay() const {
  for (std::size_t i = 0; i < count_; ++i) {
    const Line& each = lines_[i];
    logEvent(each.level, each.module, each.sourceFile, each.line, each.format, each.a1, each.a2);
  }
}

void reportAssertion(const char* sourceFile, int line) {
  MafErrorHandler::AssertString("ASSERT Failure:", sourceFile, line);
}
