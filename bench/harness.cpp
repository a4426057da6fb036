// harness.cpp - the check of the cases, and their timing in short turns with the floor.
#include "harness.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

constexpr double kTurnSeconds = 50e-6;
constexpr double kCaseSeconds = 20e-3;

double secondsOf(const Case& c, unsigned long times) {
  const auto start = std::chrono::steady_clock::now();
  c.run(times);
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

unsigned long allocationsOf(const Case& c) {
  const unsigned long before = allocationsSoFar();
  c.run(1);
  return allocationsSoFar() - before;
}

// Returns how often a case runs within one turn.
unsigned long timesPerTurn(const Case& c) {
  secondsOf(c, 1);
  return static_cast<unsigned long>(1 + kTurnSeconds / std::max(secondsOf(c, 1), 20e-9));
}

double median(std::vector<double>& values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

// Runs the floor, the case and the floor again in each iteration, so that whatever slows the
// machine slows both.
void measure(benchmark::State& state, const Case& c, const Case& floor) {
  const unsigned long times = timesPerTurn(c);
  const unsigned long floorTimes = timesPerTurn(floor);
  std::vector<double> seconds;
  std::vector<double> floorSeconds;
  std::vector<double> multiples;
  while (state.KeepRunning()) {
    const double before = secondsOf(floor, floorTimes);
    const double own = secondsOf(c, times) / static_cast<double>(times);
    const double after = secondsOf(floor, floorTimes);
    state.SetIterationTime(own);
    seconds.push_back(own);
    floorSeconds.push_back((before + after) / 2 / static_cast<double>(floorTimes));
    multiples.push_back(own / floorSeconds.back());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(c.bytes));
  state.counters["bytes"] = static_cast<double>(c.bytes);
  state.counters["ns"] = median(seconds) * 1e9;
  state.counters["floor_ns"] = median(floorSeconds) * 1e9;
  state.counters["multiple"] = median(multiples);
  state.counters["allocations"] = static_cast<double>(allocationsOf(c));
}

bool agree(const std::string& name, const std::string& got, const std::string& wanted) {
  if (got == wanted) {
    return true;
  }
  static_cast<void>(std::fprintf(stderr, "%s is wrong:\ngot    %.2000s\nwanted %.2000s\n",
                                 name.c_str(), got.c_str(), wanted.c_str()));
  return false;
}

}  // namespace

// By a name that an instruction counter finds.
extern "C" __attribute__((noinline)) void benchOnce(const Case& c, unsigned long times) {
  c.run(times);
}

bool Cases::check() const {
  bool right = true;
  for (const auto& [name, c] : cases_) {
    const Record record = c.record();
    right &= agree(name, c.wanted[0] == '#' ? record.tally() : record.value(), c.wanted);
    c.run(1);
    const auto made = std::to_string(allocationsOf(c)) + " allocations";
    right &=
        c.allocations == -1 || agree(name, made, std::to_string(c.allocations) + " allocations");
  }
  return right;
}

void Cases::registerAll() const {
  for (const auto& entry : cases_) {
    const Case& c = entry.second;
    const Case& floor = floorOf(c);
    const double turn = std::max(secondsOf(c, 1), kTurnSeconds);
    const auto iterations = static_cast<benchmark::IterationCount>(3 + kCaseSeconds / turn);
    benchmark::RegisterBenchmark(
        entry.first.c_str(), [&c, &floor](benchmark::State& state) { measure(state, c, floor); })
        ->Iterations(iterations)
        ->UseManualTime();
  }
}

bool Cases::runOnce(const std::string& name, unsigned long times) const {
  const auto found = cases_.find(name);
  if (found == cases_.end()) {
    return false;
  }
  found->second.run(1);
  benchOnce(found->second, times);
  return true;
}
