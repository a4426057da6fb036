// wySipPort.cpp - the port number of a SIP URI.
#include "wySipPort.h"

#include "address/addrSpec.h"
#include "base/log.h"
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
  Unread text = unread(stream);
  const VARN_EXCEPTION_CODES code = scanPort(text, port_);
  moveTo(stream, text);
  return code;
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

VARN_EXCEPTION_CODES scanPort(Unread& text, unsigned short& port) {
  const unsigned int count = matchOf<grammar::digits>(text, 0);
  if (count == 0 || count > kMaxDigits) {
    // No digit at all is logged in the same words with a count of 0, on purpose.
    logFailure(kSourceFile, "SipPort::set | too many digits (%lu)", count);
    return VARN_INVALID_INPUT;
  }
  int value = 0;
  for (const char digit : text.take(count)) {
    value = value * kDecimal + (digit - '0');
  }
  if (value > kMaxPort) {
    logFailure(kSourceFile, "SipPort::set | %d is out of range", static_cast<uintptr_t>(value));
    return VARN_INVALID_INPUT;
  }
  port = static_cast<unsigned short>(value);
  return VARN_OK;
}
