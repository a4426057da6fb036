// addrSpec.h - the scan of a SIP address: where its texts are, with no object in sight.
//
// Each scan reads its part from the front of the bytes and moves past it. After a failure the bytes
// begin with what the failing step could not read, and the reason is logged as one of SipAddress.
#ifndef SIPUTILITY_ADDRESS_ADDR_SPEC_H
#define SIPUTILITY_ADDRESS_ADDR_SPEC_H

#include <string_view>

#include "grammar/grammar.h"
#include "wySipString.h"

// The texts of an address; empty for those that it does not have, and after a failure for those
// that were not reached.
struct AddressTexts {
  std::string_view displayName;
  std::string_view scheme;
  std::string_view user;
  std::string_view host;
};

// What a text is as an address, by its beginning.
enum class AddressForm { kNone, kWildcard, kAddrSpec, kNameAddr };

// Returns the form of a text and moves past the white space at its beginning. An empty text has no
// form, which is logged. A wildcard is "*" with nothing but white space around it.
AddressForm scanForm(Unread& text);

using AddressScan = VARN_EXCEPTION_CODES(Unread& text, AddressTexts& texts);

// [ display-name LWS ] "<"
//
// Fails: VARN_INVALID_INPUT. A missing "<" is not logged: the text may be of another kind.
AddressScan scanOpening;

// scheme ":" [ userinfo "@" ] host
//
// Fails: VARN_INVALID_INPUT.
AddressScan scanUri;

// ">"
//
// Fails: VARN_INVALID_INPUT.
VARN_EXCEPTION_CODES scanClosing(Unread& text);

// 1*5DIGIT, at most 65535; logs as SipPort, in whose source it is. The number stays as it was after
// a failure.
// Fails: VARN_INVALID_INPUT.
VARN_EXCEPTION_CODES scanPort(Unread& text, unsigned short& port);

// Reads a complete address as a SipAddress does: the same result, the same log lines. The port is 0
// for none.
// Fails: VARN_INVALID_INPUT, VARN_RESOURCE_FAILURE.
VARN_EXCEPTION_CODES scanAddress(std::string_view bytes, AddressTexts& texts, unsigned short& port);

// Returns the length of "<" addr-spec ">" at the offset; 0 if there is none, and the reason is
// logged.
unsigned int bracketedAddrSpecLength(Unread text, unsigned int offset);

#endif  // SIPUTILITY_ADDRESS_ADDR_SPEC_H
