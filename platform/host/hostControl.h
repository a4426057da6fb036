// hostControl.h - how a desktop program controls the host platform: logs, counts, failures.
//
// It is for tests and tools; the SIP text library never includes it. Handlers are process-wide and
// run on the thread that logs. Set them while no other thread uses the library. Without a handler
// the host platform prints nothing.
#ifndef HOST_CONTROL_H
#define HOST_CONTROL_H

#include <cstddef>

// One line of the module log, formatted. The pointers live until the handler returns.
struct HostLogLine {
  int level;
  int moduleId;
  const char* sourceFile;
  int line;
  const char* text;
};

// One entry of the memory log. For a removed entry only category and pointer are set.
struct HostMemoryEvent {
  bool added;
  int category;
  const char* sourceFile;
  int line;
  const void* pointer;
  std::size_t size;
};

// One failed assertion. The pointers live until the handler returns.
struct HostAssertion {
  const char* message;
  const char* sourceFile;
  int line;
};

// Sets the handler that receives every later event together with the context; null removes the
// handler.
void hostSetLogHandler(void (*handler)(void* context, const HostLogLine& line), void* context);
void hostSetMemoryHandler(void (*handler)(void* context, const HostMemoryEvent& event),
                          void* context);
void hostSetAssertionHandler(void (*handler)(void* context, const HostAssertion& assertion),
                             void* context);

// Returns the number of blocks that __malloc, __calloc and __strdup have returned and __free has
// not freed.
std::size_t hostLiveBlocks();

// Makes the n-th allocation from now on fail, once: 1 is the next one, 0 makes none fail. Blocks of
// this platform and calls of hostMayAllocate() count as allocations. Returns how many allocations
// were left until the failure of an earlier call; 0 if that failure has happened.
unsigned long hostFailAllocation(unsigned long n);

// Counts one allocation and returns false if it is the one that fails. A program that replaces
// operator new calls it to count and fail those allocations in the same sequence.
bool hostMayAllocate();

// Removes the framework registry of the calling thread, or restores it with its objects. A thread
// starts with a registry.
void hostSetRegistry(bool present);

// Makes each later SingoConfig::Init() return the result; initially it is 0, success.
void hostSetInitResult(int result);

// Returns how often SingoConfig::Init() was called.
unsigned long hostInitCalls();

// Returns how many SingoConfig objects exist.
unsigned long hostLiveConfigs();

#endif  // HOST_CONTROL_H
