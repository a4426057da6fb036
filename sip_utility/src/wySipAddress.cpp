// wySipAddress.cpp - one SIP address: a wildcard, an addr-spec or a name-addr.
#include "wySipAddress.h"

#include <string_view>

#include "address/addrSpec.h"
#include "address/pieceSetter.h"
#include "base/equality.h"
#include "base/log.h"
#include "base/storeTexts.h"
#include "base/stringAccess.h"
#include "grammar/borrowed.h"
#include "grammar/grammar.h"
#include "params/paramReader.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wySipAddress";

constexpr unsigned short kDefaultPort = 5060;
constexpr unsigned short kDefaultSecurePort = 5061;

// The texts differ from setter to setter in more than the name, on purpose.
constexpr PieceMessages kDisplayNameMessages = {
    "SipAddress::setDisplayName | SipStrStream constructor failed",
    "SipAddress::setDisplayName | parsing failed",
    "SipAddress::setDisplayName | Stream.get failed",
    "SipAddress::setDisplayName | trailing characters in display name",
    "SipAddress::setDisplayName | assignment failed",
};
constexpr PieceMessages kSchemeMessages = {
    "SipAddress::setScheme | SipString constructor failed",
    "SipAddress::setScheme | parsing failed",
    "SipAddress::setScheme | Stream.get() failed",
    "SipAddress::setScheme | trailing characters in scheme",
    "SipAddress::setScheme | assignment failed",
};
constexpr PieceMessages kUserMessages = {
    "SipAddress::setUser | SipString constructor failed",
    "SipAddress::setUser | parsing failed",
    "SipAddress::setUser | Stream.get failed",
    "SipAddress::setUser | trailing characters in user",
    "SipAddress::setUser| assignment failed",
};
constexpr PieceMessages kHostMessages = {
    "SipAddress::setHost | SipStrStream constructor failed",
    "SipAddress::setHost | parsing failed",
    "SipAddress::setHost | SipStrStream constructor failed",
    "SipAddress::setHost | trailing characters in host",
    "SipAddress::setHost | assignment failed",
};

// Where the pieces of an address are stored.
struct Pieces {
  SipString* displayName;
  SipString* scheme;
  SipString* user;
  SipString* host;
  SipPort* port;
  SipAddrParamList* params;
};

// Lets a scan read from the stream.
VARN_EXCEPTION_CODES scan(AddressScan& part, SipStrStream& stream, AddressTexts& texts) {
  Unread text = unread(stream);
  const VARN_EXCEPTION_CODES code = part(text, texts);
  moveTo(stream, text);
  return code;
}

// [ ":" port ]
VARN_EXCEPTION_CODES takePort(SipStrStream& stream, SipPort& port) {
  if (!unread(stream).has(0, ':')) {
    return VARN_OK;
  }
  SipStringAccess::advance(stream, 1);
  return port.set(stream);
}

// scheme ":" [ userinfo "@" ] host [ ":" port ] params [ headers ], after a display name
//
// The texts are stored together, also those before a failure. Headers are not stored; faulty ones
// are left in the stream.
VARN_EXCEPTION_CODES takeAddrSpec(SipStrStream& stream, std::string_view displayName,
                                  const Pieces& pieces) {
  AddressTexts texts = {displayName, {}, {}, {}};
  VARN_EXCEPTION_CODES code = scan(scanUri, stream, texts);
  if (code == VARN_OK) {
    code = takePort(stream, *pieces.port);
  }
  const TextsToStore stored = {{*pieces.displayName, texts.displayName},
                               {*pieces.scheme, texts.scheme},
                               {*pieces.user, texts.user},
                               {*pieces.host, texts.host}};
  if (code != VARN_OK) {
    return storeTexts(stored) == VARN_OK ? code : VARN_RESOURCE_FAILURE;
  }
  code = storeAndRead(stored, *pieces.params, stream);
  if (code == VARN_OK) {
    SipStringAccess::advance(stream, matchOf<grammar::uriHeaders>(stream));
  }
  return code;
}

// ">"
VARN_EXCEPTION_CODES takeClosing(SipStrStream& stream) {
  Unread text = unread(stream);
  const VARN_EXCEPTION_CODES code = scanClosing(text);
  moveTo(stream, text);
  return code;
}

// Reports each null output of a parse step; logs and returns whether there is one.
template <typename... Outputs>
bool refusesNull(const Outputs*... outputs) {
  if (assertNoneNull(kSourceFile, outputs...)) {
    return false;
  }
  logFailure(kSourceFile, "SipAddress::parseAddrSpec | Input Parameter NULL");
  return true;
}

// Logs the message if memory ran out for the first piece of the text, which is then still empty.
// The code alone does not show which step failed.
VARN_EXCEPTION_CODES logIfNoMemory(VARN_EXCEPTION_CODES code, const SipString& first,
                                   const char* noMemory, int line = __builtin_LINE()) {
  if (code == VARN_RESOURCE_FAILURE && first.length() == 0) {
    logFailure(kSourceFile, noMemory, 0, 0, line);
  }
  return code;
}

}  // namespace

SipAddress::SipAddress(const SipString& address) : wildcard_(0), lastError_(VARN_OK) {
  VarnSetLastErrorCode(parse(address));
}

SipAddress::SipAddress(const SipString& displayName, const SipString& uri)
    : wildcard_(0), lastError_(VARN_OK) {
  VarnSetLastErrorCode(parse(displayName, uri));
}

SipAddress::SipAddress(SipStrStream& stream) : wildcard_(0), lastError_(VARN_OK) {
  VarnSetLastErrorCode(parse(stream));
}

SipAddress::~SipAddress() = default;

void SipAddress::VarnSetLastErrorCode(VARN_EXCEPTION_CODES code) { lastError_ = code; }

VARN_EXCEPTION_CODES SipAddress::GetLastErrorCode() const { return lastError_; }

bool SipAddress::isWildcard() const { return wildcard_ != 0; }

const SipString& SipAddress::getDisplayName() const { return displayName_; }

const SipString& SipAddress::getScheme() const { return scheme_; }

const SipString& SipAddress::getUser() const { return user_; }

const SipString& SipAddress::getHost() const { return host_; }

unsigned short SipAddress::getStoredPort() const { return port_.get(); }

unsigned short SipAddress::getPort() const {
  if (isWildcard()) {
    return 0;
  }
  if (port_.get() != 0) {
    return port_.get();
  }
  return equalIgnoringCase(scheme_, "sips") ? kDefaultSecurePort : kDefaultPort;
}

const SipString* SipAddress::getParameter(const SipString& name) const {
  return params_.getParameter(name);
}

const SipParam* SipAddress::firstParam() const { return params_.firstParam(); }

const SipParam* SipAddress::nextParam(const SipParam* param) const {
  return params_.nextParam(param);
}

const SipString** SipAddress::getParameterNames() { return params_.getParameterNames(&lastError_); }

VARN_EXCEPTION_CODES SipAddress::setDisplayName(const SipString& displayName) {
  if (refusesChange("SipAddress::setDisplayName | cannot modify wildcard address")) {
    return lastError_;
  }
  VARN_EXCEPTION_CODES code = VARN_OK;
  if (displayName.length() == 0) {
    displayName_.clear();
  } else {
    code = replacePiece(displayName_, displayName, grammar::displayName, kDisplayNameMessages,
                        kSourceFile);
  }
  if (code == VARN_OK) {
    text_.clear();  // the URI's text does not contain the display name
  }
  return storeCode(code);
}

VARN_EXCEPTION_CODES SipAddress::setScheme(const SipString& scheme) {
  if (refusesChange("SipAddress::setScheme | cannot modify wildcard address")) {
    return lastError_;
  }
  if (scheme.length() == 0) {
    logFailure(kSourceFile, "SipAddress::setScheme | NULL or empty scheme");
    return storeCode(VARN_INVALID_INPUT);
  }
  return storeChange(replacePiece(scheme_, scheme, grammar::scheme, kSchemeMessages, kSourceFile));
}

VARN_EXCEPTION_CODES SipAddress::setUser(const SipString& user) {
  if (refusesChange("SipAddress::setUser | cannot modify wildcard address")) {
    return lastError_;
  }
  if (user.length() == 0) {
    user_.clear();
    return storeChange(VARN_OK);
  }
  return storeChange(replacePiece(user_, user, grammar::userInfo, kUserMessages, kSourceFile));
}

VARN_EXCEPTION_CODES SipAddress::setHost(const SipString& host) {
  if (refusesChange("SipAddress::setHost | cannot modify wildcard address")) {
    return lastError_;
  }
  if (host.length() == 0) {
    logFailure(kSourceFile, "SipAddress::setHost | NULL or empty host");
    return storeCode(VARN_INVALID_INPUT);
  }
  return storeChange(replacePiece(host_, host, grammar::host, kHostMessages, kSourceFile));
}

void SipAddress::setPort(unsigned short port) {
  if (refusesChange("SipAddress::setPort | cannot modify wildcard address")) {
    return;
  }
  port_ = SipPort(port);
  storeChange(VARN_OK);
}

VARN_EXCEPTION_CODES SipAddress::setURI(const SipString& uri) {
  if (refusesChange("SipAddress::setURI | cannot modify wildcard address")) {
    return lastError_;
  }
  SipLWSStrStream stream(uri);
  if (!stream.valid()) {
    logFailure(kSourceFile, "SipAddress::setURI | SipStrStream constructor failed");
    return storeCode(VARN_RESOURCE_FAILURE);
  }
  SipString scheme;
  SipString user;
  SipString host;
  SipPort port;
  SipAddrParamList dropped;  // parameters of the URI are checked only; the address keeps its own
  const VARN_EXCEPTION_CODES code = parseAnyURI(stream, &scheme, &user, &host, &port, &dropped);
  if (code != VARN_OK) {
    return storeCode(code);
  }
  // From here on nothing can fail, so the pieces change together.
  SipStringAccess::swap(scheme_, scheme);
  SipStringAccess::swap(user_, user);
  SipStringAccess::swap(host_, host);
  port_ = port;
  return storeChange(VARN_OK);
}

VARN_EXCEPTION_CODES SipAddress::setParameter(const SipString& name, const SipString& value) {
  if (refusesChange("SipAddress::setParameter | cannot modify wildcard address")) {
    return lastError_;
  }
  return storeChange(params_.setParameter(name, value));
}

VARN_EXCEPTION_CODES SipAddress::removeParameter(const SipString& name) {
  if (refusesChange("SipAddress::removeParameter | cannot modify wildcard address")) {
    return storeCode(VARN_OK);  // a removal never fails, not even here
  }
  return storeChange(params_.removeParameter(name));
}

void SipAddress::clearParamList() {
  if (isWildcard()) {
    return;
  }
  params_.clearParamList();
  dropTexts();
}

VARN_EXCEPTION_CODES SipAddress::parseNameAddr(SipStrStream& stream, SipString* displayName,
                                               SipString* scheme, SipString* user, SipString* host,
                                               SipPort* port, SipAddrParamList* params) {
  assertNoneNull(kSourceFile, displayName, scheme, user, host, port, params);
  if (displayName == nullptr) {
    return VARN_INVALID_INPUT;
  }
  AddressTexts texts;
  VARN_EXCEPTION_CODES code = scan(scanOpening, stream, texts);
  if (code == VARN_OK && refusesNull(scheme, user, host, port, params)) {
    code = VARN_INVALID_INPUT;
  }
  if (code != VARN_OK) {
    return storeTexts({{*displayName, texts.displayName}}) == VARN_OK ? code
                                                                      : VARN_RESOURCE_FAILURE;
  }
  code = takeAddrSpec(stream, texts.displayName, {displayName, scheme, user, host, port, params});
  return code == VARN_OK ? takeClosing(stream) : code;
}

VARN_EXCEPTION_CODES SipAddress::parseURI(SipStrStream& stream, SipString* scheme, SipString* user,
                                          SipString* host, SipPort* port,
                                          SipAddrParamList* params) {
  if (!unread(stream).has(0, '<')) {
    return VARN_INVALID_INPUT;
  }
  SipStringAccess::advance(stream, 1);
  const VARN_EXCEPTION_CODES code = parseAddrSpec(stream, scheme, user, host, port, params);
  return code == VARN_OK ? takeClosing(stream) : code;
}

VARN_EXCEPTION_CODES SipAddress::parseAnyURI(SipStrStream& stream, SipString* scheme,
                                             SipString* user, SipString* host, SipPort* port,
                                             SipAddrParamList* params) {
  if (unread(stream).has(0, '<')) {
    return parseURI(stream, scheme, user, host, port, params);
  }
  const VARN_EXCEPTION_CODES code = parseAddrSpec(stream, scheme, user, host, port, params);
  if (code == VARN_OK && !stream.done()) {
    logFailure(kSourceFile, "SipAddress::SipAddress | trailing chars in URI");
    return VARN_INVALID_INPUT;
  }
  return code;
}

VARN_EXCEPTION_CODES SipAddress::parseAddrSpec(SipStrStream& stream, SipString* scheme,
                                               SipString* user, SipString* host, SipPort* port,
                                               SipAddrParamList* params) {
  if (refusesNull(scheme, user, host, port, params)) {
    return VARN_INVALID_INPUT;
  }
  SipString none;
  return takeAddrSpec(stream, {}, {&none, scheme, user, host, port, params});
}

VARN_EXCEPTION_CODES SipAddress::parse(const SipString& address) {
  Unread text = unread(view(address));
  const AddressForm form = scanForm(text);
  if (form == AddressForm::kNone) {
    return VARN_INVALID_INPUT;
  }
  if (form == AddressForm::kWildcard) {
    return becomeWildcard();
  }
  BorrowedLWSStream stream(view(address));
  const VARN_EXCEPTION_CODES code =
      form == AddressForm::kAddrSpec ? parseWholeAddrSpec(stream) : parseOwnNameAddr(stream);
  return logIfNoMemory(code, displayName_.length() == 0 ? scheme_ : displayName_,
                       "SipAddress::SipAddress | SipStrStream constructor failed");
}

// What follows an addr-spec is checked, other than what follows the ">" of a name-addr, on purpose.
VARN_EXCEPTION_CODES SipAddress::parseWholeAddrSpec(SipStrStream& stream) {
  const VARN_EXCEPTION_CODES code =
      parseAddrSpec(stream, &scheme_, &user_, &host_, &port_, &params_);
  return code == VARN_OK && !stream.done() ? VARN_INVALID_INPUT : code;
}

VARN_EXCEPTION_CODES SipAddress::parse(const SipString& displayName, const SipString& uri) {
  if (uri.length() == 0) {
    logFailure(kSourceFile, "SipAddress::SipAddress | empty URI");
    return VARN_INVALID_INPUT;
  }
  const VARN_EXCEPTION_CODES code = setDisplayName(displayName);
  if (code != VARN_OK) {
    return code;
  }
  BorrowedLWSStream stream(view(uri));
  const VARN_EXCEPTION_CODES uriCode =
      parseAnyURI(stream, &scheme_, &user_, &host_, &port_, &params_);
  return logIfNoMemory(uriCode, scheme_, "SipAddress::SipAddress | SipString constructor failed");
}

VARN_EXCEPTION_CODES SipAddress::parse(SipStrStream& stream) {
  if (!stream.valid()) {
    logFailure(kSourceFile, "SipAddress::SipAddress | invalid SipStrStream argument");
    return VARN_INVALID_INPUT;
  }
  stream.discard(matchOf<grammar::lws>(stream));
  return parseOwnNameAddr(stream);
}

VARN_EXCEPTION_CODES SipAddress::parseOwnNameAddr(SipStrStream& stream) {
  return parseNameAddr(stream, &displayName_, &scheme_, &user_, &host_, &port_, &params_);
}

VARN_EXCEPTION_CODES SipAddress::becomeWildcard() {
  if (text_.append('*') != VARN_OK || uriText_.append('*') != VARN_OK) {
    text_.clear();
    return VARN_RESOURCE_FAILURE;
  }
  wildcard_ = 1;
  return VARN_OK;
}

// For a wildcard, logs the setter's message, stores the code and returns true.
bool SipAddress::refusesChange(const char* message, int line) {
  if (!isWildcard()) {
    return false;
  }
  logFailure(kSourceFile, message, 0, 0, line);
  storeCode(VARN_INVALID_INPUT);
  return true;
}

VARN_EXCEPTION_CODES SipAddress::storeCode(VARN_EXCEPTION_CODES code) {
  VarnSetLastErrorCode(code);
  return code;
}

// Stores the code of a change that affects both cached texts.
VARN_EXCEPTION_CODES SipAddress::storeChange(VARN_EXCEPTION_CODES code) {
  if (code == VARN_OK) {
    dropTexts();
  }
  return storeCode(code);
}

void SipAddress::dropTexts() {
  text_.clear();
  uriText_.clear();
}
