// addrSpec.h - the steps of reading an addr-spec; each piece is stored or only skipped.
#ifndef SIPUTILITY_ADDRESS_ADDR_SPEC_H
#define SIPUTILITY_ADDRESS_ADDR_SPEC_H

#include <string_view>

#include "base/stringAccess.h"
#include "grammar/grammar.h"
#include "wySipParam.h"
#include "wySipPort.h"
#include "wySipString.h"

// Where the pieces of an addr-spec are stored; null for a piece that is only skipped.
struct AddrSpecPieces {
  SipString* scheme;
  SipString* user;
  SipString* host;
  SipPort* port;
  SipAddrParamList* params;
};

// scheme ":" [ userinfo "@" ] host [ ":" port ] params [ headers ]
//
// Reads it from the stream. Failures are logged as those of SipAddress. After a failure the pieces
// before the faulty one are set.
// Fails: VARN_INVALID_INPUT, VARN_RESOURCE_FAILURE.
VARN_EXCEPTION_CODES takeAddrSpec(SipStrStream& stream, const AddrSpecPieces& pieces);

// Each skips one bracket of "<" addr-spec ">". Only a missing ">" is logged: without "<" the text
// may be of another kind.
// Fails: VARN_INVALID_INPUT.
VARN_EXCEPTION_CODES passOpening(SipStrStream& stream);
VARN_EXCEPTION_CODES passClosing(SipStrStream& stream);

// Stores the next length bytes in the piece and moves past them; null only moves.
// Requires: so many unread bytes.
// Fails: VARN_RESOURCE_FAILURE.
inline VARN_EXCEPTION_CODES takePiece(SipStrStream& stream, unsigned int length, SipString* piece) {
  const std::string_view bytes = {SipStringAccess::rest(stream).data(), length};
  if (piece != nullptr && SipStringAccess::assign(*piece, bytes) != VARN_OK) {
    return VARN_RESOURCE_FAILURE;
  }
  // The stream moves by what the piece stored, as in SipStrStream::get(). That is nothing where a
  // failed assignment has left the piece a capacity without a buffer: it then reports success but
  // stores nothing. The next step then reads the bytes that were not taken.
  SipStringAccess::advance(stream, piece != nullptr ? piece->length() : length);
  return VARN_OK;
}

// Returns the length of "<" addr-spec ">" at the offset; 0 if there is none, and the reason is
// logged.
unsigned int bracketedAddrSpecLength(Unread text, unsigned int offset);

#endif  // SIPUTILITY_ADDRESS_ADDR_SPEC_H
