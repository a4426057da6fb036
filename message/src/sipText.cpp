// sipText.cpp - the words of a header field.
#include "sipText.h"

#include <algorithm>

#include "wySipMatch.h"

namespace siputility {

std::string_view trimmed(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  return text.substr(0, text.find_last_not_of(" \t") + 1);
}

std::string_view withoutLineEnd(std::string_view line) {
  for (const char end : {'\n', '\r'}) {
    line.remove_suffix(!line.empty() && line.back() == end ? 1 : 0);
  }
  return line;
}

bool isToken(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
    return WySipIsToken(static_cast<unsigned char>(c)) != 0;
  });
}

}  // namespace siputility
