// text.h - text as the tool needs it: for terminals, and compared.
#ifndef TOOL_TEXT_H
#define TOOL_TEXT_H

#include <charconv>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

// Returns a text fit for a terminal: control characters and bytes outside well-formed UTF-8 as
// \xHH, a backslash doubled.
std::string printable(std::string_view text);

// Returns whether the text is well-formed UTF-8 without control characters but tab and line ends.
bool isPlainText(std::string_view text);

// Returns whether both texts are the same, ASCII letters without regard to case.
bool sameIgnoringCase(std::string_view a, std::string_view b);

// Returns the text without the blanks and tabs at its ends.
std::string_view trimmed(std::string_view text);

// Returns whether the text is a token of RFC 3261, section 25.1.
bool isToken(std::string_view text);

// Reads a text that is nothing but digits; false when it is not, or the number does not fit.
template <class Number>
bool readNumber(std::string_view digits, Number& number) {
  const char* end = digits.data() + digits.size();
  const std::from_chars_result result = std::from_chars(digits.data(), end, number);
  return result.ec == std::errc() && result.ptr == end;
}

// Returns which of the names is closest to this one, ASCII letters without regard to case; ""
// when more than so many letters are missing, added, wrong or swapped with a neighbour.
std::string_view closest(std::string_view name, const std::vector<std::string_view>& names,
                         std::size_t most);

#endif  // TOOL_TEXT_H
