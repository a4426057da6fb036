// wySipParamDialects.cpp - the dialects of parameter lists: headers, SIP URIs and tel URIs.
#include <algorithm>
#include <optional>
#include <typeinfo>

#include "base/checkedMath.h"
#include "base/equality.h"
#include "base/log.h"
#include "grammar/grammar.h"
#include "params/paramNode.h"
#include "params/paramReader.h"
#include "wySipParam.h"

namespace {

constexpr const char* kTelSourceFile = "sip_utility/src/wyTelAddress";

// As grammar::separator(), with the reports of matchOf().
unsigned int separator(char byte, const SipStrStream& stream, unsigned int offset) {
  const Unread text = unreadFor(stream, offset);
  assertWithin(offset, text);
  const unsigned int count = grammar::separator(byte, text, offset);
  assertWithin(checkedSum(offset, count), text);
  return count;
}

// Returns the log text for a parameter that must come before the list; null for any other.
const char* misplacedMessage(const SipString& name) {
  if (equal(name, "isub")) {
    return "SipParamList::parseParamList - duplicate param isub";
  }
  if (equal(name, "ext")) {
    return "SipParamList::parseParamList - duplicate param ext";
  }
  if (equal(name, "phone-context")) {
    return "SipParamList::parseParamList - duplicate param phone-context";
  }
  return nullptr;
}

// Reads one parameter of a tel list into a node. Refuses the parameters that must come before the
// list.
VARN_EXCEPTION_CODES readTelParam(const TelAddrParamList& list, SipParam& param,
                                  SipStrStream& stream, ParamNameIndex* names) {
  const VARN_EXCEPTION_CODES code = readParam(list, &param, stream, names);
  const char* const message = code == VARN_OK ? misplacedMessage(param.getName()) : nullptr;
  if (message != nullptr) {
    logFailure(kTelSourceFile, message);
    return VARN_INVALID_INPUT;
  }
  return code;
}

}  // namespace

SipHdrParamList::SipHdrParamList() : headerType_(WY_SIP_HEADER_TYPE_NONE) {}

void SipHdrParamList::setHeaderType(WY_SIP_SIPHEADER_TYPE headerType) { headerType_ = headerType; }

WY_SIP_SIPHEADER_TYPE SipHdrParamList::getHeaderType() const { return headerType_; }

unsigned int SipHdrParamList::matchSep(const SipStrStream& stream, unsigned int offset,
                                       int first) const {
  if (headerType_ == WY_SIP_HEADER_TYPE_NON_AUTH) {
    return separator(';', stream, offset);
  }
  return first == 1 ? matchOf<grammar::lws>(unreadFor(stream, offset), offset)
                    : separator(',', stream, offset);
}

// The longer of two matches: a token, and the first that matches of quoted string, IPv6 address and
// host.
unsigned int SipHdrParamList::matchValue(const SipStrStream& stream, unsigned int offset) const {
  const Unread text = unreadFor(stream, offset);
  unsigned int length = matchOf<grammar::quotedString>(text, offset);
  if (length == 0) {
    length = matchOf<grammar::ipv6Address>(text, offset);
  }
  if (length == 0) {
    length = matchOf<grammar::host>(text, offset);
  }
  return std::max(length, matchOf<grammar::token>(text, offset));
}

unsigned int SipHdrParamList::matchTagParamValue(const SipStrStream& stream,
                                                 unsigned int offset) const {
  return matchOf<grammar::token>(unreadFor(stream, offset), offset);
}

unsigned int SipHdrParamList::matchEqual(const SipStrStream& stream, unsigned int offset) const {
  return separator('=', stream, offset);
}

unsigned int SipHdrParamList::matchName(const SipStrStream& stream, unsigned int offset) const {
  return matchOf<grammar::token>(unreadFor(stream, offset), offset);
}

const char* SipHdrParamList::getSep(int first) const {
  if (headerType_ == WY_SIP_HEADER_TYPE_NON_AUTH) {
    return ";";
  }
  return first == 1 ? " " : ",";
}

unsigned int SipHdrParamList::MatchQuotedTagValue(const SipStrStream& stream,
                                                  unsigned int offset) const {
  return matchOf<grammar::quotedString>(unreadFor(stream, offset), offset);
}

unsigned int SipAddrParamList::matchSep(const SipStrStream& stream, unsigned int offset,
                                        int /*first*/) const {
  return unreadFor(stream, offset).has(offset, ';') ? 1 : 0;
}

// Always the paramchar rule: a derived list may have another matchName().
unsigned int SipAddrParamList::matchValue(const SipStrStream& stream, unsigned int offset) const {
  return matchOf<grammar::paramChars>(unreadFor(stream, offset), offset);
}

// "tag" and "branch" take no value in a URI, and are meant to take none.
unsigned int SipAddrParamList::matchTagParamValue(const SipStrStream& /*stream*/,
                                                  unsigned int /*offset*/) const {
  return 0;
}

unsigned int SipAddrParamList::matchEqual(const SipStrStream& stream, unsigned int offset) const {
  return unreadFor(stream, offset).has(offset, '=') ? 1 : 0;
}

unsigned int SipAddrParamList::matchName(const SipStrStream& stream, unsigned int offset) const {
  return matchOf<grammar::paramChars>(unreadFor(stream, offset), offset);
}

const char* SipAddrParamList::getSep(int /*first*/) const { return ";"; }

unsigned int SipAddrParamList::MatchQuotedTagValue(const SipStrStream& stream,
                                                   unsigned int offset) const {
  return matchOf<grammar::quotedString>(unreadFor(stream, offset), offset);
}

TelAddrParamList::TelAddrParamList() = default;

TelAddrParamList::~TelAddrParamList() = default;

VARN_EXCEPTION_CODES TelAddrParamList::parseParamList(SipStrStream& stream) {
  std::optional<ParamNameIndex> index;
  if (&typeid(*this) == &typeid(TelAddrParamList)) {
    index.emplace(chain());
  }
  for (int first = 1; parseSep(stream, first) == VARN_OK; first = 0) {
    SipParam* const param = newParam(head(), kTelSourceFile);
    if (param == nullptr) {
      return VARN_RESOURCE_FAILURE;
    }
    const VARN_EXCEPTION_CODES code =
        readTelParam(*this, *param, stream, index ? &*index : nullptr);
    if (code != VARN_OK) {
      deleteRecorded(param);
      return code;
    }
  }
  return VARN_OK;
}

unsigned int TelAddrParamList::matchName(const SipStrStream& stream, unsigned int offset) const {
  return matchOf<grammar::telParamName>(unreadFor(stream, offset), offset);
}

const SipParam* TelAddrParamList::firstParam() const { return nextParam(nullptr); }

// Looks for the smallest name that is greater than the name of the parameter; null is less than all
// names. Of equal names it takes the first on the chain, which is the newest.
const SipParam* TelAddrParamList::nextParam(const SipParam* param) const {
  const SipParam* smallest = nullptr;
  for (const SipParam* each = chain(); each != nullptr; each = each->next()) {
    const bool above = param == nullptr || lessIgnoringCase(param->getName(), each->getName());
    if (above && (smallest == nullptr || lessIgnoringCase(each->getName(), smallest->getName()))) {
      smallest = each;
    }
  }
  return smallest;
}
