// paramReader.cpp - reads parameters.
#include "params/paramReader.h"

#include <string_view>
#include <typeinfo>
#include <utility>

#include "base/allocationWatch.h"
#include "base/equality.h"
#include "base/log.h"
#include "base/recorded.h"
#include "base/stringAccess.h"
#include "grammar/borrowed.h"
#include "params/paramNameIndex.h"
#include "params/paramNode.h"
#include "params/paramSyntax.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wySipParam";

VARN_EXCEPTION_CODES logBadName() {
  logFailure(kSourceFile, "SipParamList::parseParamList - bad parameter name");
  return VARN_INVALID_INPUT;
}

VARN_EXCEPTION_CODES logDuplicate() {
  logFailure(kSourceFile, "SipParamList::parseParamList - duplicate parameter name");
  return VARN_INVALID_INPUT;
}

VARN_EXCEPTION_CODES logBadValue() {
  logFailure(kSourceFile, "SipParamList::parseParamList - bad parameter value");
  return VARN_INVALID_INPUT;
}

void logQuotedTag() { logTrace(kSourceFile, "SipParamList::parseParamList - Quoted Feature tag"); }

// "tag" and "branch", in lower case only, have a rule of their own for their value.
bool hasTagValue(std::string_view name) { return name == "tag" || name == "branch"; }

// The parameters that a scan finds for a list, after texts that are stored with the first of them.
// They become nodes several at a time.
class FoundParams {
 public:
  FoundParams(SipParamList& list, const char* sourceFile, TextsToStore texts)
      : list_(list),
        head_(SipParamAccess::head(list)),
        sourceFile_(sourceFile),
        texts_(texts),
        names_(*head_),
        count_(0) {}

  // Returns whether the list has a parameter of this name or gets one.
  bool has(std::string_view name) const {
    if (names_.isComplete()) {
      return names_.contains(name);
    }
    for (std::size_t i = 0; i < count_; ++i) {
      if (equalIgnoringCase(found_[i].name(), name)) {
        return true;
      }
    }
    return list_.find(*BorrowedString(name)) != nullptr;
  }

  VARN_EXCEPTION_CODES add(const ParamTexts& texts) {
    if (count_ == kMostInBlock && store() != VARN_OK) {
      return VARN_RESOURCE_FAILURE;
    }
    found_[count_++] = texts;
    names_.add(texts.name());
    return VARN_OK;
  }

  // Stores the texts, and makes nodes of the parameters, that are not stored yet.
  VARN_EXCEPTION_CODES store() {
    const TextsToStore texts = std::exchange(texts_, {});
    const std::size_t count = std::exchange(count_, 0);
    SharedBlock block(roomFor(texts) + roomForParams(found_, count));
    if (storeTexts(texts, block) != VARN_OK) {
      return VARN_RESOURCE_FAILURE;
    }
    const VARN_EXCEPTION_CODES code = addParams(head_, found_, count, block, sourceFile_);
    if (code != VARN_OK) {
      SipStringAccess::logNoMemory();
    }
    return code;
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the block belongs to its items
  }

 private:
  static constexpr std::size_t kMostInBlock = 8;

  const SipParamList& list_;
  SipParam** head_;
  const char* sourceFile_;
  TextsToStore texts_;
  ParamNameIndex names_;
  std::size_t count_;
  ParamTexts found_[kMostInBlock];  // the first count_ of them
};

// The names of parameters that a scan only skips.
class SkippedParams {
 public:
  bool has(std::string_view name) const { return names_.contains(name); }

  // Without a list, an index that loses names could no longer find duplicates.
  VARN_EXCEPTION_CODES add(const ParamTexts& texts) {
    names_.add(texts.name());
    if (names_.isComplete()) {
      return VARN_OK;
    }
    AllocationWatch::noteFailure();
    return VARN_RESOURCE_FAILURE;
  }

 private:
  ParamNameIndex names_{nullptr};
};

// Returns the length of the value after an "=".
template <typename Syntax>
unsigned int valueLength(const Syntax& syntax, Unread text, std::string_view name) {
  if (hasTagValue(name)) {
    return syntax.tagValue(text, 0);
  }
  const unsigned int length = syntax.value(text, 0);
  if (length != 0 || !text.has(0, '"')) {
    return length;
  }
  logQuotedTag();
  return matchOf<grammar::quotedString>(text, 0);
}

// name [ "=" value ]
template <typename Syntax, typename Params>
VARN_EXCEPTION_CODES scanParam(const Syntax& syntax, Unread& text, const Params& params,
                               ParamTexts& texts) {
  const unsigned int nameLength = syntax.name(text, 0);
  if (nameLength == 0) {
    return logBadName();
  }
  const std::string_view name = text.take(nameLength);
  texts = {name.data(), name.size(), nullptr, 0};
  if (params.has(name)) {
    return logDuplicate();
  }
  const unsigned int equal = syntax.equal(text, 0);
  if (equal != 0) {
    text.take(equal);
    texts.valueLength = valueLength(syntax, text, name);
    if (texts.valueLength == 0) {
      return logBadValue();
    }
    texts.valueBytes = text.take(static_cast<unsigned int>(texts.valueLength)).data();
  }
  const char* const refusal = syntax.refusal(name);
  if (refusal != nullptr) {
    logFailure(Syntax::kSourceFile, refusal);
    return VARN_INVALID_INPUT;
  }
  return VARN_OK;
}

// *( separator name [ "=" value ] )
template <typename Syntax, typename Params>
VARN_EXCEPTION_CODES scanParams(const Syntax& syntax, Unread& text, Params& params) {
  for (int first = 1;; first = 0) {
    const unsigned int separator = syntax.separator(text, 0, first);
    if (separator == 0) {
      return VARN_OK;
    }
    text.take(separator);
    ParamTexts texts = {};
    VARN_EXCEPTION_CODES code = scanParam(syntax, text, params, texts);
    if (code == VARN_OK) {
      code = params.add(texts);
    }
    if (code != VARN_OK) {
      return code;
    }
  }
}

// Stores texts and reads parameters until no separator follows.
template <typename Syntax>
VARN_EXCEPTION_CODES readBySyntax(const Syntax& syntax, SipParamList& list, SipStrStream& stream,
                                  TextsToStore texts) {
  FoundParams params(list, Syntax::kSourceFile, texts);
  Unread text = unread(stream);
  const VARN_EXCEPTION_CODES code = scanParams(syntax, text, params);
  moveTo(stream, text);
  return params.store() == VARN_OK ? code : VARN_RESOURCE_FAILURE;
}

// Returns the length of the value after an "=", by the operations of a list.
unsigned int valueLength(const SipParamList& list, std::string_view name,
                         const SipStrStream& stream) {
  if (hasTagValue(name)) {
    return list.matchTagParamValue(stream, 0);
  }
  const unsigned int length = list.matchValue(stream, 0);
  if (length != 0 || !unread(stream).has(0, '"')) {
    return length;
  }
  logQuotedTag();
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
    return logBadValue();
  }
  return param == nullptr ? stream.discard(length) : param->setValue(length, stream);
}

}  // namespace

bool hasLibraryRules(const SipParamList& list) {
  const std::type_info* const type = &typeid(list);
  return type == &typeid(SipAddrParamList) || type == &typeid(SipHdrParamList) ||
         type == &typeid(TelAddrParamList);
}

VARN_EXCEPTION_CODES storeAndRead(TextsToStore texts, SipParamList& list, SipStrStream& stream) {
  const std::type_info* const type = &typeid(list);
  if (type == &typeid(SipAddrParamList)) {
    return readBySyntax(UriParamSyntax(), list, stream, texts);
  }
  if (type == &typeid(SipHdrParamList)) {
    const WY_SIP_SIPHEADER_TYPE header = static_cast<SipHdrParamList&>(list).getHeaderType();
    return readBySyntax(HeaderParamSyntax{header}, list, stream, texts);
  }
  if (type == &typeid(TelAddrParamList)) {
    return readBySyntax(TelParamSyntax(), list, stream, texts);
  }
  const VARN_EXCEPTION_CODES code = storeTexts(texts);
  return code == VARN_OK ? list.parseParamList(stream) : code;
}

VARN_EXCEPTION_CODES readByOperations(SipParamList& list, SipStrStream& stream,
                                      const char* sourceFile,
                                      const char* (*refusal)(std::string_view name)) {
  for (int first = 1; passSeparator(list, stream, first) == VARN_OK; first = 0) {
    Recorded<SipParam> param(newRecorded<SipParam>(sourceFile, SipParamAccess::head(list)));
    if (param == nullptr) {
      return VARN_RESOURCE_FAILURE;
    }
    const VARN_EXCEPTION_CODES code = readParam(list, param.get(), stream);
    if (code != VARN_OK) {
      return code;
    }
    const char* const message = refusal == nullptr ? nullptr : refusal(view(param->getName()));
    if (message != nullptr) {
      logFailure(sourceFile, message);
      return VARN_INVALID_INPUT;
    }
    static_cast<void>(param.release());  // the chain has it
  }
  return VARN_OK;
}

VARN_EXCEPTION_CODES passUriParams(Unread& text) {
  SkippedParams params;
  return scanParams(UriParamSyntax(), text, params);
}

VARN_EXCEPTION_CODES passSeparator(const SipParamList& list, SipStrStream& stream, int first) {
  const unsigned int length = list.matchSep(stream, 0, first);
  return length == 0 ? VARN_INVALID_INPUT : stream.discard(length);
}

VARN_EXCEPTION_CODES readParam(const SipParamList& list, SipParam* param, SipStrStream& stream) {
  const unsigned int nameLength = list.matchName(stream, 0);
  if (nameLength == 0) {
    return logBadName();
  }
  const std::string_view name = SipStringAccess::rest(stream).substr(0, nameLength);
  SipStringAccess::advance(stream, static_cast<unsigned int>(name.size()));
  if (list.find(*BorrowedString(name)) != nullptr) {
    return logDuplicate();
  }
  const VARN_EXCEPTION_CODES code =
      param == nullptr ? VARN_OK : SipParamAccess::setName(*param, name);
  return code == VARN_OK ? readValue(list, name, param, stream) : code;
}
