// progress.h - a progress bar for work that takes longer than a second.
#ifndef TOOL_PROGRESS_H
#define TOOL_PROGRESS_H

#include <chrono>
#include <cstddef>

// Drawn on standard error, only on a terminal, and erased at the end.
class Progress {
 public:
  // A total of 0 is not known: nothing is drawn.
  explicit Progress(std::size_t total);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Says how much of the total is done.
  void at(std::size_t done);

 private:
  std::size_t total_;
  bool wanted_;
  bool drawn_;
  std::chrono::steady_clock::time_point next_;
};

#endif  // TOOL_PROGRESS_H
