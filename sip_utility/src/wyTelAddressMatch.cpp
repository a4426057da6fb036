// wyTelAddressMatch.cpp - grammar matchers and predicates of tel URIs.
#include "wyTelAddressMatch.h"

#include "base/charClass.h"
#include "grammar/grammar.h"

int WyTelIsVisualSeparator(int c) { return isIn(kVisualSeparator, c) ? 1 : 0; }

bool TelAddressMatchPhoneDigit::matchChar(char byte) { return isIn(kPhoneDigit, byte); }

bool TelAddressMatchPhoneDigitHex::matchChar(char byte) { return isIn(kPhoneDigitHex, byte); }

bool TelAddressMatchParamName::matchChar(char byte) { return isIn(kLabel, byte); }

unsigned int TelAddressMatchGlobalPhoneNumber::doMatch(const SipStrStream& stream,
                                                       unsigned int offset) {
  return grammar::globalPhoneNumber(unreadFor(stream, offset), offset);
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

unsigned int TelAddressMatchContext::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::phoneContext(unreadFor(stream, offset), offset);
}
