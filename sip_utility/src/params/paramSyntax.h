// paramSyntax.h - the rules of the library's own parameter lists, over plain bytes.
//
// The virtual operations of the lists ask these rules, and so does the reader of parameters.
#ifndef SIPUTILITY_PARAMS_PARAM_SYNTAX_H
#define SIPUTILITY_PARAMS_PARAM_SYNTAX_H

#include <string_view>

#include "grammar/grammar.h"
#include "wySipParam.h"

// value of a header parameter = the longer of two matches: a token, and the first that matches of
// quoted-string, IPv6address and host
Rule headerParamValue;

// [LWS] byte [LWS]
template <char byte>
unsigned int paramSeparator(Unread text, unsigned int offset) {
  return grammar::separator(byte, text, offset);
}

// The parameters of a SIP URI.
struct UriParamSyntax {
  static constexpr const char* kSourceFile = "sip_utility/src/wySipParam";

  static unsigned int separator(Unread text, unsigned int offset, int /*first*/) {
    return text.has(offset, ';') ? 1 : 0;
  }
  static unsigned int name(Unread text, unsigned int offset) {
    return matchOf<grammar::paramChars>(text, offset);
  }
  static unsigned int equal(Unread text, unsigned int offset) {
    return text.has(offset, '=') ? 1 : 0;
  }
  static unsigned int value(Unread text, unsigned int offset) {
    return matchOf<grammar::paramChars>(text, offset);
  }
  // "tag" and "branch" take no value in a URI, and are meant to take none.
  static unsigned int tagValue(Unread /*text*/, unsigned int /*offset*/) { return 0; }

  // Returns the log text for a parameter of this name that the list refuses; null for none.
  static const char* refusal(std::string_view /*name*/) { return nullptr; }
};

// The parameters of a tel URI. The dedicated ones come before the list.
struct TelParamSyntax : UriParamSyntax {
  static constexpr const char* kSourceFile = "sip_utility/src/wyTelAddress";

  static unsigned int name(Unread text, unsigned int offset) {
    return matchOf<grammar::telParamName>(text, offset);
  }
  static const char* refusal(std::string_view name) {
    if (name == "isub") {
      return "SipParamList::parseParamList - duplicate param isub";
    }
    if (name == "ext") {
      return "SipParamList::parseParamList - duplicate param ext";
    }
    if (name == "phone-context") {
      return "SipParamList::parseParamList - duplicate param phone-context";
    }
    return nullptr;
  }
};

// The parameters of a header.
struct HeaderParamSyntax {
  static constexpr const char* kSourceFile = "sip_utility/src/wySipParam";

  unsigned int separator(Unread text, unsigned int offset, int first) const {
    if (type == WY_SIP_HEADER_TYPE_NON_AUTH) {
      return matchOf<paramSeparator<';'>>(text, offset);
    }
    return first == 1 ? matchOf<grammar::lws>(text, offset)
                      : matchOf<paramSeparator<','>>(text, offset);
  }
  static unsigned int name(Unread text, unsigned int offset) {
    return matchOf<grammar::token>(text, offset);
  }
  static unsigned int equal(Unread text, unsigned int offset) {
    return matchOf<paramSeparator<'='>>(text, offset);
  }
  static unsigned int value(Unread text, unsigned int offset) {
    return headerParamValue(text, offset);
  }
  static unsigned int tagValue(Unread text, unsigned int offset) {
    return matchOf<grammar::token>(text, offset);
  }
  static const char* refusal(std::string_view /*name*/) { return nullptr; }

  WY_SIP_SIPHEADER_TYPE type;
};

#endif  // SIPUTILITY_PARAMS_PARAM_SYNTAX_H
