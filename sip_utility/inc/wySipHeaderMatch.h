/// \file
/// Grammar matchers of header values.
///
/// They decide how much of a header's text is its value and where its parameters begin. They keep
/// the contract of SipMatch (see wySipMatch.h) with one exception: the count for a value with a
/// bracketed tel URI may go past the end of the stream; see SipHeaderMatchIHeaderChars.
#ifndef WY_SIP_HEADER_MATCH_H
#define WY_SIP_HEADER_MATCH_H

#include "wySipExport.h"
#include "wySipMatch.h"
#include "wySipParam.h"

/// Matches the value of a header of one type.
///
/// Matches an ordinary value as SipNonAuthHeaderMatchValue does, and the scheme, a token, of an
/// authentication header. Matches nothing if the type is not set.
class SIPUTILITY_EXPORT SipHeaderMatchValue : public SipMatch {
 public:
  explicit SipHeaderMatchValue(WY_SIP_SIPHEADER_TYPE headerType);
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;

 private:
  WY_SIP_SIPHEADER_TYPE headerType_;
};

/// Matches the value of an ordinary header: `value = run *( LWS run )`
///
/// A run is what SipHeaderMatchIHeaderChars matches. The count does not include white space after
/// the last run. The time is in proportion to the length of the value, however many brackets it
/// has.
class SIPUTILITY_EXPORT SipNonAuthHeaderMatchValue : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

/// Matches the part of a value that has no white space outside quotes and brackets:
/// `run = *( quoted-string / bracketed / visible )`
///
/// `bracketed` is a SIP addr-spec, a tel URI or an absoluteURI between `<` and `>`; `visible` is a
/// visible ASCII character except `;` and `>`. The run ends before white space, `;`, a double quote
/// that begins no quoted-string, a `<` that begins nothing bracketed, and at the end of the stream.
/// A `>` without `<`, a control character or a byte from 0x7F up makes the complete match fail,
/// which is logged: "SipHeaderMatchIHeaderChars::doMatch - bad character 0x%02x" (level 3).
///
/// A `<` is tried as a SIP address, then as a tel URI, then as an opaque URI that is not SIP or
/// SIPS. A tel URI is read from the stream's position, not from the `<`, and the match ends after
/// it. It counts 6 bytes plus the length of TelAddress::getURIString(). So the count may differ
/// from the bytes that were read, and may go past the end. If the tel URI is refused,
/// "SipHeaderMatchIHeaderChars::doMatch | Tel Match Failed , Match with Abs URI" is logged (level
/// 4); out of memory "SipHeaderMatchIHeaderChars::doMatch | Malloc failed".
class SIPUTILITY_EXPORT SipHeaderMatchIHeaderChars : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

/// Matches a URI of any scheme in its opaque form: `absoluteURI = scheme ":" 1*uric`
///
/// Only the opaque form matches: the part after the `:` must not begin with `/`.
class SIPUTILITY_EXPORT SipHeaderMatchAbsoluteURI : public SipMatch {
 public:
  unsigned int doMatch(const SipStrStream& stream, unsigned int offset) override;
};

#endif  // WY_SIP_HEADER_MATCH_H
