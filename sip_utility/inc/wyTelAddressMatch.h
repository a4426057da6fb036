// wyTelAddressMatch.h - grammar matchers and predicates of tel URIs (RFC 3966).
//
// They keep the contract of SipMatch, see wySipMatch.h.
#ifndef WY_TEL_ADDRESS_MATCH_H
#define WY_TEL_ADDRESS_MATCH_H

#include "wySipExport.h"
#include "wySipMatch.h"

// Returns 1 for the codes of "(", ")", "-" and ".", else 0.
extern "C" SIPUTILITY_EXPORT int WyTelIsVisualSeparator(int c);

// *phonedigit = *( DIGIT / visual-separator )
class SIPUTILITY_EXPORT TelAddressMatchPhoneDigit : public SipMatchCharSet {
 public:
  bool matchChar(char byte) override;
};

// *phonedigit-hex = *( HEXDIG / "*" / "#" / visual-separator )
class SIPUTILITY_EXPORT TelAddressMatchPhoneDigitHex : public SipMatchCharSet {
 public:
  bool matchChar(char byte) override;
};

// pname = *( alphanum / "-" )
class SIPUTILITY_EXPORT TelAddressMatchParamName : public SipMatchCharSet {
 public:
  bool matchChar(char byte) override;
};

#endif  // WY_TEL_ADDRESS_MATCH_H
