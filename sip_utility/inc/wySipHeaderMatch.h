// wySipHeaderMatch.h - grammar matchers of header values.
//
// They decide how much of a header's text is its value and where its parameters begin, under the
// contract of SipMatch, see wySipMatch.h, with one exception: a value with a bracketed tel URI
// may count past the end of the stream, see SipHeaderMatchIHeaderChars.
#ifndef WY_SIP_HEADER_MATCH_H
#define WY_SIP_HEADER_MATCH_H

#include "wySipExport.h"
#include "wySipMatch.h"
#include "wySipParam.h"

// The value of a header of this type: of an ordinary one as SipNonAuthHeaderMatchValue, of an
// authentication one its scheme, a token; nothing for a type that is not set.
class SIPUTILITY_EXPORT SipHeaderMatchValue : public SipMatch {
 public:
  explicit SipHeaderMatchValue(WY_SIP_SIPHEADER_TYPE headerType);
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;

 private:
  WY_SIP_SIPHEADER_TYPE headerType_;
};

// value = run *( LWS run ), the runs as SipHeaderMatchIHeaderChars has them
//
// White space behind the last run is not covered. The time taken grows with the value's length
// alone, however many brackets it has.
class SIPUTILITY_EXPORT SipNonAuthHeaderMatchValue : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

// run = *( quoted-string / bracketed / a visible ASCII character but ";" and ">" )
// bracketed = name-addr in brackets / "<tel:" ... / "<" absoluteURI ">"
//
// Ends in front of white space, ";", the end, a quoted string that is none and a "<" that opens
// nothing of these. A ">" of its own, a control character or a byte from 0x7F up makes the whole
// match fail: "SipHeaderMatchIHeaderChars::doMatch - bad character 0x%02x" (level 3).
//
// A "<" is tried as SIP address, then as tel URI, then as opaque URI that is not SIP or SIPS.
// For a tel URI the text is read from the stream's position, not from the "<", and the match ends
// there: it counts 6 and the length of the URI as TelAddress writes it, whatever the text had, so
// the count may differ from the bytes read and reach past the end. Where the tel URI is refused,
// "SipHeaderMatchIHeaderChars::doMatch | Tel Match Failed , Match with Abs URI" is logged (level
// 4), without memory "SipHeaderMatchIHeaderChars::doMatch | Malloc failed".
class SIPUTILITY_EXPORT SipHeaderMatchIHeaderChars : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

// absoluteURI = scheme ":" 1*uric, not beginning with "/": the opaque form only
class SIPUTILITY_EXPORT SipHeaderMatchAbsoluteURI : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

#endif  // WY_SIP_HEADER_MATCH_H
