// libraryTest.h - the fixture of every suite: sees what the library logs, reports and allocates.
#ifndef TESTS_SUPPORT_LIBRARY_TEST_H
#define TESTS_SUPPORT_LIBRARY_TEST_H

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "hostControl.h"
#include "wySipCxx.h"
#include "wySipParam.h"

using Lines = std::vector<std::string>;
using Runs = std::vector<Lines>;

// Fails the test when a recorded block or a block of the platform outlives it.
class LibraryTest : public testing::Test {
 protected:
  LibraryTest();
  ~LibraryTest() override;

  // Returns the log lines since the last call, each as `level module source | text`.
  Lines takeLog();

  // Returns the sources of the failed assertions since the last call.
  Lines takeAssertions();

  // Runs an operation again and again. In run n the n-th allocation fails; the last run has no
  // failure and must succeed. The operation makes its own objects, checks that a success is
  // complete and returns the code, or a text. Returns the log of each run, with the text as its
  // last line; of equal logs in a row only the first.
  template <typename Operation>
  Runs sweepAllocations(const Operation& operation) {
    Runs runs;
    for (unsigned long n = 1;; ++n) {
      SCOPED_TRACE("failing allocation " + std::to_string(n));
      const std::size_t before = recorded_.size();
      hostFailAllocation(n);
      const auto result = operation();
      const bool failed = hostFailAllocation(0) == 0;
      EXPECT_EQ(before, recorded_.size());
      Lines log = takeLog();
      if constexpr (std::is_same_v<decltype(result), const std::string>) {
        log.push_back(result);
      } else {
        EXPECT_TRUE(failed || result == VARN_OK);
      }
      if (runs.empty() || runs.back() != log) {
        runs.push_back(std::move(log));
      }
      if (!failed || HasFailure()) {
        return runs;
      }
    }
  }

 private:
  Lines log_;
  Lines assertions_;
  std::map<const void*, int> recorded_;
};

// The output of a process that ends and prints nothing; an emulator adds a line of its own.
constexpr const char* kSilence = "^(qemu: [^\n]*\n)?$";

// Returns the line of a failure (level 4), of a failure out of memory (level 5) or of a trace
// (level 3) of the library, as takeLog() returns it.
std::string failureLine(std::string_view source, std::string_view text);
std::string severeLine(std::string_view source, std::string_view text);
std::string traceLine(std::string_view source, std::string_view text);

// The lines of an attempt to read a tel URI as a SIP address, and of one to read it as a tel
// address that has failed.
inline const std::string kNoHost =
    traceLine("sip_utility/src/wySipMatch", "SipMatchHost invalid character 0x2b");
inline const std::string kNoSip =
    failureLine("sip_utility/src/wySipAddress", "SipAddress::parseURI couldn't find host");
inline const std::string kNoTelStream = failureLine(
    "sip_utility/src/wyTelAddress", "TelAddress::TelAddress | SipLWSStrStream constructor failed");
inline const std::string kOpaque =
    failureLine("sip_utility/src/wySipHeaderMatch",
                "SipHeaderMatchIHeaderChars::doMatch | Tel Match Failed , Match with Abs URI");
inline const std::string kNoTelObject = failureLine(
    "sip_utility/src/wySipHeaderMatch", "SipHeaderMatchIHeaderChars::doMatch | Malloc failed");

// The line of an assignment to a string that ran out of memory.
inline const std::string kNotAssigned =
    failureLine("sip_utility/src/wySipString", "SipString::operator= | append failed");

// Returns what the library's log shows of an address: 32 bits of it, hexadecimal.
std::string addressText(const void* address);

// Returns the two sides of a row `left => right`.
std::pair<std::string, std::string> sidesOf(const std::string& row);

// Returns a copy of a text in a block of exactly its size, terminator included.
std::unique_ptr<char[]> exactCopy(std::string_view text);

using siputility::toSipString;
using siputility::toStdString;
using siputility::view;

// Returns the parameters of a header, an address or a list, each as `;name` or `;name=value`.
template <typename Owner>
std::string paramTexts(const Owner& owner) {
  std::string text;
  for (const SipParam& param : siputility::paramsOf(owner)) {
    text.append(";").append(view(param.getName()));
    text.append(param.getValue().length() == 0 ? "" : "=").append(view(param.getValue()));
  }
  return text;
}

// Returns the code of an address, which is at most this one. A success has this text, "" if there
// is no memory for it.
template <typename Address>
VARN_EXCEPTION_CODES textCode(Address&& address, std::string_view expected,
                              VARN_EXCEPTION_CODES most = VARN_RESOURCE_FAILURE) {
  if (address.GetLastErrorCode() == VARN_OK) {
    const std::string text = toStdString(address.toString());
    EXPECT_EQ(address.GetLastErrorCode() == VARN_OK ? expected : "", text);
  }
  EXPECT_LE(address.GetLastErrorCode(), most);
  return address.GetLastErrorCode();
}

#endif  // TESTS_SUPPORT_LIBRARY_TEST_H
