// wySipParamDialects.cpp - the dialects of parameter lists: headers, SIP URIs and tel URIs.
#include "base/equality.h"
#include "grammar/grammar.h"
#include "params/paramReader.h"
#include "params/paramSyntax.h"
#include "wySipParam.h"

SipHdrParamList::SipHdrParamList() : headerType_(WY_SIP_HEADER_TYPE_NONE) {}

void SipHdrParamList::setHeaderType(WY_SIP_SIPHEADER_TYPE headerType) { headerType_ = headerType; }

WY_SIP_SIPHEADER_TYPE SipHdrParamList::getHeaderType() const { return headerType_; }

unsigned int SipHdrParamList::matchSep(const SipStrStream& stream, unsigned int offset,
                                       int first) const {
  return HeaderParamSyntax{headerType_}.separator(unreadFor(stream, offset), offset, first);
}

unsigned int SipHdrParamList::matchValue(const SipStrStream& stream, unsigned int offset) const {
  return HeaderParamSyntax::value(unreadFor(stream, offset), offset);
}

unsigned int SipHdrParamList::matchTagParamValue(const SipStrStream& stream,
                                                 unsigned int offset) const {
  return HeaderParamSyntax::tagValue(unreadFor(stream, offset), offset);
}

unsigned int SipHdrParamList::matchEqual(const SipStrStream& stream, unsigned int offset) const {
  return HeaderParamSyntax::equal(unreadFor(stream, offset), offset);
}

unsigned int SipHdrParamList::matchName(const SipStrStream& stream, unsigned int offset) const {
  return HeaderParamSyntax::name(unreadFor(stream, offset), offset);
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
                                        int first) const {
  return UriParamSyntax::separator(unreadFor(stream, offset), offset, first);
}

unsigned int SipAddrParamList::matchValue(const SipStrStream& stream, unsigned int offset) const {
  return UriParamSyntax::value(unreadFor(stream, offset), offset);
}

unsigned int SipAddrParamList::matchTagParamValue(const SipStrStream& stream,
                                                  unsigned int offset) const {
  return UriParamSyntax::tagValue(unreadFor(stream, offset), offset);
}

unsigned int SipAddrParamList::matchEqual(const SipStrStream& stream, unsigned int offset) const {
  return UriParamSyntax::equal(unreadFor(stream, offset), offset);
}

unsigned int SipAddrParamList::matchName(const SipStrStream& stream, unsigned int offset) const {
  return UriParamSyntax::name(unreadFor(stream, offset), offset);
}

const char* SipAddrParamList::getSep(int /*first*/) const { return ";"; }

unsigned int SipAddrParamList::MatchQuotedTagValue(const SipStrStream& stream,
                                                   unsigned int offset) const {
  return matchOf<grammar::quotedString>(unreadFor(stream, offset), offset);
}

TelAddrParamList::TelAddrParamList() = default;

TelAddrParamList::~TelAddrParamList() = default;

VARN_EXCEPTION_CODES TelAddrParamList::parseParamList(SipStrStream& stream) {
  return hasLibraryRules(*this) ? storeAndRead({}, *this, stream)
                                : readByOperations(*this, stream, TelParamSyntax::kSourceFile,
                                                   TelParamSyntax::refusal);
}

unsigned int TelAddrParamList::matchName(const SipStrStream& stream, unsigned int offset) const {
  return TelParamSyntax::name(unreadFor(stream, offset), offset);
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
