// telUri.h - the scan of a tel URI up to its parameters: where its texts are, with no object in
// sight.
#ifndef SIPUTILITY_ADDRESS_TEL_URI_H
#define SIPUTILITY_ADDRESS_TEL_URI_H

#include <string_view>

#include "grammar/grammar.h"
#include "wySipString.h"
#include "wyTelAddressMatch.h"

// What was found before the parameters, also before a failure. Texts that the URI does not have are
// empty.
struct TelTexts {
  std::string_view displayName;
  std::string_view number;
  std::string_view isub;
  std::string_view ext;
  std::string_view context;
  bool bracketed = false;
  WY_SIP_TELURI_TYPE type = WY_SIP_TELURI_TYPE_NONE;
};

// Returns the type of a number that begins with this byte; -1 for the end of the text.
WY_SIP_TELURI_TYPE typeOfNumber(int firstByte);

// Returns the rule for a number of this type.
Rule& numberRule(WY_SIP_TELURI_TYPE type);

// [ display-name LWS ] [ "<" ] "tel:" number [ isub / ext ] [ context ]
//
// Reads it from the front of the bytes and moves past it. After a failure the bytes begin with what
// the failing step could not read. Failures are logged as those of TelAddress.
// Fails: VARN_INVALID_INPUT.
VARN_EXCEPTION_CODES scanTelUri(Unread& text, TelTexts& texts);

// [ ">" ]: wanted after a "<"
//
// Fails: VARN_INVALID_INPUT.
VARN_EXCEPTION_CODES scanTelClosing(Unread& text, bool bracketed);

#endif  // SIPUTILITY_ADDRESS_TEL_URI_H
