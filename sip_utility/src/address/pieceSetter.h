// pieceSetter.h - replaces one piece of an address by a checked value.
#ifndef SIPUTILITY_ADDRESS_PIECE_SETTER_H
#define SIPUTILITY_ADDRESS_PIECE_SETTER_H

#include "grammar/grammar.h"
#include "wySipString.h"

// What a setter logs, by the step that failed.
struct PieceMessages {
  const char* stream;
  const char* parsing;
  const char* get;
  const char* trailing;
  const char* assignment;
};

// Replaces the piece by the value, white space around it dropped, where the rule covers all the
// rest; else logs why not (level 4) and changes nothing.
// Fails: VARN_INVALID_INPUT, VARN_RESOURCE_FAILURE.
VARN_EXCEPTION_CODES replacePiece(SipString& piece, const SipString& value, Rule& rule,
                                  const PieceMessages& messages, const char* sourceFile,
                                  int line = __builtin_LINE());

#endif  // SIPUTILITY_ADDRESS_PIECE_SETTER_H
