// addrSpec.h - the steps of an addr-spec, whose pieces are taken or only passed.
#ifndef SIPUTILITY_ADDRESS_ADDR_SPEC_H
#define SIPUTILITY_ADDRESS_ADDR_SPEC_H

#include <string_view>

#include "base/stringAccess.h"
#include "grammar/grammar.h"
#include "wySipParam.h"
#include "wySipPort.h"
#include "wySipString.h"

// Where the pieces of an addr-spec go; null for a piece that is only passed.
struct AddrSpecPieces {
  SipString* scheme;
  SipString* user;
  SipString* host;
  SipPort* port;
  SipAddrParamList* params;
};

// scheme ":" [ userinfo "@" ] host [ ":" port ] params [ headers ]
//
// Reads it from the stream. Failures are logged as those of SipAddress; the pieces before the
// failing one are set then.
// Fails: VARN_INVALID_INPUT, VARN_RESOURCE_FAILURE.
VARN_EXCEPTION_CODES takeAddrSpec(SipStrStream& stream, const AddrSpecPieces& pieces);

// The brackets of "<" addr-spec ">"; only a missing ">" is logged.
// Fails: VARN_INVALID_INPUT.
VARN_EXCEPTION_CODES passOpening(SipStrStream& stream);
VARN_EXCEPTION_CODES passClosing(SipStrStream& stream);

// Takes a piece, the next bytes of the stream, which has that many.
// Fails: VARN_RESOURCE_FAILURE.
inline VARN_EXCEPTION_CODES takePiece(SipStrStream& stream, unsigned int length, SipString* piece) {
  const std::string_view bytes = {SipStringAccess::rest(stream).data(), length};
  if (piece != nullptr && SipStringAccess::assign(*piece, bytes) != VARN_OK) {
    return VARN_RESOURCE_FAILURE;
  }
  SipStringAccess::advance(stream, piece != nullptr ? piece->length() : length);
  return VARN_OK;
}

// Returns the length of "<" addr-spec ">" at the offset, 0 for none, which is logged.
unsigned int bracketedAddrSpecLength(Unread text, unsigned int offset);

#endif  // SIPUTILITY_ADDRESS_ADDR_SPEC_H
