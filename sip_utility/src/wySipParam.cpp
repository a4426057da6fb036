// wySipParam.cpp - parameters and their lists, whatever the dialect.
#include "wySipParam.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string_view>
#include <typeinfo>

#include "base/checkedMath.h"
#include "base/equality.h"
#include "base/log.h"
#include "base/recorded.h"
#include "base/stringAccess.h"
#include "base/textWriter.h"
#include "grammar/borrowed.h"
#include "params/paramNameIndex.h"
#include "params/paramNode.h"
#include "params/paramReader.h"
#include "params/paramWalk.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wySipParam";

// Returns whether the rules of a list are the library's, not those of a caller's class, which may
// change the list.
bool hasOwnRules(const SipParamList& list) {
  const std::type_info* const type = &typeid(list);
  return type == &typeid(SipAddrParamList) || type == &typeid(SipHdrParamList);
}

// Takes what the rule covers out of a text with nothing else but white space around it.
VARN_EXCEPTION_CODES takeOnly(const SipParamList& grammar, const SipString& text,
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
  *prevLink_ = next_;
  if (next_ != nullptr) {
    next_->prevLink_ = prevLink_;
  }
  next_ = nullptr;
  prevLink_ = nullptr;
}

VARN_EXCEPTION_CODES SipParam::setName(const SipString& name) {
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

void SipParam::setNext(SipParam* next) { next_ = next; }

SipParamList::SipParamList() : head_(nullptr), names_(nullptr) {}

SipParamList::~SipParamList() {
  clearParamList();
  clearParamNames();
}

VARN_EXCEPTION_CODES SipParamList::parseParamList(SipStrStream& stream) {
  std::optional<ParamNameIndex> index;
  if (hasOwnRules(*this)) {
    index.emplace(head_);
  }
  ParamNameIndex* const names = index ? &*index : nullptr;
  for (int first = 1; passSeparator(*this, stream, first) == VARN_OK; first = 0) {
    SipParam* const param = newParam(&head_, kSourceFile);
    if (param == nullptr) {
      return VARN_RESOURCE_FAILURE;
    }
    const VARN_EXCEPTION_CODES code = readParam(*this, param, stream, names);
    if (code != VARN_OK) {
      deleteRecorded(param);
      return code;
    }
  }
  return VARN_OK;
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
  names_ = newRecordedArray<const SipString*>(kSourceFile, size);
  if (names_ == nullptr) {
    logFailure(kSourceFile, "SipParamList::getParameterNames - new failed");
    *error = VARN_RESOURCE_FAILURE;
    return nullptr;
  }
  const SipString** name = names_;
  for (const SipParam* param = head_; param != nullptr; param = param->next()) {
    *name++ = &param->getName();
  }
  *name = nullptr;
  return names_;
}

VARN_EXCEPTION_CODES SipParamList::removeParameter(const SipString& name) {
  SipParam** const link = name.length() == 0 ? nullptr : linkTo(&head_, view(name));
  if (link != nullptr && *link != nullptr) {
    SipParam* const param = *link;
    SipParamAccess::mendLinks(&head_, link);
    *link = param->next();
    deleteRecorded(param);
    clearParamNames();
  }
  return VARN_OK;
}

VARN_EXCEPTION_CODES SipParamList::setParameter(const SipString& name, const SipString& value) {
  if (name.length() == 0) {
    logFailure(kSourceFile, "SipParameterList::setParameter name is empty");
    return VARN_INVALID_INPUT;
  }
  if (hasOwnRules(*this)) {
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
  VARN_EXCEPTION_CODES code = takeOnly(*this, name, &SipParamList::matchName,
                                       "SipParameterList::setParameter invalid name", newName);
  if (code == VARN_OK && value.length() != 0) {
    code = takeOnly(*this, value, &SipParamList::matchValue,
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
  code = SipParamAccess::setName(*param, newName);
  if (code == VARN_OK && !newValue.empty()) {
    code = SipParamAccess::setValue(*param, newValue);
  }
  if (code != VARN_OK) {
    deleteRecorded(param);
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
    deleteRecorded(first);
  }
  if (names_ != nullptr) {
    names_[0] = nullptr;
  }
}

void SipParamList::clearParamNames() {
  deleteRecordedArray(names_);
  names_ = nullptr;
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
  ParamWalk walk(*this, head_);
  const SipParam* param = walk.next();
  if (param == nullptr) {
    return VARN_OK;
  }
  TextWriter writer(out, checkedSum(out.length(), getStringLength()));
  const char* separator = getSep(1);
  while (param != nullptr && writer.code() == VARN_OK) {
    writer.write(separator).writePair(param->getName(), param->getValue());
    param = walk.next();
    separator = getSep(0);
  }
  return writer.code();
}

SipParam* SipParamList::chain() const { return head_; }

SipParam** SipParamList::head() { return &head_; }

VARN_EXCEPTION_CODES SipParamList::parseSep(SipStrStream& stream, int first) const {
  return passSeparator(*this, stream, first);
}

VARN_EXCEPTION_CODES SipParamList::parseParam(SipParam* param, SipStrStream& stream) const {
  assertHolds(param != nullptr, kSourceFile);
  return readParam(*this, param, stream, nullptr);
}
