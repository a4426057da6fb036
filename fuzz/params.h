// params.h - strings and parameters in the form in which the targets compare them.
#ifndef FUZZ_PARAMS_H
#define FUZZ_PARAMS_H

#include <utility>

#include "law.h"
#include "wySipParam.h"

// Returns a text without the white space around it.
inline std::string trimmed(std::string_view text) {
  constexpr std::string_view kSpace = " \t\r\n";
  const std::size_t begin = std::min(text.find_first_not_of(kSpace), text.size());
  return std::string(text.substr(begin, text.find_last_not_of(kSpace) + 1 - begin));
}

// Returns a text with its ASCII letters in lower case.
inline std::string lowerCase(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  return lower;
}

// Parameters in the order in which they are written, names and values.
using Params = std::vector<std::pair<std::string, std::string>>;

// Returns the parameters of a header, an address or a list.
template <typename Owner>
Params paramsOf(const Owner& owner) {
  Params params;
  for (const SipParam& param : siputility::paramsOf(owner)) {
    params.emplace_back(view(param.getName()), view(param.getValue()));
  }
  return params;
}

// Returns whether a list can read these parameters after it has written them. A setter accepts
// values of "tag" and "branch" that only other names may have in a text.
inline bool readsAgain(const SipParamList& list, const Params& params) {
  return std::all_of(params.begin(), params.end(), [&](const auto& param) {
    const bool special = param.first == "tag" || param.first == "branch";
    const SipStrStream value(toSipString(param.second));
    return !special || list.matchTagParamValue(value, 0) == param.second.size();
  });
}

#endif  // FUZZ_PARAMS_H
