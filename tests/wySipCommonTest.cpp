// wySipCommonTest.cpp - quoted URIs and feature tags, hexadecimal texts, sorted lists, IMEIs.
#include "wySipCommon.h"

#include "imsdpl.h"
#include "libraryTest.h"
#include "naive.h"

namespace {

using std::string_literals::operator""s;

constexpr const char* kSource = "sip_utility/src/wySipCommon";

std::string fails(const std::string& text) { return failureLine(kSource, text); }

const std::string kNoScheme = fails("wyQuoteUserInfo | scheme is not present");
const std::string kMalformed = fails("wyQuoteUserInfo | Uri is malformed");
const std::string kImproper = fails("wyQuoteUserInfo | user-info part is not proper");

// A function that reads a text and hands out another one. It returns 1 or 0.
using Function = int (*)(char* text, char** out);

int quoteTag(char* text, char** out) {
  return wyQuoteFeatureTagValue(text, exactCopy("tag").get(), out);
}

int handOut(char* block, char** out) {
  *out = block == nullptr ? *out : block;
  return block == nullptr ? 0 : 1;
}

int format(char* text, char** out) { return handOut(SipFormatIMEInumber(text), out); }

int sort(char* text, char** out) {
  return handOut(wySortCommaSepStrings(&text) == 0 ? nullptr : text, out);
}

int read(char* text, char** out) {
  unsigned short count = 0;
  unsigned char* bytes = strToH8(text, &count);
  EXPECT_EQ((std::string(text).size() + 1) / 2, count);
  return handOut(reinterpret_cast<char*>(bytes), out);
}

// Returns the text that a function hands out; "-" if it returns 0, which leaves the out-parameter.
std::string resultOf(Function function, const std::string& text) {
  const auto exact = exactCopy(text);
  char untouched = '#';
  char* out = &untouched;
  const int result = function(exact.get(), &out);
  EXPECT_EQ(out == &untouched ? 0 : 1, result);
  const std::string given = out == &untouched ? "-" : out;
  if (out != exact.get()) {
    EXPECT_EQ(text, exact.get());
    __free(out == &untouched ? nullptr : out);
  }
  return given;
}

class SipCommonTest : public LibraryTest {
 protected:
  // Each row is `text => result`; nothing is logged.
  void expectResults(Function function, const Lines& rows) {
    for (const std::string& row : rows) {
      const auto [text, result] = sidesOf(row);
      EXPECT_EQ(result, resultOf(function, text)) << row;
      EXPECT_EQ(Lines{}, takeLog()) << row;
    }
  }

  // Each text has no result, and this log.
  void expectRefusals(Function function, const Lines& texts, const Lines& log) {
    for (const std::string& text : texts) {
      EXPECT_EQ("-", resultOf(function, text)) << text;
      EXPECT_EQ(log, takeLog()) << text;
    }
  }
};

TEST_F(SipCommonTest, QuotesTheUserInfoOfAUriAgain) {
  expectResults(
      wyQuoteUserInfo,
      {"sip:a:b@host.test => sip:a%3Ab@host.test", "sip:a%3Ab@host.test => sip:a%3Ab@host.test",
       "sip::a@h:5060;p=\"%41:\" => sip:%3Aa@h:5060;p=\"%41:\"",
       "sip:%61%3a%3A\xE9 ;?@ => sip:a%3A%3A%E9%20;?@", "sip:%@h => sip:%25@h",
       "sip:a%00%0@h => sip:a%2500%250@h", "sip:%2541@h => sip:%2541@h",
       "<sip:a@b>;x=@y => <sip:a%40b%3E;x=@y", "sip:sip:a@h => sip:sip%3Aa@h",
       "\"sip:x@y\" <sip:a:b@h> => \"sip:x@y\" <sip:a%3Ab@h>", "x\"sip:a:b@h => x\"sip:a%3Ab@h"});
  expectRefusals(wyQuoteUserInfo, {"sip:host.test", "a@sip:h", "\"sip:a@b\" <sip:h>"}, {});
  expectRefusals(wyQuoteUserInfo, {"", "sip", "SIP:a@h", "sips:a@h", "\"", "\"sip:a\"@h"},
                 {kNoScheme});
  expectRefusals(wyQuoteUserInfo, {"\"sip:a@h"}, {kMalformed});
  expectRefusals(wyQuoteUserInfo, {"sip:@h"},
                 {fails("wyQuoteUserInfo | user-info is not present")});
  expectRefusals(wyQuoteUserInfo, {"sip:a:@h", "sip::@h", "sip:a::@h", "sip:%3A@h"}, {kImproper});
}

TEST_F(SipCommonTest, QuotesEachUriOfAListThatCanBe) {
  expectResults(
      wyQuoteUserInfoInSipUri,
      {"sip:a:b@h => sip:a%3Ab@h", "sip:a:b@h, <sip:c:d@h>;x => sip:a%3Ab@h, <sip:c%3Ad@h>;x",
       "\"x,y\" <sip:a:b@h>,sip:h => \"x,y\" <sip:a%3Ab@h>,sip:h",
       "\"x,y\" <sip:a:b@h>,sip:c:d@h => \"x,y\" <sip:a%3Ab@h>,sip:c%3Ad@h",
       "sip:a\",b:c@h,sip:d@h => sip:a%22,b%3Ac%40h,sip%3Ad@h"});  // a single element
  EXPECT_EQ(",sip:a:@h,sip:a%3Ab@h,", resultOf(wyQuoteUserInfoInSipUri, ",sip:a:@h,sip:a:b@h,"));
  EXPECT_EQ((Lines{kNoScheme, kImproper, kNoScheme}), takeLog());
  expectRefusals(wyQuoteUserInfoInSipUri, {"sip:h"}, {});
  expectRefusals(wyQuoteUserInfoInSipUri, {"sip:a:@h"}, {kImproper});
  expectRefusals(wyQuoteUserInfoInSipUri, {"\"sip:a@h,sip:b@h"}, {kMalformed});
  expectRefusals(wyQuoteUserInfoInSipUri, {"", ",", "a@h,SIP:b@h"},
                 {fails("wyQuoteUserInfoInSipUri | scheme is not present")});
}

TEST_F(SipCommonTest, QuotesTheColonsOfOneFeatureTagValue) {
  expectResults(quoteTag, {"a:b;tag=\"x:y\";c=\":\" => a:b;tag=\"x%3Ay\";c=\":\"",
                           "tag=\"::\"tag=\":\" => tag=\"%3A%3A\"tag=\":\"", "tag=\"\" => tag=\"\"",
                           "tag::x:\" => tag::x%3A\""});  // whatever the two bytes are
  expectRefusals(quoteTag, {"tag", "tag=", "tag\"", "tag=\"", "tag=\"x:y", "TAG=\"x\"", ""},
                 {fails("wyQuoteFeatureTagValue | reference tag not found")});
}

TEST_F(SipCommonTest, WritesTheFirst15CharactersOfAnImeiInThreeGroups) {
  expectResults(format, {"123456789012345 => 12345678-901234-5",
                         "abcdefgh-;\xE9 l\nox => abcdefgh--;\xE9 l\n-o",
                         std::string(65536 + 15, '1') + " => 11111111-111111-1"});
  const std::string tooShort =
      "wySipCommon::FormatIMEInumber - IMEI must be at least 15 digits, not adding, ";
  expectRefusals(format, {"12345678901234", std::string(65536 + 14, '1')},
                 {fails(tooShort + "14")});
  expectRefusals(format, {""}, {fails(tooShort + "0")});
}

TEST_F(SipCommonTest, RefusesNull) {
  char text[] = "t";
  char* out = text;
  char* none = nullptr;
  unsigned short count = 7;
  const auto check = [this](int results, std::size_t lines, const std::string& log) {
    EXPECT_EQ(0, results);
    EXPECT_EQ(Lines(lines, fails(log)), takeLog());
  };
  const std::string null = " | input parameter NULL";
  check(wyQuoteUserInfo(nullptr, &out) + wyQuoteUserInfo(text, nullptr), 2,
        "wyQuoteUserInfo" + null);
  check(wyQuoteUserInfoInSipUri(nullptr, &out) + wyQuoteUserInfoInSipUri(text, nullptr), 2,
        "wyQuoteUserInfoInSipUri" + null);
  check(wyQuoteFeatureTagValue(nullptr, text, &out) + wyQuoteFeatureTagValue(text, nullptr, &out) +
            wyQuoteFeatureTagValue(text, text, nullptr),
        3, "wyQuoteFeatureTagValue" + null);
  check(wySortCommaSepStrings(nullptr) + wySortCommaSepStrings(&none), 2,
        "wySortCommaSepStrings | Invalid input parameter");
  check(format(nullptr, &out), 1, "wySipCommon::FormatIMEInumber - strIMEInumber NULL");
  EXPECT_TRUE(strToH8(nullptr, &count) == nullptr && strToH8(text, nullptr) == nullptr);
  EXPECT_TRUE(count == 7 && takeLog().empty());
}

TEST_F(SipCommonTest, ReadsAnyTextAsPairsOfHexadecimalDigits) {
  Lines cases = {" => ",       "0a1 => \x0A\x1A", "fF => \xFF",
                 "Zz => \x33", "12: => \x12\x12", "-a\xE9\x80 => \n\n"};
  for (int c = 1; c < 256; ++c) {  // after 35, which any other character repeats
    const std::string digit(1, static_cast<char>(c));
    const bool counts = naive::consistsOf(digit, naive::alnumAnd(""));
    const int high = counts ? std::stoi(digit, nullptr, 36) : 3;
    const int low = counts ? std::stoi(digit, nullptr, 36) : 5;
    cases.push_back("35" + digit + digit + " => 5" + static_cast<char>(high << 4 | low));
  }
  for (const std::string& row : cases) {
    SCOPED_TRACE(testing::PrintToString(row));
    const auto [hex, bytes] = sidesOf(row);
    unsigned short count = 7;
    char* block = reinterpret_cast<char*>(strToH8(exactCopy(hex).get(), &count));
    ASSERT_EQ(bytes.size(), count);
    // After the bytes, the block has the same room once more.
    EXPECT_EQ(bytes + std::string(count, '\0'), std::string(block, 2U * count));
    const std::string line = "SIG wyDplCalloc strToH8 pArrStr: " + addressText(block);
    EXPECT_EQ(Lines{traceLine(kSource, line)}, takeLog());
    __free(block);
  }
  unsigned short count = 7;
  __free(strToH8(std::string(2 * 65536 + 1, '1').data(), &count));
  EXPECT_EQ(1, count);
}

TEST_F(SipCommonTest, OrdersAListInPlaceByOnePass) {
  const auto check = [](const std::string& list) {
    EXPECT_EQ(naive::onePass(list), resultOf(sort, list));
  };
  EXPECT_EQ("b;a;c", resultOf(sort, "c;a;b"));
  check("\"c;b\";a");  // quotes do not protect a ";"
  naive::forEachText({";", "a", "b", "\xE9"}, 7, check);
  for (const std::size_t elements : {255U, 256U, 257U, 300U, 513U}) {
    std::string list = "1000";
    for (std::size_t i = 1; i < elements; ++i) {
      list += ';' + std::to_string(1000 - i);
    }
    check(list);
  }
  EXPECT_EQ(Lines{}, takeLog());
}

TEST_F(SipCommonTest, ReportsOutOfMemoryAndChangesNothing) {
  const auto none = [](const char* text) { return severeLine(kSource, text); };
  const auto check = [&](Function function, const char* text, const Runs& runs) {
    EXPECT_EQ(runs, sweepAllocations([&] { return resultOf(function, text); })) << text;
  };
  const std::string noUserInfo = none("wyQuoteUserInfo | Malloc Failed");
  for (const Function function : {wyQuoteUserInfo, wyQuoteUserInfoInSipUri}) {
    check(function, "sip:a:b@h", {{noUserInfo, "-"}, {"sip:a%3Ab@h"}});
  }
  const std::string noList = none("wyQuoteUserInfoInSipUri | Malloc Failed");
  check(wyQuoteUserInfoInSipUri, "sip:a:b@h,h",
        {{kNoScheme, noList, "-"},
         {noUserInfo, kNoScheme, "sip:a:b@h,h"},  // one that cannot be rewritten stays
         {kNoScheme, noList, "-"},
         {kNoScheme, "sip:a%3Ab@h,h"}});
  check(quoteTag, "tag=\":\"",
        {{none("wyQuoteFeatureTagValue | Malloc Failed"), "-"}, {"tag=\"%3A\""}});
  check(sort, "c;a;b",
        {{none("wySortCommaSepStrings | Malloc Failed"), "-"},
         {none("wySortCommaSepStrings | Strdup Failed"), "-"},
         {"b;a;c"}});
  check(format, "123456789012345",
        {{fails("wySipCommon::FormatIMEInumber - Memory allocation failed"), "-"},
         {"12345678-901234-5"}});
  const Runs runs = sweepAllocations([&] { return resultOf(read, "41"); });
  EXPECT_EQ((Lines{none("strToH8 | wyDplCalloc failure"), "-"}), runs.front());
  EXPECT_TRUE(runs.size() == 2 && runs[1].size() == 2);
  EXPECT_EQ("A", runs[1].back());  // after the trace of its address
}

}  // namespace
