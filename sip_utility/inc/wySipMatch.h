/// \file
/// Grammar matchers and character predicates of SIP text.
///
/// A matcher is one rule of the grammar: of RFC 3261, section 25, unless its comment says
/// otherwise. It looks at the bytes of a stream at an offset from the position and returns how many
/// of them the rule covers; 0 for no match. The longest match counts. The stream never moves, and
/// no count reaches past its end.
///
/// A matcher is made on the stack for one use, and is used by one thread at a time.
///
/// C can include this header; it then has the predicates.
#ifndef WY_SIP_MATCH_H
#define WY_SIP_MATCH_H

#include "wySipExport.h"

#ifdef __cplusplus
#include "wySipString.h"

extern "C" {
#endif

// Character predicates. Each returns 0 for a value outside 0 to 127 as well.

/// Returns 1 for the code of `0` to `9`, else 0.
SIPUTILITY_EXPORT int WySipIsDigit(int c);

/// Returns 1 for the code of `0` to `9`, `A` to `F` and `a` to `f`, else 0.
SIPUTILITY_EXPORT int WySipIsHexDigit(int c);

/// Returns 1 for the code of `A` to `Z` and `a` to `z`, else 0.
SIPUTILITY_EXPORT int WySipIsAlpha(int c);

/// Returns 1 for the code of a letter or digit, else 0.
SIPUTILITY_EXPORT int WySipIsAlnum(int c);

/// Returns 1 for the code of a letter, a digit and any of ``- _ . ! ~ * ' ( )``, else 0.
SIPUTILITY_EXPORT int WySipIsUnreserved(int c);

/// Returns 1 for the code of a letter, a digit and any of ``- . ! % * _ + ` ' ~``, else 0.
SIPUTILITY_EXPORT int WySipIsToken(int c);

#ifdef __cplusplus
}  // extern "C"

/// The base of all matchers: a rule says how many bytes of a text it covers.
class SIPUTILITY_EXPORT SipMatch {
 public:
  SipMatch();
  virtual ~SipMatch();

  /// Returns the number of bytes that the rule covers at the offset from the position.
  ///
  /// Calls doMatch() of the subclass and returns its count unchanged. An offset past the end of the
  /// stream and a count that reaches past it are failed assertions.
  unsigned int match(const SipStrStream& stream, unsigned int offset);

  /// Applies the rule, under the contract of match(). Both end the process if position + offset
  /// does not fit 32 bits.
  virtual unsigned int doMatch(const SipStrStream& stream, unsigned int offset) = 0;

 private:
  unsigned int lastMatch_;
};

/// The base of the matchers of a character class: `*member`, the longest run of bytes that
/// matchChar() accepts.
class SIPUTILITY_EXPORT SipMatchCharSet : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;

  /// Returns whether the byte belongs to the class.
  virtual bool matchChar(char byte) = 0;
};

/// The base of the matchers of a character class with escapes: `*( member / "%" HEXDIG HEXDIG )`
///
/// Covers the longest run of bytes that matchChar() accepts and of escapes. An escape counts 3
/// bytes and is not decoded. A `%` without two hexadecimal digits after it ends the run. If
/// matchChar() accepts `%` itself, each match is a failed assertion.
class SIPUTILITY_EXPORT SipMatchEscapedCharSet : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;

  /// Returns whether the byte belongs to the class.
  virtual bool matchChar(char byte) = 0;
};

/// Matches a token, or nothing:
/// ``*( alphanum / "-" / "." / "!" / "%" / "*" / "_" / "+" / "`" / "'" / "~" )``
class SIPUTILITY_EXPORT SipMatchToken : public SipMatchCharSet {
 public:
  bool matchChar(char byte) override;
};

/// Matches a run of digits: `*DIGIT`
class SIPUTILITY_EXPORT SipMatchDigit : public SipMatchCharSet {
 public:
  bool matchChar(char byte) override;
};

/// Matches a run of hexadecimal digits of either letter case: `*HEXDIG`
class SIPUTILITY_EXPORT SipMatchHexDigit : public SipMatchCharSet {
 public:
  bool matchChar(char byte) override;
};

/// Matches a run of letters: `*ALPHA`
class SIPUTILITY_EXPORT SipMatchAlpha : public SipMatchCharSet {
 public:
  bool matchChar(char byte) override;
};

/// Matches the characters of any URI: `*( reserved / unreserved / escaped )`
class SIPUTILITY_EXPORT SipMatchUric : public SipMatchEscapedCharSet {
 public:
  bool matchChar(char byte) override;
};

/// Matches the name or value of a parameter of a URI:
/// `*( unreserved / escaped / "[" / "]" / "/" / ":" / "&" / "+" / "$" )`
class SIPUTILITY_EXPORT SipMatchOtherParam : public SipMatchEscapedCharSet {
 public:
  bool matchChar(char byte) override;
};

/// Matches white space with at most one fold: `LWS = [*WSP CRLF] 1*WSP`
///
/// Only one fold is accepted, and it must be complete. If a lone CR, a CRLF without white space
/// after it or a second CRLF follows the white space, nothing matches at all.
class SIPUTILITY_EXPORT SipMatchLWS : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

/// Matches one separator with the white space around it: `[LWS] separator [LWS]`
class SIPUTILITY_EXPORT SipMatchLWSChar : public SipMatch {
 public:
  explicit SipMatchLWSChar(char separator);
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;

 private:
  char separator_;
};

/// Matches a quoted string: `DQUOTE *( qdtext / quoted-pair ) DQUOTE`
///
/// The count includes both quotes. White space inside is LWS, folds included. Bytes from 0x80 up
/// must form UTF8-NONASCII. A backslash may be followed by any byte except CR and LF. Each failure
/// after the opening quote logs its reason (level 3, module 6054).
class SIPUTILITY_EXPORT SipMatchQuotedString : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;

  /// Returns the length of the quote at the offset, 0 for none. doMatch() calls it for the opening
  /// and for the closing quote, so a subclass can change what counts as a quote.
  virtual unsigned int matchQuote(const SipStrStream& stream, unsigned int offset);
};

/// Matches the bytes of one literal, in the same letter case.
///
/// An empty literal never matches. The matcher owns a copy of the literal.
class SIPUTILITY_EXPORT SipMatchSpecificString : public SipMatch {
 public:
  explicit SipMatchSpecificString(const SipString& literal);
  SipMatchSpecificString(const SipMatchSpecificString&) = delete;
  SipMatchSpecificString& operator=(const SipMatchSpecificString&) = delete;
  ~SipMatchSpecificString() override;

  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;

 private:
  SipString literal_;
};

/// Matches one character of two to six bytes: `UTF8-NONASCII`
///
/// As in the rule of the RFC, overlong forms, surrogates and code points beyond Unicode match.
class SIPUTILITY_EXPORT SipMatchUTF8NonASCII : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

/// Matches a label of a host name, of any length:
/// `label = alphanum [ *( alphanum / "-" ) alphanum ]`
///
/// A run of these characters that begins or ends with `-` does not match at all: it is not
/// shortened.
class SIPUTILITY_EXPORT SipMatchILabel : public SipMatchCharSet {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
  bool matchChar(char byte) override;
};

/// Matches a host name whose last label begins with a letter:
/// `hostname = label *( "." label ) [ "." ]`
///
/// If no label follows a dot, the match ends after that dot: of `a.-b` it covers `a.`.
class SIPUTILITY_EXPORT SipMatchHostname : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

/// Matches one number of an IPv4 address, 0 to 255 without leading zeros: `dec-octet`
///
/// A run of four or more digits does not match at all.
class SIPUTILITY_EXPORT SipMatchIIPV4DecOctet : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

/// Matches an IPv4 address, whatever follows: `IPv4address = dec-octet 3( "." dec-octet )`
///
/// If no dec-octet follows a dot, "MatchIPV4Address pos %lu did not match dec-octet" is logged with
/// the offset that was tried (level 3, module 6054).
class SIPUTILITY_EXPORT SipMatchIIPV4Address : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

/// Matches one group of an IPv6 address: `h16 = 1*4HEXDIG`
///
/// A run of five or more digits does not match at all.
class SIPUTILITY_EXPORT SipMatchIIPV6H16 : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

/// Matches an IPv6 address of eight groups, without brackets: `IPv6address`
///
/// An IPv4 address may take the place of the last two groups. `::` takes one group of the eight, so
/// an address with `::` has at most seven others. Its match may end in a colon (`1::2:`). A second
/// `::` ends the match after the first of its colons.
class SIPUTILITY_EXPORT SipMatchIIPV6Address : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

/// Matches a host: `host = hostname / IPv4address / "[" IPv6address "]"`
///
/// The count includes the brackets. A `[` without an IPv6 address after it counts 1 byte. A missing
/// closing bracket logs "SipMatchHost ']' missing". A byte that begins no host logs
/// "SipMatchHost invalid character 0x%02x", where 0xff means the end of the stream. Both lines are
/// of level 3, module 6054.
class SIPUTILITY_EXPORT SipMatchHost : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

/// Matches the scheme of a URI, without the `:`:
/// `scheme = ALPHA *( ALPHA / DIGIT / "+" / "-" / "." )`
class SIPUTILITY_EXPORT SipAddressMatchScheme : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

/// Matches a scheme after its first letter: `*( ALPHA / DIGIT / "+" / "-" / "." )`
class SIPUTILITY_EXPORT SipAddressMatchSchemeTrailing : public SipMatchCharSet {
 public:
  bool matchChar(char byte) override;
};

/// Matches the user of a URI:
/// `user = *( unreserved / escaped / "&" / "=" / "+" / "$" / "," / ";" / "?" / "/" )`
class SIPUTILITY_EXPORT SipAddressMatchUser : public SipMatchEscapedCharSet {
 public:
  bool matchChar(char byte) override;
};

/// Matches the password of a URI:
/// `password = *( unreserved / escaped / "&" / "=" / "+" / "$" / "," )`
class SIPUTILITY_EXPORT SipAddressMatchPassword : public SipMatchEscapedCharSet {
 public:
  bool matchChar(char byte) override;
};

/// Matches user and password of a URI, without the `@`: `userinfo = user [ ":" password ]`
///
/// The user must not be empty; the password may be empty.
class SIPUTILITY_EXPORT SipAddressMatchUserInfo : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

/// Matches a display name: `display-name = token *( LWS token ) / quoted-string`
///
/// The count includes the quotes and never ends in white space.
class SIPUTILITY_EXPORT SipAddressMatchDisplayName : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

/// Matches the name or value of a parameter of an address:
/// `*paramchar = *( unreserved / escaped / "[" / "]" / "/" / ":" / "&" / "+" / "$" )`
class SIPUTILITY_EXPORT SipAddressMatchParamChar : public SipMatchEscapedCharSet {
 public:
  bool matchChar(char byte) override;
};

/// Matches the name or value of a header in a URI:
/// `*( unreserved / escaped / "[" / "]" / "/" / "?" / ":" / "+" / "$" )`
class SIPUTILITY_EXPORT SipAddressMatchHNameValue : public SipMatchEscapedCharSet {
 public:
  bool matchChar(char byte) override;
};

/// Matches the headers of a URI: `headers = "?" header *( "&" header )`,
/// `header = 1*hnv-char "=" *hnv-char`
///
/// If one header does not match, nothing matches.
class SIPUTILITY_EXPORT SipAddressMatchHeaders : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

#endif  // __cplusplus

#endif  // WY_SIP_MATCH_H
