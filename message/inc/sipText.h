/// \file
/// The words of a header field: tokens, numbers, the blanks around them.
#ifndef SIP_TEXT_H
#define SIP_TEXT_H

#include <charconv>
#include <string_view>
#include <system_error>
#include <type_traits>

namespace siputility {

/// Returns the text without the blanks and tabs at its ends; an empty one is a view into it as
/// well.
std::string_view trimmed(std::string_view text);

/// Returns the line without the CRLF, LF or CR at its end.
std::string_view withoutLineEnd(std::string_view line);

/// Returns whether the text is a token (RFC 3261 25.1).
bool isToken(std::string_view text);

/// Reads a text that is nothing but digits into an unsigned number. Returns false, without effect,
/// when it is not or the number does not fit.
template <class Number>
bool readNumber(std::string_view digits, Number& number) {
  static_assert(std::is_unsigned_v<Number>);
  const char* end = digits.data() + digits.size();
  const std::from_chars_result result = std::from_chars(digits.data(), end, number);
  return result.ec == std::errc() && result.ptr == end;
}

}  // namespace siputility

#endif  // SIP_TEXT_H
