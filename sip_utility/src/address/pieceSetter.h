// pieceSetter.h - replaces one piece of an address with a checked value.
#ifndef SIPUTILITY_ADDRESS_PIECE_SETTER_H
#define SIPUTILITY_ADDRESS_PIECE_SETTER_H

#include "grammar/grammar.h"
#include "wySipString.h"

// What a setter logs, one text for each step that can fail.
struct PieceMessages {
  const char* stream;
  const char* parsing;
  const char* get;
  const char* trailing;
  const char* assignment;
};

// Replaces the piece with the value if the rule covers all of it. White space around the value is
// dropped. Otherwise logs the reason (level 4) and changes nothing.
// Fails: VARN_INVALID_INPUT, VARN_RESOURCE_FAILURE.
VARN_EXCEPTION_CODES replacePiece(SipString& piece, const SipString& value, Rule& rule,
                                  const PieceMessages& messages, const char* sourceFile,
                                  int line = __builtin_LINE());

#endif  // SIPUTILITY_ADDRESS_PIECE_SETTER_H
