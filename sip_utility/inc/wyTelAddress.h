/// \file
/// One telephone number as a tel URI, bare or in a name-addr (RFC 3966).
///
/// A tel address parses a text into pieces. Each piece can be read and changed under its grammar
/// rule. The address can be written back, and can become the user part of a SIP address. Every
/// operation stores its outcome in the last-error code unless it says otherwise. Check the code
/// after construction. Each failure is logged once (level 4, module 6054).
///
/// toString() fills a cache in the object. A returned text or piece lives until the address next
/// changes. An object is used by one thread at a time.
#ifndef WY_TEL_ADDRESS_H
#define WY_TEL_ADDRESS_H

#include "wySipAddress.h"
#include "wySipExport.h"
#include "wySipParam.h"
#include "wySipString.h"
#include "wyTelAddressMatch.h"

/// A tel URI that can be read, changed, written and converted to a SIP address.
class SIPUTILITY_EXPORT TelAddress {
 public:
  /// Reads a tel address, after optional white space. What follows the URI is ignored.
  ///
  ///     name-addr = [ display-name ] "<" tel-uri ">" / tel-uri
  ///     tel-uri = "tel:" number [ ";isub=" 1*paramchar / ";ext=" 1*phonedigit ]
  ///               [ ";phone-context=" descriptor ] *( ";" param )
  ///
  /// isub, ext and phone-context have a fixed place. Later in the text they are refused as
  /// duplicates if they are in lower case. In upper case they become parameters of the list, which
  /// no operation can reach by name. After a failure the pieces before the failing one are set.
  explicit TelAddress(const SipString& address);

  TelAddress(const TelAddress&) = delete;
  TelAddress& operator=(const TelAddress&) = delete;

  virtual ~TelAddress();

  /// Reads a tel address from the stream's position into the outputs. Stores in this object whether
  /// it had brackets, and the kind of its number.
  ///
  /// Fails: like the constructor. VARN_INVALID_INPUT for a null output, which is a failed
  /// assertion.
  VARN_EXCEPTION_CODES parseTelNameAddr(SipStrStream& stream, SipString* displayName,
                                        SipString* phoneNumber, SipString* isub, SipString* ext,
                                        SipString* context, TelAddrParamList* params);

  /// Stores the code.
  void VarnSetLastErrorCode(VARN_EXCEPTION_CODES code);

  /// Returns the outcome of the last operation that stores one.
  VARN_EXCEPTION_CODES GetLastErrorCode() const;

  /// Returns a piece as it is written; empty if the address does not have it. The display name
  /// keeps its quotes, the number its `+` and visual separators.
  /// @{
  const SipString& getDisplayName() const;
  const SipString& getPhoneNumber() const;
  const SipString& getISDNSubAddr() const;
  const SipString& getExtension() const;
  const SipString& getContext() const;
  /// @}

  /// Returns the kind of the number.
  WY_SIP_TELURI_TYPE getType() const;

  /// Returns whether the URI was in angle brackets in the text; they are then written again.
  bool isBracketed() const;

  /// Returns the first parameter, or the next one; isub, ext and phone-context are left out. See
  /// TelAddrParamList::firstParam().
  /// @{
  const SipParam* firstParam() const;
  const SipParam* nextParam(const SipParam* param) const;
  /// @}

  /// Replaces one piece. The complete value must match the rule of the piece; white space around it
  /// is dropped. An empty display name removes the display name and the brackets; any other empty
  /// value is refused. After a failure nothing has changed.
  ///
  /// setPhoneNumber() refuses to replace a global number by a local one while no phone context is
  /// set. An isub is refused while there is an ext, and an ext while there is an isub (level 3).
  ///
  /// Fails: VARN_INVALID_INPUT, VARN_RESOURCE_FAILURE.
  /// @{
  VARN_EXCEPTION_CODES setDisplayName(const SipString& displayName);
  VARN_EXCEPTION_CODES setPhoneNumber(const SipString& phoneNumber);
  VARN_EXCEPTION_CODES setISDNSubAddr(const SipString& isub);
  VARN_EXCEPTION_CODES setExtension(const SipString& extension);
  VARN_EXCEPTION_CODES setContext(const SipString& context);
  /// @}

  /// Returns the value of a parameter, also of isub, ext and phone-context, letter case ignored;
  /// empty if the parameter has no value, null if there is no such parameter.
  const SipString* getParameter(const SipString& name) const;

  /// Adds or replaces a parameter. The names isub, ext and phone-context, in any letter case but
  /// without white space around them, call their setters, which refuse an empty value. Releases the
  /// array of getParameterNames(), also after a failure.
  VARN_EXCEPTION_CODES setParameter(const SipString& name, const SipString& value);

  /// Removes a parameter, if there is one. Empties the array of getParameterNames() if a name in it
  /// was removed.
  ///
  /// Fails: VARN_INVALID_INPUT for the phone context of a local number.
  VARN_EXCEPTION_CODES removeParameter(const SipString& name);

  /// Returns the names of the parameters: those of the list in chain order, then isub, ext and
  /// phone-context if they are set, then null. The array lives until the next call, setParameter()
  /// or the destructor; its names live until the address next changes.
  ///
  /// Fails: null and VARN_RESOURCE_FAILURE, with "TelAddress::getParameterNames - new failed" or
  /// with the log line of SipParamList::getParameterNames().
  ///
  /// Owns: the address owns the array.
  const SipString** getParameterNames();

  /// Replaces the content of out by the URI without its `tel:`. Stores no code.
  ///
  /// Fails: VARN_RESOURCE_FAILURE.
  VARN_EXCEPTION_CODES getURIString(SipString& out) const;

  /// Returns the length of the URI, including `tel:`.
  unsigned int getURIStringLength() const;

  /// Returns the complete address. Angle brackets are written around the URI if the address has
  /// parameters or a display name, or if the URI was in angle brackets in the text. Out of memory
  /// it returns an empty text and stores VARN_RESOURCE_FAILURE.
  SipString& toString();

  /// Returns the length of toString(), without brackets that are written only because the text had
  /// them.
  unsigned int getStringLength() const;

  /// Replaces the content of out by the rest of the stream as the user part of a SIP URI. Letters
  /// are converted to lower case, including escapes and parameter values. A byte that is not
  /// allowed in a user part becomes an escape with two lower-case hexadecimal digits.
  ///
  /// The text ends where `in.done()` returns true, at the latest after the last byte. For a stream
  /// of a caller's class, done() is called before each byte that is escaped, at the caller's cost.
  ///
  /// Fails: VARN_RESOURCE_FAILURE.
  VARN_EXCEPTION_CODES convertTelToSipUserInfoSyntax(SipStrStream& in, SipString& out);

  /// Makes the target the SIP form of this number. The user of the target becomes this URI without
  /// `tel:`, its display name this display name, its only parameter `user=phone`. Its scheme, host
  /// and port stay.
  ///
  /// Fails: with the code of the first failure; the changes before it stay.
  VARN_EXCEPTION_CODES toSipAddress(SipAddress& target);

 private:
  struct SIPUTILITY_HIDDEN NameArray;
  struct SIPUTILITY_HIDDEN DedicatedParam;

  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES parse(const SipString& address);
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
