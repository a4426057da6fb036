// wySipParam.cpp - parameter lists: the `;name=value` runs of SIP headers and URIs.
#include "wySipParam.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string_view>
#include <typeinfo>

#include "base/allocationWatch.h"
#include "base/checkedMath.h"
#include "base/equality.h"
#include "base/log.h"
#include "base/stringAccess.h"
#include "base/textWriter.h"
#include "grammar/borrowed.h"
#include "grammar/grammar.h"
#include "params/paramNameIndex.h"
#include "params/paramNode.h"
#include "params/paramReader.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wySipParam";

// The rules of a list, whatever its class. Those of a caller's class may change the list.
struct AnyGrammar {
  const SipParamList& list;

  const SipParamList* changing() const { return &list; }

  unsigned int sep(const SipStrStream& s, int first) const { return list.matchSep(s, 0, first); }
  unsigned int name(const SipStrStream& s) const { return list.matchName(s, 0); }
  unsigned int equal(const SipStrStream& s) const { return list.matchEqual(s, 0); }
  unsigned int value(const SipStrStream& s) const { return list.matchValue(s, 0); }
  unsigned int tagValue(const SipStrStream& s) const { return list.matchTagParamValue(s, 0); }
  unsigned int quotedTag(const SipStrStream& s) const { return list.MatchQuotedTagValue(s, 0); }
};

// The rules of a list of just this class, without virtual calls.
template <typename List>
struct GrammarOf {
  const List& list;

  static const SipParamList* changing() { return nullptr; }

  unsigned int sep(const SipStrStream& s, int first) const {
    return list.List::matchSep(s, 0, first);
  }
  unsigned int name(const SipStrStream& s) const { return list.List::matchName(s, 0); }
  unsigned int equal(const SipStrStream& s) const { return list.List::matchEqual(s, 0); }
  unsigned int value(const SipStrStream& s) const { return list.List::matchValue(s, 0); }
  unsigned int tagValue(const SipStrStream& s) const { return list.List::matchTagParamValue(s, 0); }
  unsigned int quotedTag(const SipStrStream& s) const {
    return list.List::MatchQuotedTagValue(s, 0);
  }
};

// Returns whether a list is of just this class, not of a caller's that changes its rules.
template <typename List>
bool isA(const SipParamList& list) {
  return &typeid(list) == &typeid(List);
}

// The value behind an "=", by the rule that the name chooses.
template <typename Grammar>
unsigned int valueLength(const Grammar& grammar, std::string_view name,
                         const SipStrStream& stream) {
  if (name == "tag" || name == "branch") {
    return grammar.tagValue(stream);
  }
  const unsigned int length = grammar.value(stream);
  if (length != 0 || !unread(stream).has(0, '"')) {
    return length;
  }
  logTrace(kSourceFile, "SipParamList::parseParamList - Quoted Feature tag");
  return grammar.quotedTag(stream);
}

// Reads `[=value]` behind a name into a node; without one only the text is looked at.
template <typename Grammar>
VARN_EXCEPTION_CODES takeValue(const Grammar& grammar, std::string_view name, SipParam* param,
                               SipStrStream& stream) {
  const unsigned int equalLength = grammar.equal(stream);
  if (equalLength == 0) {
    return VARN_OK;
  }
  stream.discard(equalLength);
  const unsigned int length = valueLength(grammar, name, stream);
  if (length == 0) {
    logFailure(kSourceFile, "SipParamList::parseParamList - bad parameter value");
    return VARN_INVALID_INPUT;
  }
  return param == nullptr ? stream.discard(length) : param->setValue(length, stream);
}

// Takes what the rule covers out of a text with nothing else but white space around it.
VARN_EXCEPTION_CODES takeWhole(const SipParamList& grammar, const SipString& text,
                               unsigned int (SipParamList::*rule)(const SipStrStream&, unsigned int)
                                   const,
                               const char* message, std::string_view& piece) {
  BorrowedLWSStream stream(view(text));
  piece = SipStringAccess::rest(stream).substr(0, (grammar.*rule)(stream, 0));
  stream.discard(static_cast<unsigned int>(piece.size()));
  if (!stream.done()) {
    logFailure(kSourceFile, message);
    return VARN_INVALID_INPUT;
  }
  return VARN_OK;
}

// Returns whether a name is taken. Without an index that knows, the list itself is asked, only more
// slowly.
bool isOnList(const SipParamList& list, std::string_view name, ParamNameIndex* names) {
  if (names != nullptr && names->isComplete()) {
    return names->contains(name);
  }
  return list.find(*BorrowedString(name)) != nullptr;
}

// Names a node of the list; without one the index alone knows the name, and must not lose it.
VARN_EXCEPTION_CODES keepName(const SipParamList& list, std::string_view name, SipParam* param,
                              ParamNameIndex* names) {
  const ParamListChange change(&list);
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

// Moves behind a separator.
template <typename Grammar>
VARN_EXCEPTION_CODES passSeparator(const Grammar& grammar, SipStrStream& stream, int first) {
  const unsigned int length = grammar.sep(stream, first);
  return length == 0 ? VARN_INVALID_INPUT : stream.discard(length);
}

// As readParam(), by the grammar of the list.
template <typename Grammar>
VARN_EXCEPTION_CODES readBy(const Grammar& grammar, SipParam* param, SipStrStream& stream,
                            ParamNameIndex* names) {
  const unsigned int nameLength = grammar.name(stream);
  if (nameLength == 0) {
    logFailure(kSourceFile, "SipParamList::parseParamList - bad parameter name");
    return VARN_INVALID_INPUT;
  }
  const std::string_view name = SipStringAccess::rest(stream).substr(0, nameLength);
  SipStringAccess::advance(stream, static_cast<unsigned int>(name.size()));
  if (isOnList(grammar.list, name, names)) {
    logFailure(kSourceFile, "SipParamList::parseParamList - duplicate parameter name");
    return VARN_INVALID_INPUT;
  }
  const VARN_EXCEPTION_CODES code = keepName(grammar.list, name, param, names);
  return code == VARN_OK ? takeValue(grammar, name, param, stream) : code;
}

// Reads parameters until no separator follows, each into a node on the chain.
template <typename Grammar>
VARN_EXCEPTION_CODES readAll(const Grammar& grammar, SipParam** head, SipStrStream& stream) {
  ParamNameIndex names(*head, grammar.changing());
  for (int first = 1; passSeparator(grammar, stream, first) == VARN_OK; first = 0) {
    SipParam* param = newParam(head, kSourceFile);
    if (param == nullptr) {
      return VARN_RESOURCE_FAILURE;
    }
    const VARN_EXCEPTION_CODES code = readBy(grammar, param, stream, &names);
    if (code != VARN_OK) {
      deleteParam(param, &grammar.list);
      return code;
    }
  }
  return VARN_OK;
}

// Returns the pointer on a chain that leads to the parameter of this name, letter case ignored; the
// null at its end for none.
SipParam** linkTo(SipParam** link, std::string_view name) {
  while (*link != nullptr && !equalIgnoringCase((*link)->getName(), name)) {
    link = SipParamAccess::link(**link);
  }
  return link;
}

// Reports that there is no memory for a parameter to be set.
VARN_EXCEPTION_CODES noMemoryToSet() {
  logFailure(kSourceFile, "SipParameterList::setParameter SipStrStream constructor failed");
  return VARN_RESOURCE_FAILURE;
}

unsigned int separated(char separator, const SipStrStream& stream, unsigned int offset) {
  const Unread text = unreadFor(stream, offset);
  assertWithin(offset, text);
  const unsigned int count = grammar::separated(separator, text, offset);
  assertWithin(checkedSum(offset, count), text);
  return count;
}

}  // namespace

SipParam::SipParam(SipParam** head) : next_(nullptr), prevLink_(nullptr) { insert(head); }

SipParam::~SipParam() { remove(); }

void SipParam::insert(SipParam** head) {
  if (!assertHolds(head != nullptr, kSourceFile)) {
    return;
  }
  if (*head != nullptr) {
    // The analyzer does not see that a deleted node has left its chain.
    (*head)->prevLink_ = &next_;  // NOLINT(clang-analyzer-cplusplus.NewDelete)
  }
  next_ = *head;
  *head = this;
  prevLink_ = head;
}

void SipParam::remove() {
  if (!assertHolds(prevLink_ != nullptr, kSourceFile)) {
    return;
  }
  ParamIndexWatch::nodeChanged();
  *prevLink_ = next_;
  if (next_ != nullptr) {
    next_->prevLink_ = prevLink_;
  }
  next_ = nullptr;
  prevLink_ = nullptr;
}

VARN_EXCEPTION_CODES SipParam::setName(const SipString& name) {
  ParamIndexWatch::nodeChanged();
  name_ = name;
  return SipStringAccess::hasBuffer(name_) ? VARN_OK : VARN_RESOURCE_FAILURE;
}

VARN_EXCEPTION_CODES SipParam::setValue(unsigned int length, SipStrStream& stream) {
  value_.clear();
  return length == 0 ? VARN_OK : stream.get(length, value_);
}

VARN_EXCEPTION_CODES SipParam::setValue(const SipString& value) {
  value_ = value;
  // Looks at the name, not at the value: callers set the name first and judge by that.
  return SipStringAccess::hasBuffer(name_) ? VARN_OK : VARN_RESOURCE_FAILURE;
}

const SipString& SipParam::getName() const { return name_; }

const SipString& SipParam::getValue() const { return value_; }

SipParam* SipParam::next() const { return next_; }

void SipParam::setNext(SipParam* next) {
  ParamIndexWatch::nodeChanged();
  next_ = next;
}

SipParamList::SipParamList() : head_(nullptr), names_(nullptr) {}

SipParamList::~SipParamList() {
  clearParamList();
  clearParamNames();
}

VARN_EXCEPTION_CODES SipParamList::parseParamList(SipStrStream& stream) {
  if (isA<SipAddrParamList>(*this)) {
    const auto& list = static_cast<const SipAddrParamList&>(*this);
    return readAll(GrammarOf<SipAddrParamList>{list}, &head_, stream);
  }
  if (isA<SipHdrParamList>(*this)) {
    const auto& list = static_cast<const SipHdrParamList&>(*this);
    return readAll(GrammarOf<SipHdrParamList>{list}, &head_, stream);
  }
  return readAll(AnyGrammar{*this}, &head_, stream);
}

const SipParam* SipParamList::firstParam() const { return head_; }

const SipParam* SipParamList::nextParam(const SipParam* param) const {
  return param == nullptr ? nullptr : param->next();
}

SipParam* SipParamList::find(const SipString& name) const {
  SipParam* first = head_;
  return name.length() == 0 ? nullptr : *linkTo(&first, view(name));
}

const SipString* SipParamList::getParameter(const SipString& name) const {
  const SipParam* param = find(name);
  return param == nullptr ? nullptr : &param->getValue();
}

const SipString** SipParamList::getParameterNames(VARN_EXCEPTION_CODES* error) {
  if (!assertHolds(error != nullptr, kSourceFile)) {
    return nullptr;
  }
  *error = VARN_OK;
  if (names_ != nullptr || head_ == nullptr) {
    return names_;
  }
  std::size_t size = 1;
  for (const SipParam* param = head_; param != nullptr; param = param->next()) {
    ++size;
  }
  names_ = new (std::nothrow) const SipString*[size];
  if (names_ == nullptr) {
    logFailure(kSourceFile, "SipParamList::getParameterNames - new failed");
    *error = VARN_RESOURCE_FAILURE;
    return nullptr;
  }
  recordBlock(kSourceFile, names_, size * sizeof(void*));
  const SipString** name = names_;
  for (const SipParam* param = head_; param != nullptr; param = param->next()) {
    *name++ = &param->getName();
  }
  *name = nullptr;
  return names_;
}

VARN_EXCEPTION_CODES SipParamList::removeParameter(const SipString& name) {
  SipParam** link = linkTo(&head_, view(name));
  SipParam* param = *link;
  if (name.length() != 0 && param != nullptr) {
    // After setNext() the node may know another pointer; its destructor mends that one.
    *link = param->next();
    deleteParam(param, this);
    clearParamNames();
  }
  return VARN_OK;
}

VARN_EXCEPTION_CODES SipParamList::setParameter(const SipString& name, const SipString& value) {
  if (name.length() == 0) {
    logFailure(kSourceFile, "SipParameterList::setParameter name is empty");
    return VARN_INVALID_INPUT;
  }
  if (isA<SipAddrParamList>(*this) || isA<SipHdrParamList>(*this)) {
    return setFrom(name, value);
  }
  // The rules of another class may change the list that the texts belong to.
  const SipString ownName(name.c_str(), name.length());
  const SipString ownValue(value.c_str(), value.length());
  if (ownName.length() != name.length() || ownValue.length() != value.length()) {
    return noMemoryToSet();
  }
  return setFrom(ownName, ownValue);
}

VARN_EXCEPTION_CODES SipParamList::setFrom(const SipString& name, const SipString& value) {
  std::string_view newName;
  std::string_view newValue;
  VARN_EXCEPTION_CODES code = takeWhole(*this, name, &SipParamList::matchName,
                                        "SipParameterList::setParameter invalid name", newName);
  if (code == VARN_OK && value.length() != 0) {
    code = takeWhole(*this, value, &SipParamList::matchValue,
                     "SipParameterList::setParameter invalid value", newValue);
  }
  if (code != VARN_OK) {
    return code;
  }
  // The node is finished on a chain of its own, so that a failure takes nothing off the list.
  SipParam* aside = nullptr;
  SipParam* param = newParam(&aside, kSourceFile);
  if (param == nullptr) {
    return noMemoryToSet();
  }
  const ParamListChange change(this);
  code = SipParamAccess::setName(*param, newName);
  if (code == VARN_OK && !newValue.empty()) {
    code = SipParamAccess::setValue(*param, newValue);
  }
  if (code != VARN_OK) {
    deleteParam(param, this);
    return code;
  }
  removeParameter(param->getName());
  param->remove();
  param->insert(&head_);
  clearParamNames();
  return VARN_OK;
}

void SipParamList::clearParamList() {
  while (head_ != nullptr) {
    SipParam* first = head_;
    head_ = first->next();
    deleteParam(first, this);
  }
  if (names_ != nullptr) {
    names_[0] = nullptr;
  }
}

void SipParamList::clearParamNames() {
  if (names_ != nullptr) {
    forgetBlock(names_);
    delete[] names_;
    names_ = nullptr;
  }
}

unsigned int SipParamList::getStringLength() const {
  unsigned int separator = checkedLength(std::strlen(getSep(1)));
  const unsigned int laterSeparator = checkedLength(std::strlen(getSep(0)));
  unsigned int length = 0;
  for (const SipParam* param = head_; param != nullptr; param = param->next()) {
    const unsigned int value = param->getValue().length();
    length = checkedSum(length, separator, param->getName().length());
    length = value == 0 ? length : checkedSum(length, 1, value);
    separator = laterSeparator;
  }
  return length;
}

VARN_EXCEPTION_CODES SipParamList::appendToString(SipString& out) const {
  const SipParam* param = firstParam();
  if (param == nullptr) {
    return VARN_OK;
  }
  TextWriter writer(out, checkedSum(out.length(), getStringLength()));
  const char* separator = getSep(1);
  while (param != nullptr && writer.code() == VARN_OK) {
    writer.write(separator).writePair(param->getName(), param->getValue());
    param = nextParam(param);
    separator = getSep(0);
  }
  return writer.code();
}

SipParam* SipParamList::chain() const { return head_; }

SipParam** SipParamList::head() { return &head_; }

VARN_EXCEPTION_CODES SipParamList::parseSep(SipStrStream& stream, int first) const {
  return passSeparator(AnyGrammar{*this}, stream, first);
}

VARN_EXCEPTION_CODES SipParamList::parseParam(SipParam* param, SipStrStream& stream) const {
  assertHolds(param != nullptr, kSourceFile);
  return readBy(AnyGrammar{*this}, param, stream, nullptr);
}

VARN_EXCEPTION_CODES readParam(const SipParamList& list, SipParam* param, SipStrStream& stream,
                               ParamNameIndex& names) {
  return readBy(AnyGrammar{list}, param, stream, &names);
}

VARN_EXCEPTION_CODES passUriParams(SipStrStream& stream) {
  const SipAddrParamList list;
  const GrammarOf<SipAddrParamList> grammar{list};
  ParamNameIndex names(nullptr, nullptr);
  VARN_EXCEPTION_CODES code = VARN_OK;
  for (int first = 1; code == VARN_OK && passSeparator(grammar, stream, first) == VARN_OK;
       first = 0) {
    code = readBy(grammar, nullptr, stream, &names);
  }
  return code;
}

SipHdrParamList::SipHdrParamList() : headerType_(WY_SIP_HEADER_TYPE_NONE) {}

void SipHdrParamList::setHeaderType(WY_SIP_SIPHEADER_TYPE headerType) { headerType_ = headerType; }

WY_SIP_SIPHEADER_TYPE SipHdrParamList::getHeaderType() const { return headerType_; }

unsigned int SipHdrParamList::matchSep(const SipStrStream& stream, unsigned int offset,
                                       int first) const {
  if (headerType_ == WY_SIP_HEADER_TYPE_NON_AUTH) {
    return separated(';', stream, offset);
  }
  return first == 1 ? matchOf<grammar::lws>(unreadFor(stream, offset), offset)
                    : separated(',', stream, offset);
}

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
  return separated('=', stream, offset);
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

// The paramchar rule, also for a derived list that has other names.
unsigned int SipAddrParamList::matchValue(const SipStrStream& stream, unsigned int offset) const {
  return matchOf<grammar::paramChars>(unreadFor(stream, offset), offset);
}

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
