// wySipUtilsTest.cpp - Via values, URI equality, hosts, tokens, q-values and decimal numbers.
#include "wySipUtils.h"

#include <algorithm>
#include <csignal>

#include "imsdpl.h"
#include "libraryTest.h"

namespace {

using std::string_literals::operator""s;

constexpr const char* kSource = "sip_utility/src/wySipUtils";

std::string fails(const std::string& text) { return failureLine(kSource, text); }

// Returns the URI of the address or Via field that is made from a Via value, "-" for none.
template <typename Object>
std::string textOf(Object* (*parse)(const char*), const std::string& via) {
  const siputility::HandedOut<Object> object(parse(exactCopy(via).get()));
  if (object == nullptr) {
    return "-";
  }
  const unsigned long order = hostFailAllocation(0);
  std::string text = toStdString(object->toString());
  text.erase(0, text.compare(0, 5, "Via: ") == 0 ? 5 : 0);
  hostFailAllocation(order);
  return text;
}

int compared(const std::string& remote, const std::string& local) {
  return CompareSIPURI(exactCopy(remote).get(), exactCopy(local).get());
}

class SipUtilsTest : public LibraryTest {
 protected:
  // Returns the own lines from a level up, each as `level` and text. This beginning of a text is
  // left out; a text without it follows a blank.
  std::string takeTexts(const std::string& beginning, char level = '3') {
    const std::string head = std::string(" 6054 ") + kSource + " | ";
    std::string texts;
    for (const std::string& line : takeLog()) {
      if (line[0] >= level && line.compare(1, head.size(), head) == 0) {
        const std::string text = line.substr(1 + head.size());
        const bool begins = text.compare(0, beginning.size(), beginning) == 0;
        texts += line[0] + (begins ? text.substr(beginning.size()) : ' ' + text) + '\n';
      }
    }
    return texts;
  }

  // Each row is `via => uri`. The log is the URI, or this one.
  template <typename Object>
  void expectUris(Object* (*parse)(const char*), const char* beginning, const Lines& rows,
                  const std::string& log = {}) {
    for (const std::string& row : rows) {
      const auto [via, uri] = sidesOf(row);
      EXPECT_EQ(uri, textOf(parse, via));
      EXPECT_EQ(log.empty() ? '3' + uri + " \n" : log, takeTexts(beginning)) << via;
    }
  }
};

using SipUtilsDeathTest = LibraryTest;

TEST_F(SipUtilsTest, ReducesAViaToTheUriOfItsSentBy) {
  const std::string h32(32, 'h');
  const std::string h243(243, 'h');
  const char* trace = "ParseViaHeaderToAdress: ";
  const std::string bad = "4 wySipUtils::VIA header parsing failure\n";
  expectUris(ParseViaHeaderToAdress, trace,
             {"SIP/2.0/UDP 10.0.0.1:5060;branch=z9hG4bK1 => sip:10.0.0.1:5060",
              "SIP/2.0/UDP TCP.test;p=UDP => sip:TCP.test", "S / T C P h . test => sip:h.test",
              "UDP a:@h => sip:a:@h", "SIP/2.0/UDP " + h243 + " => sip:" + h243,
              "SIP/2.0/UDP " + std::string(288, 'h') + " => sip:" + h32});
  expectUris(ParseViaHeaderToAdress, trace, {"UDP a:b@h => sip:a%3Ab@h"}, "3sip:a:b@h \n");
  expectUris(ParseViaHeaderToAdress, trace, {"UDP h \"  => sip:h"}, "3sip:h   \n");
  expectUris(ParseViaHeaderToAdress, trace, {"UDP \" h => -"}, "3sip:  h \n" + bad);
  expectUris(ParseViaHeaderToAdress, trace, {"SIP/2.0/TCP UDP;p => -"}, "3sip: \n" + bad);
  trace = "ParseViaHeaderToHeader: ";
  expectUris(ParseViaHeaderToHeader, trace,
             {"SIP/2.0/UDP 10.0.0.1:5060;branch=z9hG4bK1 => sip:10.0.0.1:5060;branch=z9hG4bK1",
              "S / T C P h ; x = \"a  b\" => sip:h;x=\"a  b\"",
              "UDP => sip:", "UDP a:b@h => sip:a:b@h", "SIP/2.0/UDP " + h243 + " => sip:" + h243,
              "SIP/2.0/UDP " + std::string(288, 'h') + " => sip:" + h32});
  expectUris(ParseViaHeaderToHeader, trace, {"UDP h \"  => -"},
             "3sip:h\"  \n4 wySipUtils::ParseViaHeaderToHeader VIA header parsing failure\n");
}

TEST_F(SipUtilsTest, FindsNoUriInAViaWithoutTextOrTransport) {
  const Lines empty = {" => -", std::string(256, 'x') + " => -"};
  const Lines none = {"  => -", "SIP/2.0/TLS h => -", std::string(254, 'x') + "UDP => -",
                      "\"U D P => -"};
  const char* head = "wySipUtils::ParseViaHeaderToAdress";
  expectUris(ParseViaHeaderToAdress, head, empty, "4  empty VIA header\n");
  expectUris(ParseViaHeaderToAdress, head, none, "4 | No or unknown Transport found\n");
  EXPECT_EQ(nullptr, ParseViaHeaderToAdress(nullptr));
  EXPECT_EQ("4 | pViaheader is null\n", takeTexts(head));
  head = "wySipUtils::ParseViaHeaderToHeader";
  expectUris(ParseViaHeaderToHeader, head, empty, "4::  empty VIA header\n");
  expectUris(ParseViaHeaderToHeader, head, none, "4 :: No or unknown Transport found\n");
  EXPECT_EQ(nullptr, ParseViaHeaderToHeader(nullptr));
  EXPECT_EQ("4 | n_pViaheader is null\n", takeTexts(head));
}

TEST_F(SipUtilsTest, ReturnsTheTypeOfAHost) {
  const auto check = [this](int type, const char* name, const Lines& rows) {
    for (const std::string& row : rows) {
      const auto [host, bare] = sidesOf(row);
      EXPECT_EQ(type, GetHostType(exactCopy(host).get())) << row;
      EXPECT_EQ(name + bare + ' ' + host + '\n', takeTexts("GetHostType | "));
    }
  };
  check(1, "3IPv4 = ", {"10.0.0.1 => 10.0.0.1", "[10.0.0.1] => 10.0.0.1"});
  check(2, "3IPv6 = ",
        {"::1 => ::1", "[::1] => ::1", "[::1 => ::", "[::1\xE9 => ::1", "::10.0.0.1 => ::10.0.0.1",
         "1::2: => 1::2:"});
  check(0, "3UNKNOWN IP Type ",
        {"::1] => ::1]", "[ => ", "[] => ", "10.0.0.1. => 10.0.0.1.", "h.test => h.test",
         "[::1]:5 => ::1]:"});
  EXPECT_EQ(0, GetHostType(nullptr) + GetHostType(""));
  EXPECT_EQ(Lines(2, fails("GetHostType | Invalid Arg")), takeLog());
}

TEST_F(SipUtilsTest, ComparesUserPortAndHostOfUris) {
  const std::string noRemote = "4Decode Error RemotStr=3 LocalStr=0\n";
  const std::string noLocal = "4Decode Error RemotStr=0 LocalStr=3\n";
  const auto check = [this](int result, const std::string& log, const Lines& rows) {
    for (const std::string& row : rows) {
      const auto [remote, local] = sidesOf(row);
      EXPECT_EQ(result, compared(remote, local)) << row;
      EXPECT_EQ(log, takeTexts("SipUtils::CompareSIPURI | ", '4')) << row;
    }
  };
  const std::string h = "sip:a@host" + std::string(65530, 'h');  // 4 bytes and 65530
  check(1, "",
        {"sip:a@h => B <tel:a@h;x>;y=\"\\\"\"", "sip:a@[::1]:1 => sip:a@[0:0:0:0:0:0:0:1]:00001",
         "sip:a@[ => sip:a@[", h + "hhhhhx => " + h + "hhhhhy", h + "hhhhhx => sip:a@host"});
  check(0, "4FQDN MisMatch\n",
        {"sip:a@h.test => sip:a@H.test", "sip:a@10.0.0.1 => sip:a@h.test",
         h + "hhhhhhx => sip:a@host"});
  check(0, "4IP Addr Comparision failed\n",
        {"sip:a@10.0.0.1 => sip:a@10.0.0.2", "sip:a@10.0.0.1 => sip:a@[::10.0.0.1]",
         "sip:a@[1::2:] => sip:a@[1::2:]"});
  check(0, "4PortMisMatch Remote = 0 Local = 5060\n", {"sip:a@h => sip:a@h:5060"});
  check(0, "4PortMisMatch Remote = 65535 Local = 1\n", {"sip:a@h:65535 => sip:a@i:1"});
  check(0, "4UserName MisMatch \n",
        {"sip:A@h:1 => sip:a@h:2", "sip:a:p@h => sip:a@h", "sip:h => sip:h", "sip:h => sip:a@h"});
  check(0, "4LocalHost Empty\n", {h + "hh => " + h + "hh"});
  check(1, noRemote, {"sip:a@h;@ => sip:a@h"});
  check(1, noLocal, {"sip:a@h => sip:a@h:x"});
  check(0, noRemote + "4LocalHost Empty\n", {"sip:a@ => sip:a@h"});
  check(0, noLocal + "4LocalHost Empty\n", {"sip:a@h => sip:a@"});
  check(0, noRemote + "4UserName MisMatch \n", {" => sip:h"});
  compared("sip:a@10.0.0.1", "sip:a@[::1]");
  EXPECT_EQ(
      "3IPv6 = ::1 ::1\n3IPv4 = 10.0.0.1 10.0.0.1\n"
      "4 SipUtils::CompareSIPURI | IP Addr Comparision failed\n",
      takeTexts("GetHostType | "));
  EXPECT_EQ(0, CompareSIPURI(nullptr, "sip:a@h") + CompareSIPURI("sip:a@h", nullptr));
  EXPECT_EQ(2U, takeLog().size());
  EXPECT_EQ(0, CompareSIPURI(nullptr, nullptr));
  EXPECT_EQ("4Invalid Args RemoteAddr=0 LocalAddr=0\n", takeTexts("SipUtils::CompareSIPURI | "));
}

TEST_F(SipUtilsTest, SplitsATextAtADelimiter) {
  const char* const cases[][3] = {
      {"a.b.c", ".", "b.c"}, {"a", "a", ""},        {"a--", "--", ""},
      {"aab", "ab", ""},     {"ab", "", ""},        {"", "", ""},
      {"", "a", nullptr},    {"a-", "--", nullptr}, {"ab", "abc", nullptr}};
  for (const auto& [joint, delimiter, after] : cases) {
    const auto text = exactCopy(joint);
    char* rest = nullptr;
    char* head = NSIP_strtok(text.get(), exactCopy(delimiter).get(), &rest);
    EXPECT_EQ(after == nullptr ? nullptr : text.get(), head) << joint;
    EXPECT_EQ(std::string(joint).substr(0, std::string(joint).find(delimiter)), text.get());
    EXPECT_STREQ(after, rest);
  }
  EXPECT_EQ(Lines{}, takeLog());
  char text[] = "a";
  char* rest = text;
  EXPECT_TRUE(NSIP_strtok(nullptr, "a", &rest) == nullptr &&
              NSIP_strtok(text, nullptr, &rest) == nullptr &&
              NSIP_strtok(text, "a", nullptr) == nullptr);
  EXPECT_EQ(Lines(3, fails("NSIP_strtok | One or more NULL input parameters")), takeLog());
}

TEST_F(SipUtilsTest, TrimsBlanksAndNothingElse) {
  const std::pair<std::string, std::string> cases[] = {
      {"", ""}, {"   ", "   "}, {"  a b  ", "  a b\0\0"s}, {" \ta\n", " \ta\n"}, {"a ", "a\0"s}};
  for (const auto& [before, after] : cases) {
    const auto text = exactCopy(before);
    const std::size_t leading = std::min(before.find_first_not_of(' '), before.size());
    EXPECT_EQ(text.get() + leading, RemoveSpaces(text.get())) << before;
    EXPECT_EQ(after, std::string(text.get(), before.size()));
  }
}

TEST_F(SipUtilsTest, FindsTheHighestOfDifferentQValues) {
  const auto check = [this](int index, const std::string& log,
                            const std::vector<std::vector<const char*>>& rows) {
    for (auto row : rows) {
      const auto count = static_cast<unsigned char>(row.size());
      EXPECT_EQ(index, ValidateAndGetMaxQValue(const_cast<char**>(row.data()), count));
      EXPECT_EQ(log, takeTexts("SipUtils:ValidateAndGetMaxQValue | "))
          << testing::PrintToString(row);
    }
  };
  const std::string bare = "3NO Fractional part in q value\n";
  const std::string integer = "4ILLEGAL! Integer part in q value MUST be ";
  const std::string decimals = "4ILLEGAL! Decimal part in q value MUST have ";
  check(0, "3Return MaxValue Index is 0\n", {{"0."}, {"0.1", nullptr}});
  check(1, "3Return MaxValue Index is 1\n",
        {{"0.5", "1.0", "0.7"}, {"0.05", "0.5", "0.499"}, {"0.5x", "0.006", "0.x"}});
  check(1, bare + bare + "3Return MaxValue Index is 1\n", {{"0", "1"}});
  check(255, "4ILLEGAL! Two or more q values are same\n3Return MaxValue Index is -1\n",
        {{"0.5", "0.50"}, {"0.1", "0.", nullptr}, {"0.1", nullptr, "x"}, {"1.", "0.9", "1.000"}});
  check(255, "", {{nullptr, "0.5"}});
  check(255, "4Sign present in q value\n", {{"0.1", "+0.5"}, {"0.5-"}});
  check(255, bare + "4NO Integer part in q value\n", {{""}});
  check(255, "4NO Integer part in q value\n", {{".1234"}});
  check(255, integer + "a single digit\n", {{"00.1234"}});
  check(255, integer + "0/1\n", {{"x.1234"}, {"2."}});
  check(255, decimals + "atmost 3 digits\n", {{"0.1234"}, {"1.0000"}});
  check(255, decimals + "only 0's when integer part is 1\n", {{"1.5"}, {"1.00x"}});
  char* none = nullptr;
  EXPECT_EQ(510, ValidateAndGetMaxQValue(nullptr, 1) + ValidateAndGetMaxQValue(&none, 0));
  EXPECT_EQ("4Input paramter NULL or Arr Count is 0\n4Input paramter NULL or Arr Count is 0\n",
            takeTexts("SipUtils:ValidateAndGetMaxQValue | "));
}

TEST_F(SipUtilsTest, FindsAValueAmongTheFirst20) {
  char strings[][3] = {"x", "Ab", "y", "a\xC9"};
  std::vector<char*> many(20, strings[0]);
  many[19] = strings[1];
  char* few[] = {strings[3], nullptr, strings[2]};
  const auto present = [](char** values, const Lines& texts) {
    std::string found;  // in this case and in any
    for (const std::string& text : texts) {
      found += std::to_string(wySipCheckIfHeaderValuePresent(values, exactCopy(text).get(), 0));
      found += std::to_string(wySipCheckIfHeaderValuePresent(values, exactCopy(text).get(), -1));
    }
    return found;
  };
  EXPECT_EQ("1101000000", present(many.data(), {"Ab", "aB", "A", "Abc", ""}));
  EXPECT_EQ("010000", present(few, {"A\xC9", "a\xE9", "y"}));
  EXPECT_EQ("00", present(nullptr, {"y"}));
  EXPECT_EQ(Lines{}, takeLog());
  EXPECT_EQ(0, wySipCheckIfHeaderValuePresent(few, nullptr, 0));
  EXPECT_EQ(Lines{fails("SipUtils::wySipCheckIfHeaderValuePresent| Invalid Input")}, takeLog());
}

TEST_F(SipUtilsTest, ReadsDecimalNumbersByTheir8BitLength) {
  const auto check = [this](unsigned int value, const std::string& log, const Lines& texts) {
    for (const std::string& text : texts) {
      EXPECT_EQ(value, wyAtoi32(exactCopy(text).get())) << text;
      EXPECT_EQ(log, takeTexts("wyAtoi32 | ")) << text;
    }
  };
  check(0, "", {"0", std::string(256, 'x')});
  check(7, "", {"7", std::string(254, '0') + '7', '7' + std::string(256, 'x')});
  check(5, "", {std::string(43, '0') + '5' + std::string(256, '9')});
  check(4294967295U, "", {"4294967295"});
  check(0, "4Input Param NULL\n", {""});
  check(0, "4Conversion Failed\n", {"12a", "-1", "99999999999\xB2", std::string(254, '9') + ' '});
  EXPECT_EQ(0U, wyAtoi32(nullptr));
  EXPECT_EQ("4Input Param NULL\n", takeTexts("wyAtoi32 | "));
}

TEST_F(SipUtilsDeathTest, NumberBeyond32BitsEndsTheProcess) {
  EXPECT_EXIT(wyAtoi32("4294967296"), testing::KilledBySignal(SIGABRT), kSilence);
}

TEST_F(SipUtilsTest, ReportsOutOfMemory) {
  const auto none = [](const std::string& text) { return severeLine(kSource, text); };
  const auto of = [](const char* family, const char* text) {
    return failureLine(std::string("sip_utility/src/") + family, text);
  };
  const std::string noAddress =
      of("wySipAddress", "SipAddress::SipAddress | SipStrStream constructor failed");
  std::string head = "wySipUtils::ParseViaHeaderToAdress | ";
  std::string uri = traceLine(kSource, "ParseViaHeaderToAdress: sip:a:b@h ");
  std::string bad = fails("wySipUtils::VIA header parsing failure");
  EXPECT_EQ(
      (Runs{{none(head + "Strdup Failed"), "-"},
            {none(head + "wyDplMalloc failed"), "-"},
            {fails(head + "malloc failed"), "-"},
            {uri, fails(head + "append failed"), "-"},
            {uri, severeLine("sip_utility/src/wySipCommon", "wyQuoteUserInfo | Malloc Failed"),
             "sip:a:b@h"},
            {uri, fails(head + "append failed"), "-"},
            {uri, bad, "-"},
            {uri, noAddress, bad, "-"},
            {uri, "sip:a%3Ab@h"}}),
      sweepAllocations([] { return textOf(ParseViaHeaderToAdress, "UDP a:b@h"); }));
  head = "wySipUtils::ParseViaHeaderToHeader";
  uri = traceLine(kSource, "ParseViaHeaderToHeader: sip:h;p ");
  bad = fails(head + " VIA header parsing failure");
  EXPECT_EQ((Runs{{none(head + " | Strdup Failed"), "-"},
                  {none(head + "::wyDplMalloc failed"), "-"},
                  {fails(head + " :: malloc failed"), "-"},
                  {uri, fails("wySipUtils::strValue.append: failure append"), "-"},
                  {uri, of("wySipHeader", "SipHeader::setName | name was NULL or empty"), bad, "-"},
                  {uri, bad, "-"},
                  {uri, of("wySipHeader", "SipHeader::setName | assignment failed."), bad, "-"},
                  {uri, "sip:h;p"}}),
            sweepAllocations([] { return textOf(ParseViaHeaderToHeader, "UDP h;p"); }));
  const auto type = [](const std::string& host) {
    return traceLine(kSource, "GetHostType | IPv6 = " + host);
  };
  const std::string noType =
      traceLine(kSource, "wyDplMalloc: Fatal Error Malloc failed - UNKNOWN_IP_TYPE");
  EXPECT_EQ((Runs{{noType, "0"}, {type("::1 [::1]"), "2"}}),
            sweepAllocations([] { return std::to_string(GetHostType("[::1]")); }));
  const auto differ = [](const char* text) {
    return fails(std::string("SipUtils::CompareSIPURI | ") + text);
  };
  EXPECT_EQ(
      (Runs{{differ("LocalHost Calloc failed "), "0"},
            {differ("RemoteHost Calloc failed "), "0"},
            {type("::01 ::01"), type("::1 ::1"), "1"}}),
      sweepAllocations([] { return std::to_string(compared("sip:a@[::1]", "sip:a@[::01]")); }));
  head = "SipUtils:ValidateAndGetMaxQValue | ";
  char qvalue[] = "0.5";
  char* qvalues[] = {qvalue};
  EXPECT_EQ((Runs{{none(head + "Failure in Malloc"), "255"},
                  {none(head + "Failure in Strdup"), "255"},
                  {traceLine(kSource, head + "Return MaxValue Index is 0"), "0"}}),
            sweepAllocations([&] { return std::to_string(ValidateAndGetMaxQValue(qvalues, 1)); }));
}

}  // namespace
