// wyTelAddressText.cpp - the texts of a tel address, and its conversion into a SIP address.
#include <algorithm>
#include <cstdint>
#include <limits>
#include <typeinfo>

#include "base/charClass.h"
#include "base/checkedMath.h"
#include "base/log.h"
#include "base/textWriter.h"
#include "grammar/grammar.h"
#include "wyTelAddress.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wyTelAddress";

constexpr unsigned int kEscapeLength = 3;

// Lengths of "tel:", ";isub=", ";ext=" and ";phone-context=".
constexpr unsigned int kSchemeLength = 4;
constexpr unsigned int kIsubLength = 6;
constexpr unsigned int kExtLength = 5;
constexpr unsigned int kContextLength = 15;

// Returns how many bytes to escape before the stream is asked again whether it is done. A
// SipLWSStrStream answers the same for each byte of a run of white space, and scans the run for
// each answer. It is asked once for the run, which keeps the time linear. A caller's class may
// answer differently for each byte and is asked for each.
unsigned int escapedLength(const SipStrStream& stream) {
  return &typeid(stream) == &typeid(SipLWSStrStream)
             ? std::max(unread(stream).run(0, kWhiteSpace), 1U)
             : 1;
}

// Makes room for the converted rest of the stream. Each "%" counts as a byte to be escaped, which
// may be a little more than needed.
VARN_EXCEPTION_CODES reserveConverted(const SipStrStream& in, SipString& out) {
  std::uint64_t length = 0;
  unsigned int offset = 0;
  for (int c = in.peek(0); c != -1; c = in.peek(offset)) {
    length += isIn(kUser, c) ? 1 : kEscapeLength;
    offset = checkedSum(offset, 1);
  }
  if (length >= std::numeric_limits<unsigned int>::max()) {
    return VARN_RESOURCE_FAILURE;
  }
  return out.reserve(static_cast<unsigned int>(length));
}

// Letters are written in lower case.
VARN_EXCEPTION_CODES takePlain(SipStrStream& in, unsigned int count, SipString& out) {
  VARN_EXCEPTION_CODES code = VARN_OK;
  for (; count != 0 && code == VARN_OK; --count) {
    code = out.append(static_cast<char>(foldCase(static_cast<char>(in.peek(0)))));
    in.discard(1);
  }
  return code;
}

// "%" and two lower-case hexadecimal digits for each byte
VARN_EXCEPTION_CODES takeEscaped(SipStrStream& in, unsigned int count, SipString& out) {
  constexpr const char* kHexDigits = "0123456789abcdef";
  VARN_EXCEPTION_CODES code = VARN_OK;
  for (; count != 0 && code == VARN_OK; --count) {
    const int c = in.peek(0);
    const char escape[kEscapeLength] = {'%', kHexDigits[c / 16], kHexDigits[c % 16]};
    code = out.append(escape, kEscapeLength);
    in.discard(1);
  }
  return code;
}

}  // namespace

VARN_EXCEPTION_CODES TelAddress::getURIString(SipString& out) const {
  out.clear();
  return appendURI(out, getURIStringLength());
}

unsigned int TelAddress::getURIStringLength() const {
  unsigned int length = checkedSum(phoneNumber_.length(), kSchemeLength, params_.getStringLength());
  if (isub_.length() != 0) {
    length = checkedSum(length, isub_.length(), kIsubLength);
  }
  if (extension_.length() != 0) {
    length = checkedSum(length, extension_.length(), kExtLength);
  }
  if (context_.length() != 0) {
    length = checkedSum(length, context_.length(), kContextLength);
  }
  return length;
}

SipString& TelAddress::toString() {
  VARN_EXCEPTION_CODES code = VARN_OK;
  if (text_.length() == 0) {
    code = writeText();
    if (code != VARN_OK) {
      text_.clear();
    }
  }
  storeCode(code);
  return text_;
}

unsigned int TelAddress::getStringLength() const {
  // Brackets that only the flag of the parsed text asks for are not counted; writeText() adds them.
  unsigned int length = getURIStringLength();
  if (displayName_.length() != 0) {
    length = checkedSum(length, displayName_.length(), 3);  // " <" and ">"
  } else if (hasParameters()) {
    length = checkedSum(length, 2);  // "<" and ">"
  }
  return length;
}

VARN_EXCEPTION_CODES TelAddress::convertTelToSipUserInfoSyntax(SipStrStream& in, SipString& out) {
  out.clear();
  VARN_EXCEPTION_CODES code = reserveConverted(in, out);
  // done() of a caller's class may be false at the end of the text.
  while (code == VARN_OK && !in.done() && in.peek(0) != -1) {
    const unsigned int plain = matchOf<grammar::user>(in);
    code = plain != 0 ? takePlain(in, plain, out) : takeEscaped(in, escapedLength(in), out);
  }
  return storeCode(code);
}

VARN_EXCEPTION_CODES TelAddress::toSipAddress(SipAddress& target) {
  const SipString name("user");
  const SipString value("phone");
  SipString user;
  VARN_EXCEPTION_CODES code = convertToUser(user);
  if (code == VARN_OK && (name.length() == 0 || value.length() == 0)) {
    code = VARN_RESOURCE_FAILURE;  // memory ran out for one of the two above
  }
  if (code == VARN_OK) {
    code = target.setUser(user);
  }
  if (code == VARN_OK) {
    code = target.setDisplayName(displayName_);
  }
  if (code == VARN_OK) {
    // Null is an empty list or a lack of memory; the code of the target shows which.
    if (target.getParameterNames() != nullptr) {
      target.clearParamList();
    } else {
      code = target.GetLastErrorCode();
    }
  }
  if (code == VARN_OK) {
    code = target.setParameter(name, value);
  }
  return storeCode(code);
}

bool TelAddress::hasParameters() const {
  return isub_.length() != 0 || extension_.length() != 0 || context_.length() != 0 ||
         params_.getStringLength() != 0;
}

// Appends the URI without its scheme to a text that will have this total length.
VARN_EXCEPTION_CODES TelAddress::appendURI(SipString& out, unsigned int length) const {
  TextWriter writer(out, length);
  writer.write(phoneNumber_);
  if (isub_.length() != 0) {
    writer.write(";isub=").write(isub_);
  }
  if (extension_.length() != 0) {
    writer.write(";ext=").write(extension_);
  }
  if (context_.length() != 0) {
    writer.write(";phone-context=").write(context_);
  }
  return writer.writeOf(params_).code();
}

VARN_EXCEPTION_CODES TelAddress::writeText() {
  const bool named = displayName_.length() != 0;
  const bool bracketed = named || hasParameters() || bracketed_ != 0;
  const unsigned int length = checkedSum(getStringLength(), bracketed_ != 0 ? 2 : 0);
  TextWriter writer(text_, length);
  if (named) {
    writer.write(displayName_).write(' ');
  }
  if (bracketed) {
    writer.write('<');
  }
  writer.write("tel:");
  if (writer.code() != VARN_OK) {
    return writer.code();
  }
  const VARN_EXCEPTION_CODES code = appendURI(text_, length);
  if (code != VARN_OK) {
    return code;
  }
  return bracketed ? writer.write('>').code() : VARN_OK;
}

// Makes the user part of a SIP address.
VARN_EXCEPTION_CODES TelAddress::convertToUser(SipString& user) {
  SipString uri;
  const VARN_EXCEPTION_CODES code = getURIString(uri);
  if (code != VARN_OK) {
    return code;
  }
  SipStrStream stream(uri);
  if (!stream.valid()) {
    logFailure(kSourceFile, "TelAddress::toSipAddress | SipStrStream constructor failed");
    return VARN_RESOURCE_FAILURE;
  }
  return convertTelToSipUserInfoSyntax(stream, user);
}
