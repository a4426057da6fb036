// wySipPort.cpp - the port number of a SIP URI.
#include "wySipPort.h"

#include "base/log.h"
#include "base/stringAccess.h"
#include "grammar/grammar.h"
#include "imsdpl.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wySipPort";

constexpr unsigned int kMaxDigits = 5;
constexpr int kMaxPort = 65535;
constexpr int kDecimal = 10;

}  // namespace

SipPort::SipPort() : port_(0) {}

SipPort::SipPort(unsigned short port) : port_(port) {}

SipPort::SipPort(const SipPort& other) = default;

SipPort& SipPort::operator=(const SipPort& other) = default;

SipPort::~SipPort() = default;

VARN_EXCEPTION_CODES SipPort::set(SipStrStream& stream) {
  const unsigned int count = matchOf<grammar::digits>(stream);
  if (count == 0 || count > kMaxDigits) {
    // No digit at all is logged in the same words with a count of 0, on purpose.
    logFailure(kSourceFile, "SipPort::set | too many digits (%lu)", count);
    return VARN_INVALID_INPUT;
  }
  int value = 0;
  for (const char digit : SipStringAccess::rest(stream).substr(0, count)) {
    value = value * kDecimal + (digit - '0');
  }
  SipStringAccess::advance(stream, count);
  if (value > kMaxPort) {
    logFailure(kSourceFile, "SipPort::set | %d is out of range", static_cast<uintptr_t>(value));
    return VARN_INVALID_INPUT;
  }
  port_ = static_cast<unsigned short>(value);
  return VARN_OK;
}

unsigned short SipPort::get() const { return port_; }

unsigned int SipPort::getStringLength() const {
  unsigned int length = 1;
  for (unsigned int rest = port_; rest >= kDecimal; rest /= kDecimal) {
    ++length;
  }
  return length;
}

VARN_EXCEPTION_CODES SipPort::appendToString(SipString& out) const {
  char digits[kMaxDigits + 1] = {};
  return out.append(__itoaL(port_, digits, kDecimal));
}
