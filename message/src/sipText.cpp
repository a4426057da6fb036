// sipText.cpp - the words of a header field.
#include "sipText.h"

#include <algorithm>

#include "wySipMatch.h"

namespace siputility {

std::string_view trimmed(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  return text.substr(0, text.find_last_not_of(" \t") + 1);
}

bool isToken(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
    return WySipIsToken(static_cast<unsigned char>(c)) != 0;
  });
}

}  // namespace siputility
