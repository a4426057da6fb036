// progress.cpp - a progress bar for work that takes longer than a second.
#include "input/progress.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <string>

namespace {

constexpr std::size_t kWidth = 40;
constexpr auto kPatience = std::chrono::seconds(1);
constexpr auto kInterval = std::chrono::milliseconds(100);

}  // namespace

Progress::Progress(std::size_t total)
    : total_(std::max<std::size_t>(total, 1)),
      wanted_(total != 0 && isatty(STDERR_FILENO) != 0),
      drawn_(false),
      next_(std::chrono::steady_clock::now() + kPatience) {}

Progress::~Progress() {
  if (drawn_) {
    std::cerr << '\r' << std::string(kWidth + 7, ' ') << '\r' << std::flush;
  }
}

void Progress::at(std::size_t done) {
  const auto now = std::chrono::steady_clock::now();
  if (!wanted_ || now < next_) {
    return;
  }
  next_ = now + kInterval;
  drawn_ = true;
  const double share = static_cast<double>(std::min(done, total_)) / static_cast<double>(total_);
  const auto filled = static_cast<std::size_t>(share * kWidth);
  std::cerr << "\r[" << std::string(filled, '#') << std::string(kWidth - filled, ' ') << "] "
            << static_cast<int>(share * 100) << '%' << std::flush;
}
