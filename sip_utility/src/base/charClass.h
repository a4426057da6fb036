// charClass.h - the character classes of the SIP and tel grammars, one table of bits.
//
// Every class is a set of ASCII characters; no byte from 0x80 up belongs to any.
#ifndef SIPUTILITY_BASE_CHAR_CLASS_H
#define SIPUTILITY_BASE_CHAR_CLASS_H

#include <array>
#include <cstdint>
#include <string_view>

enum CharClass : std::uint32_t {
  kDigit = 1U << 0,            // 0 to 9
  kHexDigit = 1U << 1,         // 0 to 9, A to F, a to f
  kAlpha = 1U << 2,            // A to Z, a to z
  kAlnum = 1U << 3,            // alpha / digit
  kUnreserved = 1U << 4,       // alnum and the marks
  kToken = 1U << 5,            // alnum and - . ! % * _ + ` ' ~
  kWhiteSpace = 1U << 6,       // space, horizontal tab
  kVisualSeparator = 1U << 7,  // ( ) - .
  kLabel = 1U << 8,            // alnum and -
  kSchemeTrailing = 1U << 9,   // alnum and + - .
  kUric = 1U << 10,            // unreserved and ; / ? : @ & = + $ ,
  kParamChar = 1U << 11,       // unreserved and [ ] / : & + $
  kHNameValue = 1U << 12,      // unreserved and [ ] / ? : + $
  kUser = 1U << 13,            // unreserved and & = + $ , ; ? /
  kPassword = 1U << 14,        // unreserved and & = + $ ,
  kPhoneDigit = 1U << 15,      // digits and visual separators
  kPhoneDigitHex = 1U << 16,   // hexadecimal digits, * and #, visual separators
  kLocalDigit = 1U << 17,      // hexadecimal digits, * and #
  kQuotedPlain = 1U << 18,     // visible characters except the double quote and the backslash
  kValuePlain = 1U << 19,      // visible characters except " < > ;
  kLwsStart = 1U << 20,        // space, horizontal tab, CR
};

namespace charClassTable {

constexpr bool within(int c, int first, int last) { return first <= c && c <= last; }

constexpr std::uint32_t bitIf(bool member, CharClass charClass) {
  return member ? static_cast<std::uint32_t>(charClass) : 0U;
}

constexpr std::uint32_t classesOf(int c) {
  const auto oneOf = [c](std::string_view set) {
    return set.find(static_cast<char>(c)) != std::string_view::npos;
  };
  const bool digit = within(c, '0', '9');
  const bool alpha = within(c, 'A', 'Z') || within(c, 'a', 'z');
  const bool hexDigit = digit || within(c, 'A', 'F') || within(c, 'a', 'f');
  const bool alnum = alpha || digit;
  const bool unreserved = alnum || oneOf("-_.!~*'()");
  const bool separator = oneOf("()-.");
  return bitIf(digit, kDigit) | bitIf(hexDigit, kHexDigit) | bitIf(alpha, kAlpha) |
         bitIf(alnum, kAlnum) | bitIf(unreserved, kUnreserved) |
         bitIf(alnum || oneOf("-.!%*_+`'~"), kToken) | bitIf(oneOf(" \t"), kWhiteSpace) |
         bitIf(separator, kVisualSeparator) | bitIf(alnum || c == '-', kLabel) |
         bitIf(alnum || oneOf("+-."), kSchemeTrailing) |
         bitIf(unreserved || oneOf(";/?:@&=+$,"), kUric) |
         bitIf(unreserved || oneOf("[]/:&+$"), kParamChar) |
         bitIf(unreserved || oneOf("[]/?:+$"), kHNameValue) |
         bitIf(unreserved || oneOf("&=+$,;?/"), kUser) |
         bitIf(unreserved || oneOf("&=+$,"), kPassword) | bitIf(digit || separator, kPhoneDigit) |
         bitIf(hexDigit || separator || oneOf("*#"), kPhoneDigitHex) |
         bitIf(hexDigit || oneOf("*#"), kLocalDigit) |
         bitIf(within(c, '!', '~') && !oneOf("\"\\"), kQuotedPlain) |
         bitIf(within(c, '!', '~') && !oneOf("\"<>;"), kValuePlain) |
         bitIf(oneOf(" \t\r"), kLwsStart);
}

constexpr std::array<std::uint32_t, 256> make() {
  std::array<std::uint32_t, 256> table{};
  for (int c = 0; c < 128; ++c) {
    table[static_cast<std::size_t>(c)] = classesOf(c);
  }
  return table;
}

}  // namespace charClassTable

inline constexpr std::array<std::uint32_t, 256> kCharClasses = charClassTable::make();

// Returns whether the byte belongs to the class.
constexpr bool isIn(CharClass charClass, char byte) {
  return (kCharClasses[static_cast<unsigned char>(byte)] & charClass) != 0;
}

// Returns whether c is the code of a member. No class has a code outside 0 to 255, so the -1 with
// which SipStrStream::peek() marks the end of input is never a member.
inline bool isIn(CharClass charClass, int c) {
  return charClassTable::within(c, 0, 255) &&
         (kCharClasses[static_cast<std::size_t>(c)] & charClass) != 0;
}

// Returns the byte as an unsigned code, an ASCII letter in lower case.
inline int foldCase(char byte) {
  const int c = static_cast<unsigned char>(byte);
  return isIn(kAlpha, byte) ? c | 0x20 : c;
}

#endif  // SIPUTILITY_BASE_CHAR_CLASS_H
