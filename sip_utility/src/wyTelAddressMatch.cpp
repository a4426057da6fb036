// wyTelAddressMatch.cpp - grammar matchers and predicates of tel URIs.
#include "wyTelAddressMatch.h"

#include "internal/charClass.h"
#include "internal/checkedMath.h"
#include "internal/grammar.h"
#include "internal/log.h"
#include "internal/matchOf.h"
#include "internal/unread.h"

namespace {

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

int WyTelIsVisualSeparator(int c) { return isIn(kVisualSeparator, c) ? 1 : 0; }

bool TelAddressMatchPhoneDigit::matchChar(char byte) { return isIn(kPhoneDigit, byte); }

bool TelAddressMatchPhoneDigitHex::matchChar(char byte) { return isIn(kPhoneDigitHex, byte); }

bool TelAddressMatchParamName::matchChar(char byte) { return isIn(kLabel, byte); }

// The rules below match at the position, whatever the offset.

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

unsigned int TelAddressMatchGlobalPhoneNumber::doMatch(const SipStrStream& stream,
                                                       unsigned int offset) {
  return grammar::globalPhoneNumber(unreadFor(stream, offset), offset);
}

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

unsigned int TelAddressMatchLocalPhoneNumber::doMatch(const SipStrStream& stream,
                                                      unsigned int offset) {
  return grammar::localPhoneNumber(unreadFor(stream, offset), offset);
}

TelAddressMatchPhoneNumber::TelAddressMatchPhoneNumber(WY_SIP_TELURI_TYPE type) : type_(type) {}

unsigned int TelAddressMatchPhoneNumber::doMatch(const SipStrStream& stream, unsigned int offset) {
  const Unread text = unreadFor(stream, offset);
  switch (type_) {
    case WY_SIP_TELURI_TYPE_LOCAL:
      return matchOf<grammar::localPhoneNumber>(text, 0);
    case WY_SIP_TELURI_TYPE_GLOBAL:
      return matchOf<grammar::globalPhoneNumber>(text, 0);
    default:
      return 0;
  }
}

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

unsigned int TelAddressMatchContext::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::phoneContext(unreadFor(stream, offset), offset);
}
