// libraryTest.h - the fixture of every suite: sees what the library logs, reports and allocates.
#ifndef TESTS_SUPPORT_LIBRARY_TEST_H
#define TESTS_SUPPORT_LIBRARY_TEST_H

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "hostControl.h"
#include "wySipString.h"

using Lines = std::vector<std::string>;

// Fails the test when a recorded block or a block of the platform outlives it.
class LibraryTest : public testing::Test {
 protected:
  LibraryTest();
  ~LibraryTest() override;

  // Returns the log lines since the last call, each as `level module source | text`.
  Lines takeLog();

  // Returns those lines of a source and level, or of a higher one, as `level` and text: this
  // beginning left out, a blank in front of a text without it.
  std::string takeTexts(const std::string& source, const std::string& beginning, char level);

  // Returns the sources of the failed assertions since the last call.
  Lines takeAssertions();

  // Runs an operation again and again, the n-th allocation failing, for n = 1, 2, ... until none
  // is left to fail. The operation makes its own objects, checks that a success is a whole one
  // and returns the code; the run without a failure must succeed. Returns the log lines of all
  // runs.
  template <typename Operation>
  Lines sweepAllocations(Operation operation) {
    Lines log;
    for (unsigned long n = 1;; ++n) {
      SCOPED_TRACE("failing allocation " + std::to_string(n));
      const std::size_t before = recorded_.size();
      hostFailAllocation(n);
      const VARN_EXCEPTION_CODES code = operation();
      const bool failed = hostFailAllocation(0) == 0;
      EXPECT_TRUE(failed || code == VARN_OK);
      EXPECT_EQ(before, recorded_.size());
      const Lines lines = takeLog();
      log.insert(log.end(), lines.begin(), lines.end());
      if (!failed || HasFailure()) {
        return log;
      }
    }
  }

  // Does so with an operation that returns a text. Expects these results, the last one where no
  // allocation fails, and these lines among others.
  template <typename Operation>
  void sweepAllocations(const Operation& operation, const Lines& results, const Lines& lines) {
    std::set<std::string> given;
    std::string last;
    const Lines log = sweepAllocations([&] {
      given.insert(last = operation());
      return VARN_OK;
    });
    EXPECT_EQ(results.back(), last);
    EXPECT_EQ(std::set<std::string>(results.begin(), results.end()), given);
    for (const std::string& line : lines) {
      EXPECT_NE(log.end(), std::find(log.begin(), log.end(), line)) << line;
    }
  }

 private:
  Lines log_;
  Lines assertions_;
  std::map<const void*, int> recorded_;
};

// What a process prints that ends without a word; an emulator adds a line of its own.
constexpr const char* kSilence = "^(qemu: [^\n]*\n)?$";

// Returns the line of a failure (level 4), of one for want of memory (level 5) or of a trace
// (level 3) of the library, as takeLog() does.
std::string failureLine(std::string_view source, std::string_view text);
std::string severeLine(std::string_view source, std::string_view text);
std::string traceLine(std::string_view source, std::string_view text);

// Returns what the library's log shows of an address: 32 bits of it, hexadecimal.
std::string addressText(const void* address);

// Returns the two sides of a row `left => right`.
std::pair<std::string, std::string> sidesOf(const std::string& row);

// Returns a copy of a text in a block of just its size, terminator included.
std::unique_ptr<char[]> exactCopy(std::string_view text);

// Returns the content of a string, zero bytes included.
inline std::string content(const SipString& text) { return {text.c_str(), text.length()}; }

// Returns a string of this content, zero bytes included.
inline SipString sipString(std::string_view text) {
  return SipString(text.data(), static_cast<unsigned int>(text.size()));
}

#endif  // TESTS_SUPPORT_LIBRARY_TEST_H
