// wySipAddressText.cpp - writes a SIP address.
#include "base/checkedMath.h"
#include "base/textWriter.h"
#include "wySipAddress.h"

namespace {

TextWriter& writeUri(TextWriter& writer, const SipString& scheme, const SipString& user,
                     const SipString& host, const SipPort& port) {
  writer.write(scheme).write(':');
  if (user.length() != 0) {
    writer.write(user).write('@');
  }
  writer.write(host);
  return port.get() == 0 ? writer : writer.write(':').writeOf(port);
}

}  // namespace

SipString& SipAddress::getURI() { return cached(uriText_, &SipAddress::writeURI); }

unsigned int SipAddress::getURIStringLength() const {
  unsigned int length = checkedSum(scheme_.length(), 1, host_.length());
  if (user_.length() != 0) {
    length = checkedSum(length, user_.length(), 1);
  }
  // The ":" before the port is not counted, on purpose: the length is a hint for reserve().
  return port_.get() == 0 ? length : checkedSum(length, port_.getStringLength());
}

SipString& SipAddress::toString() { return cached(text_, &SipAddress::writeText); }

unsigned int SipAddress::getStringLength() const {
  const unsigned int params = params_.getStringLength();
  unsigned int length = checkedSum(getURIStringLength(), params);
  if (displayName_.length() != 0) {
    length = checkedSum(length, displayName_.length(), 3);  // " <" and ">"
  } else if (params != 0) {
    length = checkedSum(length, 2);  // "<" and ">"
  }
  return length;
}

// Returns a cached text; write() fills it first if it is empty. The texts of a wildcard never
// change.
SipString& SipAddress::cached(SipString& text, VARN_EXCEPTION_CODES (SipAddress::*write)()) {
  VARN_EXCEPTION_CODES code = VARN_OK;
  if (!isWildcard() && text.length() == 0) {
    code = (this->*write)();
    if (code != VARN_OK) {
      text.clear();
    }
  }
  storeCode(code);
  return text;
}

// Returns a length with room for both texts: unlike the estimates it counts the ":" of a port.
unsigned int SipAddress::textLength() const {
  return checkedSum(getStringLength(), port_.get() == 0 ? 0 : 1);
}

VARN_EXCEPTION_CODES SipAddress::writeURI() {
  TextWriter writer(uriText_, textLength());
  return writeUri(writer, scheme_, user_, host_, port_).code();
}

VARN_EXCEPTION_CODES SipAddress::writeText() {
  const bool named = displayName_.length() != 0;
  const bool bracketed = named || params_.getStringLength() != 0;
  TextWriter writer(text_, textLength());
  if (named) {
    writer.write(displayName_).write(' ');
  }
  if (bracketed) {
    writer.write('<');
  }
  if (uriText_.length() != 0) {
    writer.write(uriText_);  // as getURI() has handed it out
  } else {
    writeUri(writer, scheme_, user_, host_, port_);
  }
  writer.writeOf(params_);
  if (bracketed) {
    writer.write('>');
  }
  return writer.code();
}
