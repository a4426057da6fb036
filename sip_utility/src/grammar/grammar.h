// grammar.h - the rules of the SIP and tel grammars over plain bytes.
//
// A rule returns how many bytes of a text it covers at an offset, 0 for no match. It changes
// nothing and has no other way to fail. The exported matchers (wySipMatch.h, wySipHeaderMatch.h,
// wyTelAddressMatch.h) call these rules. Each rule is in the source named above its declaration.
// Rules call each other through matchOf().
#ifndef SIPUTILITY_GRAMMAR_GRAMMAR_H
#define SIPUTILITY_GRAMMAR_GRAMMAR_H

#include <string_view>

#include "base/charClass.h"
#include "base/checkedMath.h"
#include "base/stringAccess.h"

// The unread rest of a stream; the stream owns the bytes. Offsets count from the first unread byte.
// An offset may be past the end, where nothing matches.
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

  // Returns whether this text is at the offset, in the same letter case.
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
    while (end - at >= 4) {  // most of the time of a parse is spent here
      const unsigned int members = membersOfFour(at, charClass);
      at += members;
      if (members != 4) {
        return static_cast<unsigned int>(at - bytes);
      }
    }
    while (at != end && isIn(charClass, *at)) {
      ++at;
    }
    return static_cast<unsigned int>(at - bytes);
  }

  // Moves past the first count bytes and returns them.
  // Requires: so many bytes.
  std::string_view take(unsigned int count) {
    const std::string_view taken = {bytes, count};
    bytes += count;
    length -= count;
    return taken;
  }

  const char* bytes;
  unsigned int length;

 private:
  // Returns how many of four bytes, counted from the first, are members of the class.
  static unsigned int membersOfFour(const char* four, CharClass charClass) {
    unsigned int count = 0;
    while (count != 4 && isIn(charClass, four[count])) {
      ++count;
    }
    return count;
  }
};

// Returns bytes as a text to read.
inline Unread unread(std::string_view bytes) { return {bytes.data(), checkedLength(bytes.size())}; }

// Returns the unread bytes of a stream. They are no longer the unread ones once the stream moves.
inline Unread unread(const SipStrStream& stream) {
  const std::string_view rest = SipStringAccess::rest(stream);
  return {rest.data(), static_cast<unsigned int>(rest.size())};
}

// Moves a stream to where the text begins, which is what is left of its unread bytes.
inline void moveTo(SipStrStream& stream, Unread text) {
  SipStringAccess::advance(stream, unread(stream).length - text.length);
}

// As unread(), for a match at the offset. Ends the process when position + offset wraps.
inline Unread unreadFor(const SipStrStream& stream, unsigned int offset) {
  checkedSum(stream.pos(), offset);
  return unread(stream);
}

using Rule = unsigned int(Unread text, unsigned int offset);

// Reports an offset past the end of a text as a failed assertion. It is defined in wySipMatch.cpp:
// the report names the file of SipMatch::match(), whatever the rule.
[[gnu::cold]] void reportPastEnd();

// Reports an offset or the end of a match past the end of the text as a failed assertion.
inline void assertWithin(unsigned int offset, Unread text) {
  if (offset > text.length) {
    reportPastEnd();
  }
}

// Returns how many bytes a rule covers that may count past the end of the text.
template <Rule* rule>
unsigned int matchPastEnd(Unread text, unsigned int offset) {
  assertWithin(offset, text);
  const unsigned int count = rule(text, offset);
  assertWithin(checkedSum(offset, count), text);
  return count;
}

// Returns how many bytes a rule covers. Like SipMatch::match(), it reports an offset or an end
// outside the text as a failed assertion; from an offset within the text no rule gets outside. Each
// rule that is asked on the way reports for itself, so that a bad offset is reported as often as by
// matchers that ask each other.
template <Rule* rule>
[[gnu::always_inline]] inline unsigned int matchOf(Unread text, unsigned int offset) {
  return offset <= text.length ? rule(text, offset) : matchPastEnd<rule>(text, offset);
}

// Returns how many of the next unread bytes a rule covers.
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

// LWS, once its first byte has been seen. lws() tests that byte inline: mostly there is no LWS.
unsigned int lwsFrom(Unread text, unsigned int offset);

inline unsigned int lws(Unread text, unsigned int offset) {
  return text.has(offset, kLwsStart) ? lwsFrom(text, offset) : 0;
}

// [LWS] byte [LWS]. separator() handles a byte without LWS inline and leaves the rest to
// separatorWithLws(), also a separator that is itself white space.
unsigned int separatorWithLws(char byte, Unread text, unsigned int offset);

inline unsigned int separator(char byte, Unread text, unsigned int offset) {
  const bool alone = !isIn(kLwsStart, byte) && text.has(offset, byte) &&
                     !text.has(checkedSum(offset, 1), kLwsStart);
  return alone ? 1 : separatorWithLws(byte, text, offset);
}

// Decides what counts as a quote.
class QuoteRule {
 public:
  // Returns the length of the quote at the offset, 0 for none.
  virtual unsigned int quoteAt(unsigned int offset) const = 0;

 protected:
  ~QuoteRule() = default;
};

Rule quotedString;
Rule utf8NonAscii;

// As quotedString, with the quotes of the rule. Null means the double quote.
unsigned int quotedStringBy(const QuoteRule* rule, Unread text, unsigned int offset);

// host.cpp

Rule label;
Rule hostname;
Rule decOctet;
Rule ipv4Address;
Rule h16;
Rule ipv6Address;
Rule host;

// Returns the run if it is a label, else 0. The run is the count of label characters at the offset.
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

// telephone.cpp

inline constexpr Rule& telParamName = charSet<kLabel>;
inline constexpr Rule& phoneDigits = charSet<kPhoneDigit>;
inline constexpr Rule& phoneDigitsHex = charSet<kPhoneDigitHex>;

// These three match at the first unread byte, whatever the offset. Callers rely on it.
Rule globalPhoneNumber;
Rule localPhoneNumber;
Rule phoneContext;

// headerValue.cpp

Rule absoluteUri;

// Reads the addresses in brackets of one value. Each operation returns the number of bytes that the
// bracket counts for, 0 for a refusal.
class BracketReader {
 public:
  // "<" addr-spec ">" at the offset.
  virtual unsigned int sip(unsigned int offset) = 0;

  // A tel URI, read from the first byte of the text, wherever the "<" is.
  virtual unsigned int tel() = 0;

 protected:
  ~BracketReader() = default;
};

// value = run *( LWS run ), and one run of it
unsigned int headerValue(Unread text, unsigned int offset, BracketReader& brackets);
unsigned int headerValueRun(Unread text, unsigned int offset, BracketReader& brackets);

}  // namespace grammar

#endif  // SIPUTILITY_GRAMMAR_GRAMMAR_H
