// wySipMatch.cpp - grammar matchers and character predicates of SIP text.
#include "wySipMatch.h"

#include "base/charClass.h"
#include "base/checkedMath.h"
#include "base/equality.h"
#include "base/log.h"
#include "grammar/grammar.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wySipMatch";

// Asks a matcher what a quote is. The matcher may be of a caller's class with its own matchQuote().
class MatcherQuote final : public grammar::QuoteRule {
 public:
  MatcherQuote(SipMatchQuotedString& matcher, const SipStrStream& stream)
      : matcher_(matcher), stream_(stream) {}

  unsigned int quoteAt(unsigned int offset) const override {
    return matcher_.matchQuote(stream_, offset);
  }

 private:
  SipMatchQuotedString& matcher_;
  const SipStrStream& stream_;
};

}  // namespace

int WySipIsDigit(int c) { return isIn(kDigit, c) ? 1 : 0; }

int WySipIsHexDigit(int c) { return isIn(kHexDigit, c) ? 1 : 0; }

int WySipIsAlpha(int c) { return isIn(kAlpha, c) ? 1 : 0; }

int WySipIsAlnum(int c) { return isIn(kAlnum, c) ? 1 : 0; }

int WySipIsUnreserved(int c) { return isIn(kUnreserved, c) ? 1 : 0; }

int WySipIsToken(int c) { return isIn(kToken, c) ? 1 : 0; }

SipMatch::SipMatch() : lastMatch_(0) {}

SipMatch::~SipMatch() = default;

unsigned int SipMatch::match(const SipStrStream& stream, unsigned int offset) {
  const unsigned int start = checkedSum(stream.pos(), offset);
  assertHolds(start <= stream.length(), kSourceFile);
  lastMatch_ = doMatch(stream, offset);
  assertHolds(checkedSum(start, lastMatch_) <= stream.length(), kSourceFile);
  return lastMatch_;
}

void reportPastEnd() { reportAssertion(kSourceFile); }

// Asks matchChar() for each byte, since a caller's class may override it. The rules of the library
// look their class up in a table instead: see grammar::charSet.
unsigned int SipMatchCharSet::doMatch(const SipStrStream& stream, unsigned int offset) {
  const Unread text = unreadFor(stream, offset);
  unsigned int end = offset;
  while (end < text.length && matchChar(text.bytes[end])) {
    ++end;
  }
  return end - offset;
}

unsigned int SipMatchEscapedCharSet::doMatch(const SipStrStream& stream, unsigned int offset) {
  assertHolds(!matchChar('%'), kSourceFile);
  const Unread text = unreadFor(stream, offset);
  unsigned int end = offset;
  while (end < text.length) {
    if (matchChar(text.bytes[end])) {
      ++end;
    } else if (grammar::escapeAt(text, end)) {
      end = checkedSum(end, 3);
    } else {
      break;
    }
  }
  return end - offset;
}

bool SipMatchToken::matchChar(char byte) { return isIn(kToken, byte); }

bool SipMatchDigit::matchChar(char byte) { return isIn(kDigit, byte); }

bool SipMatchHexDigit::matchChar(char byte) { return isIn(kHexDigit, byte); }

bool SipMatchAlpha::matchChar(char byte) { return isIn(kAlpha, byte); }

bool SipMatchUric::matchChar(char byte) { return isIn(kUric, byte); }

bool SipMatchOtherParam::matchChar(char byte) { return isIn(kParamChar, byte); }

unsigned int SipMatchLWS::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::lws(unreadFor(stream, offset), offset);
}

SipMatchLWSChar::SipMatchLWSChar(char separator) : separator_(separator) {}

unsigned int SipMatchLWSChar::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::separator(separator_, unreadFor(stream, offset), offset);
}

unsigned int SipMatchQuotedString::doMatch(const SipStrStream& stream, unsigned int offset) {
  const MatcherQuote quote(*this, stream);
  return grammar::quotedStringBy(&quote, unreadFor(stream, offset), offset);
}

unsigned int SipMatchQuotedString::matchQuote(const SipStrStream& stream, unsigned int offset) {
  return unreadFor(stream, offset).has(offset, '"') ? 1 : 0;
}

SipMatchSpecificString::SipMatchSpecificString(const SipString& literal) : literal_(literal) {}

SipMatchSpecificString::~SipMatchSpecificString() = default;

unsigned int SipMatchSpecificString::doMatch(const SipStrStream& stream, unsigned int offset) {
  return unreadFor(stream, offset).has(offset, view(literal_)) ? literal_.length() : 0;
}

unsigned int SipMatchUTF8NonASCII::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::utf8NonAscii(unreadFor(stream, offset), offset);
}

unsigned int SipMatchILabel::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::labelOf(unreadFor(stream, offset), offset,
                          SipMatchCharSet::doMatch(stream, offset));
}

bool SipMatchILabel::matchChar(char byte) { return isIn(kLabel, byte); }

unsigned int SipMatchHostname::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::hostname(unreadFor(stream, offset), offset);
}

unsigned int SipMatchIIPV4DecOctet::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::decOctet(unreadFor(stream, offset), offset);
}

unsigned int SipMatchIIPV4Address::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::ipv4Address(unreadFor(stream, offset), offset);
}

unsigned int SipMatchIIPV6H16::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::h16(unreadFor(stream, offset), offset);
}

unsigned int SipMatchIIPV6Address::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::ipv6Address(unreadFor(stream, offset), offset);
}

unsigned int SipMatchHost::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::host(unreadFor(stream, offset), offset);
}

unsigned int SipAddressMatchScheme::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::scheme(unreadFor(stream, offset), offset);
}

bool SipAddressMatchSchemeTrailing::matchChar(char byte) { return isIn(kSchemeTrailing, byte); }

bool SipAddressMatchUser::matchChar(char byte) { return isIn(kUser, byte); }

bool SipAddressMatchPassword::matchChar(char byte) { return isIn(kPassword, byte); }

unsigned int SipAddressMatchUserInfo::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::userInfo(unreadFor(stream, offset), offset);
}

unsigned int SipAddressMatchDisplayName::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::displayName(unreadFor(stream, offset), offset);
}

bool SipAddressMatchParamChar::matchChar(char byte) { return isIn(kParamChar, byte); }

bool SipAddressMatchHNameValue::matchChar(char byte) { return isIn(kHNameValue, byte); }

unsigned int SipAddressMatchHeaders::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::uriHeaders(unreadFor(stream, offset), offset);
}
