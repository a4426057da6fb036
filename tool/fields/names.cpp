// names.cpp - which known header field an unknown name is likely to mean.
#include "fields/names.h"

#include <algorithm>

#include "text/sip.h"
#include "text/text.h"

namespace {

constexpr std::size_t kMaxSteps = 2;  // from a misspelt name to the one it may mean

}  // namespace

std::string_view likelyField(std::string_view name) {
  const std::string_view prefix = name.substr(0, 2);
  if (findField(name) != nullptr || equalIgnoringCase(prefix, "X-") ||
      equalIgnoringCase(prefix, "P-")) {
    return "";
  }
  std::vector<std::string_view> names;
  for (const FieldKind& field : knownFields()) {
    names.push_back(field.name);
  }
  return closest(name, names, std::min(name.size() / 4, kMaxSteps));
}
