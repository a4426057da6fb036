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

}  // namespace
