// wySipMatch.cpp - grammar matchers and character predicates of SIP text.
#include "wySipMatch.h"

#include "internal/charClass.h"
#include "internal/checkedMath.h"
#include "internal/log.h"
#include "internal/matchOf.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wySipMatch";

constexpr unsigned int kIpv6Groups = 8;
constexpr unsigned int kIpv4TailGroups = 2;
constexpr unsigned int kFirstNonAscii = 0x80;
constexpr int kDelete = 0x7F;

bool byteIsIn(const SipStrStream& stream, unsigned int offset, CharClass charClass) {
  return isIn(charClass, stream.peek(offset));
}

// escaped = "%" HEXDIG HEXDIG
bool escapeAt(const SipStrStream& stream, unsigned int offset) {
  return byteIs(stream, offset, '%') && byteIsIn(stream, checkedSum(offset, 1), kHexDigit) &&
         byteIsIn(stream, checkedSum(offset, 2), kHexDigit);
}

// LWS inside quotes
unsigned int quotedWhiteSpaceLength(const SipStrStream& stream, unsigned int offset) {
  const unsigned int count = matchOf<SipMatchLWS>(stream, offset);
  if (count == 0) {
    logTrace(kSourceFile, "SipMatchQuotedString::doMatch - invalid LWS");
  }
  return count;
}

// quoted-pair = "\" any byte but CR and LF
unsigned int quotedPairLength(const SipStrStream& stream, unsigned int offset) {
  const int escaped = stream.peek(checkedSum(offset, 1));
  if (escaped == '\r' || escaped == '\n') {
    logTrace(kSourceFile, "SipMatchQuotedString::doMatch - cannot escape CR or LF");
    return 0;
  }
  return 2;
}

unsigned int quotedNonAsciiLength(const SipStrStream& stream, unsigned int offset) {
  const unsigned int count = matchOf<SipMatchUTF8NonASCII>(stream, offset);
  if (count == 0) {
    logTrace(kSourceFile, "SipMatchQuotedString::doMatch - invalid UTF8 non-ascii");
  }
  return count;
}

// One piece between the quotes: LWS / quoted-pair / UTF8-NONASCII / a visible ASCII character
unsigned int quotedPieceLength(const SipStrStream& stream, unsigned int offset) {
  const int c = stream.peek(offset);
  switch (c) {
    case ' ':
    case '\t':
    case '\r':
    case '\n':
      return quotedWhiteSpaceLength(stream, offset);
    case -1:
      logTrace(kSourceFile, "SipMatchQuotedString::doMatch - end of string without end quote");
      return 0;
    case '\\':
      return quotedPairLength(stream, offset);
    default:
      break;
  }
  const auto code = static_cast<unsigned int>(c);
  if (code >= kFirstNonAscii) {
    return quotedNonAsciiLength(stream, offset);
  }
  if (c < ' ' || c == kDelete) {
    logTrace(kSourceFile, "SipMatchQuotedString::doMatch - bad character 0x%02x", code);
    return 0;
  }
  return 1;
}

// Returns how many continuation bytes a lead byte of UTF8-NONASCII asks for; 0 for no lead byte.
unsigned int continuationCount(int lead) {
  if (lead < 0xC0 || lead > 0xFD) {
    return 0;
  }
  if (lead < 0xE0) {
    return 1;
  }
  if (lead < 0xF0) {
    return 2;
  }
  if (lead < 0xF8) {
    return 3;
  }
  return lead < 0xFC ? 4 : 5;
}

// Returns whether three digits read 100 to 255.
bool octetOfThree(int first, int second, int third) {
  if (first == '1') {
    return true;
  }
  return first == '2' && (second <= '4' || (second == '5' && third <= '5'));
}

// One header of a URI behind its "?" or "&": 1*hnv-char "=" *hnv-char
unsigned int uriHeaderLength(const SipStrStream& stream, unsigned int offset) {
  const unsigned int name = matchOf<SipAddressMatchHNameValue>(stream, offset);
  if (name == 0 || !byteIs(stream, checkedSum(offset, name), '=')) {
    return 0;
  }
  const unsigned int value =
      matchOf<SipAddressMatchHNameValue>(stream, checkedSum(offset, name, 1));
  return checkedSum(name, 1, value);
}

// The walk over the groups of an IPv6 address.
class Ipv6Walk {
 public:
  Ipv6Walk(const SipStrStream& stream, unsigned int offset)
      : stream_(stream),
        offset_(offset),
        count_(matchOf<SipMatchIIPV6H16>(stream, offset)),
        groupsLeft_(count_ == 0 ? kIpv6Groups : kIpv6Groups - 1),
        compressed_(false),
        ended_(false) {}

  unsigned int length() {
    while (!ended_) {
      step();
    }
    return count_;
  }

 private:
  void end(unsigned int count) {
    count_ = count;
    ended_ = true;
  }

  // One colon or double colon and the group or IPv4 tail behind it.
  void step() {
    if (groupsLeft_ == 0) {
      end(count_);
    } else if (!byteIs(stream_, checkedSum(offset_, count_), ':')) {
      end(compressed_ ? count_ : 0);
    } else if (const unsigned int start = passColons(); start == 0 || groupsLeft_ == 0) {
      end(start);
    } else if (!tail(start)) {
      group(start);
    }
  }

  // Returns the count up to where the next group starts: behind the colon, or behind both of a
  // first "::", which takes a group of its own. 0 for an address that begins with one colon.
  unsigned int passColons() {
    const unsigned int start = checkedSum(count_, 1);
    if (compressed_) {
      return start;
    }
    if (byteIs(stream_, checkedSum(offset_, start), ':')) {
      compressed_ = true;
      groupsLeft_ = checkedDifference(groupsLeft_, 1);
      return checkedSum(start, 1);
    }
    return count_ == 0 ? 0 : start;
  }

  // An IPv4 address stands for the last two groups; it is tried before the group.
  bool tail(unsigned int start) {
    if (groupsLeft_ < kIpv4TailGroups) {
      return false;
    }
    const unsigned int count = matchOf<SipMatchIIPV4Address>(stream_, checkedSum(offset_, start));
    if (count == 0) {
      return false;
    }
    end(compressed_ || groupsLeft_ == kIpv4TailGroups ? checkedSum(start, count) : 0);
    return true;
  }

  void group(unsigned int start) {
    const unsigned int count = matchOf<SipMatchIIPV6H16>(stream_, checkedSum(offset_, start));
    if (count == 0) {
      end(compressed_ ? start : 0);
      return;
    }
    groupsLeft_ = checkedDifference(groupsLeft_, 1);
    count_ = checkedSum(start, count);
  }

  const SipStrStream& stream_;
  unsigned int offset_;
  unsigned int count_;
  unsigned int groupsLeft_;
  bool compressed_;
  bool ended_;
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

unsigned int SipMatchCharSet::doMatch(const SipStrStream& stream, unsigned int offset) {
  unsigned int count = 0;
  for (;;) {
    const int c = stream.peek(checkedSum(offset, count));
    if (c == -1 || !matchChar(static_cast<char>(c))) {
      return count;
    }
    count = checkedSum(count, 1);
  }
}

unsigned int SipMatchEscapedCharSet::doMatch(const SipStrStream& stream, unsigned int offset) {
  assertHolds(!matchChar('%'), kSourceFile);
  unsigned int count = 0;
  for (;;) {
    const unsigned int next = checkedSum(offset, count);
    const int c = stream.peek(next);
    if (c == -1) {
      return count;
    }
    if (matchChar(static_cast<char>(c))) {
      count = checkedSum(count, 1);
    } else if (escapeAt(stream, next)) {
      count = checkedSum(count, 3);
    } else {
      return count;
    }
  }
}

bool SipMatchToken::matchChar(char byte) { return isIn(kToken, byte); }

bool SipMatchDigit::matchChar(char byte) { return isIn(kDigit, byte); }

bool SipMatchHexDigit::matchChar(char byte) { return isIn(kHexDigit, byte); }

bool SipMatchAlpha::matchChar(char byte) { return isIn(kAlpha, byte); }

bool SipMatchUric::matchChar(char byte) { return isIn(kUric, byte); }

bool SipMatchOtherParam::matchChar(char byte) { return isIn(kParamChar, byte); }

unsigned int SipMatchLWS::doMatch(const SipStrStream& stream, unsigned int offset) {
  const unsigned int leading = whiteSpaceLength(stream, offset);
  const unsigned int fold = checkedSum(offset, leading);
  if (!byteIs(stream, fold, '\r')) {
    return leading;
  }
  if (!byteIs(stream, checkedSum(fold, 1), '\n')) {
    return 0;
  }
  const unsigned int trailing = whiteSpaceLength(stream, checkedSum(fold, 2));
  if (trailing == 0 || byteIs(stream, checkedSum(fold, 2, trailing), '\r')) {
    return 0;
  }
  return checkedSum(leading, 2, trailing);
}

SipMatchLWSChar::SipMatchLWSChar(char separator) : separator_(separator) {}

unsigned int SipMatchLWSChar::doMatch(const SipStrStream& stream, unsigned int offset) {
  const unsigned int leading = matchOf<SipMatchLWS>(stream, offset);
  if (!byteIs(stream, checkedSum(offset, leading), separator_)) {
    return 0;
  }
  const unsigned int trailing = matchOf<SipMatchLWS>(stream, checkedSum(offset, leading, 1));
  return checkedSum(leading, 1, trailing);
}

unsigned int SipMatchQuotedString::doMatch(const SipStrStream& stream, unsigned int offset) {
  unsigned int count = matchQuote(stream, offset);
  if (count == 0) {
    return 0;
  }
  for (;;) {
    const unsigned int next = checkedSum(offset, count);
    const unsigned int closing = matchQuote(stream, next);
    if (closing != 0) {
      return checkedSum(count, closing);
    }
    const unsigned int piece = quotedPieceLength(stream, next);
    if (piece == 0) {
      return 0;
    }
    count = checkedSum(count, piece);
  }
}

unsigned int SipMatchQuotedString::matchQuote(const SipStrStream& stream, unsigned int offset) {
  return byteIs(stream, offset, '"') ? 1 : 0;
}

SipMatchSpecificString::SipMatchSpecificString(const SipString& literal) : literal_(literal) {}

SipMatchSpecificString::~SipMatchSpecificString() = default;

unsigned int SipMatchSpecificString::doMatch(const SipStrStream& stream, unsigned int offset) {
  for (unsigned int i = 0; i < literal_.length(); ++i) {
    if (!byteIs(stream, checkedSum(offset, i), literal_.c_str()[i])) {
      return 0;
    }
  }
  return literal_.length();
}

unsigned int SipMatchUTF8NonASCII::doMatch(const SipStrStream& stream, unsigned int offset) {
  const unsigned int continuations = continuationCount(stream.peek(offset));
  for (unsigned int i = 1; i <= continuations; ++i) {
    const int c = stream.peek(checkedSum(offset, i));
    if (c < 0x80 || c > 0xBF) {
      return 0;
    }
  }
  return continuations == 0 ? 0 : checkedSum(continuations, 1);
}

unsigned int SipMatchILabel::doMatch(const SipStrStream& stream, unsigned int offset) {
  const unsigned int count = SipMatchCharSet::doMatch(stream, offset);
  if (count == 0 || byteIs(stream, offset, '-') ||
      byteIs(stream, checkedSum(offset, checkedDifference(count, 1)), '-')) {
    return 0;
  }
  return count;
}

bool SipMatchILabel::matchChar(char byte) { return isIn(kLabel, byte); }

unsigned int SipMatchHostname::doMatch(const SipStrStream& stream, unsigned int offset) {
  unsigned int count = 0;
  bool lastBeginsWithLetter = false;
  for (;;) {
    const unsigned int start = checkedSum(offset, count);
    const unsigned int label = matchOf<SipMatchILabel>(stream, start);
    if (label == 0) {
      break;
    }
    lastBeginsWithLetter = byteIsIn(stream, start, kAlpha);
    count = checkedSum(count, label);
    if (!byteIs(stream, checkedSum(offset, count), '.')) {
      break;
    }
    count = checkedSum(count, 1);
  }
  return lastBeginsWithLetter ? count : 0;
}

unsigned int SipMatchIIPV4DecOctet::doMatch(const SipStrStream& stream, unsigned int offset) {
  const unsigned int count = matchOf<SipMatchDigit>(stream, offset);
  const int first = stream.peek(offset);
  switch (count) {
    case 1:
      return 1;
    case 2:
      return first != '0' ? 2 : 0;
    case 3:
      return octetOfThree(first, stream.peek(checkedSum(offset, 1)),
                          stream.peek(checkedSum(offset, 2)))
                 ? 3
                 : 0;
    default:
      return 0;
  }
}

unsigned int SipMatchIIPV4Address::doMatch(const SipStrStream& stream, unsigned int offset) {
  unsigned int count = matchOf<SipMatchIIPV4DecOctet>(stream, offset);
  if (count == 0) {
    return 0;
  }
  for (int dots = 0; dots < 3; ++dots) {
    if (!byteIs(stream, checkedSum(offset, count), '.')) {
      return 0;
    }
    const unsigned int tried = checkedSum(offset, count, 1);
    const unsigned int octet = matchOf<SipMatchIIPV4DecOctet>(stream, tried);
    if (octet == 0) {
      logTrace(kSourceFile, "MatchIPV4Address pos %lu did not match dec-octet", tried);
      return 0;
    }
    count = checkedSum(count, 1, octet);
  }
  return count;
}

unsigned int SipMatchIIPV6H16::doMatch(const SipStrStream& stream, unsigned int offset) {
  const unsigned int count = matchOf<SipMatchHexDigit>(stream, offset);
  return count <= 4 ? count : 0;
}

unsigned int SipMatchIIPV6Address::doMatch(const SipStrStream& stream, unsigned int offset) {
  return Ipv6Walk(stream, offset).length();
}

unsigned int SipMatchHost::doMatch(const SipStrStream& stream, unsigned int offset) {
  const int c = stream.peek(offset);
  if (c == '[') {
    const unsigned int address = matchOf<SipMatchIIPV6Address>(stream, checkedSum(offset, 1));
    if (address == 0) {
      return 1;  // the bracket alone; the caller fails on what follows
    }
    if (!byteIs(stream, checkedSum(offset, 1, address), ']')) {
      logTrace(kSourceFile, "SipMatchHost ']' missing");
      return 0;
    }
    return checkedSum(address, 2);
  }
  if (isIn(kAlnum, c)) {
    const unsigned int name = matchOf<SipMatchHostname>(stream, offset);
    return name != 0 ? name : matchOf<SipMatchIIPV4Address>(stream, offset);
  }
  logTrace(kSourceFile, "SipMatchHost invalid character 0x%02x", static_cast<unsigned char>(c));
  return 0;
}

unsigned int SipAddressMatchScheme::doMatch(const SipStrStream& stream, unsigned int offset) {
  if (!byteIsIn(stream, offset, kAlpha)) {
    return 0;
  }
  return checkedSum(1, matchOf<SipAddressMatchSchemeTrailing>(stream, checkedSum(offset, 1)));
}

bool SipAddressMatchSchemeTrailing::matchChar(char byte) { return isIn(kSchemeTrailing, byte); }

bool SipAddressMatchUser::matchChar(char byte) { return isIn(kUser, byte); }

bool SipAddressMatchPassword::matchChar(char byte) { return isIn(kPassword, byte); }

unsigned int SipAddressMatchUserInfo::doMatch(const SipStrStream& stream, unsigned int offset) {
  const unsigned int user = matchOf<SipAddressMatchUser>(stream, offset);
  if (user == 0 || !byteIs(stream, checkedSum(offset, user), ':')) {
    return user;
  }
  const unsigned int password =
      matchOf<SipAddressMatchPassword>(stream, checkedSum(offset, user, 1));
  return checkedSum(user, 1, password);
}

unsigned int SipAddressMatchDisplayName::doMatch(const SipStrStream& stream, unsigned int offset) {
  unsigned int count = matchOf<SipMatchToken>(stream, offset);
  if (count == 0) {
    return matchOf<SipMatchQuotedString>(stream, offset);
  }
  for (;;) {
    const unsigned int space = matchOf<SipMatchLWS>(stream, checkedSum(offset, count));
    if (space == 0) {
      return count;
    }
    const unsigned int token = matchOf<SipMatchToken>(stream, checkedSum(offset, count, space));
    if (token == 0) {
      return count;
    }
    count = checkedSum(count, space, token);
  }
}

bool SipAddressMatchParamChar::matchChar(char byte) { return isIn(kParamChar, byte); }

bool SipAddressMatchHNameValue::matchChar(char byte) { return isIn(kHNameValue, byte); }

unsigned int SipAddressMatchHeaders::doMatch(const SipStrStream& stream, unsigned int offset) {
  if (!byteIs(stream, offset, '?')) {
    return 0;
  }
  unsigned int count = 0;
  do {
    const unsigned int header = uriHeaderLength(stream, checkedSum(offset, count, 1));
    if (header == 0) {
      return 0;
    }
    count = checkedSum(count, 1, header);
  } while (byteIs(stream, checkedSum(offset, count), '&'));
  return count;
}
