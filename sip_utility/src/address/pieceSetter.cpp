// pieceSetter.cpp - replaces one piece of an address with a checked value.
#include "address/pieceSetter.h"

#include "base/log.h"

VARN_EXCEPTION_CODES replacePiece(SipString& piece, const SipString& value, Rule& rule,
                                  const PieceMessages& messages, const char* sourceFile, int line) {
  SipLWSStrStream stream(value);
  if (!stream.valid()) {
    logFailure(sourceFile, messages.stream, 0, 0, line);
    return VARN_RESOURCE_FAILURE;
  }
  const unsigned int length = rule(unread(stream), 0);
  if (length == 0) {
    logFailure(sourceFile, messages.parsing, 0, 0, line);
    return VARN_INVALID_INPUT;
  }
  SipString taken;
  if (stream.get(length, taken) != VARN_OK) {
    logFailure(sourceFile, messages.get, 0, 0, line);
    return VARN_RESOURCE_FAILURE;
  }
  if (!stream.done()) {
    logFailure(sourceFile, messages.trailing, 0, 0, line);
    return VARN_INVALID_INPUT;
  }
  // After this the assignment cannot fail; a failed one would lose the old piece.
  if (piece.reserve(taken.length()) != VARN_OK) {
    logFailure(sourceFile, messages.assignment, 0, 0, line);
    return VARN_RESOURCE_FAILURE;
  }
  piece = taken;
  return VARN_OK;
}
