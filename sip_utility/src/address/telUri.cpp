// telUri.cpp - the scan of a tel URI up to its parameters: where its texts are, with no object in
// sight.
#include "address/telUri.h"

#include "base/log.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wyTelAddress";

// Moves past a literal. Returns false and does not move if the next bytes are others.
bool passLiteral(Unread& text, std::string_view literal) {
  if (!text.has(0, literal)) {
    return false;
  }
  text.take(static_cast<unsigned int>(literal.size()));
  return true;
}

// Takes the bytes that a rule covers; logs the message if there are none.
VARN_EXCEPTION_CODES takeMatch(Unread& text, unsigned int length, const char* message,
                               std::string_view& taken) {
  if (length == 0) {
    logFailure(kSourceFile, message);
    return VARN_INVALID_INPUT;
  }
  taken = text.take(length);
  return VARN_OK;
}

// [ display-name LWS ] [ "<" ]: a display name needs the bracket
VARN_EXCEPTION_CODES scanOpening(Unread& text, TelTexts& texts) {
  if (!text.has(0, "tel:") && !text.has(0, '<')) {
    const VARN_EXCEPTION_CODES code = takeMatch(
        text, matchOf<grammar::displayName>(text, 0),
        "TelAddress::parseTelNameAddr uri doesn't begin with display name or tel: or '<' ",
        texts.displayName);
    if (code != VARN_OK) {
      return code;
    }
    text.take(matchOf<grammar::lws>(text, 0));
  }
  texts.bracketed = passLiteral(text, "<");
  if (!texts.bracketed && !texts.displayName.empty()) {
    logFailure(kSourceFile, "TelAddress::parseTelNameAddr missing < after display name");
    return VARN_INVALID_INPUT;
  }
  return VARN_OK;
}

// "tel:" number
VARN_EXCEPTION_CODES scanNumber(Unread& text, TelTexts& texts) {
  if (!passLiteral(text, "tel:")) {
    logFailure(kSourceFile, "TelAddress::parseTelNameAddr missing 'tel:' scheme");
    return VARN_INVALID_INPUT;
  }
  texts.type = typeOfNumber(text.peek(0));
  return takeMatch(text, numberRule(texts.type)(text, 0),
                   "TelAddress::parseTelNameAddr parseTelephoneURI no valid phonenumber",
                   texts.number);
}

// [ ";isub=" 1*paramchar / ";ext=" 1*phonedigit ]
VARN_EXCEPTION_CODES scanSubAddress(Unread& text, TelTexts& texts) {
  if (passLiteral(text, ";isub=")) {
    return takeMatch(text, matchOf<grammar::paramChars>(text, 0),
                     "TelAddress::parseTelNameAddr could not match isub param value", texts.isub);
  }
  if (passLiteral(text, ";ext=")) {
    return takeMatch(text, matchOf<grammar::phoneDigits>(text, 0),
                     "TelAddress::parseTelNameAddr could not match ext param value", texts.ext);
  }
  return VARN_OK;
}

// [ ";phone-context=" descriptor ]
VARN_EXCEPTION_CODES scanContext(Unread& text, TelTexts& texts) {
  if (!passLiteral(text, ";phone-context=")) {
    return VARN_OK;
  }
  return takeMatch(text, matchOf<grammar::phoneContext>(text, 0),
                   "TelAddress::parseTelNameAddr could not match context param value",
                   texts.context);
}

}  // namespace

WY_SIP_TELURI_TYPE typeOfNumber(int firstByte) {
  return firstByte == '+' ? WY_SIP_TELURI_TYPE_GLOBAL : WY_SIP_TELURI_TYPE_LOCAL;
}

Rule& numberRule(WY_SIP_TELURI_TYPE type) {
  return type == WY_SIP_TELURI_TYPE_GLOBAL ? grammar::globalPhoneNumber : grammar::localPhoneNumber;
}

// The order of the dedicated parameters is fixed, on purpose. The list refuses one that comes later
// as a duplicate.
VARN_EXCEPTION_CODES scanTelUri(Unread& text, TelTexts& texts) {
  VARN_EXCEPTION_CODES code = scanOpening(text, texts);
  if (code == VARN_OK) {
    code = scanNumber(text, texts);
  }
  if (code == VARN_OK) {
    code = scanSubAddress(text, texts);
  }
  return code == VARN_OK ? scanContext(text, texts) : code;
}

VARN_EXCEPTION_CODES scanTelClosing(Unread& text, bool bracketed) {
  if (bracketed && !passLiteral(text, ">")) {
    logFailure(kSourceFile,
               "TelAddress::parseTelephoneURI uri with '<' does not terminate with '>'");
    return VARN_INVALID_INPUT;
  }
  return VARN_OK;
}
