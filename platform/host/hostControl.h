// hostControl.h - what a desktop program may ask of the host platform: logs, counts, failures.
//
// For tests and tools; the SIP text library never includes it. Handlers are process-wide and
// run on the thread that logs; set them while no other thread uses the library. Without a
// handler the host platform is silent.
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

// One entry of the memory log. An entry that is removed carries category and pointer only.
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

// Each sets the handler that gets every later event together with the given context; null
// takes the handler away.
void hostSetLogHandler(void (*handler)(void* context, const HostLogLine& line), void* context);
void hostSetMemoryHandler(void (*handler)(void* context, const HostMemoryEvent& event),
                          void* context);
void hostSetAssertionHandler(void (*handler)(void* context, const HostAssertion& assertion),
                             void* context);

// Returns the number of blocks that __malloc, __calloc and __strdup gave and __free has not had.
std::size_t hostLiveBlocks();

// Makes the allocation number n from now on fail, once; 1 is the next one, 0 makes none fail.
// Counted are the blocks of this platform and every question to hostMayAllocate(). Returns how
// many more allocations an earlier order would have waited for; 0 when its failure has happened.
unsigned long hostFailAllocation(unsigned long n);

// Counts one allocation and returns false when it is the one to fail. For a program that
// replaces operator new and wants its failures in the same sequence.
bool hostMayAllocate();

// Takes the calling thread's framework registry away, its objects stay in it, or gives it back. A
// thread begins with one.
void hostSetRegistry(bool present);

// Makes each later SingoConfig::Init() return the result; at first it is 0, success.
void hostSetInitResult(int result);

// Returns how often SingoConfig::Init() was called, and how many SingoConfig objects there are.
unsigned long hostInitCalls();
unsigned long hostLiveConfigs();

#endif  // HOST_CONTROL_H
