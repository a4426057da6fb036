// grammar.h - the rules of the SIP and tel grammars over plain bytes.
//
// A rule says how many bytes of a text it covers at an offset, 0 for none. It only looks, and it
// never fails. The exported matchers (wySipMatch.h, wySipHeaderMatch.h, wyTelAddressMatch.h) ask
// these rules. text.cpp, host.cpp, address.cpp, telephone.cpp and headerValue.cpp hold them; rules
// ask each other through matchOf().
#ifndef SIPUTILITY_GRAMMAR_GRAMMAR_H
#define SIPUTILITY_GRAMMAR_GRAMMAR_H

#include <string_view>

#include "base/charClass.h"
#include "base/checkedMath.h"
#include "base/stringAccess.h"

// The unread rest of a stream: bytes that someone else owns. Offsets count from the first unread
// byte. They may lie past the end, where nothing matches.
struct Unread {
  // Returns the byte at the offset as 0 to 255, -1 at the end and past it.
  int peek(unsigned int offset) const {
    return offset < length ? static_cast<unsigned char>(bytes[offset]) : -1;
  }

  // Returns whether this byte is at the offset.
  bool has(unsigned int offset, char byte) const {
    return offset < length && bytes[offset] == byte;
  }

  // Returns whether a member of the class is at the offset.
  bool has(unsigned int offset, CharClass charClass) const {
    return offset < length && isIn(charClass, bytes[offset]);
  }

  // Returns whether this text is at the offset, letter case included.
  bool has(unsigned int offset, std::string_view text) const {
    return from(offset).substr(0, text.size()) == text;
  }

  // Returns the bytes from the offset on.
  std::string_view from(unsigned int offset) const {
    return offset < length ? std::string_view(bytes + offset, length - offset) : std::string_view();
  }

  // Returns the length of the run of members of the class at the offset.
  unsigned int run(unsigned int offset, CharClass charClass) const {
    return offset < length ? endOfRun(offset, charClass) - offset : 0;
  }

  // Returns the first offset past that run.
  // Requires: an offset that is not past the end.
  unsigned int endOfRun(unsigned int offset, CharClass charClass) const {
    const char* const end = bytes + length;
    const char* at = bytes + offset;
    while (at != end && isIn(charClass, *at)) {
      ++at;
    }
    return static_cast<unsigned int>(at - bytes);
  }

  const char* bytes;
  unsigned int length;
};

// Returns what a stream has left, until the stream next moves.
inline Unread unread(const SipStrStream& stream) {
  const std::string_view rest = SipStringAccess::rest(stream);
  return {rest.data(), static_cast<unsigned int>(rest.size())};
}

// As unread(), for what looks at the offset: position + offset must not wrap, which ends the
// process.
inline Unread unreadFor(const SipStrStream& stream, unsigned int offset) {
  checkedSum(stream.pos(), offset);
  return unread(stream);
}

using Rule = unsigned int(Unread text, unsigned int offset);

// Reports an offset past the end of a text as a failed assertion. In wySipMatch.cpp, whatever the
// rule: SipMatch::match() is the place that asserts.
[[gnu::cold]] void reportPastEnd();

// Reports an offset or the end of a match past the end of the text as a failed assertion.
inline void assertWithin(unsigned int offset, Unread text) {
  if (offset > text.length) {
    reportPastEnd();
  }
}

// Returns how many bytes a rule covers, as SipMatch::match() does: it reports what lies outside
// the text.
template <Rule* rule>
[[gnu::always_inline]] inline unsigned int matchOf(Unread text, unsigned int offset) {
  assertWithin(offset, text);
  const unsigned int count = rule(text, offset);
  assertWithin(checkedSum(offset, count), text);
  return count;
}

// Returns how many of the bytes next to be read a rule covers.
template <Rule* rule>
[[gnu::always_inline]] inline unsigned int matchOf(const SipStrStream& stream) {
  return matchOf<rule>(unread(stream), 0);
}

namespace grammar {

// *member
template <CharClass charClass>
unsigned int charSet(Unread text, unsigned int offset) {
  return text.run(offset, charClass);
}

// Returns whether an escape is at the offset: "%" HEXDIG HEXDIG
inline bool escapeAt(Unread text, unsigned int offset) {
  return text.has(offset, '%') && text.has(offset + 1, kHexDigit) &&
         text.has(offset + 2, kHexDigit);
}

// *( member / escaped )
template <CharClass charClass>
unsigned int escapedCharSet(Unread text, unsigned int offset) {
  static_assert(!isIn(charClass, '%'), "an escape would be ambiguous");
  if (offset >= text.length) {
    return 0;
  }
  unsigned int end = text.endOfRun(offset, charClass);
  while (escapeAt(text, end)) {
    end = text.endOfRun(end + 3, charClass);
  }
  return end - offset;
}

// text.cpp

inline constexpr Rule& token = charSet<kToken>;
inline constexpr Rule& digits = charSet<kDigit>;
inline constexpr Rule& hexDigits = charSet<kHexDigit>;
inline constexpr Rule& uric = escapedCharSet<kUric>;

// LWS whose first byte is there; lws() below tests that first.
unsigned int lwsFrom(Unread text, unsigned int offset);

inline unsigned int lws(Unread text, unsigned int offset) {
  return text.has(offset, kLwsStart) ? lwsFrom(text, offset) : 0;
}

// [LWS] separator [LWS]; separated() below first tries a separator without LWS.
unsigned int separatedByLws(char separator, Unread text, unsigned int offset);

inline unsigned int separated(char separator, Unread text, unsigned int offset) {
  const bool alone = !isIn(kLwsStart, separator) && text.has(offset, separator) &&
                     !text.has(checkedSum(offset, 1), kLwsStart);
  return alone ? 1 : separatedByLws(separator, text, offset);
}

// Says what counts as a quote: the length of the quote at the offset, 0 for none.
class QuoteRule {
 public:
  virtual unsigned int quoteAt(unsigned int offset) const = 0;

 protected:
  ~QuoteRule() = default;
};

Rule quotedString;
Rule utf8NonAscii;

// As quotedString, by what a caller counts as a quote; null for the double quote.
unsigned int quotedStringBy(const QuoteRule* rule, Unread text, unsigned int offset);

// host.cpp

Rule label;
Rule hostname;
Rule decOctet;
Rule ipv4Address;
Rule h16;
Rule ipv6Address;
Rule host;

// Returns the run, the count of label characters at the offset, where it is a label; else 0.
unsigned int labelOf(Unread text, unsigned int offset, unsigned int run);

// address.cpp

Rule scheme;
inline constexpr Rule& user = escapedCharSet<kUser>;
inline constexpr Rule& password = escapedCharSet<kPassword>;
Rule userInfo;
Rule displayName;
inline constexpr Rule& paramChars = escapedCharSet<kParamChar>;
inline constexpr Rule& headerChars = escapedCharSet<kHNameValue>;
Rule uriHeaders;

// telephone.cpp: these match at the first byte, whatever the offset

inline constexpr Rule& telParamName = charSet<kLabel>;  // at the offset
inline constexpr Rule& phoneDigits = charSet<kPhoneDigit>;
inline constexpr Rule& phoneDigitsHex = charSet<kPhoneDigitHex>;
Rule globalPhoneNumber;
Rule localPhoneNumber;
Rule phoneContext;

// headerValue.cpp

Rule absoluteUri;

// Reads the addresses in brackets of one value; each returns the bytes to count, 0 for a refusal.
class BracketReader {
 public:
  // "<" addr-spec ">" at the offset.
  virtual unsigned int sip(unsigned int offset) = 0;

  // A tel URI, read from the first byte of the text.
  virtual unsigned int tel() = 0;

 protected:
  ~BracketReader() = default;
};

// value = run *( LWS run ), and one run of it
unsigned int headerValue(Unread text, unsigned int offset, BracketReader& brackets);
unsigned int headerValueRun(Unread text, unsigned int offset, BracketReader& brackets);

}  // namespace grammar

#endif  // SIPUTILITY_GRAMMAR_GRAMMAR_H
