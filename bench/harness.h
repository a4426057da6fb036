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

  // Returns texts and numbers, a bar behind each.
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

struct Case {
  std::size_t bytes;   // of input
  std::string floor;   // the case to compare with
  std::string wanted;  // what Record has to get: its value, or its tally
  long allocations;    // that must be made, -1 for any number
  std::function<Record()> record;
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
      return sink;
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

  // Checks each case's result and allocations. Returns whether all are right, says which are not.
  bool check() const;

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

// Hands over a text, and one that a caller of the library frees.
template <typename Sink>
void touch(Sink& sink, std::string_view text) {
  sink.text(text.data(), text.size());
}

// Texts as functions take them that change them, or say so.
inline unsigned char* bytesOf(const std::string& text) {
  return reinterpret_cast<unsigned char*>(const_cast<char*>(text.data()));
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
