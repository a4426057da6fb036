// harness.h - cases: an operation on an input, its result checked, then timed by Google Benchmark.
//
// An operation is called with a sink and hands every piece of its result to it. Record keeps the
// pieces for the check. Sum only looks at them and is the sink that is timed.
#ifndef BENCH_HARNESS_H
#define BENCH_HARNESS_H

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "wySipCxx.h"
#include "wySipString.h"

using siputility::toSipString;

class Sum {
 public:
  void text(const char* text, std::size_t length) {
    const auto byteAt = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    value_ += length == 0 ? 0 : length + byteAt(0) + byteAt(length - 1);
  }

  void number(unsigned long number) { value_ += number; }

  std::size_t value() const { return value_; }

 private:
  std::size_t value_ = 0;
};

class Record {
 public:
  void text(const char* text, std::size_t length) {
    record_.append(text, length).append("|");
    ++texts_;
    bytes_ += length;
  }

  void number(unsigned long number) {
    record_.append(std::to_string(number)).append("|");
    numbers_ += number;
  }

  // Returns texts and numbers, a bar after each.
  const std::string& value() const { return record_; }

  // Returns the number of texts, their bytes and the sum of the numbers, "#2 8 0".
  std::string tally() const { return tallyOf(texts_, bytes_, numbers_); }

  static std::string tallyOf(std::size_t texts, std::size_t bytes, std::size_t numbers) {
    return '#' + std::to_string(texts) + ' ' + std::to_string(bytes) + ' ' +
           std::to_string(numbers);
  }

 private:
  std::string record_;
  std::size_t texts_ = 0;
  std::size_t bytes_ = 0;
  std::size_t numbers_ = 0;
};

// Ends the program unless the record has this value or, for one that begins with "#", this tally.
void requireResult(const std::string& name, const Record& record, const std::string& wanted);

// Returns how many blocks malloc, calloc and realloc have given to anyone in this process.
unsigned long allocationsSoFar();

// A function of its own, for a profiler that counts only while it runs.
template <typename Operation>
__attribute__((noinline)) void timedOperation(const Operation& operation, Sum& sink) {
  operation(sink);
}

// Checks the operation on an input of this many bytes, counts its allocations and times it.
template <typename Operation>
void measure(benchmark::State& state, const std::string& name, std::size_t bytes,
             const std::string& wanted, const Operation& operation) {
  Record record;
  operation(record);
  requireResult(name, record, wanted);
  Sum sink;
  const unsigned long before = allocationsSoFar();
  operation(sink);
  const unsigned long allocations = allocationsSoFar() - before;
  while (state.KeepRunning()) {
    timedOperation(operation, sink);
    benchmark::ClobberMemory();
  }
  benchmark::DoNotOptimize(sink.value());
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
  state.counters["allocations"] = static_cast<double>(allocations);
}

// Adds a case, `BM_Family_Operation/input`.
template <typename Operation>
void addCase(const std::string& name, std::size_t bytes, const std::string& wanted,
             const Operation& operation) {
  benchmark::RegisterBenchmark(name.c_str(),
                               [name, bytes, wanted, operation](benchmark::State& state) {
                                 measure(state, name, bytes, wanted, operation);
                               });
}

// Hands over a text.
template <typename Sink>
void touch(Sink& sink, std::string_view text) {
  sink.text(text.data(), text.size());
}

template <typename Sink>
void touch(Sink& sink, const SipString& text) {
  sink.text(text.c_str(), text.length());
}

// Returns a text in the type of functions that change it, or whose signatures say so.
inline unsigned char* bytesOf(const std::string& text) {
  return reinterpret_cast<unsigned char*>(const_cast<char*>(text.data()));
}

// The families, each in a file of its own.
void addFloorCases();
void addStringCases();
void addMatchCases();
void addAddressCases();
void addTelCases();
void addHeaderCases();
void addBodyCases();
void addUtilsCases();
void addCommonCases();
void addGrowthCases();

#endif  // BENCH_HARNESS_H
