// wySipHeader.h - one SIP header field: name, value and parameters.
//
// A header field is read from its name and the full text of its value, changed piece by piece
// under the same grammar, and written back as one line. Every operation but the look-ups stores
// its outcome in the last-error code; check it after construction. Failures are logged once
// (level 4, module 6054).
//
// The texts of getHeaderValue() and toString() are caches of the object, so even these two change
// it. A text or piece handed out lives until the header next changes. One thread at a time for
// each object.
#ifndef WY_SIP_HEADER_H
#define WY_SIP_HEADER_H

#include "wySipExport.h"
#include "wySipParam.h"
#include "wySipString.h"

class SIPUTILITY_EXPORT SipHeader {
 public:
  // Reads a name, a token, and a value with its parameters, white space around each allowed; an
  // empty value text gives neither. The name decides the syntax: `value;name=value;...`, or
  // `scheme name=value,...` for the authentication headers. SipHeaderMatchValue says what a value
  // covers. After a failure the pieces before the failing one are set.
  //
  // A bracketed tel URI is read as an opaque URI where there is no memory for a tel address. So
  // <tel:+1>x, which is refused otherwise, may then be accepted.
  SipHeader(const SipString& name, const SipString& value);

  SipHeader(const SipHeader&) = delete;
  SipHeader& operator=(const SipHeader&) = delete;

  virtual ~SipHeader();

  // Stores the code.
  void VarnSetLastErrorCode(VARN_EXCEPTION_CODES code);

  // Returns the outcome of the last operation that stores one.
  VARN_EXCEPTION_CODES GetLastErrorCode() const;

  const SipString& getName() const;

  // Returns the value without its parameters.
  const SipString& getValue() const;

  // Returns the kind of the header; not set when no name was accepted yet.
  WY_SIP_SIPHEADER_TYPE getHeaderType() const;

  // Returns the kind that a header of this name has: authentication for "WWW-Authenticate",
  // "Proxy-Authenticate", "Proxy-Authorization" and "Authorization", letter case ignored, else
  // ordinary.
  WY_SIP_SIPHEADER_TYPE lookUpHeaderType(const SipString& name) const;

  // Replaces the name by another of the same kind; white space around it is dropped. A header
  // without a name takes any: a text of parameters that getHeaderValue() gave before stays as it
  // was written then. After a failure nothing has changed.
  // Fails: VARN_INVALID_INPUT, VARN_RESOURCE_FAILURE, or the code of the stream.
  VARN_EXCEPTION_CODES setName(const SipString& name);

  // Replaces the value; white space around it is dropped, parameters are refused. An empty text
  // takes the value away. The parameters stay. After a failure nothing has changed.
  // Fails: as setName().
  VARN_EXCEPTION_CODES setValue(const SipString& value);

  // Returns the value of a parameter, empty when it has none; null for no such parameter. Stores
  // no code.
  const SipString* getParameter(const SipString& name) const;

  // The walk over the parameters in the order in which they are written; null at the end, and
  // behind null.
  const SipParam* firstParam() const;
  const SipParam* nextParam(const SipParam* param) const;

  // Adds or replaces a parameter, see SipParamList::setParameter().
  VARN_EXCEPTION_CODES setParameter(const SipString& name, const SipString& value);

  // Takes a parameter away. Returns success, whether there was one or not.
  VARN_EXCEPTION_CODES removeParameter(const SipString& name);

  // Returns the length of getHeaderValue().
  unsigned int getHeaderValueLength() const;

  // Returns the length of toString() for a header that has a value or parameters.
  unsigned int getStringLength() const;

  // Returns the value and the parameters. Empty when there is no memory for them, with
  // VARN_RESOURCE_FAILURE stored.
  SipString& getHeaderValue();

  // Returns `name: value;parameters` without a line end. Empty for a header with neither value
  // nor parameters, which is logged ("SipHeader::toString - getHeaderValue failed") but stores
  // success, and when there is no memory, with VARN_RESOURCE_FAILURE stored.
  SipString& toString();

 private:
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES parse(const SipString& name, const SipString& value);
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES replaceName(const SipString& name);
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES takeName(SipStrStream& stream);
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES replaceValue(const SipString& value);
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES storeCode(VARN_EXCEPTION_CODES code);
  SIPUTILITY_HIDDEN void dropTexts();
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES writeText();

  SipString name_;
  SipString value_;
  SipHdrParamList params_;
  SipString headerValueText_;
  SipString headerText_;
  VARN_EXCEPTION_CODES lastError_;
};

#endif  // WY_SIP_HEADER_H
