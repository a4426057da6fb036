// wyTelAddress.cpp - one telephone number as a tel URI, bare or in a name-addr.
#include "wyTelAddress.h"

#include <algorithm>
#include <string_view>

#include "address/pieceSetter.h"
#include "address/telUri.h"
#include "base/equality.h"
#include "base/log.h"
#include "base/recorded.h"
#include "base/storeTexts.h"
#include "grammar/borrowed.h"
#include "grammar/grammar.h"
#include "params/paramReader.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wyTelAddress";

constexpr std::size_t kDedicatedNames = 3;

// The texts say "scheme" for every piece but the display name, on purpose.
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

}  // namespace

// The array that getParameterNames() returns, and the names of the dedicated parameters for it. The
// other names belong to the list.
struct TelAddress::NameArray {
  // Returns an array of this size; null if out of memory.
  static NameArray* make(std::size_t size) {
    Recorded<NameArray> array(newRecorded<NameArray>(kSourceFile));
    if (array == nullptr) {
      return nullptr;
    }
    array->names.reset(newRecordedArray<const SipString*>(kSourceFile, size));
    // A string made from a literal is empty if memory ran out for it.
    const bool complete = array->names != nullptr && array->context.length() != 0 &&
                          array->ext.length() != 0 && array->isub.length() != 0;
    return complete ? array.release() : nullptr;
  }

  // Empties the array if it has this name, which is about to be deleted; it never has null.
  void emptyFor(const SipString* name) const {
    const SipString** each = names.get();
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
  RecordedArray<const SipString*> names;
};

// A parameter that is a piece of the address, not of its list, and the log text for an empty value.
struct TelAddress::DedicatedParam {
  // Returns the one of this name, letter case ignored; null for the name of any other parameter.
  static const DedicatedParam* find(const SipString& name);

  const char* name;
  const char* refusal;
  SipString NameArray::*listed;
  SipString TelAddress::*piece;
  VARN_EXCEPTION_CODES (TelAddress::*set)(const SipString& value);
};

const TelAddress::DedicatedParam* TelAddress::DedicatedParam::find(const SipString& name) {
  static constexpr DedicatedParam kDedicatedParams[] = {
      {"isub", "isub BNF does not allow parameter without value", &NameArray::isub,
       &TelAddress::isub_, &TelAddress::setISDNSubAddr},
      {"ext", "extension BNF does not allow parameter without value", &NameArray::ext,
       &TelAddress::extension_, &TelAddress::setExtension},
      {"phone-context", "context BNF does not allow parameter without value", &NameArray::context,
       &TelAddress::context_, &TelAddress::setContext},
  };
  for (const DedicatedParam& param : kDedicatedParams) {
    if (equalIgnoringCase(name, param.name)) {
      return &param;
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
    bracketed_ = 0;  // brackets are written again only if the parameters need them
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
  const WY_SIP_TELURI_TYPE type = typeOfNumber(phoneNumber.c_str()[0]);
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
  const DedicatedParam* dedicated = DedicatedParam::find(name);
  if (dedicated == nullptr) {
    return params_.getParameter(name);
  }
  const SipString& piece = this->*dedicated->piece;
  return piece.length() == 0 ? nullptr : &piece;
}

VARN_EXCEPTION_CODES TelAddress::setParameter(const SipString& name, const SipString& value) {
  const DedicatedParam* dedicated = DedicatedParam::find(name);
  VARN_EXCEPTION_CODES code = VARN_OK;
  if (dedicated == nullptr) {
    code = params_.setParameter(name, value);
  } else if (value.length() == 0) {
    logFailure(kSourceFile, dedicated->refusal);
    code = VARN_INVALID_INPUT;
  } else {
    code = (this->*dedicated->set)(value);
  }
  text_.clear();
  releaseNames();
  return storeCode(code);
}

VARN_EXCEPTION_CODES TelAddress::removeParameter(const SipString& name) {
  const DedicatedParam* dedicated = DedicatedParam::find(name);
  if (dedicated != nullptr && dedicated->piece == &TelAddress::context_ &&
      type_ == WY_SIP_TELURI_TYPE_LOCAL) {
    logFailure(
        kSourceFile,
        "TelAddress::removeParameter | trying to remove 'phone-context' from Local phone type");
    return storeCode(VARN_INVALID_INPUT);
  }
  if (names_ != nullptr) {  // a caller may hold the array and must not read a deleted name
    const SipParam* param = params_.find(name);
    const SipString* listed = param == nullptr ? nullptr : &param->getName();
    names_->emptyFor(dedicated == nullptr ? listed : &(names_->*dedicated->listed));
  }
  if (dedicated == nullptr) {
    params_.removeParameter(name);
  } else {
    (this->*dedicated->piece).clear();
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
  names_ = NameArray::make(count + kDedicatedNames + 1);
  if (names_ == nullptr) {
    logFailure(kSourceFile, "TelAddress::getParameterNames - new failed");
    storeCode(VARN_RESOURCE_FAILURE);
    return nullptr;
  }
  const SipString** end = std::copy_n(listed, count, names_->names.get());
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
  return names_->names.get();
}

VARN_EXCEPTION_CODES TelAddress::parseTelNameAddr(SipStrStream& stream, SipString* displayName,
                                                  SipString* phoneNumber, SipString* isub,
                                                  SipString* ext, SipString* context,
                                                  TelAddrParamList* params) {
  if (!assertNoneNull(kSourceFile, displayName, phoneNumber, isub, ext, context, params)) {
    logFailure(kSourceFile, "TelAddress::parseTelNameAddr | Input Parameter NULL");
    return VARN_INVALID_INPUT;
  }
  Unread text = unread(stream);
  if (text.has(0, "tel:") || text.has(0, '<')) {
    displayName->clear();
  }
  TelTexts texts;
  VARN_EXCEPTION_CODES code = scanTelUri(text, texts);
  moveTo(stream, text);
  bracketed_ = texts.bracketed ? 1 : bracketed_;
  type_ = texts.type == WY_SIP_TELURI_TYPE_NONE ? type_ : texts.type;
  const TextsToStore stored = {{*displayName, texts.displayName},
                               {*phoneNumber, texts.number},
                               {*isub, texts.isub},
                               {*ext, texts.ext},
                               {*context, texts.context}};
  if (code != VARN_OK) {
    return storeTexts(stored) == VARN_OK ? code : VARN_RESOURCE_FAILURE;
  }
  code = storeAndRead(stored, *params, stream);
  if (code == VARN_OK) {
    text = unread(stream);
    code = scanTelClosing(text, bracketed_ != 0);
    moveTo(stream, text);
  }
  return code;
}

VARN_EXCEPTION_CODES TelAddress::parse(const SipString& address) {
  if (address.length() == 0) {
    logFailure(kSourceFile, "TelAddress::TelAddress | NULL or empty address");
    return VARN_INVALID_INPUT;
  }
  BorrowedLWSStream stream(view(address));
  const VARN_EXCEPTION_CODES code = parseTelNameAddr(stream, &displayName_, &phoneNumber_, &isub_,
                                                     &extension_, &context_, &params_);
  // Text after the URI is not checked, on purpose. The line below is only for a first piece that
  // ran out of memory; the code alone does not show which one did.
  if (code == VARN_RESOURCE_FAILURE && displayName_.length() == 0 && phoneNumber_.length() == 0) {
    logFailure(kSourceFile, "TelAddress::TelAddress | SipLWSStrStream constructor failed");
  }
  return code;
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

void TelAddress::releaseNames() {
  deleteRecorded(names_);
  names_ = nullptr;
}
