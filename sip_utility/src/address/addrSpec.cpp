// addrSpec.cpp - the scan of a SIP address: where its texts are, with no object in sight.
#include "address/addrSpec.h"

#include "base/log.h"
#include "params/paramReader.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wySipAddress";

// display-name LWS
VARN_EXCEPTION_CODES scanDisplayName(Unread& text, AddressTexts& texts) {
  const unsigned int length = matchOf<grammar::displayName>(text, 0);
  if (length == 0) {
    logFailure(kSourceFile, "SipAddress::parseNameAddr | invalid display name");
    return VARN_INVALID_INPUT;
  }
  texts.displayName = text.take(length);
  text.take(matchOf<grammar::lws>(text, 0));
  return VARN_OK;
}

// scheme ":"
VARN_EXCEPTION_CODES scanScheme(Unread& text, AddressTexts& texts) {
  const unsigned int length = matchOf<grammar::scheme>(text, 0);
  if (length == 0) {
    logFailure(kSourceFile, "SipAddress::parseURI - couldn't find scheme");
    return VARN_INVALID_INPUT;
  }
  if (!text.has(length, ':')) {
    logFailure(kSourceFile, "SipAddress::parseURI missing ':' after scheme");
    return VARN_INVALID_INPUT;
  }
  texts.scheme = text.take(length);
  text.take(1);
  return VARN_OK;
}

// [ userinfo "@" ]: without the "@" the same bytes belong to the host
void scanUserInfo(Unread& text, AddressTexts& texts) {
  const unsigned int length = matchOf<grammar::userInfo>(text, 0);
  if (length != 0 && text.has(length, '@')) {
    texts.user = text.take(length);
    text.take(1);
  }
}

VARN_EXCEPTION_CODES scanHost(Unread& text, AddressTexts& texts) {
  const unsigned int length = matchOf<grammar::host>(text, 0);
  if (length == 0) {
    logFailure(kSourceFile, "SipAddress::parseURI couldn't find host");
    return VARN_INVALID_INPUT;
  }
  texts.host = text.take(length);
  return VARN_OK;
}

// [ ":" port ] params [ headers ]: faulty headers are left in the text
VARN_EXCEPTION_CODES passUriRest(Unread& text, unsigned short& port) {
  VARN_EXCEPTION_CODES code = VARN_OK;
  if (text.has(0, ':')) {
    text.take(1);
    code = scanPort(text, port);
  }
  if (code == VARN_OK) {
    code = passUriParams(text);
  }
  if (code == VARN_OK) {
    text.take(matchOf<grammar::uriHeaders>(text, 0));
  }
  return code;
}

// addr-spec
VARN_EXCEPTION_CODES scanAddrSpec(Unread& text, AddressTexts& texts, unsigned short& port) {
  const VARN_EXCEPTION_CODES code = scanUri(text, texts);
  return code == VARN_OK ? passUriRest(text, port) : code;
}

// addr-spec ">"
VARN_EXCEPTION_CODES scanBracketed(Unread& text, AddressTexts& texts, unsigned short& port) {
  const VARN_EXCEPTION_CODES code = scanAddrSpec(text, texts, port);
  return code == VARN_OK ? scanClosing(text) : code;
}

}  // namespace

AddressForm scanForm(Unread& text) {
  if (text.length == 0) {
    logFailure(kSourceFile, "SipAddress::SipAddress | NULL or empty address");
    return AddressForm::kNone;
  }
  text.take(matchOf<grammar::lws>(text, 0));
  if (text.has(0, '*') && grammar::separator('*', text, 0) == text.length) {
    return AddressForm::kWildcard;
  }
  const unsigned int scheme = matchOf<grammar::scheme>(text, 0);
  return scheme != 0 && text.has(scheme, ':') ? AddressForm::kAddrSpec : AddressForm::kNameAddr;
}

VARN_EXCEPTION_CODES scanOpening(Unread& text, AddressTexts& texts) {
  if (!text.has(0, '<')) {
    const VARN_EXCEPTION_CODES code = scanDisplayName(text, texts);
    if (code != VARN_OK || !text.has(0, '<')) {
      return VARN_INVALID_INPUT;
    }
  }
  text.take(1);
  return VARN_OK;
}

VARN_EXCEPTION_CODES scanUri(Unread& text, AddressTexts& texts) {
  const VARN_EXCEPTION_CODES code = scanScheme(text, texts);
  if (code != VARN_OK) {
    return code;
  }
  scanUserInfo(text, texts);
  return scanHost(text, texts);
}

VARN_EXCEPTION_CODES scanClosing(Unread& text) {
  if (!text.has(0, '>')) {
    logFailure(kSourceFile, "SipAddress::parseURI missing '>'");
    return VARN_INVALID_INPUT;
  }
  text.take(1);
  return VARN_OK;
}

VARN_EXCEPTION_CODES scanAddress(std::string_view bytes, AddressTexts& texts,
                                 unsigned short& port) {
  Unread text = unread(bytes);
  switch (scanForm(text)) {
    case AddressForm::kNone:
      return VARN_INVALID_INPUT;
    case AddressForm::kWildcard:
      return VARN_OK;
    case AddressForm::kAddrSpec: {
      const VARN_EXCEPTION_CODES code = scanAddrSpec(text, texts, port);
      const bool ended = matchOf<grammar::lws>(text, 0) == text.length;
      return code == VARN_OK && !ended ? VARN_INVALID_INPUT : code;
    }
    case AddressForm::kNameAddr:
      break;
  }
  const VARN_EXCEPTION_CODES code = scanOpening(text, texts);
  return code == VARN_OK ? scanBracketed(text, texts, port) : code;
}

unsigned int bracketedAddrSpecLength(Unread text, unsigned int offset) {
  const std::string_view all = text.from(offset);
  Unread rest = unread(all);
  if (!rest.has(0, '<')) {
    return 0;
  }
  rest.take(1);
  AddressTexts texts;
  unsigned short port = 0;
  const VARN_EXCEPTION_CODES code = scanBracketed(rest, texts, port);
  return code == VARN_OK ? static_cast<unsigned int>(rest.bytes - all.data()) : 0;
}
