// wyTelAddress.cpp - one telephone number as a tel URI, bare or in a name-addr.
#include "wyTelAddress.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <new>
#include <string_view>
#include <typeinfo>

#include "address/pieceSetter.h"
#include "base/charClass.h"
#include "base/checkedMath.h"
#include "base/equality.h"
#include "base/log.h"
#include "base/textWriter.h"
#include "grammar/borrowed.h"
#include "grammar/grammar.h"
#include "params/paramNameIndex.h"
#include "params/paramNode.h"
#include "params/paramOrder.h"
#include "params/paramReader.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wyTelAddress";

constexpr unsigned int kWalkedWithoutIndex = 16;  // parameters; an index for fewer costs more
constexpr unsigned int kEscapeLength = 3;
constexpr std::size_t kSpecialNames = 3;

// Lengths of "tel:", ";isub=", ";ext=" and ";phone-context=".
constexpr unsigned int kSchemeLength = 4;
constexpr unsigned int kIsubLength = 6;
constexpr unsigned int kExtLength = 5;
constexpr unsigned int kContextLength = 15;

// The setters say "scheme" whatever the piece; only the display name's does not.
constexpr PieceMessages kDisplayNameMessages = {
    "TelAddress::setDisplayName | SipStrStream constructor failed",
    "TelAddress::setDisplayName | parsing failed",
    "TelAddress::setDisplayName | Stream.get failed",
    "TelAddress::setDisplayName | trailing characters in display name",
    "TelAddress::setDisplayName | assignment failed",
};
constexpr PieceMessages kPhoneNumberMessages = {
    "TelAddress::setPhoneNumber | SipStrStream constructor failed",
    "TelAddress::setPhoneNumber | parsing failed",
    "TelAddress::setPhoneNumber | Stream.get() failed",
    "TelAddress::setPhoneNumber | trailing characters in scheme",
    "TelAddress::setPhoneNumber | assignment failed",
};
constexpr PieceMessages kISDNSubAddrMessages = {
    "TelAddress::setISDNSubAddr | SipStrStream constructor failed",
    "TelAddress::setISDNSubAddr | parsing failed",
    "TelAddress::setISDNSubAddr | Stream.get() failed",
    "TelAddress::setISDNSubAddr | trailing characters in scheme",
    "TelAddress::setISDNSubAddr | assignment failed",
};
constexpr PieceMessages kExtensionMessages = {
    "TelAddress::setExtension | SipStrStream constructor failed",
    "TelAddress::setExtension | parsing failed",
    "TelAddress::setExtension | Stream.get() failed",
    "TelAddress::setExtension | trailing characters in scheme",
    "TelAddress::setExtension | assignment failed",
};
constexpr PieceMessages kContextMessages = {
    "TelAddress::setContext | SipStrStream constructor failed",
    "TelAddress::setContext | parsing failed",
    "TelAddress::setContext | Stream.get() failed",
    "TelAddress::setContext | trailing characters in scheme",
    "TelAddress::setContext | assignment failed",
};

// Moves behind a literal; false, with nothing read, where another text stands.
bool skipLiteral(SipStrStream& stream, std::string_view literal) {
  return unread(stream).has(0, literal) &&
         stream.discard(static_cast<unsigned int>(literal.size())) == VARN_OK;
}

// Takes what a rule covers; logs the message where that is nothing.
VARN_EXCEPTION_CODES takeMatch(SipStrStream& stream, unsigned int length, const char* message,
                               SipString& piece) {
  if (length == 0) {
    logFailure(kSourceFile, message);
    return VARN_INVALID_INPUT;
  }
  return stream.get(length, piece);
}

// [ ";isub=" 1*paramchar / ";ext=" 1*phonedigit ]
VARN_EXCEPTION_CODES takeSubAddress(SipStrStream& stream, SipString& isub, SipString& ext) {
  if (skipLiteral(stream, ";isub=")) {
    return takeMatch(stream, matchOf<grammar::paramChars>(stream),
                     "TelAddress::parseTelNameAddr could not match isub param value", isub);
  }
  if (skipLiteral(stream, ";ext=")) {
    return takeMatch(stream, matchOf<grammar::phoneDigits>(stream),
                     "TelAddress::parseTelNameAddr could not match ext param value", ext);
  }
  return VARN_OK;
}

// [ ";phone-context=" descriptor ]
VARN_EXCEPTION_CODES takeContext(SipStrStream& stream, SipString& context) {
  if (!skipLiteral(stream, ";phone-context=")) {
    return VARN_OK;
  }
  return takeMatch(stream, matchOf<grammar::phoneContext>(stream),
                   "TelAddress::parseTelNameAddr could not match context param value", context);
}

// Returns what to log of a parameter whose place is in front of the list; null for any other.
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

WY_SIP_TELURI_TYPE typeOf(int firstByte) {
  return firstByte == '+' ? WY_SIP_TELURI_TYPE_GLOBAL : WY_SIP_TELURI_TYPE_LOCAL;
}

Rule& numberRule(WY_SIP_TELURI_TYPE type) {
  return type == WY_SIP_TELURI_TYPE_GLOBAL ? grammar::globalPhoneNumber : grammar::localPhoneNumber;
}

// Returns how many bytes to escape before the stream is asked again whether it is done. To answer,
// a SipLWSStrStream looks through a run of white space, with one answer for all of it: it is asked
// once. A class of the caller's may answer anew for each byte.
unsigned int escapedLength(const SipStrStream& stream) {
  return &typeid(stream) == &typeid(SipLWSStrStream)
             ? std::max(unread(stream).run(0, kWhiteSpace), 1U)
             : 1;
}

// Makes room for what the rest of the stream becomes: each "%" counts as one to be escaped, a
// little more than it takes.
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

VARN_EXCEPTION_CODES takePlain(SipStrStream& in, unsigned int count, SipString& out) {
  VARN_EXCEPTION_CODES code = VARN_OK;
  for (; count != 0 && code == VARN_OK; --count) {
    code = out.append(static_cast<char>(foldCase(static_cast<char>(in.peek(0)))));
    in.discard(1);
  }
  return code;
}

// "%" and two small hexadecimal digits for each byte
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

TelAddrParamList::TelAddrParamList() : order_(nullptr) {}

TelAddrParamList::~TelAddrParamList() { ParamOrder::destroy(order_); }

VARN_EXCEPTION_CODES TelAddrParamList::parseParamList(SipStrStream& stream) {
  const bool derived = &typeid(*this) != &typeid(TelAddrParamList);
  ParamNameIndex names(chain(), derived ? this : nullptr);
  for (int first = 1; parseSep(stream, first) == VARN_OK; first = 0) {
    const VARN_EXCEPTION_CODES code = parseNext(stream, names);
    if (code != VARN_OK) {
      return code;
    }
  }
  return VARN_OK;
}

unsigned int TelAddrParamList::matchName(const SipStrStream& stream, unsigned int offset) const {
  return matchOf<grammar::telParamName>(unread(stream), offset);
}

const SipParam* TelAddrParamList::firstParam() const { return nextParam(nullptr); }

const SipParam* TelAddrParamList::nextParam(const SipParam* param) const {
  // A list that changes during a walk is looked through; the next walk gets a new index.
  if (order_ == nullptr || (param == nullptr && !order_->holds(chain()))) {
    makeOrder();
  }
  if (order_ == nullptr || !order_->holds(chain())) {
    return smallestAbove(param);
  }
  return param == nullptr ? order_->first() : order_->above(param);
}

// Makes the index anew; a short list has none.
void TelAddrParamList::makeOrder() const {
  ParamOrder::destroy(order_);
  order_ = nullptr;
  unsigned int count = 0;
  for (const SipParam* param = chain(); param != nullptr; param = param->next()) {
    ++count;
  }
  if (count >= kWalkedWithoutIndex) {
    order_ = ParamOrder::make(this, chain(), count);
  }
}

// Reads one parameter, which must not be one of those that stand in front of the list.
VARN_EXCEPTION_CODES TelAddrParamList::parseNext(SipStrStream& stream, ParamNameIndex& names) {
  SipParam* param = newParam(head(), kSourceFile);
  if (param == nullptr) {
    return VARN_RESOURCE_FAILURE;
  }
  VARN_EXCEPTION_CODES code = readParam(*this, param, stream, names);
  if (code == VARN_OK) {
    if (const char* message = misplacedMessage(param->getName())) {
      logFailure(kSourceFile, message);
      code = VARN_INVALID_INPUT;
    }
  }
  if (code != VARN_OK) {
    deleteParam(param, this);
  }
  return code;
}

// Returns the first on the chain of those with the smallest name above the given one's; null
// stands below all names.
const SipParam* TelAddrParamList::smallestAbove(const SipParam* param) const {
  const SipParam* smallest = nullptr;
  for (const SipParam* each = chain(); each != nullptr; each = each->next()) {
    const bool above = param == nullptr || lessIgnoringCase(param->getName(), each->getName());
    if (above && (smallest == nullptr || lessIgnoringCase(each->getName(), smallest->getName()))) {
      smallest = each;
    }
  }
  return smallest;
}

// The array that getParameterNames() gives, and the names in it that are no list's.
struct TelAddress::NameArray {
  // Returns an array of the given size, or null.
  static NameArray* make(std::size_t size) {
    auto* array = new (std::nothrow) NameArray;
    if (array == nullptr) {
      return nullptr;
    }
    recordBlock(kSourceFile, array, sizeof(NameArray));
    array->names = new (std::nothrow) const SipString*[size];
    if (array->names != nullptr) {
      recordBlock(kSourceFile, array->names, size * sizeof(void*));
    }
    if (array->names == nullptr || array->context.length() == 0 || array->ext.length() == 0 ||
        array->isub.length() == 0) {
      destroy(array);
      return nullptr;
    }
    return array;
  }

  static void destroy(NameArray* array) {
    if (array == nullptr) {
      return;
    }
    if (array->names != nullptr) {
      forgetBlock(array->names);
      delete[] array->names;
    }
    forgetBlock(array);
    delete array;
  }

  // Empties the array where it has this name, which is about to go; null is in none.
  void emptyFor(const SipString* name) const {
    const SipString** each = names;
    while (*each != nullptr && *each != name) {
      ++each;
    }
    if (*each != nullptr) {
      names[0] = nullptr;
    }
  }

  SipString isub{"isub"};
  SipString ext{"ext"};
  SipString context{"phone-context"};
  const SipString** names = nullptr;
};

// A parameter with a place of its own, and what to log of an empty value for it.
struct TelAddress::Special {
  // Returns the one of this name, letter case ignored; null for the name of any other parameter.
  static const Special* find(const SipString& name);

  const char* name;
  const char* refusal;
  SipString NameArray::*listed;
  SipString TelAddress::*piece;
  VARN_EXCEPTION_CODES (TelAddress::*set)(const SipString& value);
};

const TelAddress::Special* TelAddress::Special::find(const SipString& name) {
  static constexpr Special kSpecials[] = {
      {"isub", "isub BNF does not allow parameter without value", &NameArray::isub,
       &TelAddress::isub_, &TelAddress::setISDNSubAddr},
      {"ext", "extension BNF does not allow parameter without value", &NameArray::ext,
       &TelAddress::extension_, &TelAddress::setExtension},
      {"phone-context", "context BNF does not allow parameter without value", &NameArray::context,
       &TelAddress::context_, &TelAddress::setContext},
  };
  for (const Special& special : kSpecials) {
    if (equalIgnoringCase(name, special.name)) {
      return &special;
    }
  }
  return nullptr;
}

TelAddress::TelAddress(const SipString& address)
    : bracketed_(0), type_(WY_SIP_TELURI_TYPE_NONE), lastError_(VARN_OK), names_(nullptr) {
  VarnSetLastErrorCode(parse(address));
}

TelAddress::~TelAddress() { releaseNames(); }

void TelAddress::VarnSetLastErrorCode(VARN_EXCEPTION_CODES code) { lastError_ = code; }

VARN_EXCEPTION_CODES TelAddress::GetLastErrorCode() const { return lastError_; }

const SipString& TelAddress::getDisplayName() const { return displayName_; }

const SipString& TelAddress::getPhoneNumber() const { return phoneNumber_; }

const SipString& TelAddress::getISDNSubAddr() const { return isub_; }

const SipString& TelAddress::getExtension() const { return extension_; }

const SipString& TelAddress::getContext() const { return context_; }

WY_SIP_TELURI_TYPE TelAddress::getType() const { return type_; }

bool TelAddress::isBracketed() const { return bracketed_ != 0; }

const SipParam* TelAddress::firstParam() const { return params_.firstParam(); }

const SipParam* TelAddress::nextParam(const SipParam* param) const {
  return params_.nextParam(param);
}

VARN_EXCEPTION_CODES TelAddress::setDisplayName(const SipString& displayName) {
  if (displayName.length() == 0) {
    displayName_.clear();
    bracketed_ = 0;
    return storeChange(VARN_OK);
  }
  return storeChange(replacePiece(displayName_, displayName, grammar::displayName,
                                  kDisplayNameMessages, kSourceFile));
}

VARN_EXCEPTION_CODES TelAddress::setPhoneNumber(const SipString& phoneNumber) {
  if (phoneNumber.length() == 0) {
    logFailure(kSourceFile, "TelAddress::setPhoneNumber | NULL or empty string");
    return storeCode(VARN_INVALID_INPUT);
  }
  const WY_SIP_TELURI_TYPE type = typeOf(phoneNumber.c_str()[0]);
  if (type_ == WY_SIP_TELURI_TYPE_GLOBAL && type == WY_SIP_TELURI_TYPE_LOCAL &&
      context_.length() == 0) {
    logFailure(
        kSourceFile,
        "Converting from global to local phone number type not allowed unless phone-context parameter is set");
    return storeCode(VARN_INVALID_INPUT);
  }
  const VARN_EXCEPTION_CODES code =
      replacePiece(phoneNumber_, phoneNumber, numberRule(type), kPhoneNumberMessages, kSourceFile);
  if (code == VARN_OK) {
    type_ = type;
  }
  return storeChange(code);
}

VARN_EXCEPTION_CODES TelAddress::setISDNSubAddr(const SipString& isub) {
  if (isub.length() == 0) {
    logFailure(kSourceFile, "TelAddress::setISDNSubAddr | NULL or empty ISDNSubAddr");
    return storeCode(VARN_INVALID_INPUT);
  }
  if (extension_.length() != 0) {
    logTrace(kSourceFile, "TelAddress::setISDNSubAddr | mutual exclusive ext param exists already");
    return storeCode(VARN_INVALID_INPUT);
  }
  return storeChange(
      replacePiece(isub_, isub, grammar::paramChars, kISDNSubAddrMessages, kSourceFile));
}

VARN_EXCEPTION_CODES TelAddress::setExtension(const SipString& extension) {
  if (extension.length() == 0) {
    logFailure(kSourceFile, "TelAddress::setExtension | NULL or empty string");
    return storeCode(VARN_INVALID_INPUT);
  }
  if (isub_.length() != 0) {
    logTrace(kSourceFile, "TelAddress::setExtension | mutual exclusive isub param exists already");
    return storeCode(VARN_INVALID_INPUT);
  }
  return storeChange(
      replacePiece(extension_, extension, grammar::phoneDigits, kExtensionMessages, kSourceFile));
}

VARN_EXCEPTION_CODES TelAddress::setContext(const SipString& context) {
  if (context.length() == 0) {
    logFailure(kSourceFile, "TelAddress::setContext | NULL or empty string");
    return storeCode(VARN_INVALID_INPUT);
  }
  return storeChange(
      replacePiece(context_, context, grammar::phoneContext, kContextMessages, kSourceFile));
}

const SipString* TelAddress::getParameter(const SipString& name) const {
  const Special* special = Special::find(name);
  if (special == nullptr) {
    return params_.getParameter(name);
  }
  const SipString& piece = this->*special->piece;
  return piece.length() == 0 ? nullptr : &piece;
}

VARN_EXCEPTION_CODES TelAddress::setParameter(const SipString& name, const SipString& value) {
  const Special* special = Special::find(name);
  VARN_EXCEPTION_CODES code = VARN_OK;
  if (special == nullptr) {
    code = params_.setParameter(name, value);
  } else if (value.length() == 0) {
    logFailure(kSourceFile, special->refusal);
    code = VARN_INVALID_INPUT;
  } else {
    code = (this->*special->set)(value);
  }
  text_.clear();
  releaseNames();
  return storeCode(code);
}

VARN_EXCEPTION_CODES TelAddress::removeParameter(const SipString& name) {
  const Special* special = Special::find(name);
  if (special != nullptr && special->piece == &TelAddress::context_ &&
      type_ == WY_SIP_TELURI_TYPE_LOCAL) {
    logFailure(
        kSourceFile,
        "TelAddress::removeParameter | trying to remove 'phone-context' from Local phone type");
    return storeCode(VARN_INVALID_INPUT);
  }
  if (names_ != nullptr) {  // whoever holds the array reads no name that is gone
    const SipParam* param = params_.find(name);
    const SipString* listed = param == nullptr ? nullptr : &param->getName();
    names_->emptyFor(special == nullptr ? listed : &(names_->*special->listed));
  }
  if (special == nullptr) {
    params_.removeParameter(name);
  } else {
    (this->*special->piece).clear();
  }
  return storeChange(VARN_OK);
}

const SipString** TelAddress::getParameterNames() {
  releaseNames();
  VARN_EXCEPTION_CODES code = VARN_OK;
  const SipString** listed = params_.getParameterNames(&code);
  if (storeCode(code) != VARN_OK) {
    return nullptr;
  }
  std::size_t count = 0;
  while (listed != nullptr && listed[count] != nullptr) {
    ++count;
  }
  names_ = NameArray::make(count + kSpecialNames + 1);
  if (names_ == nullptr) {
    logFailure(kSourceFile, "TelAddress::getParameterNames - new failed");
    storeCode(VARN_RESOURCE_FAILURE);
    return nullptr;
  }
  const SipString** end = std::copy_n(listed, count, names_->names);
  if (isub_.length() != 0) {
    *end++ = &names_->isub;
  }
  if (extension_.length() != 0) {
    *end++ = &names_->ext;
  }
  if (context_.length() != 0) {
    *end++ = &names_->context;
  }
  *end = nullptr;
  return names_->names;
}

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
  unsigned int length = getURIStringLength();
  if (displayName_.length() != 0) {
    length = checkedSum(length, displayName_.length(), 3);
  } else if (hasParameters()) {
    length = checkedSum(length, 2);
  }
  return length;
}

VARN_EXCEPTION_CODES TelAddress::convertTelToSipUserInfoSyntax(SipStrStream& in, SipString& out) {
  out.clear();
  VARN_EXCEPTION_CODES code = reserveConverted(in, out);
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
    code = VARN_RESOURCE_FAILURE;
  }
  if (code == VARN_OK) {
    code = target.setUser(user);
  }
  if (code == VARN_OK) {
    code = target.setDisplayName(displayName_);
  }
  if (code == VARN_OK) {
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

VARN_EXCEPTION_CODES TelAddress::parseTelNameAddr(SipStrStream& stream, SipString* displayName,
                                                  SipString* phoneNumber, SipString* isub,
                                                  SipString* ext, SipString* context,
                                                  TelAddrParamList* params) {
  if (!assertNoneNull(kSourceFile, displayName, phoneNumber, isub, ext, context, params)) {
    logFailure(kSourceFile, "TelAddress::parseTelNameAddr | Input Parameter NULL");
    return VARN_INVALID_INPUT;
  }
  VARN_EXCEPTION_CODES code = takeOpening(stream, *displayName);
  if (code == VARN_OK) {
    code = takeNumber(stream, *phoneNumber);
  }
  if (code == VARN_OK) {
    code = takeSubAddress(stream, *isub, *ext);
  }
  if (code == VARN_OK) {
    code = takeContext(stream, *context);
  }
  if (code == VARN_OK) {
    code = params->parseParamList(stream);
  }
  if (code != VARN_OK || bracketed_ == 0) {
    return code;
  }
  if (!unread(stream).has(0, '>')) {
    logFailure(kSourceFile,
               "TelAddress::parseTelephoneURI uri with '<' does not terminate with '>'");
    return VARN_INVALID_INPUT;
  }
  return stream.discard(1);
}

VARN_EXCEPTION_CODES TelAddress::parse(const SipString& address) {
  if (address.length() == 0) {
    logFailure(kSourceFile, "TelAddress::TelAddress | NULL or empty address");
    return VARN_INVALID_INPUT;
  }
  BorrowedLWSStream stream(view(address));
  const VARN_EXCEPTION_CODES code = parseTelNameAddr(stream, &displayName_, &phoneNumber_, &isub_,
                                                     &extension_, &context_, &params_);
  if (code == VARN_RESOURCE_FAILURE && displayName_.length() == 0 && phoneNumber_.length() == 0) {
    logFailure(kSourceFile, "TelAddress::TelAddress | SipLWSStrStream constructor failed");
  }
  return code;
}

// [ display-name LWS ] [ "<" ]: a display name needs the bracket
VARN_EXCEPTION_CODES TelAddress::takeOpening(SipStrStream& stream, SipString& displayName) {
  if (unread(stream).has(0, "tel:") || unread(stream).has(0, '<')) {
    displayName.clear();
  } else {
    const VARN_EXCEPTION_CODES code = takeMatch(
        stream, matchOf<grammar::displayName>(stream),
        "TelAddress::parseTelNameAddr uri doesn't begin with display name or tel: or '<' ",
        displayName);
    if (code != VARN_OK) {
      return code;
    }
    stream.discard(matchOf<grammar::lws>(stream));
  }
  if (unread(stream).has(0, '<')) {
    bracketed_ = 1;
    return stream.discard(1);
  }
  if (displayName.length() != 0) {
    logFailure(kSourceFile, "TelAddress::parseTelNameAddr missing < after display name");
    return VARN_INVALID_INPUT;
  }
  return VARN_OK;
}

// "tel:" number
VARN_EXCEPTION_CODES TelAddress::takeNumber(SipStrStream& stream, SipString& phoneNumber) {
  if (!skipLiteral(stream, "tel:")) {
    logFailure(kSourceFile, "TelAddress::parseTelNameAddr missing 'tel:' scheme");
    return VARN_INVALID_INPUT;
  }
  type_ = typeOf(stream.peek(0));
  return takeMatch(stream, numberRule(type_)(unread(stream), 0),
                   "TelAddress::parseTelNameAddr parseTelephoneURI no valid phonenumber",
                   phoneNumber);
}

VARN_EXCEPTION_CODES TelAddress::storeCode(VARN_EXCEPTION_CODES code) {
  VarnSetLastErrorCode(code);
  return code;
}

// Stores the outcome of a change that the text shows.
VARN_EXCEPTION_CODES TelAddress::storeChange(VARN_EXCEPTION_CODES code) {
  if (code == VARN_OK) {
    text_.clear();
  }
  return storeCode(code);
}

bool TelAddress::hasParameters() const {
  return isub_.length() != 0 || extension_.length() != 0 || context_.length() != 0 ||
         params_.getStringLength() != 0;
}

// Appends the URI without its scheme to a text that gets the given length in all.
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

void TelAddress::releaseNames() {
  NameArray::destroy(names_);
  names_ = nullptr;
}
