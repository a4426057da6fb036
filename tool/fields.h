// fields.h - the header fields that SIP and its IMS extensions define, as far as reading goes.
#ifndef TOOL_FIELDS_H
#define TOOL_FIELDS_H

#include <string>
#include <string_view>
#include <vector>

struct FieldKind {
  std::string_view name;
  char compact;  // the compact form; 0 for none
  bool list;     // several values may stand in one field, separated by commas
  bool address;  // a value is a SIP or tel address
};

// Returns what is known of a field of this name, long or compact, letter case ignored; null for
// an unknown one.
const FieldKind* findField(std::string_view name);

// Returns the name of the known field that an unknown one may be misspelled for; "" for none, for a
// short name and for one that begins with "X-" or "P-".
std::string_view likelyField(std::string_view name);

// Splits a field's text at the commas that stand outside quotes and angle brackets. White space
// around the pieces stays.
std::vector<std::string_view> splitList(std::string_view text);

#endif  // TOOL_FIELDS_H
