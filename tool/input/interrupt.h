// interrupt.h - SIGINT and SIGTERM end the reading of what has no end.
#ifndef TOOL_INTERRUPT_H
#define TOOL_INTERRUPT_H

#include <csignal>

// While one lives, the first SIGINT and the first SIGTERM are only kept in mind; the second ends
// the program. A signal that is ignored stays so.
class Interrupt {
 public:
  Interrupt();
  ~Interrupt();
  Interrupt(const Interrupt&) = delete;
  Interrupt& operator=(const Interrupt&) = delete;

  // Returns whether a signal came.
  static bool requested();

 private:
  static constexpr int kSignals[] = {SIGINT, SIGTERM};

  struct sigaction before_[2];
};

#endif  // TOOL_INTERRUPT_H
