// log.h - the library's side of the module log, the memory log and the assertion reports.
//
// Each call names the source family (kSourceFile of the calling file); the line is the caller's.
#ifndef SIPUTILITY_INTERNAL_LOG_H
#define SIPUTILITY_INTERNAL_LOG_H

#include <cstddef>
#include <cstdint>

#include "imsdpl.h"

enum LogLevel {
  kTrace = 3,    // a trace, or a grammar rule that did not match
  kFailure = 4,  // bad input, failed parse, refused change
  kSevere = 5,   // an allocation failed in a free function or a body part, or the start-up did
};

enum LogModule {
  kModuleCopyGuard = 6052,
  kModuleFramework = 6053,
  kModuleLibrary = 6054,
  kModuleInflate = 6062,
  kModuleDeflate = 6068,
};

constexpr int kMemoryCategory = 2;

// Keeps the lines that the thread logs while the tape records, to log them again: an attempt
// that would end the same way need not be made twice to be reported twice. Of an attempt with
// more lines than it holds the tape keeps the first ones and the last two, the failure among
// them. One records at a time.
class LogTape {
 public:
  LogTape() = default;
  LogTape(const LogTape&) = delete;
  LogTape& operator=(const LogTape&) = delete;

  // Begins and ends recording. The texts of format, source and arguments live as long as the
  // tape.
  void record() { recording_ = this; }
  void stop() { recording_ = nullptr; }

  // Logs the lines again.
  void replay() const;

 private:
  friend void logEvent(LogLevel level, LogModule module, const char* sourceFile, int line,
                       const char* format, uintptr_t a1, uintptr_t a2);

  struct Line {
    LogLevel level;
    LogModule module;
    const char* sourceFile;
    int line;
    const char* format;
    uintptr_t a1;
    uintptr_t a2;
  };

  void add(const Line& line) {
    if (count_ == kCapacity) {
      lines_[kCapacity - 2] = lines_[kCapacity - 1];
      --count_;
    }
    lines_[count_++] = line;
  }

  static inline thread_local LogTape* recording_ = nullptr;

  static constexpr std::size_t kCapacity = 16;
  std::size_t count_ = 0;
  Line lines_[kCapacity];  // the first count_ of them
};

// Writes one line to the module log.
void logEvent(LogLevel level, LogModule module, const char* sourceFile, int line,
              const char* format, uintptr_t a1 = 0, uintptr_t a2 = 0);

// Logs a failure of the library. Cold: so is the code that leads there.
[[gnu::cold]] void logFailure(const char* sourceFile, const char* format, uintptr_t a1 = 0,
                              uintptr_t a2 = 0, int line = __builtin_LINE());

// Logs a trace of the library.
void logTrace(const char* sourceFile, const char* format, uintptr_t a1 = 0, uintptr_t a2 = 0,
              int line = __builtin_LINE());

// Logs a failure of the platform below: no memory, no registry.
inline void logSevere(const char* sourceFile, const char* format, int line = __builtin_LINE()) {
  logEvent(kSevere, kModuleLibrary, sourceFile, line, format);
}

// Returns a pointer as an argument of a log line; for a %s it points to zero-terminated text.
inline uintptr_t logArgument(const void* pointer) { return reinterpret_cast<uintptr_t>(pointer); }

// Records a block or object after its allocation.
inline void recordBlock(const char* sourceFile, const void* pointer, std::size_t size,
                        int line = __builtin_LINE()) {
  pzmemlog_add(kMemoryCategory, sourceFile, line, pointer, size);
}

// Takes a recorded block or object off the record, before it is freed.
inline void forgetBlock(const void* pointer) { pzmemlog_remove(kMemoryCategory, pointer); }

// Reports a failed assertion to the framework.
[[gnu::cold]] void reportAssertion(const char* sourceFile, int line);

// Returns whether a precondition holds and reports it to the framework when it does not.
inline bool assertHolds(bool holds, const char* sourceFile, int line = __builtin_LINE()) {
  if (!holds) {
    reportAssertion(sourceFile, line);
  }
  return holds;
}

// Reports each null pointer as a failed assertion and returns whether there was none.
template <typename... Pointers>
bool assertNoneNull(const char* sourceFile, const Pointers*... pointers) {
  bool none = true;
  ((none = assertHolds(pointers != nullptr, sourceFile) && none), ...);
  return none;
}

#endif  // SIPUTILITY_INTERNAL_LOG_H
