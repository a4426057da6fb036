/// \file
/// One SIP address: a wildcard, an addr-spec or a name-addr (RFC 3261).
///
/// An address parses a text into pieces. Each piece can be read and changed under its grammar
/// rule, and the address can be written back. Every operation stores its outcome in the last-error
/// code: VARN_OK, VARN_RESOURCE_FAILURE or VARN_INVALID_INPUT, or a code of the stream. Check the
/// code after construction. Each failure is logged once (level 4, module 6054).
///
/// getURI() and toString() fill caches in the object, so these two change it as well. A returned
/// text or piece lives until the address next changes. An object is used by one thread at a time.
#ifndef WY_SIP_ADDRESS_H
#define WY_SIP_ADDRESS_H

#include "wySipExport.h"
#include "wySipParam.h"
#include "wySipPort.h"
#include "wySipString.h"

/// A SIP address that can be read, changed and written: wildcard, addr-spec or name-addr.
class SIPUTILITY_EXPORT SipAddress {
 public:
  /// Reads a complete address: `*`, an addr-spec or a name-addr. White space may surround it.
  ///
  ///     addr-spec = scheme ":" [ userinfo "@" ] host [ ":" port ] *( ";" param ) [ headers ]
  ///     name-addr = [ display-name ] "<" addr-spec ">"
  ///
  /// A text that begins with a scheme and `:` is an addr-spec, and nothing may follow the URI. Any
  /// text after the `>` of a name-addr is ignored. URI headers (`?name=value`) are skipped and not
  /// stored. After a failure the pieces before the failing one are set.
  explicit SipAddress(const SipString& address);

  /// Makes an address of a display name, which may be empty, and a URI, bare or in angle brackets.
  /// The display name follows the rules of setDisplayName(). If it fails, the URI is not read.
  SipAddress(const SipString& displayName, const SipString& uri);

  /// Reads a name-addr at the stream's position, after optional white space. The stream is then
  /// past the `>`.
  explicit SipAddress(SipStrStream& stream);

  SipAddress(const SipAddress&) = delete;
  SipAddress& operator=(const SipAddress&) = delete;

  virtual ~SipAddress();

  /// Stores the code.
  void VarnSetLastErrorCode(VARN_EXCEPTION_CODES code);

  /// Returns the outcome of the last operation that stores one.
  VARN_EXCEPTION_CODES GetLastErrorCode() const;

  /// Returns whether the address is `*`. Every change of such an address is refused.
  bool isWildcard() const;

  /// Returns a piece as it is written; empty if the address does not have it. The display name
  /// keeps its quotes, the user its `:` and password, the host its brackets.
  /// @{
  const SipString& getDisplayName() const;
  const SipString& getScheme() const;
  const SipString& getUser() const;
  const SipString& getHost() const;
  /// @}

  /// Returns the port that is written in the URI; 0 for none.
  unsigned short getStoredPort() const;

  /// Returns the effective port: the stored one, else 5061 for the scheme `sips` (letter case
  /// ignored), else 5060. Returns 0 for a wildcard.
  unsigned short getPort() const;

  /// Returns the value of a URI parameter; empty if the parameter has no value, null if there is
  /// no such parameter.
  const SipString* getParameter(const SipString& name) const;

  /// Returns the first URI parameter, or the next one, in the order in which they are written.
  /// Returns null at the end and for a null parameter.
  /// @{
  const SipParam* firstParam() const;
  const SipParam* nextParam(const SipParam* param) const;
  /// @}

  /// Returns the names of the URI parameters; see SipParamList::getParameterNames().
  const SipString** getParameterNames();

  /// Replaces one piece. The complete value must match the rule of the piece; white space around
  /// it is dropped. An empty value removes the display name or the user; an empty scheme or host
  /// is refused. setUser() takes `user[:password]`. After a failure nothing has changed.
  ///
  /// Fails: VARN_INVALID_INPUT, VARN_RESOURCE_FAILURE.
  /// @{
  VARN_EXCEPTION_CODES setDisplayName(const SipString& displayName);
  VARN_EXCEPTION_CODES setScheme(const SipString& scheme);
  VARN_EXCEPTION_CODES setUser(const SipString& user);
  VARN_EXCEPTION_CODES setHost(const SipString& host);
  /// @}

  /// Replaces the port; 0 removes it.
  void setPort(unsigned short port);

  /// Replaces scheme, user, host and port by those of a URI, bare or in angle brackets. The
  /// parameters of the URI are checked and dropped. The address keeps its own parameters and its
  /// display name. After a failure nothing has changed.
  ///
  /// Fails: like the constructors.
  VARN_EXCEPTION_CODES setURI(const SipString& uri);

  /// Adds or replaces a URI parameter; see SipParamList::setParameter().
  VARN_EXCEPTION_CODES setParameter(const SipString& name, const SipString& value);

  /// Removes a URI parameter. Always returns and stores success, also if there is no such parameter
  /// and if a wildcard refuses the change.
  VARN_EXCEPTION_CODES removeParameter(const SipString& name);

  /// Removes all URI parameters; does nothing to a wildcard. The last-error code stays.
  void clearParamList();

  /// Returns `scheme:user@host:port` without parameters and angle brackets; `*` for a wildcard.
  /// Out of memory it returns an empty text and stores VARN_RESOURCE_FAILURE.
  SipString& getURI();

  /// Returns an estimate of the length of getURI(), for reserving memory. It is one byte short if
  /// the URI has a port: the `:` before the port is not counted.
  unsigned int getURIStringLength() const;

  /// Returns the complete address, with angle brackets around the URI if the address has parameters
  /// or a display name. Out of memory it returns an empty text and stores VARN_RESOURCE_FAILURE.
  SipString& toString();

  /// Returns an estimate of the length of toString(), one byte short as getURIStringLength() is.
  unsigned int getStringLength() const;

 protected:
  // The parse steps. Each reads from the stream's position and writes the pieces to the outputs,
  // also those before a failure. A null output is a failed assertion, and the step then fails with
  // VARN_INVALID_INPUT.

  /// Reads a name-addr.
  VARN_EXCEPTION_CODES parseNameAddr(SipStrStream& stream, SipString* displayName,
                                     SipString* scheme, SipString* user, SipString* host,
                                     SipPort* port, SipAddrParamList* params);

  /// Reads `"<" addr-spec ">"`.
  ///
  /// Fails: VARN_INVALID_INPUT, without a log line if the text does not begin with `<`.
  VARN_EXCEPTION_CODES parseURI(SipStrStream& stream, SipString* scheme, SipString* user,
                                SipString* host, SipPort* port, SipAddrParamList* params);

  /// Reads `"<" addr-spec ">"` and ignores what follows it, or reads a bare addr-spec up to the end
  /// of the stream.
  VARN_EXCEPTION_CODES parseAnyURI(SipStrStream& stream, SipString* scheme, SipString* user,
                                   SipString* host, SipPort* port, SipAddrParamList* params);

  /// Reads an addr-spec.
  VARN_EXCEPTION_CODES parseAddrSpec(SipStrStream& stream, SipString* scheme, SipString* user,
                                     SipString* host, SipPort* port, SipAddrParamList* params);

 private:
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES parse(const SipString& address);
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES parse(const SipString& displayName, const SipString& uri);
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES parse(SipStrStream& stream);
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES parseWholeAddrSpec(SipStrStream& stream);
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES parseOwnNameAddr(SipStrStream& stream);
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES becomeWildcard();
  SIPUTILITY_HIDDEN bool refusesChange(const char* message, int line = __builtin_LINE());
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES storeCode(VARN_EXCEPTION_CODES code);
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES storeChange(VARN_EXCEPTION_CODES code);
  SIPUTILITY_HIDDEN void dropTexts();
  SIPUTILITY_HIDDEN SipString& cached(SipString& text, VARN_EXCEPTION_CODES (SipAddress::*write)());
  SIPUTILITY_HIDDEN unsigned int textLength() const;
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES writeURI();
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES writeText();

  int wildcard_;
  SipString displayName_;
  SipString scheme_;
  SipString user_;
  SipString host_;
  SipPort port_;
  SipAddrParamList params_;
  VARN_EXCEPTION_CODES lastError_;
  SipString text_;
  SipString uriText_;
};

#endif  // WY_SIP_ADDRESS_H
