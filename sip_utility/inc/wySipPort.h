/// \file
/// The port number of a SIP URI.
///
/// 0 means no port. An object is used by one thread at a time.
#ifndef WY_SIP_PORT_H
#define WY_SIP_PORT_H

#include "wySipExport.h"
#include "wySipString.h"

/// The port number of an address; 0 for none.
class SIPUTILITY_EXPORT SipPort {
 public:
  /// Makes no port.
  SipPort();

  /// Makes a port of a number.
  SipPort(unsigned short port);  // NOLINT(google-explicit-constructor): a number is a port
  SipPort(const SipPort& other);
  SipPort& operator=(const SipPort& other);
  virtual ~SipPort();

  /// Reads 1 to 5 decimal digits at the position, leading zeros included, and moves past them.
  /// After a failure the port has not changed.
  ///
  /// Fails: VARN_INVALID_INPUT for another number of digits, with
  /// "SipPort::set | too many digits (%lu)"; nothing is read. VARN_INVALID_INPUT for a value above
  /// 65535, with "SipPort::set | %d is out of range"; the digits are read. Both are of level 4,
  /// module 6054.
  VARN_EXCEPTION_CODES set(SipStrStream& stream);

  /// Returns the port; 0 for none.
  unsigned short get() const;

  /// Returns the number of digits that appendToString() writes.
  unsigned int getStringLength() const;

  /// Appends the decimal digits without leading zeros; `0` for no port.
  ///
  /// Fails: VARN_RESOURCE_FAILURE.
  VARN_EXCEPTION_CODES appendToString(SipString& out) const;

 private:
  unsigned short port_;
};

#endif  // WY_SIP_PORT_H
