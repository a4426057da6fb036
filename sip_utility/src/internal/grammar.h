// grammar.h - the rules of the SIP and tel grammars over plain bytes.
//
// What the exported matchers promise (wySipMatch.h, wySipHeaderMatch.h, wyTelAddressMatch.h)
// without a stream and without virtual calls; the matchers ask these. A rule stands in the source
// file of its matcher. Rules ask each other through matchOf().
#ifndef SIPUTILITY_INTERNAL_GRAMMAR_H
#define SIPUTILITY_INTERNAL_GRAMMAR_H

#include "charClass.h"
#include "checkedMath.h"
#include "unread.h"

namespace grammar {

// *member
template <CharClass charClass>
unsigned int charSet(Unread text, unsigned int offset) {
  return text.run(offset, charClass);
}

// Returns whether an escape stands at the offset: "%" HEXDIG HEXDIG
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

inline constexpr Rule& token = charSet<kToken>;
inline constexpr Rule& digits = charSet<kDigit>;
inline constexpr Rule& hexDigits = charSet<kHexDigit>;
inline constexpr Rule& uric = escapedCharSet<kUric>;

// LWS from its first byte, which is there.
unsigned int lwsFrom(Unread text, unsigned int offset);

inline unsigned int lws(Unread text, unsigned int offset) {
  return text.has(offset, kLwsStart) ? lwsFrom(text, offset) : 0;
}

Rule quotedString;
Rule utf8NonAscii;
Rule label;
Rule hostname;
Rule decOctet;
Rule ipv4Address;
Rule h16;
Rule ipv6Address;
Rule host;

// [LWS] separator [LWS]
unsigned int separatedByLws(char separator, Unread text, unsigned int offset);

inline unsigned int separated(char separator, Unread text, unsigned int offset) {
  const bool alone = !isIn(kLwsStart, separator) && text.has(offset, separator) &&
                     !text.has(checkedSum(offset, 1), kLwsStart);
  return alone ? 1 : separatedByLws(separator, text, offset);
}

Rule scheme;
inline constexpr Rule& user = escapedCharSet<kUser>;
inline constexpr Rule& password = escapedCharSet<kPassword>;
Rule userInfo;
Rule displayName;
inline constexpr Rule& paramChars = escapedCharSet<kParamChar>;
inline constexpr Rule& headerChars = escapedCharSet<kHNameValue>;
Rule uriHeaders;

Rule absoluteUri;
Rule nonAuthHeaderValue;
Rule bracketedAddrSpec;  // "<" addr-spec ">"

inline constexpr Rule& telParamName = charSet<kLabel>;
inline constexpr Rule& phoneDigits = charSet<kPhoneDigit>;
inline constexpr Rule& phoneDigitsHex = charSet<kPhoneDigitHex>;
Rule globalPhoneNumber;
Rule localPhoneNumber;
Rule phoneContext;

}  // namespace grammar

#endif  // SIPUTILITY_INTERNAL_GRAMMAR_H
