// sipText.cpp - the words of a header field.
#include "sipText.h"

#include <algorithm>

#include "wySipMatch.h"

namespace siputility {

std::string_view trimmed(std::string_view text) {
  const std::size_t first = std::min(text.find_first_not_of(" \t"), text.size());
  const std::size_t last = text.find_last_not_of(" \t");
  return last == std::string_view::npos ? std::string_view() : text.substr(first, last + 1 - first);
}

bool isToken(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
    return WySipIsToken(static_cast<unsigned char>(c)) != 0;
  });
}

}  // namespace siputility
