// addrSpec.cpp - the steps of reading an addr-spec; each piece is stored or only skipped.
#include "address/addrSpec.h"

#include <string_view>

#include "base/log.h"
#include "base/stringAccess.h"
#include "grammar/borrowed.h"
#include "params/paramReader.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wySipAddress";

// Takes a piece and skips the one-byte delimiter after it.
VARN_EXCEPTION_CODES takeDelimited(SipStrStream& stream, unsigned int length, SipString* piece) {
  const VARN_EXCEPTION_CODES code = takePiece(stream, length, piece);
  if (code == VARN_OK) {
    SipStringAccess::advance(stream, 1);
  }
  return code;
}

// scheme ":"
VARN_EXCEPTION_CODES takeScheme(SipStrStream& stream, SipString* scheme) {
  const unsigned int length = matchOf<grammar::scheme>(stream);
  if (length == 0) {
    logFailure(kSourceFile, "SipAddress::parseURI - couldn't find scheme");
    return VARN_INVALID_INPUT;
  }
  if (!unread(stream).has(length, ':')) {
    logFailure(kSourceFile, "SipAddress::parseURI missing ':' after scheme");
    return VARN_INVALID_INPUT;
  }
  return takeDelimited(stream, length, scheme);
}

// [ userinfo "@" ]: without the "@" the same bytes belong to the host
VARN_EXCEPTION_CODES takeUserInfo(SipStrStream& stream, SipString* user) {
  const unsigned int length = matchOf<grammar::userInfo>(stream);
  if (length == 0 || !unread(stream).has(length, '@')) {
    return VARN_OK;
  }
  return takeDelimited(stream, length, user);
}

VARN_EXCEPTION_CODES takeHost(SipStrStream& stream, SipString* host) {
  const unsigned int length = matchOf<grammar::host>(stream);
  if (length == 0) {
    logFailure(kSourceFile, "SipAddress::parseURI couldn't find host");
    return VARN_INVALID_INPUT;
  }
  return takePiece(stream, length, host);
}

// [ ":" port ]: checked also where it is not stored
VARN_EXCEPTION_CODES takePort(SipStrStream& stream, SipPort* port) {
  if (!unread(stream).has(0, ':')) {
    return VARN_OK;
  }
  SipStringAccess::advance(stream, 1);
  SipPort passed;
  return (port == nullptr ? passed : *port).set(stream);
}

VARN_EXCEPTION_CODES takeParams(SipStrStream& stream, SipAddrParamList* params) {
  return params == nullptr ? passUriParams(stream) : params->parseParamList(stream);
}

}  // namespace

// scheme ":" [ userinfo "@" ] host [ ":" port ] params [ headers ]
VARN_EXCEPTION_CODES takeAddrSpec(SipStrStream& stream, const AddrSpecPieces& pieces) {
  VARN_EXCEPTION_CODES code = takeScheme(stream, pieces.scheme);
  if (code == VARN_OK) {
    code = takeUserInfo(stream, pieces.user);
  }
  if (code == VARN_OK) {
    code = takeHost(stream, pieces.host);
  }
  if (code == VARN_OK) {
    code = takePort(stream, pieces.port);
  }
  if (code == VARN_OK) {
    code = takeParams(stream, pieces.params);
  }
  if (code == VARN_OK) {  // headers are not stored; faulty ones are left in the stream
    SipStringAccess::advance(stream, matchOf<grammar::uriHeaders>(stream));
  }
  return code;
}

VARN_EXCEPTION_CODES passOpening(SipStrStream& stream) {
  return unread(stream).has(0, '<') ? stream.discard(1) : VARN_INVALID_INPUT;
}

VARN_EXCEPTION_CODES passClosing(SipStrStream& stream) {
  if (!unread(stream).has(0, '>')) {
    logFailure(kSourceFile, "SipAddress::parseURI missing '>'");
    return VARN_INVALID_INPUT;
  }
  return stream.discard(1);
}

unsigned int bracketedAddrSpecLength(Unread text, unsigned int offset) {
  BorrowedStream stream(text.from(offset));
  VARN_EXCEPTION_CODES code = passOpening(stream);
  if (code == VARN_OK) {
    code = takeAddrSpec(stream, {});
  }
  if (code == VARN_OK) {
    code = passClosing(stream);
  }
  return code == VARN_OK ? stream.pos() : 0;
}
