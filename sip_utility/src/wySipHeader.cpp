// wySipHeader.cpp - one SIP header field: name, value and parameters.
#include "wySipHeader.h"

#include <string_view>

#include "base/allocationWatch.h"
#include "base/checkedMath.h"
#include "base/equality.h"
#include "base/log.h"
#include "base/storeTexts.h"
#include "base/stringAccess.h"
#include "base/textWriter.h"
#include "grammar/borrowed.h"
#include "grammar/grammar.h"
#include "params/paramReader.h"
#include "wySipHeaderMatch.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wySipHeader";

constexpr unsigned int kColonLength = 2;  // ": "

constexpr std::string_view kAuthenticationHeaders[] = {
    "WWW-Authenticate",
    "Proxy-Authenticate",
    "Proxy-Authorization",
    "Authorization",
};

VARN_EXCEPTION_CODES logNameNotStored() {
  logFailure(kSourceFile, "SipHeader::setName | assignment failed.");
  return VARN_RESOURCE_FAILURE;
}

}  // namespace

SipHeader::SipHeader(const SipString& name, const SipString& value)
    : lastError_(VARN_RESOURCE_FAILURE) {
  VarnSetLastErrorCode(parse(name, value));
}

SipHeader::~SipHeader() = default;

void SipHeader::VarnSetLastErrorCode(VARN_EXCEPTION_CODES code) { lastError_ = code; }

VARN_EXCEPTION_CODES SipHeader::GetLastErrorCode() const { return lastError_; }

const SipString& SipHeader::getName() const { return name_; }

const SipString& SipHeader::getValue() const { return value_; }

WY_SIP_SIPHEADER_TYPE SipHeader::getHeaderType() const { return params_.getHeaderType(); }

WY_SIP_SIPHEADER_TYPE SipHeader::lookUpHeaderType(const SipString& name) const {
  for (const std::string_view header : kAuthenticationHeaders) {
    if (equalIgnoringCase(name, header)) {
      return WY_SIP_HEADER_TYPE_AUTH;
    }
  }
  return WY_SIP_HEADER_TYPE_NON_AUTH;
}

VARN_EXCEPTION_CODES SipHeader::setName(const SipString& name) {
  return storeCode(replaceName(name));
}

VARN_EXCEPTION_CODES SipHeader::setValue(const SipString& value) {
  return storeCode(replaceValue(value));
}

const SipString* SipHeader::getParameter(const SipString& name) const {
  return params_.getParameter(name);
}

const SipParam* SipHeader::firstParam() const { return params_.firstParam(); }

const SipParam* SipHeader::nextParam(const SipParam* param) const {
  return params_.nextParam(param);
}

VARN_EXCEPTION_CODES SipHeader::setParameter(const SipString& name, const SipString& value) {
  const VARN_EXCEPTION_CODES code = params_.setParameter(name, value);
  dropTexts();
  return storeCode(code);
}

VARN_EXCEPTION_CODES SipHeader::removeParameter(const SipString& name) {
  params_.removeParameter(name);
  dropTexts();
  return storeCode(VARN_OK);
}

unsigned int SipHeader::getHeaderValueLength() const {
  return checkedSum(value_.length(), params_.getStringLength());
}

unsigned int SipHeader::getStringLength() const {
  return checkedSum(name_.length(), kColonLength, getHeaderValueLength());
}

SipString& SipHeader::getHeaderValue() {
  VARN_EXCEPTION_CODES code = VARN_OK;
  if (headerValueText_.length() == 0) {
    TextWriter writer(headerValueText_, getHeaderValueLength());
    code = writer.write(value_).writeOf(params_).code();
    if (code != VARN_OK) {
      headerValueText_.clear();
    }
  }
  storeCode(code);
  return headerValueText_;
}

SipString& SipHeader::toString() {
  VARN_EXCEPTION_CODES code = VARN_OK;
  if (headerText_.length() == 0) {
    code = writeText();
    if (code != VARN_OK) {
      headerText_.clear();
    }
  }
  storeCode(code);
  return headerText_;
}

VARN_EXCEPTION_CODES SipHeader::parse(const SipString& name, const SipString& value) {
  BorrowedLWSStream nameStream(view(name));
  std::string_view token;
  WY_SIP_SIPHEADER_TYPE type = WY_SIP_HEADER_TYPE_NONE;
  VARN_EXCEPTION_CODES code = scanName(nameStream, token, type);
  if (code != VARN_OK) {
    return code;
  }
  params_.setHeaderType(type);
  code = parseValue(token, value);
  if (code == VARN_RESOURCE_FAILURE && name_.length() == 0) {
    params_.setHeaderType(WY_SIP_HEADER_TYPE_NONE);
    return logNameNotStored();
  }
  return code;
}

// Reads the value of a new header. Stores it with the name.
VARN_EXCEPTION_CODES SipHeader::parseValue(std::string_view name, const SipString& value) {
  if (value.length() == 0) {
    return storeTexts({{name_, name}});
  }
  BorrowedLWSStream stream(view(value));
  const AllocationWatch watch;
  // A tel URI may count past the end, see ValueBrackets::uriLength(). What is there is taken.
  const unsigned int length = SipHeaderMatchValue(getHeaderType()).match(stream, 0);
  const std::string_view taken = SipStringAccess::rest(stream).substr(0, length);
  SipStringAccess::advance(stream, static_cast<unsigned int>(taken.size()));
  const TextsToStore texts = {{name_, name}, {value_, taken}};
  const bool hasParams = !taken.empty() && !stream.done();
  const VARN_EXCEPTION_CODES code =
      hasParams ? storeAndRead(texts, params_, stream) : storeTexts(texts);
  if (code != VARN_OK) {
    return code;
  }
  if (taken.empty()) {
    logFailure(kSourceFile, "SipHeader::SipHeader | value parsing failed");
    return watch.refusal();
  }
  if (!stream.done()) {
    logFailure(kSourceFile, "SipHeader::SipHeader | trailing characters in value");
    return watch.refusal();
  }
  return VARN_OK;
}

VARN_EXCEPTION_CODES SipHeader::replaceName(const SipString& name) {
  SipLWSStrStream stream(name);
  if (!stream.valid()) {
    logFailure(kSourceFile, "SipHeader::setName | SipStrStream constructor failed.");
    return VARN_RESOURCE_FAILURE;
  }
  return takeName(stream);
}

VARN_EXCEPTION_CODES SipHeader::takeName(SipStrStream& stream) {
  std::string_view token;
  WY_SIP_SIPHEADER_TYPE type = WY_SIP_HEADER_TYPE_NONE;
  const VARN_EXCEPTION_CODES code = scanName(stream, token, type);
  if (code != VARN_OK) {
    return code;
  }
  // After this the assignment cannot fail; a failed one would lose the old name.
  if (name_.reserve(static_cast<unsigned int>(token.size())) != VARN_OK) {
    return logNameNotStored();
  }
  params_.setHeaderType(type);
  name_ = *BorrowedString(token);
  headerText_.clear();  // the other text does not contain the name
  return VARN_OK;
}

// Reads a name that this header may have. Nothing but white space may follow it.
VARN_EXCEPTION_CODES SipHeader::scanName(SipStrStream& stream, std::string_view& token,
                                         WY_SIP_SIPHEADER_TYPE& type) const {
  if (stream.length() == 0) {
    logFailure(kSourceFile, "SipHeader::setName | name was NULL or empty");
    return VARN_INVALID_INPUT;
  }
  token = SipStringAccess::rest(stream).substr(0, matchOf<grammar::token>(stream));
  SipStringAccess::advance(stream, static_cast<unsigned int>(token.size()));
  if (token.empty() || !stream.done()) {
    logFailure(kSourceFile, "SipHeader::setName | parsing failed");
    return VARN_INVALID_INPUT;
  }
  type = lookUpHeaderType(*BorrowedString(token));
  if (getHeaderType() != WY_SIP_HEADER_TYPE_NONE && getHeaderType() != type) {
    logFailure(kSourceFile, "SipHeader::setName | cannot switch between auth and non-auth");
    return VARN_INVALID_INPUT;
  }
  return VARN_OK;
}

VARN_EXCEPTION_CODES SipHeader::replaceValue(const SipString& value) {
  if (value.length() == 0) {
    value_.clear();
    dropTexts();
    return VARN_OK;
  }
  SipLWSStrStream stream(value);
  if (!stream.valid()) {
    logFailure(kSourceFile, "SipHeader::setValue | stream constructor failed.");
    return VARN_RESOURCE_FAILURE;
  }
  const AllocationWatch watch;
  SipHeaderMatchValue rule(params_.getHeaderType());
  SipString taken;
  const VARN_EXCEPTION_CODES code = stream.get(rule.match(stream, 0), taken);
  if (code != VARN_OK) {
    logFailure(kSourceFile, "SipHeader::setValue | Stream.get failed with error %d", code);
    return code;
  }
  if (taken.length() == 0 || !stream.done()) {
    logFailure(kSourceFile, "SipHeader::setValue | parsing failed");
    return watch.refusal();
  }
  if (value_.reserve(taken.length()) != VARN_OK) {
    logFailure(kSourceFile, "SipHeader::setValue | assignment failed.");
    return VARN_RESOURCE_FAILURE;
  }
  value_ = taken;
  dropTexts();
  return VARN_OK;
}

VARN_EXCEPTION_CODES SipHeader::storeCode(VARN_EXCEPTION_CODES code) {
  VarnSetLastErrorCode(code);
  return code;
}

void SipHeader::dropTexts() {
  headerValueText_.clear();
  headerText_.clear();
}

VARN_EXCEPTION_CODES SipHeader::writeText() {
  TextWriter writer(headerText_, getStringLength());
  const SipString& value = getHeaderValue();
  // A header without value and parameters is logged as a failure as well, on purpose. Its code is
  // VARN_OK.
  if (value.length() == 0) {
    logFailure(kSourceFile, "SipHeader::toString - getHeaderValue failed");
    return lastError_;
  }
  return writer.write(name_).write(": ").write(value).code();
}
