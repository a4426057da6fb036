// fields.h - the header fields that SIP and its IMS extensions define, as reading needs them.
#ifndef TOOL_FIELDS_H
#define TOOL_FIELDS_H

#include <string>
#include <string_view>
#include <vector>

struct FieldKind {
  std::string_view name;
  char compact;  // the compact form; 0 for none
  bool list;     // one field may have several values, separated by commas
  bool address;  // a value is a SIP or tel address
};

// Returns what is known of a field of this name, long or compact, letter case ignored; null for
// an unknown one.
const FieldKind* findField(std::string_view name);

// Returns how many fields are known, and the number of one of them, from 0.
std::size_t fieldCount();
std::size_t numberOf(const FieldKind& field);

// Returns the known field that an unknown name is likely to mean; "" for none, for a short name and
// for one that begins with "X-" or "P-".
std::string_view likelyField(std::string_view name);

// Splits a field's text at the commas outside quotes and angle brackets. White space around the
// pieces is kept.
std::vector<std::string_view> splitList(std::string_view text);

#endif  // TOOL_FIELDS_H
