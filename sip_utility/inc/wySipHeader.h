/// \file
/// One SIP header field: name, value and parameters.
///
/// A header is read from its name and the complete text of its value. Each piece can be changed
/// under the same grammar, and the header can be written back as one line. Every operation except
/// the look-ups stores its outcome in the last-error code. Check the code after construction. Each
/// failure is logged once (level 4, module 6054).
///
/// getHeaderValue() and toString() fill caches in the object, so these two change it as well. A
/// returned text or piece lives until the header next changes. An object is used by one thread at a
/// time.
#ifndef WY_SIP_HEADER_H
#define WY_SIP_HEADER_H

#include <string_view>

#include "wySipExport.h"
#include "wySipParam.h"
#include "wySipString.h"

/// A SIP header field that can be read, changed and written: name, value and parameters.
class SIPUTILITY_EXPORT SipHeader {
 public:
  /// Reads a name, which is a token, and a value with its parameters. White space may surround each
  /// of the two texts. An empty value text leaves value and parameters empty. The name decides the
  /// syntax: `scheme name=value,...` for the authentication headers, else `value;name=value;...`.
  /// SipHeaderMatchValue describes what a value covers. After a failure the pieces before the
  /// failing one are set.
  ///
  /// Out of memory for a tel address, a tel URI in angle brackets is read as an opaque URI. A value
  /// that is otherwise refused, such as `<tel:+1>x`, may then be accepted.
  SipHeader(const SipString& name, const SipString& value);

  SipHeader(const SipHeader&) = delete;
  SipHeader& operator=(const SipHeader&) = delete;

  virtual ~SipHeader();

  /// Stores the code.
  void VarnSetLastErrorCode(VARN_EXCEPTION_CODES code);

  /// Returns the outcome of the last operation that stores one.
  VARN_EXCEPTION_CODES GetLastErrorCode() const;

  /// Returns the name; empty if none was accepted.
  const SipString& getName() const;

  /// Returns the value without its parameters.
  const SipString& getValue() const;

  /// Returns the kind of the header; WY_SIP_HEADER_TYPE_NONE if no name has been accepted yet.
  WY_SIP_SIPHEADER_TYPE getHeaderType() const;

  /// Returns the kind of a header with this name: authentication for `WWW-Authenticate`,
  /// `Proxy-Authenticate`, `Proxy-Authorization` and `Authorization` (letter case ignored),
  /// ordinary for any other name.
  WY_SIP_SIPHEADER_TYPE lookUpHeaderType(const SipString& name) const;

  /// Replaces the name by another one of the same kind. White space around it is dropped. A header
  /// without a name takes a name of any kind; if getHeaderValue() has already written its
  /// parameters, that text stays as it is. After a failure nothing has changed.
  ///
  /// Fails: VARN_INVALID_INPUT, VARN_RESOURCE_FAILURE, or the code of the stream.
  VARN_EXCEPTION_CODES setName(const SipString& name);

  /// Replaces the value; the parameters of the header stay. White space around the value is
  /// dropped. A text with parameters is refused; an empty text removes the value. After a failure
  /// nothing has changed.
  ///
  /// Fails: like setName().
  VARN_EXCEPTION_CODES setValue(const SipString& value);

  /// Returns the value of a parameter; empty if the parameter has no value, null if there is no
  /// such parameter. Stores no code.
  const SipString* getParameter(const SipString& name) const;

  /// Returns the first parameter, or the next one, in the order in which they are written. Returns
  /// null at the end and for a null parameter.
  /// @{
  const SipParam* firstParam() const;
  const SipParam* nextParam(const SipParam* param) const;
  /// @}

  /// Adds or replaces a parameter; see SipParamList::setParameter().
  VARN_EXCEPTION_CODES setParameter(const SipString& name, const SipString& value);

  /// Removes a parameter. Returns success, also if there is no such parameter.
  VARN_EXCEPTION_CODES removeParameter(const SipString& name);

  /// Returns the length of getHeaderValue().
  unsigned int getHeaderValueLength() const;

  /// Returns the length of toString() for a header that has a value or parameters.
  unsigned int getStringLength() const;

  /// Returns the value and the parameters. Out of memory it returns an empty text and stores
  /// VARN_RESOURCE_FAILURE.
  SipString& getHeaderValue();

  /// Returns `name: value;parameters` without a line end. For a header with neither value nor
  /// parameters it returns an empty text, logs "SipHeader::toString - getHeaderValue failed" and
  /// stores success. Out of memory it returns an empty text and stores VARN_RESOURCE_FAILURE.
  SipString& toString();

 private:
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES parse(const SipString& name, const SipString& value);
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES parseValue(std::string_view name, const SipString& value);
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES replaceName(const SipString& name);
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES takeName(SipStrStream& stream);
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES scanName(SipStrStream& stream, std::string_view& token,
                                                  WY_SIP_SIPHEADER_TYPE& type) const;
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
