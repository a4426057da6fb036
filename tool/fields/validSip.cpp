// validSip.cpp - valid SIP that the library's rules of header values do not cover.
#include "fields/validSip.h"

#include <algorithm>

#include "fields/diagnostics.h"
#include "text/sip.h"
#include "text/text.h"
#include "wySipHeader.h"
#include "wySipMatch.h"

namespace {

// Returns how many bytes a rule covers at the start of a text.
template <typename Rule>
std::size_t lengthOf(std::string_view text) {
  Rule rule;
  return rule.match(SipStrStream(toSipString(text)), 0);
}

// Returns the length of "[" IPv6address "]"; 0 for none.
std::size_t bracketedIpv6Length(std::string_view text) {
  const std::size_t close = text.find(']');
  const bool matches = !text.empty() && text[0] == '[' && close != std::string_view::npos &&
                       lengthOf<SipMatchIIPV6Address>(text.substr(1, close - 1)) == close - 1;
  return matches ? close + 1 : 0;
}

// *uric, where an authority may be an IPv6 address
bool isUric(std::string_view text) {
  const std::size_t length = lengthOf<SipMatchUric>(text);
  text.remove_prefix(length);
  if (length >= 2) {
    text.remove_prefix(bracketedIpv6Length(text));
    text.remove_prefix(lengthOf<SipMatchUric>(text));
  }
  return text.empty();
}

// Replaces each absolute URI with "/" after its scheme, in angle brackets, by one that the library
// takes: `<x:y>` as a value, x as the value of an Identity's parameter info.
std::string withoutPaths(std::string_view name, std::string_view value) {
  constexpr std::string_view kInfo = ";info=";
  std::string result;
  while (!value.empty()) {
    const std::size_t open = std::min(value.find('<'), value.size());
    const std::size_t close = value.find('>', open);
    result += value.substr(0, open);
    value.remove_prefix(open);
    if (close == std::string_view::npos) {
      break;
    }
    const std::string_view uri = value.substr(1, close - open - 1);
    const std::size_t colon = std::min(uri.find(':'), uri.size());
    const bool path = uri.substr(colon, 2) == ":/" && isAbsoluteUri(uri);
    const bool info = equalIgnoringCase(name, "Identity") && result.size() >= kInfo.size() &&
                      equalIgnoringCase(result.substr(result.size() - kInfo.size()), kInfo);
    result += !path ? value.substr(0, close - open + 1) : info ? "x" : "<x:y>";
    value.remove_prefix(close - open + 1);
  }
  return result.append(value);
}

bool isAccepted(std::string_view name, std::string_view value) {
  return SipHeader(toSipString(name), toSipString(value)).GetLastErrorCode() == VARN_OK;
}

bool hasUriWithPath(std::string_view name, std::string_view value) {
  const std::string other = withoutPaths(name, value);
  return other != value && isAccepted(name, other);
}

// word = 1*(alphanum / "-" / "." / ... / "{" / "}")
bool isWord(std::string_view text) {
  constexpr std::string_view kOthers = "()<>:\\\"/[]?{}";
  return !text.empty() && std::all_of(text.begin(), text.end(), [&](char c) {
    return WySipIsToken(static_cast<unsigned char>(c)) != 0 ||
           kOthers.find(c) != std::string_view::npos;
  });
}

// callid = word [ "@" word ]
bool isCallId(std::string_view /*name*/, std::string_view value) {
  const std::size_t at = value.find('@');
  return isWord(value.substr(0, at)) &&
         (at == std::string_view::npos || isWord(value.substr(at + 1)));
}

// TEXT-UTF8-TRIM, without the folds
bool isFreeText(std::string_view /*name*/, std::string_view value) { return isPlainText(value); }

// extension-header: any text
bool isExtension(std::string_view name, std::string_view value) {
  return findField(name) == nullptr && isToken(name) && isPlainText(value);
}

struct Limit {
  const char* field;  // "" for any
  bool (*covers)(std::string_view name, std::string_view value);
  const char* words;
};

const Limit kLimits[] = {
    {"", hasUriWithPath, "a URI with \"/\" after its scheme (RFC 3261, 25.1, and RFC 8224, 4)"},
    {"", isExtension, "the text of an extension header (RFC 3261, 25.1)"},
    {"Call-ID", isCallId, "quotes or brackets in a Call-ID (RFC 3261, 25.1)"},
    {"In-Reply-To", isCallId, "quotes or brackets in a Call-ID (RFC 3261, 25.1)"},
    {"Organization", isFreeText, "free text (RFC 3261, 20.25)"},
    {"Subject", isFreeText, "free text (RFC 3261, 20.36)"},
};

}  // namespace

std::string limitOf(std::string_view name, std::string_view value) {
  const Diagnostics ignored;
  for (const Limit& limit : kLimits) {
    if ((*limit.field == '\0' || equalIgnoringCase(trimmed(name), limit.field)) &&
        limit.covers(trimmed(name), trimmed(value))) {
      return limit.words;
    }
  }
  return "";
}

bool isAbsoluteUri(std::string_view text) {
  const std::size_t scheme = lengthOf<SipAddressMatchScheme>(text);
  return scheme != 0 && text.substr(scheme, 1) == ":" && scheme + 1 < text.size() &&
         isUric(text.substr(scheme + 1));
}
