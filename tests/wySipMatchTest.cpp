// wySipMatchTest.cpp - grammar matchers and character predicates of SIP text.
#include "wySipMatch.h"

#include <functional>
#include <initializer_list>

#include "libraryTest.h"
#include "naive.h"
#include "wySipHeaderMatch.h"
#include "wyTelAddressMatch.h"

namespace {

using std::string_view_literals::operator""sv;
using naive::alnumAnd;
using naive::countOf;
using naive::expectAlike;
using naive::expectClass;
using naive::unreservedAnd;

constexpr const char* kSource = "sip_utility/src/wySipMatch";
const char* const kOpenQuote = "SipMatchQuotedString::doMatch - end of string without end quote";

class SipMatchTest : public LibraryTest {
 protected:
  // Checks each marked row, at the start of a stream and after bytes that were read. The log is
  // this line or none. However the text is cut short, no count reaches past its end.
  void expectMatches(SipMatch&& rule, std::initializer_list<std::string_view> rows,
                     std::string_view log = {}) {
    for (const std::string_view row : rows) {
      SCOPED_TRACE(testing::PrintToString(row));
      const naive::Marked expected = naive::marked(row);
      for (const std::string_view read : {""sv, "a1:[%"sv}) {
        SipStrStream stream(toSipString(std::string(read) + expected.text));
        stream.discard(static_cast<unsigned int>(read.size()));
        EXPECT_EQ(expected.count, rule.match(stream, expected.start));
        EXPECT_EQ(log.empty() ? Lines{} : Lines{traceLine(kSource, log)}, takeLog());
      }
      for (std::size_t cut = 0; cut <= expected.text.size(); ++cut) {
        const SipString text = toSipString(expected.text.substr(0, cut));
        for (unsigned int offset = 0; offset <= cut; ++offset) {
          EXPECT_LE(rule.match(text, offset), cut - offset);
        }
      }
      takeLog();
      EXPECT_EQ(Lines{}, takeAssertions());
    }
  }

  // Returns how many reports a rule makes at two offsets past the end.
  template <typename Rule>
  std::size_t reportsPastTheEnd() {
    SipStrStream stream(SipString("123"));
    stream.discard(1);
    EXPECT_EQ(0U, Rule().match(stream, 3));
    EXPECT_EQ(0U, Rule().match(stream, 0xFFFFFFFEU));
    const Lines reports = takeAssertions();
    EXPECT_EQ(Lines(reports.size(), kSource), reports);
    return reports.size();
  }
};

using SipMatchDeathTest = SipMatchTest;

TEST_F(SipMatchTest, ClassesHoldTheirMembersAndTheirEscapes) {
  naive::expectPredicate(WySipIsDigit, naive::kDigit);
  naive::expectPredicate(WySipIsHexDigit, naive::kHexDigit);
  naive::expectPredicate(WySipIsAlpha, naive::kAlpha);
  naive::expectPredicate(WySipIsAlnum, alnumAnd(""));
  naive::expectPredicate(WySipIsUnreserved, unreservedAnd(""));
  naive::expectPredicate(WySipIsToken, alnumAnd("-.!%*_+`'~"));
  expectClass<SipMatchToken>(alnumAnd("-.!%*_+`'~"));
  expectClass<SipMatchDigit>(naive::kDigit);
  expectClass<SipMatchHexDigit>(naive::kHexDigit);
  expectClass<SipMatchAlpha>(naive::kAlpha);
  expectClass<SipAddressMatchSchemeTrailing>(alnumAnd("+-."));
  expectClass<SipMatchUric>(unreservedAnd(";/?:@&=+$,"), true);
  expectClass<SipMatchOtherParam>(unreservedAnd("[]/:&+$"), true);
  expectClass<SipAddressMatchParamChar>(unreservedAnd("[]/:&+$"), true);
  expectClass<SipAddressMatchHNameValue>(unreservedAnd("[]/?:+$"), true);
  expectClass<SipAddressMatchUser>(unreservedAnd("&=+$,;?/"), true);
  expectClass<SipAddressMatchPassword>(unreservedAnd("&=+$,"), true);
  expectMatches(SipMatchToken(), {"abc| def", "abc^ def", "abc ^def|", "abc^", ""});
  expectMatches(SipMatchUric(), {"a%41b|", "a^%41|", "a|%4Gb", "a|%4", "a|%"});
}

TEST_F(SipMatchTest, ReportsOffsetsPastTheEndAtEachLevel) {
  EXPECT_EQ(4U, reportsPastTheEnd<SipMatchDigit>());
  EXPECT_EQ(4U, reportsPastTheEnd<SipMatchUric>());
  EXPECT_EQ(8U, reportsPastTheEnd<SipMatchHostname>());
  EXPECT_EQ(8U, reportsPastTheEnd<SipAddressMatchUserInfo>());
  EXPECT_EQ(12U, reportsPastTheEnd<SipAddressMatchDisplayName>());
  EXPECT_EQ(Lines{}, takeLog());
}

TEST_F(SipMatchDeathTest, OffsetsThatWrapEndTheProcess) {
  SipStrStream stream(SipString("123"));
  stream.discard(1);
  const unsigned int offset = 0xFFFFFFFFU;
  const std::function<unsigned int()> cases[] = {
      [&] { return SipMatchDigit().match(stream, offset); },
      [&] { return SipMatchDigit().doMatch(stream, offset); },
      [&] { return SipMatchUric().doMatch(stream, offset); },
      [&] { return SipMatchLWS().doMatch(stream, offset); },
      [&] { return SipMatchQuotedString().matchQuote(stream, offset); },
      [&] { return SipMatchSpecificString("x").doMatch(stream, offset); },
      [&] { return SipHeaderMatchValue(WY_SIP_HEADER_TYPE_NON_AUTH).doMatch(stream, offset); },
      [&] { return TelAddressMatchPhoneNumber(WY_SIP_TELURI_TYPE_LOCAL).doMatch(stream, offset); },
      [&] { return SipHeaderMatchValue(WY_SIP_HEADER_TYPE_NONE).doMatch(stream, offset); },
      [&] { return SipAddrParamList().matchEqual(stream, offset); },
      [&] { return TelAddrParamList().matchName(stream, offset); },
  };
  for (const auto& match : cases) {
    SCOPED_TRACE(&match - cases);
    EXPECT_EXIT(match(), testing::KilledBySignal(SIGABRT), kSilence);
  }
}

TEST_F(SipMatchTest, AsksTheSubclassForMembersAndQuotes) {
  struct Percent : SipMatchEscapedCharSet {
    bool matchChar(char byte) override { return byte == 'a' || byte == '%'; }
  };
  struct Underscored : SipMatchILabel {
    bool matchChar(char byte) override { return byte == '_' || SipMatchILabel::matchChar(byte); }
  };
  struct Apostrophes : SipMatchQuotedString {
    unsigned int matchQuote(const SipStrStream& stream, unsigned int offset) override {
      return stream.peek(offset) == '\'' && stream.peek(offset + 1) == '\'' ? 2 : 0;
    }
  };
  EXPECT_EQ(2U, countOf<Percent>("a%41"));
  EXPECT_EQ(Lines{kSource}, takeAssertions());
  expectMatches(Underscored(), {"_a-_|.", "_-"});
  expectMatches(Apostrophes(), {"''a'b''|x", "\"a\""});
  expectMatches(Apostrophes(), {"'' '", "''"}, kOpenQuote);
}

TEST_F(SipMatchTest, LwsIsMatchedCompletelyOrNotAtAll) {
  expectMatches(SipMatchLWS(), {" \t |x", "\r\n\t|x", "x^ \r\n |y", " |\nx", " |\0"sv, "  \r\nx",
                                " \r x", " \r\n \r\n x", " \r\n \r", "x"});
  expectAlike<SipMatchLWS>({" ", "\t", "\r", "\n", "x"}, 6, naive::lws);
  expectMatches(SipMatchLWSChar(';'),
                {" ; |a", ";|a", ";|", "\r\n ;\r\n |a", " ;| \r\n", " ;|;", " \r\n; ", " a", ""});
  expectMatches(SipMatchLWSChar('\xFF'), {" \xFF |", " ", ""});  // the end is no byte
  expectMatches(SipMatchLWSChar(' '), {" a", " ", ""});          // the blank is LWS already
}

TEST_F(SipMatchTest, QuotedStringLogsWhyItDoesNotEnd) {
  const std::string why = "SipMatchQuotedString::doMatch - ";
  expectMatches(SipMatchQuotedString(),
                {"\"ab\\\"c\"|x", "x^\"\"|\"", "\"!#[]~\"|", "\" a \r\n\tb\"|", "\"\xC3\xA9\"|",
                 "\"\\\0\\\x7F\\\xFF\\\\\"|"sv, "ab\"", ""});
  expectMatches(SipMatchQuotedString(), {"\"ab", "\"", "\"\\", "\"\\\"", "x^\"a\\"}, kOpenQuote);
  expectMatches(SipMatchQuotedString(), {"\"\\\r\n\"", "\"\\\n"}, why + "cannot escape CR or LF");
  expectMatches(SipMatchQuotedString(), {"\"a \r\n\"", "\" \r\n \r\n \"", "\"\n \""},
                why + "invalid LWS");
  expectMatches(SipMatchQuotedString(), {"\"\xC3\"", "\"\x80\"", "\"\xFF\"", "\"\xC3"},
                why + "invalid UTF8 non-ascii");
  expectMatches(SipMatchQuotedString(), {"\"\0\""sv}, why + "bad character 0x00");
  expectMatches(SipMatchQuotedString(), {"\"\x1F\""}, why + "bad character 0x1f");
  expectMatches(SipMatchQuotedString(), {"\"\x7F\""}, why + "bad character 0x7f");
  naive::forEachText(
      {"\"", "\\", " ", "a", "\xC3", "\xA9", "\r", "\n"}, 5, [&](const std::string& text) {
        const std::size_t rest = naive::quotedRest(text);
        SCOPED_TRACE(testing::PrintToString(text));
        EXPECT_EQ(rest == 0 ? 0 : rest + 1, countOf<SipMatchQuotedString>('"' + text));
        EXPECT_EQ(rest == 0 ? 1U : 0U, takeLog().size());
      });
}

TEST_F(SipMatchTest, SpecificStringIsTheCompleteLiteral) {
  expectMatches(SipMatchSpecificString("sip"), {"sip|s", "x:^sip|", "SIP", "si", ""});
  expectMatches(SipMatchSpecificString(toSipString("\xE9\0b"sv)), {"\xE9\0b|"sv, "\xE9\0a"sv});
  expectMatches(SipMatchSpecificString(""), {"a", ""});
  const SipString literal("sip");
  hostFailAllocation(1);
  expectMatches(SipMatchSpecificString(literal), {"sip"});
}

TEST_F(SipMatchTest, Utf8CharacterHasAsManyBytesAsItsLeadByteHasLeadingOnes) {
  for (int lead = 0; lead < 256; ++lead) {
    unsigned int ones = 0;
    while (ones < 8 && (lead << ones & 0x80) != 0) {
      ++ones;
    }
    const unsigned int length = ones >= 2 && ones <= 6 ? ones : 0;
    const std::string text = static_cast<char>(lead) + std::string("\x80\xBF\x80\xBF\x80\xBF\x80");
    EXPECT_EQ(length, countOf<SipMatchUTF8NonASCII>(text)) << lead;
    for (unsigned int i = 1; i < length; ++i) {
      EXPECT_EQ(0U, countOf<SipMatchUTF8NonASCII>(text.substr(0, i))) << lead;
      for (const char bad : {'\x7F', '\xC0'}) {
        EXPECT_EQ(0U, countOf<SipMatchUTF8NonASCII>(std::string(text).replace(i, 1, 1, bad)));
      }
    }
  }
}

TEST_F(SipMatchTest, HostnameEndsWithALabelThatBeginsWithALetter) {
  expectAlike<SipMatchILabel>({"a", "1", ".", "-", "_"}, 6, naive::label);
  expectAlike<SipMatchHostname>({"a", "1", ".", "-", "_"}, 6, naive::hostname);
  expectMatches(SipMatchHostname(), {"a-b.c|", "example.com.|", "sip:^x.y.|:", "a.|-b", "a.|.b",
                                     "1.x|", "a-.c", "x.1y", "x.1.", ".a"});
}

TEST_F(SipMatchTest, Ipv4AddressHasFourOctetsWithoutLeadingZeros) {
  expectAlike<SipMatchIIPV4DecOctet>({"0", "1", "2", "3", "4", "5", "6", "9", "."}, 4,
                                     naive::octet);
  expectAlike<SipMatchIIPV4Address>({"1", "0", "25", "."}, 7,
                                    [](std::string_view text) { return naive::ipv4(text); });
  takeLog();
  expectMatches(SipMatchIIPV4Address(), {"1.2.3.4|.5", "1.2.3:4", "256.1.1.1", "1"});
  expectMatches(SipMatchIIPV4Address(), {"10.0.0.256", "x^1.2.3."},
                "MatchIPV4Address pos 7 did not match dec-octet");
}

TEST_F(SipMatchTest, Ipv6AddressHasABudgetOfEightGroups) {
  expectAlike<SipMatchIIPV6Address>({"1", ":", "1:1:1:", "1.1.1.1", ".", "f"}, 6, naive::ipv6);
  expectAlike<SipMatchIIPV6Address>({"1", ":", ".", "a"}, 7, naive::ipv6);
  takeLog();
  expectMatches(SipMatchIIPV6H16(), {"12aF|", "1|g", "12345", ""});
  expectMatches(SipMatchIIPV6Address(), {"1:2:3:4:5:6:7:8|:9", "1:2:3:4:5:6:7", "12345::1", ":1"});
  expectMatches(SipMatchIIPV6Address(), {"[^fe80::1|]", "::|", "1::|", "1::2:|", "1::2:|:3",
                                         "::|:", "1:2:3:4:5:6::8|", "1:2:3:4:5:6:7::|8"});
  expectMatches(SipMatchIIPV6Address(),
                {"::ffff:1.2.3.4|", "1:2:3:4:5:6:1.2.3.4|", "1:2:3:4:5:1.2.3.4",
                 "1:2:3:4:5::1.2.3.4|", "1:2:3:4:5:6::1|.2.3.4"});
  expectMatches(SipMatchIIPV6Address(), {"1::2|.x"},
                "MatchIPV4Address pos 5 did not match dec-octet");
}

TEST_F(SipMatchTest, HostIsANameAnIpv4AddressOrAnIpv6Reference) {
  expectMatches(SipMatchHost(), {"example.com|:5060", "[::1]|:5060", "x@^[1::2:]|", "10.0.0.1|",
                                 "10.0.0.1.x|", "10", "a.1"});
  expectMatches(SipMatchHost(), {"[|x]", "[|", "[|]", "a@^[|:1]"});  // the bracket alone
  expectMatches(SipMatchHost(), {"[::1", "[::1::]"}, "SipMatchHost ']' missing");
  expectMatches(SipMatchHost(), {"10.0.0.256"}, "MatchIPV4Address pos 7 did not match dec-octet");
  expectMatches(SipMatchHost(), {"-abc"}, "SipMatchHost invalid character 0x2d");
  expectMatches(SipMatchHost(), {"\xE9"}, "SipMatchHost invalid character 0xe9");
  expectMatches(SipMatchHost(), {"", "a^"}, "SipMatchHost invalid character 0xff");
}

TEST_F(SipMatchTest, AddressPiecesAreMatchedWithoutTheirDelimiters) {
  expectMatches(SipAddressMatchScheme(), {"sip|:", "x-y.z+1|:", "<^S|", "1sip", "+s", ""});
  expectMatches(SipAddressMatchUserInfo(), {"al%41ce:p%40|", "alice;x=1|@host", "alice:|@",
                                            "a:b|:c", "a:b|;c", "a|%4:b", "sip:^a:b|@", ":pw", ""});
  expectMatches(SipAddressMatchDisplayName(),
                {"Bob  Smith| <", "Bob \r\n Smith|", "Bob| \r\nSmith", "Bob| \"x\"", "\"Bob\"| x",
                 "x ^\"\"|", " Bob", "\xC3\xA9", ""});
  expectMatches(SipAddressMatchDisplayName(), {"\"Bob"}, kOpenQuote);
}

TEST_F(SipMatchTest, HeadersMatchAllOrNothing) {
  expectMatches(SipAddressMatchHeaders(),
                {"?subject=hi&priority=urgent|", "?a=b&c=|", "x^?a=|>", "?a=b|=c", "?%41?=|%4",
                 "?a", "?a=b&", "?a=b&&c=d", "?a=b&c", "?=x", "?", "a=b", ""});
}

}  // namespace
