// valueEdit.h - edits one value of a header field, and nothing else of its bytes.
#ifndef TOOL_VALUE_EDIT_H
#define TOOL_VALUE_EDIT_H

#include <optional>
#include <string>

#include "fields/pieceEdit.h"
#include "fields/place.h"

// What a piece belongs to.
enum class EditedPart { kField, kAddress };

// Why a field or an edit of it was refused.
struct Refusal {
  std::string reason;
  std::string raw;             // the text, for the place
  std::optional<Place> place;  // where it was refused, if known
};

// Edits a value, which is as received: with the white space around it and its folds. Of a Via, the
// address is the sent-by. The library checks the piece and then the complete value. A tel address
// is written anew; of all others only the bytes of the piece change. Returns why the edit was
// refused; nothing has changed then.
std::optional<Refusal> editValue(const std::string& name, std::string& value, EditedPart part,
                                 const Edit& edit);

// Returns why the library refuses a new field with one value; nothing for valid SIP.
std::optional<Refusal> refusalOfField(const std::string& name, const std::string& value);

#endif  // TOOL_VALUE_EDIT_H
