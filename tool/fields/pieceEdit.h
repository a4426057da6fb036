// pieceEdit.h - edits of the pieces of addresses and header fields.
#ifndef TOOL_PIECE_EDIT_H
#define TOOL_PIECE_EDIT_H

#include <string>
#include <vector>

#include "wySipAddress.h"
#include "wySipHeader.h"
#include "wyTelAddress.h"

// One edit of the command line.
struct Edit {
  enum class Kind { kSet, kParam, kRemoveParam };
  Kind kind;
  std::string name;
  std::string value;
};

// Return the names of the pieces that can be set.
std::vector<std::string> addressPieceNames();
std::vector<std::string> telPieceNames();
std::vector<std::string> headerPieceNames();

// Returns which values the piece takes; "" where the edit has one of them, as far as that is clear
// without the object.
std::string expectedValue(const Edit& edit);

// Each applies an edit and returns the code of the library. After a failure nothing has changed.
VARN_EXCEPTION_CODES apply(SipAddress& address, const Edit& edit);
VARN_EXCEPTION_CODES apply(TelAddress& tel, const Edit& edit);
VARN_EXCEPTION_CODES apply(SipHeader& header, const Edit& edit);

#endif  // TOOL_PIECE_EDIT_H
