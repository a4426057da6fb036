// interrupt.cpp - SIGINT and SIGTERM end the reading of what has no end.
#include "input/interrupt.h"

#include <iterator>

namespace {

volatile std::sig_atomic_t interrupted = 0;

}  // namespace

Interrupt::Interrupt() : before_{} {
  struct sigaction remember = {};
  remember.sa_handler = [](int) { interrupted = 1; };
  remember.sa_flags = static_cast<int>(SA_RESETHAND);
  for (std::size_t i = 0; i < std::size(kSignals); ++i) {
    sigaction(kSignals[i], nullptr, &before_[i]);
    if (before_[i].sa_handler != SIG_IGN) {
      sigaction(kSignals[i], &remember, nullptr);
    }
  }
}

Interrupt::~Interrupt() {
  for (std::size_t i = 0; i < std::size(kSignals); ++i) {
    sigaction(kSignals[i], &before_[i], nullptr);
  }
}

bool Interrupt::requested() { return interrupted != 0; }
