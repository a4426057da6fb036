/// \file
/// The header fields that SIP and its IMS extensions define, as reading a message needs them.
#ifndef SIP_FIELDS_H
#define SIP_FIELDS_H

#include <cstddef>
#include <string_view>
#include <vector>

namespace siputility {

/// What is known of a header field.
struct FieldKind {
  std::string_view name;  ///< the long form
  char compact;           ///< the compact form; 0 for none
  bool list;              ///< one field may have several values, separated by commas
  bool address;           ///< a value is a SIP or tel address
};

/// The known fields, in the order of their names.
struct FieldTable {
  const FieldKind* first;
  std::size_t count;

  const FieldKind* begin() const { return first; }
  const FieldKind* end() const { return first + count; }
};

/// Returns the known fields. The table never changes and lives as long as the program.
FieldTable knownFields();

/// Returns what is known of a field of this name, long or compact, ignoring the case of letters;
/// null for an unknown one. The result lives as long as the program.
const FieldKind* findField(std::string_view name);

/// Splits the value of a field at the separators outside quotes and angle brackets. White space
/// around the pieces is kept; a text without a separator is one piece.
///
/// The pieces are views into the text. The time is linear in its length.
std::vector<std::string_view> splitList(std::string_view text, char separator = ',');

}  // namespace siputility

#endif  // SIP_FIELDS_H
