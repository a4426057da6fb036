// paramReader.cpp - reads parameters by the rules of a list.
#include "params/paramReader.h"

#include <string_view>

#include "base/allocationWatch.h"
#include "base/log.h"
#include "base/stringAccess.h"
#include "grammar/borrowed.h"
#include "params/paramNode.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wySipParam";

// Returns the length of the value after an "=". "tag" and "branch", in lower case only, have a rule
// of their own; in SIP URIs it matches nothing, so they take no value there.
unsigned int valueLength(const SipParamList& list, std::string_view name,
                         const SipStrStream& stream) {
  if (name == "tag" || name == "branch") {
    return list.matchTagParamValue(stream, 0);
  }
  const unsigned int length = list.matchValue(stream, 0);
  if (length != 0 || !unread(stream).has(0, '"')) {
    return length;
  }
  logTrace(kSourceFile, "SipParamList::parseParamList - Quoted Feature tag");
  return list.MatchQuotedTagValue(stream, 0);
}

// Reads `[=value]` after a name into a node; without a node it only checks and skips the text.
VARN_EXCEPTION_CODES readValue(const SipParamList& list, std::string_view name, SipParam* param,
                               SipStrStream& stream) {
  const unsigned int equalLength = list.matchEqual(stream, 0);
  if (equalLength == 0) {
    return VARN_OK;
  }
  stream.discard(equalLength);
  const unsigned int length = valueLength(list, name, stream);
  if (length == 0) {
    logFailure(kSourceFile, "SipParamList::parseParamList - bad parameter value");
    return VARN_INVALID_INPUT;
  }
  return param == nullptr ? stream.discard(length) : param->setValue(length, stream);
}

// Returns whether the list has this name. The index answers if it knows all names, else the list.
bool isOnList(const SipParamList& list, std::string_view name, ParamNameIndex* names) {
  if (names != nullptr && names->isComplete()) {
    return names->contains(name);
  }
  return list.find(*BorrowedString(name)) != nullptr;
}

// Stores a name in the node and in the index. Without a node only the index has the name: an index
// that loses it, out of memory, could no longer find duplicates.
VARN_EXCEPTION_CODES storeName(std::string_view name, SipParam* param, ParamNameIndex* names) {
  const VARN_EXCEPTION_CODES code =
      param == nullptr ? VARN_OK : SipParamAccess::setName(*param, name);
  if (code != VARN_OK || names == nullptr) {
    return code;
  }
  names->add(name);
  if (param == nullptr && !names->isComplete()) {
    AllocationWatch::noteFailure();
    return VARN_RESOURCE_FAILURE;
  }
  return VARN_OK;
}

}  // namespace

VARN_EXCEPTION_CODES passSeparator(const SipParamList& list, SipStrStream& stream, int first) {
  const unsigned int length = list.matchSep(stream, 0, first);
  return length == 0 ? VARN_INVALID_INPUT : stream.discard(length);
}

VARN_EXCEPTION_CODES readParam(const SipParamList& list, SipParam* param, SipStrStream& stream,
                               ParamNameIndex* names) {
  const unsigned int nameLength = list.matchName(stream, 0);
  if (nameLength == 0) {
    logFailure(kSourceFile, "SipParamList::parseParamList - bad parameter name");
    return VARN_INVALID_INPUT;
  }
  const std::string_view name = SipStringAccess::rest(stream).substr(0, nameLength);
  SipStringAccess::advance(stream, static_cast<unsigned int>(name.size()));
  if (isOnList(list, name, names)) {
    logFailure(kSourceFile, "SipParamList::parseParamList - duplicate parameter name");
    return VARN_INVALID_INPUT;
  }
  const VARN_EXCEPTION_CODES code = storeName(name, param, names);
  return code == VARN_OK ? readValue(list, name, param, stream) : code;
}

VARN_EXCEPTION_CODES passUriParams(SipStrStream& stream) {
  const SipAddrParamList list;
  ParamNameIndex names(nullptr);
  VARN_EXCEPTION_CODES code = VARN_OK;
  for (int first = 1; code == VARN_OK && passSeparator(list, stream, first) == VARN_OK; first = 0) {
    code = readParam(list, nullptr, stream, &names);
  }
  return code;
}
