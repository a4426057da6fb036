/// \file
/// Grammar matchers and predicates of tel URIs (RFC 3966).
///
/// They keep the contract of SipMatch (see wySipMatch.h) with one exception: the four composite
/// rules of numbers and contexts match at the stream's position, whatever the offset; call them
/// with offset 0. They log why they do not match (level 3, module 6054); a failed match is a normal
/// result.
///
/// C can include this header; it then has the predicate.
#ifndef WY_TEL_ADDRESS_MATCH_H
#define WY_TEL_ADDRESS_MATCH_H

#include "wySipExport.h"
#include "wySipMatch.h"

#ifdef __cplusplus
/// The kind of a telephone number.
enum WY_SIP_TELURI_TYPE : unsigned int {
  WY_SIP_TELURI_TYPE_NONE = 0,    ///< not known yet
  WY_SIP_TELURI_TYPE_LOCAL = 1,   ///< needs a phone context
  WY_SIP_TELURI_TYPE_GLOBAL = 2,  ///< begins with `+`
};

extern "C" {
#endif

/// Returns 1 for the codes of `(`, `)`, `-` and `.`, else 0.
SIPUTILITY_EXPORT int WyTelIsVisualSeparator(int c);

#ifdef __cplusplus
}  // extern "C"

/// Matches the digits of a global number: `*phonedigit = *( DIGIT / visual-separator )`
class SIPUTILITY_EXPORT TelAddressMatchPhoneDigit : public SipMatchCharSet {
 public:
  bool matchChar(char byte) override;
};

/// Matches the digits of a local number:
/// `*phonedigit-hex = *( HEXDIG / "*" / "#" / visual-separator )`
class SIPUTILITY_EXPORT TelAddressMatchPhoneDigitHex : public SipMatchCharSet {
 public:
  bool matchChar(char byte) override;
};

/// Matches the name of a parameter of a tel URI: `pname = *( alphanum / "-" )`
class SIPUTILITY_EXPORT TelAddressMatchParamName : public SipMatchCharSet {
 public:
  bool matchChar(char byte) override;
};

/// Matches a global number with at least one `DIGIT`: `global-number-digits = "+" 1*phonedigit`
///
/// Visual separators may follow the `+` directly.
class SIPUTILITY_EXPORT TelAddressMatchGlobalPhoneNumber : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

/// Matches a local number with at least one character that is no visual separator:
/// `local-number-digits = 1*phonedigit-hex`
///
/// The number may begin with a visual separator.
class SIPUTILITY_EXPORT TelAddressMatchLocalPhoneNumber : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

/// Matches a number of one kind, global or local. If the kind is not known, nothing matches.
class SIPUTILITY_EXPORT TelAddressMatchPhoneNumber : public SipMatch {
 public:
  explicit TelAddressMatchPhoneNumber(WY_SIP_TELURI_TYPE type);
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;

 private:
  WY_SIP_TELURI_TYPE type_;
};

/// Matches a phone context, a domain name or a global number:
/// `descriptor = domainname / global-number-digits`, tried in this order
class SIPUTILITY_EXPORT TelAddressMatchContext : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

#endif  // __cplusplus

#endif  // WY_TEL_ADDRESS_MATCH_H
