// telephone.cpp - telephone numbers and their contexts.
#include "grammar/grammar.h"

#include "base/log.h"

namespace {

// The rules log as the family of their matchers.
constexpr const char* kSourceFile = "sip_utility/src/wyTelAddressMatch";

// Returns whether one of the bytes in [offset, offset + count) belongs to the class.
bool anyIsIn(CharClass charClass, Unread text, unsigned int offset, unsigned int count) {
  for (unsigned int i = 0; i < count; ++i) {
    if (text.has(checkedSum(offset, i), charClass)) {
      return true;
    }
  }
  return false;
}

}  // namespace

// The rules below match at the first unread byte, whatever the offset. Callers rely on it.

// "+" 1*phonedigit, one of them a digit
unsigned int grammar::globalPhoneNumber(Unread text, unsigned int /*offset*/) {
  if (!text.has(0, '+')) {
    logTrace(kSourceFile,
             "TelAddressMatchGlobalPhoneNumber: Did not find '+' for global phone number");
    return 0;
  }
  const unsigned int count = matchOf<phoneDigits>(text, 1);
  if (count == 0) {
    logTrace(kSourceFile, "TelAddressMatchGlobalPhoneNumber: No phonedigit found");
    return 0;
  }
  if (!anyIsIn(kDigit, text, 1, count)) {
    logTrace(kSourceFile, "TelAddressMatchGlobalPhoneNumber: no DIGIT in Stream");
    return 0;
  }
  return checkedSum(count, 1);
}

// 1*phonedigit-hex, one of them no visual separator
unsigned int grammar::localPhoneNumber(Unread text, unsigned int /*offset*/) {
  const unsigned int count = matchOf<phoneDigitsHex>(text, 0);
  if (count == 0) {
    logTrace(
        kSourceFile,
        "TelAddressMatchLocalPhoneNumber: Did not find phonedigithex to start local phonenumber");
    return 0;
  }
  if (!anyIsIn(kLocalDigit, text, 0, count)) {
    logTrace(kSourceFile, "TelAddressMatchLocalPhoneNumber: no (HEXDIG / '*' / '#') in Stream");
    return 0;
  }
  return count;
}

// hostname / global-phone-number
unsigned int grammar::phoneContext(Unread text, unsigned int /*offset*/) {
  unsigned int count = matchOf<hostname>(text, 0);
  if (count == 0) {
    count = matchOf<globalPhoneNumber>(text, 0);
  }
  if (count == 0) {
    logTrace(kSourceFile, "TelAddressMatchContext: Could not match descriptor BNF");
  }
  return count;
}
