// wySipAddress.h - one SIP address: a wildcard, an addr-spec or a name-addr (RFC 3261).
//
// An address takes a text apart, lets the pieces be read and changed one at a time, each under
// its grammar rule, and writes them back. Every operation stores its outcome in the last-error
// code: VARN_OK, VARN_RESOURCE_FAILURE or VARN_INVALID_INPUT, or a code of the stream; check it
// after construction. Failures are logged once (level 4, module 6054).
//
// The texts of getURI() and toString() are caches of the object, so even these two change it. A
// text or piece handed out lives until the address next changes. One thread at a time for each
// object.
#ifndef WY_SIP_ADDRESS_H
#define WY_SIP_ADDRESS_H

#include "wySipExport.h"
#include "wySipParam.h"
#include "wySipPort.h"
#include "wySipString.h"

class SIPUTILITY_EXPORT SipAddress {
 public:
  // Reads a whole address: `*`, an addr-spec or a name-addr, white space around it allowed.
  //
  // A text that begins with a scheme and ":" is an addr-spec and must end behind the URI; behind
  // the ">" of a name-addr anything may follow and is ignored. After a failure the pieces in
  // front of the failing one are set.
  //
  //   addr-spec = scheme ":" [ userinfo "@" ] host [ ":" port ] *( ";" param ) [ headers ]
  //   name-addr = [ display-name ] "<" addr-spec ">"
  //
  // URI headers (`?name=value`) are skipped and not stored.
  explicit SipAddress(const SipString& address);

  // Makes an address of a display name, which may be empty, and a URI, bare or in angle brackets.
  // The display name is as for setDisplayName(); nothing else is read when it fails.
  SipAddress(const SipString& displayName, const SipString& uri);

  // Reads a name-addr at the stream's position, white space in front allowed, and leaves the
  // stream behind the ">".
  explicit SipAddress(SipStrStream& stream);

  SipAddress(const SipAddress&) = delete;
  SipAddress& operator=(const SipAddress&) = delete;

  virtual ~SipAddress();

  // Stores the code.
  void VarnSetLastErrorCode(VARN_EXCEPTION_CODES code);

  // Returns the outcome of the last operation that stores one.
  VARN_EXCEPTION_CODES GetLastErrorCode() const;

  // Returns whether the address is `*`. Every change of such an address is refused.
  bool isWildcard() const;

  // The pieces as they stood in the text, empty for those it did not have. The display name
  // keeps its quotes, the user its ":" and password, the host its brackets.
  const SipString& getDisplayName() const;
  const SipString& getScheme() const;
  const SipString& getUser() const;
  const SipString& getHost() const;

  // Returns the port that the URI has; 0 for none.
  unsigned short getStoredPort() const;

  // Returns the port that the URI means: the stored one, else 5061 for the scheme "sips", letter
  // case ignored, else 5060; 0 for a wildcard.
  unsigned short getPort() const;

  // Returns the value of a URI parameter, empty when it has none; null for no such parameter.
  const SipString* getParameter(const SipString& name) const;

  // The walk over the URI parameters in the order in which they are written; null at the end,
  // and behind null.
  const SipParam* firstParam() const;
  const SipParam* nextParam(const SipParam* param) const;

  // Returns the names of the URI parameters, see SipParamList::getParameterNames().
  const SipString** getParameterNames();

  // Each replaces one piece by a value that is a whole instance of the piece's rule; white space
  // around it is dropped. An empty value takes the display name or the user away and is refused
  // as scheme and host. setUser() takes user and password. After a failure nothing has changed.
  // Fails: VARN_INVALID_INPUT, VARN_RESOURCE_FAILURE.
  VARN_EXCEPTION_CODES setDisplayName(const SipString& displayName);
  VARN_EXCEPTION_CODES setScheme(const SipString& scheme);
  VARN_EXCEPTION_CODES setUser(const SipString& user);
  VARN_EXCEPTION_CODES setHost(const SipString& host);

  // Replaces the port; 0 takes it away.
  void setPort(unsigned short port);

  // Replaces scheme, user, host and port by those of a URI, bare or in angle brackets. The URI's
  // parameters are checked and dropped: the address keeps its own, and its display name. After a
  // failure nothing has changed.
  // Fails: as the constructors.
  VARN_EXCEPTION_CODES setURI(const SipString& uri);

  // Adds or replaces a URI parameter, see SipParamList::setParameter().
  VARN_EXCEPTION_CODES setParameter(const SipString& name, const SipString& value);

  // Takes a URI parameter away. Returns and stores success, whether there was one or not, and
  // also where a wildcard refuses.
  VARN_EXCEPTION_CODES removeParameter(const SipString& name);

  // Takes all URI parameters away; does nothing to a wildcard. The last-error code stays.
  void clearParamList();

  // Returns `scheme:user@host:port` without parameters and brackets; `*` for a wildcard. Empty
  // when there is no memory for it, with VARN_RESOURCE_FAILURE stored.
  SipString& getURI();

  // Returns an estimate of getURI()'s length to reserve by: one short where there is a port,
  // whose ":" is not counted.
  unsigned int getURIStringLength() const;

  // Returns the whole address. Angle brackets are written around a URI that has parameters or a
  // display name. Empty when there is no memory for it, with VARN_RESOURCE_FAILURE stored.
  SipString& toString();

  // Returns an estimate of toString()'s length, short as getURIStringLength() is.
  unsigned int getStringLength() const;

 protected:
  // The parse steps. Each reads from the stream's position and writes the pieces it meets to the
  // outputs, also in front of a failure. A null output is a failed assertion, and the step then
  // fails with VARN_INVALID_INPUT.

  // name-addr
  VARN_EXCEPTION_CODES parseNameAddr(SipStrStream& stream, SipString* displayName,
                                     SipString* scheme, SipString* user, SipString* host,
                                     SipPort* port, SipAddrParamList* params);

  // "<" addr-spec ">"; for anything else than "<" VARN_INVALID_INPUT without a log line
  VARN_EXCEPTION_CODES parseURI(SipStrStream& stream, SipString* scheme, SipString* user,
                                SipString* host, SipPort* port, SipAddrParamList* params);

  // "<" addr-spec ">", whatever follows, or a bare addr-spec up to the end of the stream
  VARN_EXCEPTION_CODES parseAnyURI(SipStrStream& stream, SipString* scheme, SipString* user,
                                   SipString* host, SipPort* port, SipAddrParamList* params);

  // addr-spec
  VARN_EXCEPTION_CODES parseAddrSpec(SipStrStream& stream, SipString* scheme, SipString* user,
                                     SipString* host, SipPort* port, SipAddrParamList* params);

 private:
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES parse(const SipString& address);
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES parse(const SipString& displayName, const SipString& uri);
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES parse(SipStrStream& stream);
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES parseText(SipStrStream& stream);
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES becomeWildcard();
  SIPUTILITY_HIDDEN bool refusesChange(const char* message, int line = __builtin_LINE());
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES storeCode(VARN_EXCEPTION_CODES code);
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES storeChange(VARN_EXCEPTION_CODES code);
  SIPUTILITY_HIDDEN void dropTexts();
  SIPUTILITY_HIDDEN SipString& cached(SipString& text, VARN_EXCEPTION_CODES (SipAddress::*write)());
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
