// wySipMatch.cpp - grammar matchers and character predicates of SIP text.
#include "wySipMatch.h"

#include "internal/charClass.h"
#include "internal/checkedMath.h"
#include "internal/equality.h"
#include "internal/grammar.h"
#include "internal/log.h"
#include "internal/matchOf.h"
#include "internal/unread.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wySipMatch";

constexpr unsigned int kIpv6Groups = 8;
constexpr unsigned int kIpv4TailGroups = 2;
constexpr unsigned int kFirstNonAscii = 0x80;
constexpr int kDelete = 0x7F;

// LWS inside quotes
unsigned int quotedWhiteSpaceLength(Unread text, unsigned int offset) {
  const unsigned int count = matchOf<grammar::lws>(text, offset);
  if (count == 0) {
    logTrace(kSourceFile, "SipMatchQuotedString::doMatch - invalid LWS");
  }
  return count;
}

// quoted-pair = "\" any byte but CR and LF
unsigned int quotedPairLength(Unread text, unsigned int offset) {
  const int escaped = text.peek(checkedSum(offset, 1));
  if (escaped == '\r' || escaped == '\n') {
    logTrace(kSourceFile, "SipMatchQuotedString::doMatch - cannot escape CR or LF");
    return 0;
  }
  return 2;
}

unsigned int quotedNonAsciiLength(Unread text, unsigned int offset) {
  const unsigned int count = matchOf<grammar::utf8NonAscii>(text, offset);
  if (count == 0) {
    logTrace(kSourceFile, "SipMatchQuotedString::doMatch - invalid UTF8 non-ascii");
  }
  return count;
}

// One piece between the quotes: LWS / quoted-pair / UTF8-NONASCII / a visible ASCII character
unsigned int quotedPieceLength(Unread text, unsigned int offset) {
  const int c = text.peek(offset);
  switch (c) {
    case ' ':
    case '\t':
    case '\r':
    case '\n':
      return quotedWhiteSpaceLength(text, offset);
    case -1:
      logTrace(kSourceFile, "SipMatchQuotedString::doMatch - end of string without end quote");
      return 0;
    case '\\':
      return quotedPairLength(text, offset);
    default:
      break;
  }
  const auto code = static_cast<unsigned int>(c);
  if (code >= kFirstNonAscii) {
    return quotedNonAsciiLength(text, offset);
  }
  if (c < ' ' || c == kDelete) {
    logTrace(kSourceFile, "SipMatchQuotedString::doMatch - bad character 0x%02x", code);
    return 0;
  }
  return 1;
}

// DQUOTE *( piece ) DQUOTE, by what quoteAt() takes for a quote. Where that is the double quote
// alone, runs of plain characters are passed as a whole.
template <bool passesRuns, typename QuoteAt>
unsigned int quotedLength(Unread text, unsigned int offset, QuoteAt quoteAt) {
  unsigned int count = quoteAt(offset);
  while (count != 0) {
    if (passesRuns) {
      count = checkedSum(count, text.run(checkedSum(offset, count), kQuotedPlain));
    }
    const unsigned int next = checkedSum(offset, count);
    if (const unsigned int closing = quoteAt(next); closing != 0) {
      return checkedSum(count, closing);
    }
    const unsigned int piece = quotedPieceLength(text, next);
    count = piece == 0 ? 0 : checkedSum(count, piece);
  }
  return 0;
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

// A run of label characters that begins or ends with "-" is none.
unsigned int labelLength(Unread text, unsigned int offset, unsigned int run) {
  const std::string_view label = text.from(offset).substr(0, run);
  return label.empty() || label.front() == '-' || label.back() == '-' ? 0 : run;
}

// One header of a URI behind its "?" or "&": 1*hnv-char "=" *hnv-char
unsigned int uriHeaderLength(Unread text, unsigned int offset) {
  const unsigned int name = matchOf<grammar::headerChars>(text, offset);
  if (name == 0 || !text.has(checkedSum(offset, name), '=')) {
    return 0;
  }
  return checkedSum(name, 1, matchOf<grammar::headerChars>(text, checkedSum(offset, name, 1)));
}

// The walk over the groups of an IPv6 address.
class Ipv6Walk {
 public:
  Ipv6Walk(Unread text, unsigned int offset)
      : text_(text),
        offset_(offset),
        count_(matchOf<grammar::h16>(text, offset)),
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
    } else if (!text_.has(checkedSum(offset_, count_), ':')) {
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
    if (text_.has(checkedSum(offset_, start), ':')) {
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
    const unsigned int count = matchOf<grammar::ipv4Address>(text_, checkedSum(offset_, start));
    if (count == 0) {
      return false;
    }
    end(compressed_ || groupsLeft_ == kIpv4TailGroups ? checkedSum(start, count) : 0);
    return true;
  }

  void group(unsigned int start) {
    const unsigned int count = matchOf<grammar::h16>(text_, checkedSum(offset_, start));
    if (count == 0) {
      end(compressed_ ? start : 0);
      return;
    }
    groupsLeft_ = checkedDifference(groupsLeft_, 1);
    count_ = checkedSum(start, count);
  }

  Unread text_;
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

void reportPastEnd() { reportAssertion(kSourceFile); }

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

unsigned int grammar::lwsFrom(Unread text, unsigned int offset) {
  const unsigned int leading = text.run(offset, kWhiteSpace);
  const unsigned int fold = checkedSum(offset, leading);
  if (!text.has(fold, '\r')) {
    return leading;
  }
  if (!text.has(checkedSum(fold, 1), '\n')) {
    return 0;
  }
  const unsigned int trailing = text.run(checkedSum(fold, 2), kWhiteSpace);
  if (trailing == 0 || text.has(checkedSum(fold, 2, trailing), '\r')) {
    return 0;
  }
  return checkedSum(leading, 2, trailing);
}

unsigned int SipMatchLWS::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::lws(unreadFor(stream, offset), offset);
}

unsigned int grammar::separatedByLws(char separator, Unread text, unsigned int offset) {
  const unsigned int leading = matchOf<lws>(text, offset);
  if (!text.has(checkedSum(offset, leading), separator)) {
    return 0;
  }
  return checkedSum(leading, 1, matchOf<lws>(text, checkedSum(offset, leading, 1)));
}

SipMatchLWSChar::SipMatchLWSChar(char separator) : separator_(separator) {}

unsigned int SipMatchLWSChar::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::separated(separator_, unreadFor(stream, offset), offset);
}

unsigned int grammar::quotedString(Unread text, unsigned int offset) {
  const auto quoteAt = [text](unsigned int at) { return text.has(at, '"') ? 1U : 0U; };
  return quotedLength<true>(text, offset, quoteAt);
}

unsigned int SipMatchQuotedString::doMatch(const SipStrStream& stream, unsigned int offset) {
  const auto quoteAt = [this, &stream](unsigned int at) { return matchQuote(stream, at); };
  return quotedLength<false>(unreadFor(stream, offset), offset, quoteAt);
}

unsigned int SipMatchQuotedString::matchQuote(const SipStrStream& stream, unsigned int offset) {
  return unreadFor(stream, offset).has(offset, '"') ? 1 : 0;
}

SipMatchSpecificString::SipMatchSpecificString(const SipString& literal) : literal_(literal) {}

SipMatchSpecificString::~SipMatchSpecificString() = default;

unsigned int SipMatchSpecificString::doMatch(const SipStrStream& stream, unsigned int offset) {
  return unreadFor(stream, offset).has(offset, view(literal_)) ? literal_.length() : 0;
}

unsigned int grammar::utf8NonAscii(Unread text, unsigned int offset) {
  const unsigned int continuations = continuationCount(text.peek(offset));
  for (unsigned int i = 1; i <= continuations; ++i) {
    const int c = text.peek(checkedSum(offset, i));
    if (c < 0x80 || c > 0xBF) {
      return 0;
    }
  }
  return continuations == 0 ? 0 : checkedSum(continuations, 1);
}

unsigned int SipMatchUTF8NonASCII::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::utf8NonAscii(unreadFor(stream, offset), offset);
}

unsigned int grammar::label(Unread text, unsigned int offset) {
  return labelLength(text, offset, text.run(offset, kLabel));
}

unsigned int SipMatchILabel::doMatch(const SipStrStream& stream, unsigned int offset) {
  return labelLength(unreadFor(stream, offset), offset, SipMatchCharSet::doMatch(stream, offset));
}

bool SipMatchILabel::matchChar(char byte) { return isIn(kLabel, byte); }

unsigned int grammar::hostname(Unread text, unsigned int offset) {
  unsigned int end = offset;
  bool lastBeginsWithLetter = false;
  for (;;) {
    const unsigned int count = matchOf<label>(text, end);
    if (count == 0) {
      break;
    }
    lastBeginsWithLetter = isIn(kAlpha, text.bytes[end]);
    end = checkedSum(end, count);
    if (!text.has(end, '.')) {
      break;
    }
    ++end;
  }
  return lastBeginsWithLetter ? end - offset : 0;
}

unsigned int SipMatchHostname::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::hostname(unreadFor(stream, offset), offset);
}

unsigned int grammar::decOctet(Unread text, unsigned int offset) {
  const unsigned int count = matchOf<digits>(text, offset);
  const int first = text.peek(offset);
  switch (count) {
    case 1:
      return 1;
    case 2:
      return first != '0' ? 2 : 0;
    case 3:
      return octetOfThree(first, text.peek(checkedSum(offset, 1)), text.peek(checkedSum(offset, 2)))
                 ? 3
                 : 0;
    default:
      return 0;
  }
}

unsigned int SipMatchIIPV4DecOctet::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::decOctet(unreadFor(stream, offset), offset);
}

unsigned int grammar::ipv4Address(Unread text, unsigned int offset) {
  unsigned int count = matchOf<decOctet>(text, offset);
  if (count == 0) {
    return 0;
  }
  for (int dots = 0; dots < 3; ++dots) {
    if (!text.has(checkedSum(offset, count), '.')) {
      return 0;
    }
    const unsigned int tried = checkedSum(offset, count, 1);
    const unsigned int octet = matchOf<decOctet>(text, tried);
    if (octet == 0) {
      logTrace(kSourceFile, "MatchIPV4Address pos %lu did not match dec-octet", tried);
      return 0;
    }
    count = checkedSum(count, 1, octet);
  }
  return count;
}

unsigned int SipMatchIIPV4Address::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::ipv4Address(unreadFor(stream, offset), offset);
}

unsigned int grammar::h16(Unread text, unsigned int offset) {
  const unsigned int count = matchOf<hexDigits>(text, offset);
  return count <= 4 ? count : 0;
}

unsigned int SipMatchIIPV6H16::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::h16(unreadFor(stream, offset), offset);
}

unsigned int grammar::ipv6Address(Unread text, unsigned int offset) {
  return Ipv6Walk(text, offset).length();
}

unsigned int SipMatchIIPV6Address::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::ipv6Address(unreadFor(stream, offset), offset);
}

unsigned int grammar::host(Unread text, unsigned int offset) {
  const int c = text.peek(offset);
  if (c == '[') {
    const unsigned int address = matchOf<ipv6Address>(text, checkedSum(offset, 1));
    if (address == 0) {
      return 1;  // the bracket alone; the caller fails on what follows
    }
    if (!text.has(checkedSum(offset, 1, address), ']')) {
      logTrace(kSourceFile, "SipMatchHost ']' missing");
      return 0;
    }
    return checkedSum(address, 2);
  }
  if (isIn(kAlnum, c)) {
    const unsigned int name = matchOf<hostname>(text, offset);
    return name != 0 ? name : matchOf<ipv4Address>(text, offset);
  }
  logTrace(kSourceFile, "SipMatchHost invalid character 0x%02x", static_cast<unsigned char>(c));
  return 0;
}

unsigned int SipMatchHost::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::host(unreadFor(stream, offset), offset);
}

unsigned int grammar::scheme(Unread text, unsigned int offset) {
  if (!text.has(offset, kAlpha)) {
    return 0;
  }
  return checkedSum(1, matchOf<charSet<kSchemeTrailing>>(text, checkedSum(offset, 1)));
}

unsigned int SipAddressMatchScheme::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::scheme(unreadFor(stream, offset), offset);
}

bool SipAddressMatchSchemeTrailing::matchChar(char byte) { return isIn(kSchemeTrailing, byte); }

bool SipAddressMatchUser::matchChar(char byte) { return isIn(kUser, byte); }

bool SipAddressMatchPassword::matchChar(char byte) { return isIn(kPassword, byte); }

unsigned int grammar::userInfo(Unread text, unsigned int offset) {
  const unsigned int userCount = matchOf<user>(text, offset);
  if (userCount == 0 || !text.has(checkedSum(offset, userCount), ':')) {
    return userCount;
  }
  return checkedSum(userCount, 1, matchOf<password>(text, checkedSum(offset, userCount, 1)));
}

unsigned int SipAddressMatchUserInfo::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::userInfo(unreadFor(stream, offset), offset);
}

unsigned int grammar::displayName(Unread text, unsigned int offset) {
  unsigned int count = matchOf<token>(text, offset);
  if (count == 0) {
    return matchOf<quotedString>(text, offset);
  }
  for (;;) {
    const unsigned int space = matchOf<lws>(text, checkedSum(offset, count));
    if (space == 0) {
      return count;
    }
    const unsigned int next = matchOf<token>(text, checkedSum(offset, count, space));
    if (next == 0) {
      return count;
    }
    count = checkedSum(count, space, next);
  }
}

unsigned int SipAddressMatchDisplayName::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::displayName(unreadFor(stream, offset), offset);
}

bool SipAddressMatchParamChar::matchChar(char byte) { return isIn(kParamChar, byte); }

bool SipAddressMatchHNameValue::matchChar(char byte) { return isIn(kHNameValue, byte); }

unsigned int grammar::uriHeaders(Unread text, unsigned int offset) {
  if (!text.has(offset, '?')) {
    return 0;
  }
  unsigned int count = 0;
  do {
    const unsigned int header = uriHeaderLength(text, checkedSum(offset, count, 1));
    if (header == 0) {
      return 0;
    }
    count = checkedSum(count, 1, header);
  } while (text.has(checkedSum(offset, count), '&'));
  return count;
}

unsigned int SipAddressMatchHeaders::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::uriHeaders(unreadFor(stream, offset), offset);
}
