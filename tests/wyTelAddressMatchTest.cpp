// wyTelAddressMatchTest.cpp - grammar matchers and predicates of tel URIs.
#include "wyTelAddressMatch.h"

#include "libraryTest.h"
#include "naive.h"

namespace {

using TelAddressMatchTest = LibraryTest;

TEST_F(TelAddressMatchTest, ClassesHoldTheirMembers) {
  naive::expectPredicate(WyTelIsVisualSeparator, "()-.");
  naive::expectClass<TelAddressMatchPhoneDigit>("0123456789()-.");
  naive::expectClass<TelAddressMatchPhoneDigitHex>("0123456789ABCDEFabcdef*#()-.");
  naive::expectClass<TelAddressMatchParamName>(naive::alnumAnd("-"));
  EXPECT_EQ(0U, naive::countOf<TelAddressMatchPhoneDigit>("+1-(555).12"));
  EXPECT_EQ(10U, naive::countOf<TelAddressMatchPhoneDigit>("+1-(555).12", 1));
  EXPECT_EQ(1U, naive::countOf<TelAddressMatchParamName>("a_b"));
  EXPECT_EQ(Lines{}, takeAssertions());
}

TEST_F(TelAddressMatchTest, MatchesNumbersAndContextsAtTheStreamsPosition) {
  const struct {
    char rule;  // global or local number, context; number of type none or of an unknown type
    const char* text;
    unsigned int count;
    std::string reason;
  } cases[] = {
      {'g', "+1-201-555-0123;", 15, ""},
      {'g', "+.1a", 3, ""},
      {'g', "1234", 0, "GlobalPhoneNumber: Did not find '+' for global phone number"},
      {'g', "+", 0, "GlobalPhoneNumber: No phonedigit found"},
      {'g', "+--x1", 0, "GlobalPhoneNumber: no DIGIT in Stream"},
      {'l', "(5)*#aFg", 7, ""},
      {'l', "+5", 0, "LocalPhoneNumber: Did not find phonedigithex to start local phonenumber"},
      {'l', "--+1", 0, "LocalPhoneNumber: no (HEXDIG / '*' / '#') in Stream"},
      {'c', "a.test+1", 6, ""},
      {'c', "+33-1;", 5, ""},
      {'c', "+", 0, "Context: Could not match descriptor BNF"},
      {'n', "+1", 0, ""},
      {'u', "+1", 0, ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    TelAddressMatchContext context;
    TelAddressMatchPhoneNumber number(c.rule == 'g'   ? WY_SIP_TELURI_TYPE_GLOBAL
                                      : c.rule == 'l' ? WY_SIP_TELURI_TYPE_LOCAL
                                      : c.rule == 'u' ? static_cast<WY_SIP_TELURI_TYPE>(4)
                                                      : WY_SIP_TELURI_TYPE_NONE);
    SipMatch& rule = c.rule == 'c' ? static_cast<SipMatch&>(context) : number;
    SipStrStream stream(toSipString(std::string("+1a") + c.text));
    stream.discard(3);
    for (const unsigned int offset : {0U, 1U}) {
      const bool past = offset + c.count > std::string_view(c.text).size();
      EXPECT_EQ(c.count, rule.match(stream, offset));
      const Lines log = takeLog();
      ASSERT_EQ(c.reason.empty(), log.empty());
      if (!log.empty()) {
        EXPECT_EQ(traceLine("sip_utility/src/wyTelAddressMatch", "TelAddressMatch" + c.reason),
                  log.back());
      }
      EXPECT_EQ(past ? 1U : 0U, takeAssertions().size());
    }
  }
}

}  // namespace
