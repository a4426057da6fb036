// wySipMatch.h - grammar matchers and character predicates of SIP text.
//
// A matcher is one rule of the grammar (RFC 3261, section 25, where a rule says nothing else). It
// looks at the bytes of a stream from an offset behind the position and returns how many of them
// the rule covers, 0 for no match; the stream never moves, no count reaches past its end, and
// each rule gives its longest reading. Matchers are made for one use on the stack and used by
// one thread at a time; a rule built from others makes the inner ones anew.
#ifndef WY_SIP_MATCH_H
#define WY_SIP_MATCH_H

#include "wySipExport.h"
#include "wySipString.h"

// Character predicates: 1 when c is the code of a member of the class, else 0, also for every
// value outside 0 to 127.
extern "C" {

SIPUTILITY_EXPORT int WySipIsDigit(int c);       // 0 to 9
SIPUTILITY_EXPORT int WySipIsHexDigit(int c);    // 0 to 9, A to F, a to f
SIPUTILITY_EXPORT int WySipIsAlpha(int c);       // A to Z, a to z
SIPUTILITY_EXPORT int WySipIsAlnum(int c);       // alpha / digit
SIPUTILITY_EXPORT int WySipIsUnreserved(int c);  // alphanum and - _ . ! ~ * ' ( )
SIPUTILITY_EXPORT int WySipIsToken(int c);       // alphanum and - . ! % * _ + ` ' ~

}  // extern "C"

// The base of all matchers.
class SIPUTILITY_EXPORT SipMatch {
 public:
  SipMatch();
  virtual ~SipMatch();

  // Returns the number of bytes that the rule covers at the offset from the position.
  //
  // Asks doMatch() of the subclass, whatever follows: an offset behind the end of the stream and
  // a count that reaches behind it are reported as failed assertions, no more.
  unsigned int match(const SipStrStream& stream, unsigned int offset);

  // The rule itself, under the contract of match(). Both end the process when position + offset
  // does not fit 32 bits.
  virtual unsigned int doMatch(const SipStrStream& stream, unsigned int offset) = 0;

 private:
  unsigned int lastMatch_;
};

// *member
//
// Returns the length of the longest run of bytes that matchChar() accepts.
class SIPUTILITY_EXPORT SipMatchCharSet : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;

  // Returns whether the byte belongs to the class.
  virtual bool matchChar(char byte) = 0;
};

// *( member / "%" HEXDIG HEXDIG )
//
// Returns the length of the longest run of bytes that matchChar() accepts and of escapes, which
// count 3 and are not decoded. A "%" that two hexadecimal digits do not follow ends the run. A
// class that accepts "%" by itself is reported as a failed assertion at each match.
class SIPUTILITY_EXPORT SipMatchEscapedCharSet : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;

  // Returns whether the byte belongs to the class.
  virtual bool matchChar(char byte) = 0;
};

// *( alphanum / "-" / "." / "!" / "%" / "*" / "_" / "+" / "`" / "'" / "~" )
class SIPUTILITY_EXPORT SipMatchToken : public SipMatchCharSet {
 public:
  bool matchChar(char byte) override;
};

// *DIGIT
class SIPUTILITY_EXPORT SipMatchDigit : public SipMatchCharSet {
 public:
  bool matchChar(char byte) override;
};

// *HEXDIG, letters of either case
class SIPUTILITY_EXPORT SipMatchHexDigit : public SipMatchCharSet {
 public:
  bool matchChar(char byte) override;
};

// *ALPHA
class SIPUTILITY_EXPORT SipMatchAlpha : public SipMatchCharSet {
 public:
  bool matchChar(char byte) override;
};

// *( reserved / unreserved / escaped )
class SIPUTILITY_EXPORT SipMatchUric : public SipMatchEscapedCharSet {
 public:
  bool matchChar(char byte) override;
};

// *( unreserved / escaped / "[" / "]" / "/" / ":" / "&" / "+" / "$" )
class SIPUTILITY_EXPORT SipMatchOtherParam : public SipMatchEscapedCharSet {
 public:
  bool matchChar(char byte) override;
};

// LWS = [*WSP CRLF] 1*WSP, all or nothing
//
// White space that runs into a lone CR, a CRLF without white space behind it or a second CRLF
// gives 0, not the white space in front: only one fold is accepted, and only a whole one.
class SIPUTILITY_EXPORT SipMatchLWS : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

// [LWS] separator [LWS]
class SIPUTILITY_EXPORT SipMatchLWSChar : public SipMatch {
 public:
  explicit SipMatchLWSChar(char separator);
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;

 private:
  char separator_;
};

// DQUOTE *( qdtext / quoted-pair ) DQUOTE
//
// The count includes both quotes. White space inside is LWS, folds included; bytes from 0x80 up
// must form UTF8-NONASCII; behind a backslash any byte but CR and LF may stand. Every failure
// behind the opening quote logs its reason (level 3, module 6054).
class SIPUTILITY_EXPORT SipMatchQuotedString : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;

  // Returns the length of the quote at the offset, 0 for none. It is asked for the opening and
  // the closing quote; a subclass may decide otherwise what a quote is.
  virtual unsigned int matchQuote(const SipStrStream& stream, unsigned int offset);
};

// The bytes of one literal, letter case included; an empty literal never matches. The matcher
// owns a copy of it.
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

// UTF8-NONASCII: one character of two to six bytes
//
// Taken literally: overlong forms, surrogates and code points beyond Unicode match as well.
class SIPUTILITY_EXPORT SipMatchUTF8NonASCII : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

// label = alphanum [ *( alphanum / "-" ) alphanum ], of any length
//
// A run of these characters that begins or ends with "-" is refused whole, not shortened.
class SIPUTILITY_EXPORT SipMatchILabel : public SipMatchCharSet {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
  bool matchChar(char byte) override;
};

// hostname = label *( "." label ) [ "." ], the last label begins with a letter
//
// Where no label follows a dot, the match ends behind that dot: "a.-b" matches "a.".
class SIPUTILITY_EXPORT SipMatchHostname : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

// dec-octet: 0 to 255 without leading zeros
//
// A run of four digits or more is refused whole.
class SIPUTILITY_EXPORT SipMatchIIPV4DecOctet : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

// IPv4address = dec-octet 3( "." dec-octet ), whatever follows
//
// Logs "MatchIPV4Address pos %lu did not match dec-octet" with the offset that was tried (level
// 3, module 6054) where a dot is followed by something else.
class SIPUTILITY_EXPORT SipMatchIIPV4Address : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

// h16 = 1*4HEXDIG
//
// A run of five digits or more is refused whole.
class SIPUTILITY_EXPORT SipMatchIIPV6H16 : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

// IPv6address, without brackets: eight groups, one "::", an IPv4 tail for two groups
//
// "::" takes one group of the eight, so a compressed address has at most seven others; its match
// may end in a colon ("1::2:"), and a second "::" ends it behind the first of its colons.
class SIPUTILITY_EXPORT SipMatchIIPV6Address : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

// host = hostname / IPv4address / "[" IPv6address "]"
//
// The count includes the brackets. A "[" with no IPv6 address behind it counts 1, the bracket
// alone. Logs "SipMatchHost ']' missing" or "SipMatchHost invalid character 0x%02x" (level 3,
// module 6054) for an open bracket and for a byte that begins no host; 0xff stands for the end.
class SIPUTILITY_EXPORT SipMatchHost : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

// scheme = ALPHA *( ALPHA / DIGIT / "+" / "-" / "." ), the ":" not included
class SIPUTILITY_EXPORT SipAddressMatchScheme : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

// *( ALPHA / DIGIT / "+" / "-" / "." )
class SIPUTILITY_EXPORT SipAddressMatchSchemeTrailing : public SipMatchCharSet {
 public:
  bool matchChar(char byte) override;
};

// user = *( unreserved / escaped / "&" / "=" / "+" / "$" / "," / ";" / "?" / "/" )
class SIPUTILITY_EXPORT SipAddressMatchUser : public SipMatchEscapedCharSet {
 public:
  bool matchChar(char byte) override;
};

// password = *( unreserved / escaped / "&" / "=" / "+" / "$" / "," )
class SIPUTILITY_EXPORT SipAddressMatchPassword : public SipMatchEscapedCharSet {
 public:
  bool matchChar(char byte) override;
};

// userinfo = user [ ":" password ], the "@" not included
//
// The user must not be empty, the password may be.
class SIPUTILITY_EXPORT SipAddressMatchUserInfo : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

// display-name = token *( LWS token ) / quoted-string
//
// The count includes the quotes and never ends in white space.
class SIPUTILITY_EXPORT SipAddressMatchDisplayName : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

// *paramchar = *( unreserved / escaped / "[" / "]" / "/" / ":" / "&" / "+" / "$" )
class SIPUTILITY_EXPORT SipAddressMatchParamChar : public SipMatchEscapedCharSet {
 public:
  bool matchChar(char byte) override;
};

// *( unreserved / escaped / "[" / "]" / "/" / "?" / ":" / "+" / "$" )
class SIPUTILITY_EXPORT SipAddressMatchHNameValue : public SipMatchEscapedCharSet {
 public:
  bool matchChar(char byte) override;
};

// headers = "?" header *( "&" header ), header = 1*hnv-char "=" *hnv-char, all or nothing
class SIPUTILITY_EXPORT SipAddressMatchHeaders : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

#endif  // WY_SIP_MATCH_H
