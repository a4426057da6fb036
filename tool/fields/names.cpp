// names.cpp - which known header field an unknown name is likely to mean.
#include "fields/names.h"

#include <algorithm>

#include "text/sip.h"
#include "text/terminal.h"
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

std::string noteOnField(const std::string& name) {
  const std::string_view meant = likelyField(name);
  return meant.empty()
             ? ""
             : "note: '" + name + "' is no known field, is it '" + std::string(meant) + "'?";
}

void noteLikelyField(const std::string& name) {
  if (const std::string note = noteOnField(name); !note.empty()) {
    complain(note, kAccepted);
  }
}

std::string_view longName(std::string_view name) {
  const FieldKind* kind = findField(name);
  return kind == nullptr ? name : kind->name;
}
