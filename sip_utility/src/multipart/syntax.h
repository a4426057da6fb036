// syntax.h - the texts between the parts of a multipart body.
#ifndef SIPUTILITY_MULTIPART_SYNTAX_H
#define SIPUTILITY_MULTIPART_SYNTAX_H

#include <cstring>
#include <string_view>

inline constexpr std::string_view kLineEnd = "\r\n";
inline constexpr std::string_view kHeadersEnd = "\r\n\r\n";
inline constexpr std::string_view kDashes = "--";

// What ValidateCloseDelimiter() returns.
inline constexpr int kWrongBoundary = 1;
inline constexpr int kNotRead = 2;  // null, or out of memory
inline constexpr int kClosed = 3;
inline constexpr int kNotClosed = 4;

inline bool startsWith(std::string_view text, std::string_view start) {
  return text.size() >= start.size() && std::memcmp(text.data(), start.data(), start.size()) == 0;
}

#endif  // SIPUTILITY_MULTIPART_SYNTAX_H
