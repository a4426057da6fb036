// harness.h - cases: an operation on an input, its result checked once, timed next to a floor.
//
// An operation is called with a sink, to which it hands every piece of its result. Record keeps
// them for the check, Sum only looks at them and is the one that is timed.
#ifndef BENCH_HARNESS_H
#define BENCH_HARNESS_H

#include <benchmark/benchmark.h>

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "wySipString.h"

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
  void text(const char* text, std::size_t length) { record_.append(text, length).append("|"); }

  void number(unsigned long number) { record_.append(std::to_string(number)).append("|"); }

  const std::string& value() const { return record_; }

 private:
  std::string record_;
};

struct Case {
  std::size_t bytes;   // of input
  std::string floor;   // the case to compare with
  std::string wanted;  // what Record has to get
  long allocations;    // that must be made, -1 for any number
  std::function<std::string()> record;
  std::function<void(unsigned long times)> run;
};

// The cases by name, `BM_Family_Operation/input`.
class Cases {
 public:
  static constexpr const char* kFloor = "BM_Floor_Parse/a";

  template <typename Operation>
  void add(const std::string& name, std::size_t bytes, std::string wanted, Operation operation,
           std::string floor = kFloor, long allocations = -1) {
    const auto record = [operation] {
      Record sink;
      operation(sink);
      return sink.value();
    };
    const auto run = [operation](unsigned long times) {
      Sum sink;
      for (unsigned long i = 0; i < times; ++i) {
        operation(sink);
        benchmark::ClobberMemory();
      }
      benchmark::DoNotOptimize(sink.value());
    };
    cases_.insert_or_assign(
        name, Case{bytes, std::move(floor), std::move(wanted), allocations, record, run});
  }

  // Checks each case's result and allocations; ends the program, and says why, when one is wrong.
  void check() const;

  // Registers each case with Google Benchmark.
  void registerAll() const;

  // Runs one case again and again, for an instruction counter that collects inside benchOnce()
  // alone. Returns false for no such case.
  bool runOnce(const std::string& name, unsigned long times) const;

 private:
  const Case& floorOf(const Case& c) const { return cases_.at(c.floor); }

  std::map<std::string, Case> cases_;
};

// Returns how many blocks malloc, calloc and realloc have given to anyone in this process.
unsigned long allocationsSoFar();

inline SipString sipString(std::string_view text) {
  return SipString(text.data(), static_cast<unsigned int>(text.size()));
}

template <typename Sink>
void touch(Sink& sink, const SipString& text) {
  sink.text(text.c_str(), text.length());
}

// The families, each in a file of its own.
void addFloorCases(Cases& cases);
void addStringCases(Cases& cases);
void addMatchCases(Cases& cases);
void addAddressCases(Cases& cases);
void addTelCases(Cases& cases);
void addHeaderCases(Cases& cases);
void addBodyCases(Cases& cases);
void addUtilsCases(Cases& cases);
void addCommonCases(Cases& cases);
void addGrowthCases(Cases& cases);

#endif  // BENCH_HARNESS_H
