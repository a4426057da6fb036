// wyTelAddress.h - one telephone number as a tel URI, bare or in a name-addr (RFC 3966).
//
// A tel address takes a text apart, lets the pieces be read and changed one at a time, each under
// its grammar rule, writes them back, and becomes the user part of a SIP address. Every operation
// stores its outcome in the last-error code unless it says otherwise; check it after
// construction. Failures are logged once (level 4, module 6054).
//
// The text of toString() is a cache of the object. A text or piece handed out lives until the
// address next changes. One thread at a time for each object.
#ifndef WY_TEL_ADDRESS_H
#define WY_TEL_ADDRESS_H

#include "wySipAddress.h"
#include "wySipExport.h"
#include "wySipParam.h"
#include "wySipString.h"
#include "wyTelAddressMatch.h"

class SIPUTILITY_EXPORT TelAddress {
 public:
  // Reads a tel address, white space in front allowed. What follows the URI is not looked at.
  //
  //   name-addr = [ display-name ] "<" tel-uri ">" / tel-uri
  //   tel-uri = "tel:" number [ ";isub=" 1*paramchar / ";ext=" 1*phonedigit ]
  //             [ ";phone-context=" descriptor ] *( ";" param )
  //
  // isub, ext and phone-context have this place and no other: met later, in small letters, they
  // are refused as duplicates; in capitals they become parameters of the list, which no operation
  // by name reaches. After a failure the pieces in front of the failing one are set.
  explicit TelAddress(const SipString& address);

  TelAddress(const TelAddress&) = delete;
  TelAddress& operator=(const TelAddress&) = delete;

  virtual ~TelAddress();

  // Reads a tel address from the stream's position into the outputs, and its brackets and kind of
  // number into this object. A null output is a failed assertion and VARN_INVALID_INPUT.
  VARN_EXCEPTION_CODES parseTelNameAddr(SipStrStream& stream, SipString* displayName,
                                        SipString* phoneNumber, SipString* isub, SipString* ext,
                                        SipString* context, TelAddrParamList* params);

  // Stores the code.
  void VarnSetLastErrorCode(VARN_EXCEPTION_CODES code);

  // Returns the outcome of the last operation that stores one.
  VARN_EXCEPTION_CODES GetLastErrorCode() const;

  // The pieces as they stood in the text, empty for those it did not have. The display name keeps
  // its quotes, the number its "+" and visual separators.
  const SipString& getDisplayName() const;
  const SipString& getPhoneNumber() const;
  const SipString& getISDNSubAddr() const;
  const SipString& getExtension() const;
  const SipString& getContext() const;

  // Returns the kind of the number.
  WY_SIP_TELURI_TYPE getType() const;

  // Returns whether the text had the URI in angle brackets; they are then written again.
  bool isBracketed() const;

  // The walk over the parameters but isub, ext and phone-context, see TelAddrParamList.
  const SipParam* firstParam() const;
  const SipParam* nextParam(const SipParam* param) const;

  // Each replaces one piece by a value that is a whole instance of the piece's rule; white space
  // around it is dropped. An empty display name is taken away, and the brackets with it; every
  // other empty value is refused. After a failure nothing has changed.
  //
  // setPhoneNumber() refuses a local number in place of a global one while no phone context is
  // set; isub and ext refuse each other (level 3).
  // Fails: VARN_INVALID_INPUT, VARN_RESOURCE_FAILURE.
  VARN_EXCEPTION_CODES setDisplayName(const SipString& displayName);
  VARN_EXCEPTION_CODES setPhoneNumber(const SipString& phoneNumber);
  VARN_EXCEPTION_CODES setISDNSubAddr(const SipString& isub);
  VARN_EXCEPTION_CODES setExtension(const SipString& extension);
  VARN_EXCEPTION_CODES setContext(const SipString& context);

  // Returns the value of a parameter, isub, ext and phone-context among them, letter case
  // ignored; null for no such parameter.
  const SipString* getParameter(const SipString& name) const;

  // Replaces or adds a parameter; isub, ext and phone-context, in any letter case but without
  // white space around them, go to their setters and take no empty value. Releases the array of
  // getParameterNames(), also when it fails.
  VARN_EXCEPTION_CODES setParameter(const SipString& name, const SipString& value);

  // Takes a parameter away, if it is there. Empties the array of getParameterNames() where a name
  // in it is gone.
  // Fails: VARN_INVALID_INPUT for the phone context of a local number.
  VARN_EXCEPTION_CODES removeParameter(const SipString& name);

  // Returns the names of the list, in its chain's order, then those of isub, ext and
  // phone-context that are set, then null. The array lives until the next call, setParameter()
  // or the destructor, its names until the address next changes.
  // Fails: null and VARN_RESOURCE_FAILURE with "TelAddress::getParameterNames - new failed", or
  // with the message of the list's own array.
  // Owns: the address.
  const SipString** getParameterNames();

  // Replaces out by the URI without its "tel:". Stores no code.
  // Fails: VARN_RESOURCE_FAILURE.
  VARN_EXCEPTION_CODES getURIString(SipString& out) const;

  // Returns the length of the URI, "tel:" included.
  unsigned int getURIStringLength() const;

  // Returns the whole address. Angle brackets are written around a URI that has parameters, a
  // display name, or had them in the text. Empty when there is no memory for it, with
  // VARN_RESOURCE_FAILURE stored.
  SipString& toString();

  // Returns the length of toString() but for brackets that are written only because the text had
  // them.
  unsigned int getStringLength() const;

  // Replaces out by the rest of the stream, up to where it is done, as the user part of a SIP URI:
  // letters in lower case, those of escapes and values included; bytes that are not allowed there
  // as escapes of two lower-case hexadecimal digits. A stream that is never done ends with its
  // bytes. A stream of a caller's class is asked whether it is done before each byte that is
  // escaped: what its done() costs is the caller's.
  // Fails: VARN_RESOURCE_FAILURE.
  VARN_EXCEPTION_CODES convertTelToSipUserInfoSyntax(SipStrStream& in, SipString& out);

  // Makes the target the SIP form of this number: its user becomes the URI, its display name this
  // one, its parameters `user=phone`. Scheme, host and port are the caller's.
  // Fails: with the first failure, the changes in front of it done.
  VARN_EXCEPTION_CODES toSipAddress(SipAddress& target);

 private:
  struct SIPUTILITY_HIDDEN NameArray;
  struct SIPUTILITY_HIDDEN DedicatedParam;

  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES parse(const SipString& address);
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES takeOpening(SipStrStream& stream, SipString& displayName);
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES takeNumber(SipStrStream& stream, SipString& phoneNumber);
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES storeCode(VARN_EXCEPTION_CODES code);
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES storeChange(VARN_EXCEPTION_CODES code);
  SIPUTILITY_HIDDEN bool hasParameters() const;
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES appendURI(SipString& out, unsigned int length) const;
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES writeText();
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES convertToUser(SipString& user);
  SIPUTILITY_HIDDEN void releaseNames();

  SipString displayName_;
  SipString phoneNumber_;
  SipString isub_;
  SipString extension_;
  SipString context_;
  TelAddrParamList params_;
  int bracketed_;
  WY_SIP_TELURI_TYPE type_;
  VARN_EXCEPTION_CODES lastError_;
  SipString text_;
  NameArray* names_;
};

#endif  // WY_TEL_ADDRESS_H
