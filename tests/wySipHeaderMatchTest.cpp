// wySipHeaderMatchTest.cpp - how much of a header's text is its value.
#include "wySipHeaderMatch.h"

#include <algorithm>
#include <cstring>

#include "libraryTest.h"
#include "naive.h"
#include "wyTelAddress.h"

namespace {

constexpr const char* kSource = "sip_utility/src/wySipHeaderMatch";

using SipHeaderMatchTest = LibraryTest;

TEST_F(SipHeaderMatchTest, EndsAValueAtItsParametersOrItsFirstFault) {
  const auto bad = [](const std::string& byte) {
    return traceLine(kSource, "SipHeaderMatchIHeaderChars::doMatch - bad character 0x" + byte);
  };
  const auto quoted = [](const std::string& fault) {
    return traceLine("sip_utility/src/wySipMatch", "SipMatchQuotedString::doMatch - " + fault);
  };
  const std::pair<std::string, Lines> cases[] = {
      {"text/plain| ; charset=x", {}},
      {"^a b\r\n\t c| \t", {}},
      {"a,b;^c:%\\|\r\n", {}},
      {"", {}},
      {" a", {}},
      {"\"a;b\" c\"<> \"|;d", {}},
      {"a|\"b c", {quoted("end of string without end quote")}},
      {"a>b", {bad("3e")}},
      {"a\x7F", {bad("7f")}},
      {std::string("a\0", 2), {bad("00")}},
      {"a| b\x80", {bad("80")}},  // the runs before it count
      {"<urn:x:y>|;p=1", {}},
      {"<sip:a@b;c>,|;<sip:b>", {}},
      {"a <sip:b>,<sip:c>\t<tel:d.e>|;x", {}},
  };
  SipHeaderMatchValue rule(WY_SIP_HEADER_TYPE_NON_AUTH);
  for (const auto& [row, lines] : cases) {
    SCOPED_TRACE(row);
    const naive::Marked expected = naive::marked(row);
    for (const std::string read : {"", "\"<;"}) {
      SipStrStream stream(toSipString(read + expected.text));
      stream.discard(static_cast<unsigned int>(read.size()));
      EXPECT_EQ(expected.count, rule.match(stream, expected.start));
      Lines log = takeLog();
      log.erase(std::remove_if(log.begin(), log.end(),
                               [](auto& line) { return line.find("Match") == line.npos; }),
                log.end());  // what addresses say
      EXPECT_EQ(lines, log);
    }
  }
  const SipStrStream digest("Digest realm=\"r\"");
  EXPECT_EQ(6U, SipHeaderMatchValue(WY_SIP_HEADER_TYPE_AUTH).match(digest, 0));
  for (const unsigned int type : {0U, 3U, 4U, 0xFFFFFFFFU}) {
    SipHeaderMatchValue other(static_cast<WY_SIP_SIPHEADER_TYPE>(type));
    EXPECT_EQ(0U, other.match(digest, 0));
  }
  EXPECT_EQ(Lines{}, takeAssertions());
}

TEST_F(SipHeaderMatchTest, EndsOrRefusesARunAtEachByteOutsideIt) {
  for (int c = 0; c < 256; ++c) {
    const std::string text = std::string("a") + static_cast<char>(c) + 'b';
    const bool bad = c == '>' || c > 0x7E || (c < 0x20 && c != '\t' && c != '\r' && c != '\n');
    const bool end = c != 0 && std::strchr("\t\r\n ;\"<", c) != nullptr;
    const unsigned int count = bad ? 0 : end ? 1 : 3;
    EXPECT_EQ(count, naive::countOf<SipHeaderMatchIHeaderChars>(text)) << c;
    char hex[8];
    std::snprintf(hex, sizeof hex, "0x%02x", static_cast<unsigned int>(c));
    const Lines log = takeLog();
    EXPECT_EQ(bad, log.size() == 1 &&
                       log[0].find("bad character " + std::string(hex)) != std::string::npos);
  }
}

TEST_F(SipHeaderMatchTest, TakesAnOpaqueUriOnly) {
  const std::pair<const char*, unsigned int> cases[] = {
      {"urn:x/y?%41>", 11}, {"abc://d", 0}, {"a:", 0}, {"a", 0}, {"1:b", 0}, {"a:<", 0}, {"", 0}};
  for (const auto& [text, count] : cases) {
    EXPECT_EQ(count, naive::countOf<SipHeaderMatchAbsoluteURI>(text)) << text;
  }
}

TEST_F(SipHeaderMatchTest, CountsATelUriAsItIsWrittenFromTheStreamsPosition) {
  const struct {
    const char* text;
    unsigned int offset;
    unsigned int count;
    std::size_t refusals;
  } cases[] = {
      {"<tel:+1>;p", 0, 8, 0},
      {"<tel:+1;b=2;a>x", 0, 14, 0},          // ends the run
      {"\"B\" <tel:+1>;p", 0, 12, 0},         // a display name first
      {"x,<tel:+1>;p", 0, 10, 1},             // no tel URI from the start, an opaque one
      {"x,<tel:+1>;p", 2, 8, 1},              // the offset does not move the start
      {"tel:+1<tel:+123456>", 0, 14, 0},      // counts the first, shorter than the second
      {"tel:+1234<tel:1> ", 0, 20, 0},        // longer: past the end
      {"<tel:+><tel:+?>,<tel:+>", 0, 23, 3},  // as opaque URIs
      {"<tel:+12> <tel:+1>  ", 0, 19, 0},     // the first again, for each bracket
      {"a<tel:+ >", 0, 1, 1},
      {"a<sip:>", 0, 1, 0},  // SIP is never opaque
      {"a<sips:+>", 0, 1, 0},
      {"a<SIP:+>b", 0, 9, 0},
      {"<x:+", 0, 0, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(c.count, naive::countOf<SipNonAuthHeaderMatchValue>(c.text, c.offset));
    const Lines log = takeLog();
    EXPECT_EQ(c.refusals, static_cast<std::size_t>(std::count(log.begin(), log.end(), kOpaque)));
    const bool past = c.offset + c.count > std::string_view(c.text).size();
    EXPECT_EQ(past ? Lines(4, "sip_utility/src/wySipMatch") : Lines{}, takeAssertions());
  }
}

TEST_F(SipHeaderMatchTest, LogsOneSetOfLinesForEachBracket) {
  const Lines one = {
      kNoHost, kNoSip,
      traceLine("sip_utility/src/wyTelAddressMatch",
                "TelAddressMatchGlobalPhoneNumber: No phonedigit found"),
      failureLine("sip_utility/src/wyTelAddress",
                  "TelAddress::parseTelNameAddr parseTelephoneURI no valid phonenumber"),
      kOpaque};
  Lines all;
  std::string text;
  for (int i = 0; i < 3; ++i) {
    all.insert(all.end(), one.begin(), one.end());
    text += "<tel:+>";
  }
  EXPECT_EQ(text.size(), naive::countOf<SipNonAuthHeaderMatchValue>(text));
  EXPECT_EQ(all, takeLog());
}

// Uses the library once in a handler of the platform.
struct UsingHandler {
  static void takeLine(void* self, const HostLogLine& line) {
    auto& handler = *static_cast<UsingHandler*>(self);
    handler.lines.emplace_back(line.text);
    if (handler.lines.back() == handler.trigger) {
      handler.use();
    }
  }
  static void takeBlock(void* self, const HostMemoryEvent& event) {
    auto& handler = *static_cast<UsingHandler*>(self);
    if (event.added && event.size == sizeof(TelAddress)) {
      handler.object = event.pointer;
    }
    if (event.pointer == handler.object && event.added == handler.atItsBegin) {
      handler.use();
    }
  }
  void use() {
    if (std::exchange(used, true)) {
      return;
    }
    naive::countOf<SipNonAuthHeaderMatchValue>("x<tel:+;>");
  }
  Lines linesOf(const char* text) {
    naive::countOf<SipNonAuthHeaderMatchValue>(text);
    return std::exchange(lines, {});
  }
  Lines lines;
  std::string trigger;
  const void* object = nullptr;
  bool atItsBegin = false;
  bool used = true;
};

TEST_F(SipHeaderMatchTest, RepeatsNoLineOfAHandlerThatUsesTheLibrary) {
  UsingHandler handler;
  hostSetLogHandler(&UsingHandler::takeLine, &handler);
  const Lines nested = handler.linesOf("x<tel:+;>");
  const Lines one = handler.linesOf("<tel:+>");
  Lines all = one;
  all.insert(all.end(), one.begin(), one.end());
  // After the third line; at the end of the object, after the verdict; at its beginning, before.
  for (const int place : {3, 5, 4}) {
    Lines expected = all;
    expected.insert(expected.begin() + place, nested.begin(), nested.end());
    handler.used = false;
    handler.atItsBegin = place == 4;
    handler.trigger = place == 3 ? one[2] : "";
    hostSetMemoryHandler(place == 3 ? nullptr : &UsingHandler::takeBlock, &handler);
    EXPECT_EQ(expected, handler.linesOf("<tel:+><tel:+>"));
  }
}

TEST_F(SipHeaderMatchTest, TriesAnOpaqueUriWhenATelUriRunsOutOfMemory) {
  const SipString text("<tel:+1>");
  const SipStrStream stream(text);
  EXPECT_EQ((Runs{{kNoHost, kNoSip, kNoTelObject},
                  {kNoHost, kNoSip, kNoTelStream, kOpaque},
                  {kNoHost, kNoSip, kOpaque},
                  {kNoHost, kNoSip}}),
            sweepAllocations([&] {
              const unsigned int count = SipNonAuthHeaderMatchValue().match(stream, 0);
              EXPECT_EQ(8U, count);
              return count == 8 ? VARN_OK : VARN_RESOURCE_FAILURE;
            }));
}

TEST_F(SipHeaderMatchTest, LogsTheFailureOfALongTelAttemptForEveryBracket) {
  std::string text = "tel:+1";
  for (int i = 0; i < 20; ++i) {
    text += ";p" + std::to_string(i) + "=\"x\"";
  }
  const auto bracket = static_cast<unsigned int>(text.size() + 5);
  const SipStrStream stream(toSipString(text + ";bad=<tel:+><tel:+>"));
  EXPECT_EQ(14U, SipNonAuthHeaderMatchValue().match(stream, bracket));
  const Lines log = takeLog();
  EXPECT_EQ(2, std::count(log.begin(), log.end(),
                          failureLine("sip_utility/src/wySipParam",
                                      "SipParamList::parseParamList - bad parameter value")));
  EXPECT_EQ(2, std::count(log.begin(), log.end(), kOpaque));
}

}  // namespace
