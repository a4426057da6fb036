// log.h - the library's side of the module log, the memory log and the assertion reports.
//
// Each call names the source family (kSourceFile of the calling file). The line number is that of
// the call.
#ifndef SIPUTILITY_BASE_LOG_H
#define SIPUTILITY_BASE_LOG_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <utility>

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

// A place in the sources: a family and a line. Callers pass the family's name; the conversion adds
// the line of the call.
struct Source {
  // NOLINTNEXTLINE(google-explicit-constructor): callers pass only the family's name
  Source(const char* family, int lineOfCaller = __builtin_LINE())
      : sourceFile(family), line(lineOfCaller) {}

  const char* sourceFile;
  int line;
};

// One line of the module log.
struct LogLine {
  LogLevel level;
  LogModule module;
  const char* sourceFile;
  int line;
  const char* format;
  uintptr_t a1;
  uintptr_t a2;
};

// Receives each line that its thread logs during its lifetime, except the lines of a platform
// handler that uses the library: see HandlerCall.
class LogListener {
 public:
  LogListener(const LogListener&) = delete;
  LogListener& operator=(const LogListener&) = delete;

  // Returns whether any thread has a listener.
  static bool isAnywhere() { return listeners_.load(std::memory_order_relaxed) != 0; }

 protected:
  LogListener() : outer_(std::exchange(current_, this)) { ++listeners_; }
  virtual ~LogListener() {
    current_ = outer_;
    --listeners_;
  }

 private:
  friend class HandlerCall;

  virtual void hear(const LogLine& line) = 0;

  static inline thread_local LogListener* current_ = nullptr;
  static inline std::atomic<unsigned int> listeners_{0};  // of all threads

  LogListener* outer_;
};

// Exists while the platform's log, memory log or assertion handler runs. The handler may use the
// library and make it log; those lines do not belong to the work that the thread's listener
// follows. The listener is therefore detached during the call.
class HandlerCall {
 public:
  HandlerCall() : listener_(std::exchange(LogListener::current_, nullptr)) {}
  ~HandlerCall() { LogListener::current_ = listener_; }
  HandlerCall(const HandlerCall&) = delete;
  HandlerCall& operator=(const HandlerCall&) = delete;

  // Passes a line to the detached listener, if there is one.
  void forward(const LogLine& line) const {
    if (listener_ != nullptr) {
      listener_->hear(line);
    }
  }

 private:
  LogListener* listener_;
};

// Writes one line to the module log, and to the listener of the thread if it has one.
[[gnu::cold]] void logLine(const LogLine& line);

inline void logEvent(LogLevel level, LogModule module, const char* sourceFile, int line,
                     const char* format, uintptr_t a1 = 0, uintptr_t a2 = 0) {
  if (LogListener::isAnywhere()) {
    logLine({level, module, sourceFile, line, format, a1, a2});
  } else {
    wyLogModuleEventSimple(level, module, sourceFile, line, format, a1, a2, 0);
  }
}

// Logs a failure of the library. The attribute also marks the branches that lead to it as unlikely.
[[gnu::cold]] void logFailure(const char* sourceFile, const char* format, uintptr_t a1 = 0,
                              uintptr_t a2 = 0, int line = __builtin_LINE());

// Logs a trace of the library.
void logTrace(const char* sourceFile, const char* format, uintptr_t a1 = 0, uintptr_t a2 = 0,
              int line = __builtin_LINE());

// Logs a failure of the platform: out of memory, or no registry.
inline void logSevere(const char* sourceFile, const char* format, int line = __builtin_LINE()) {
  logEvent(kSevere, kModuleLibrary, sourceFile, line, format);
}

// Returns a pointer as an argument of a log line; for a %s it points to zero-terminated text.
inline uintptr_t logArgument(const void* pointer) { return reinterpret_cast<uintptr_t>(pointer); }

// The work of the next two functions while a thread listens.
[[gnu::cold]] void recordUnheard(const char* sourceFile, const void* pointer, std::size_t size,
                                 int line);
[[gnu::cold]] void forgetUnheard(const void* pointer);

// Enters a block or object in the memory log after its allocation.
inline void recordBlock(const char* sourceFile, const void* pointer, std::size_t size,
                        int line = __builtin_LINE()) {
  if (LogListener::isAnywhere()) {
    recordUnheard(sourceFile, pointer, size, line);
  } else {
    pzmemlog_add(kMemoryCategory, sourceFile, line, pointer, size);
  }
}

// Removes a block or object from the memory log before it is freed.
inline void forgetBlock(const void* pointer) {
  if (LogListener::isAnywhere()) {
    forgetUnheard(pointer);
  } else {
    pzmemlog_remove(kMemoryCategory, pointer);
  }
}

// Reports a failed assertion at this place to the framework.
[[gnu::cold]] void reportAssertion(Source source);

// Returns whether a precondition holds. Reports one that does not to the framework.
inline bool assertHolds(bool holds, Source source) {
  if (!holds) {
    reportAssertion(source);
  }
  return holds;
}

// Reports each null pointer as a failed assertion and returns whether there was none.
template <typename... Pointers>
bool assertNoneNull(Source source, const Pointers*... pointers) {
  bool none = true;
  ((none = assertHolds(pointers != nullptr, source) && none), ...);
  return none;
}

#endif  // SIPUTILITY_BASE_LOG_H
