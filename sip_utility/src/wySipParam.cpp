// wySipParam.cpp - parameters, and what lists of all dialects have in common.
#include "wySipParam.h"

#include <cstring>
#include <string_view>

#include "base/checkedMath.h"
#include "base/equality.h"
#include "base/log.h"
#include "base/recorded.h"
#include "base/stringAccess.h"
#include "base/textWriter.h"
#include "grammar/borrowed.h"
#include "params/paramNode.h"
#include "params/paramReader.h"
#include "params/paramWalk.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wySipParam";

// Matches a text with a rule of the list. The piece is what the rule covers. Only white space may
// be around it; else logs the message.
VARN_EXCEPTION_CODES matchTrimmed(const SipParamList& grammar, const SipString& text,
                                  unsigned int (SipParamList::*rule)(const SipStrStream&,
                                                                     unsigned int) const,
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

// Returns the link of a chain that points to the parameter of this name, letter case ignored; the
// null link at the end if there is none. To unlink a node, the chain needs the link to it.
SipParam** linkTo(SipParam** link, std::string_view name) {
  while (*link != nullptr && !equalIgnoringCase((*link)->getName(), name)) {
    link = SipParamAccess::link(**link);
  }
  return link;
}

// Logs that setParameter() ran out of memory. Returns the code.
VARN_EXCEPTION_CODES logNoMemory() {
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
    // The analyzer does not see that a node leaves its chain when it is deleted.
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
  // NOLINTNEXTLINE(clang-analyzer-core.NullDereference): not null, see assertHolds() above
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
  // The test looks at the name, not at the value, on purpose: callers set the name first.
  return SipStringAccess::hasBuffer(name_) ? VARN_OK : VARN_RESOURCE_FAILURE;
}

const SipString& SipParam::getName() const { return name_; }

const SipString& SipParam::getValue() const { return value_; }

SipParam* SipParam::next() const { return next_; }

// Changes no prevLink_; SipParamAccess::mendLinks() makes up for it.
void SipParam::setNext(SipParam* next) { next_ = next; }

SipParamList::SipParamList() : head_(nullptr), names_(nullptr) {}

SipParamList::~SipParamList() {
  clearParamList();
  clearParamNames();
}

VARN_EXCEPTION_CODES SipParamList::parseParamList(SipStrStream& stream) {
  return hasLibraryRules(*this) ? storeAndRead({}, *this, stream)
                                : readByOperations(*this, stream, kSourceFile, nullptr);
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
  std::size_t size = 1;  // the null at the end
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
    *link = param->next();  // the destructor unlinks through prevLink_, which may lead elsewhere
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
  if (hasLibraryRules(*this)) {
    return setFrom(name, value);
  }
  // The texts may belong to a parameter of this list, which the rules of another class may delete.
  const SipString ownName(name.c_str(), name.length());
  const SipString ownValue(value.c_str(), value.length());
  if (ownName.length() != name.length() || ownValue.length() != value.length()) {
    return logNoMemory();
  }
  return setFrom(ownName, ownValue);
}

VARN_EXCEPTION_CODES SipParamList::setFrom(const SipString& name, const SipString& value) {
  std::string_view newName;
  std::string_view newValue;
  VARN_EXCEPTION_CODES code = matchTrimmed(*this, name, &SipParamList::matchName,
                                           "SipParameterList::setParameter invalid name", newName);
  if (code == VARN_OK && value.length() != 0) {
    code = matchTrimmed(*this, value, &SipParamList::matchValue,
                        "SipParameterList::setParameter invalid value", newValue);
  }
  if (code != VARN_OK) {
    return code;
  }
  if (newName.empty()) {
    return VARN_RESOURCE_FAILURE;  // as for every node whose name gets no buffer
  }
  // The node is made on a chain of its own: a failure must not change the list, and the texts may
  // belong to the parameter that the node replaces.
  SipParam* aside = nullptr;
  const ParamTexts texts = {newName.data(), newName.size(), newValue.data(), newValue.size()};
  SharedBlock block(roomForParams(&texts, 1));
  if (addParams(&aside, &texts, 1, block, kSourceFile) != VARN_OK) {
    return logNoMemory();
  }
  SipParam* const param = aside;
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
    names_[0] = nullptr;  // a caller may hold the array; its names are gone
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
  return readParam(*this, param, stream);
}
