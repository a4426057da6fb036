// place.cpp - where the library stopped in a text that it refused, and what it left out of one that
// it accepted.
#include "fields/place.h"

#include <algorithm>
#include <cstdio>

#include "fields/diagnostics.h"
#include "text/sip.h"
#include "text/text.h"
#include "wySipAddress.h"
#include "wySipHeader.h"
#include "wySipHeaderMatch.h"
#include "wySipMatch.h"
#include "wyTelAddress.h"

namespace {

// The bytes of a long text that are shown before and after a place.
constexpr std::size_t kShownBefore = 56;
constexpr std::size_t kShownAfter = 20;

// The steps of reading an address, which keep their place in the stream.
class AddressSteps : public SipAddress {
 public:
  AddressSteps() : SipAddress(SipString("*")) {}

  // Reads an address as the constructor does.
  VARN_EXCEPTION_CODES read(SipStrStream& stream) {
    SipAddressMatchScheme rule;
    const unsigned int length = rule.match(stream, 0);
    return length != 0 && stream.peek(length) == ':'
               ? parseAddrSpec(stream, &scheme, &user, &host, &port, &params)
               : parseNameAddr(stream, &displayName, &scheme, &user, &host, &port, &params);
  }

  VARN_EXCEPTION_CODES readBracketed(SipStrStream& stream) {
    return parseURI(stream, &scheme, &user, &host, &port, &params);
  }

  SipString displayName;
  SipString scheme;
  SipString user;
  SipString host;
  SipPort port;
  SipAddrParamList params;
};

std::string_view rest(std::string_view text, std::size_t offset) {
  return text.substr(std::min(offset, text.size()));
}

std::size_t positionOf(const SipStrStream& stream) { return stream.pos(); }

// Moves past a tel address, as far as it goes.
void readTel(SipStrStream& stream) {
  TelAddress tel(SipString("tel:0"));
  SipString name;
  SipString number;
  SipString isub;
  SipString ext;
  SipString context;
  TelAddrParamList params;
  tel.parseTelNameAddr(stream, &name, &number, &isub, &ext, &context, &params);
}

// A letter or digit may begin nearly every piece: what is wrong then comes after it.
std::string wordsOfByte(std::string_view text, std::size_t offset) {
  if (offset >= text.size()) {
    return "the text ends here";
  }
  const auto byte = static_cast<unsigned char>(text[offset]);
  if (WySipIsAlnum(byte) != 0) {
    return "";
  }
  char shown[sizeof("byte 0xff")] = "a blank";
  if (byte != ' ') {
    const bool visible = byte > ' ' && byte < 0x7F;
    std::snprintf(shown, sizeof(shown), visible ? "'%c'" : "byte 0x%02x", byte);
  }
  return std::string(shown) + " is not allowed here";
}

Place placeAt(std::string_view text, std::size_t offset, std::string words = "") {
  return {std::min(offset, text.size()), std::move(words), wordsOfByte(text, offset)};
}

// Returns the scheme that a text or its bracket begins with; "" for none.
std::string_view schemeOf(std::string_view text) {
  const std::size_t bracket = text.find('<');
  const std::size_t start = bracket == std::string_view::npos ? 0 : bracket + 1;
  const std::string_view uri = rest(text, std::max(start, text.find_first_not_of(" \t", start)));
  const std::string_view scheme = uri.substr(0, uri.find(':'));
  SipAddressMatchScheme rule;
  const bool matches = scheme.size() < uri.size() && !scheme.empty() &&
                       rule.match(SipStrStream(toSipString(scheme)), 0) == scheme.size();
  return matches ? scheme : std::string_view();
}

// Returns the offset of the first byte that begins no piece of a run of a header value.
std::size_t badByteOffset(std::string_view value, std::size_t offset) {
  while (offset < value.size()) {
    const auto byte = static_cast<unsigned char>(value[offset]);
    const bool space = byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n';
    if (byte == '>' || (byte < ' ' && !space) || byte >= 0x7F) {
      return offset;
    }
    const char close = byte == '<' ? '>' : '"';
    const bool opens = byte == '<' || byte == '"';
    offset = (opens ? std::min(value.find(close, offset + 1), value.size()) : offset) + 1;
  }
  return offset;
}

// Returns where a bracket is refused: as an address where it begins like one, else at its begin.
std::size_t placeInBracket(std::string_view value, std::size_t offset) {
  SipStrStream stream(toSipString(rest(value, offset)));
  AddressSteps steps;
  steps.readBracketed(stream);
  return offset + positionOf(stream);
}

std::size_t placeInValue(const std::string& name, std::string_view value) {
  const SipHeader named(toSipString(name), SipString());
  SipLWSStrStream stream(toSipString(value));
  SipHeaderMatchValue rule(named.getHeaderType());
  const std::size_t start = positionOf(stream);
  const std::size_t length = rule.match(stream, 0);
  if (length != 0) {
    stream.discard(static_cast<unsigned int>(std::min(length, value.size() - start)));
    SipHdrParamList params;
    params.setHeaderType(named.getHeaderType());
    params.parseParamList(stream);
  }
  const std::size_t position = positionOf(stream);
  const std::size_t next = std::min(value.find_first_not_of(" \t\r\n", position), value.size());
  if (next < value.size() && value[next] == '<') {
    return placeInBracket(value, next);
  }
  // After white space the rule has tried a further run.
  const bool run = next < value.size() && value[next] != '"';
  const bool further = next != position && rest(value, next).substr(0, 1) != ";";
  return run && (length == 0 || further) ? badByteOffset(value, next) : position;
}

// Adds what the stream has not read, without the white space around it.
void addRest(std::vector<std::string>& pieces, const SipStrStream& stream, std::string_view text) {
  if (!stream.done()) {
    pieces.emplace_back(trimmed(rest(text, positionOf(stream))));
  }
}

}  // namespace

Place placeInAddress(const std::string& text) {
  const Diagnostics ignored;
  const std::string_view scheme = schemeOf(text);
  if (!scheme.empty() && !equalIgnoringCase(scheme, "sip") && !equalIgnoringCase(scheme, "sips")) {
    return placeAt(text, static_cast<std::size_t>(scheme.data() - text.data()),
                   "the scheme of a SIP address is sip or sips, not " + printable(scheme));
  }
  SipLWSStrStream stream(toSipString(text));
  AddressSteps steps;
  const bool complete = steps.read(stream) == VARN_OK;
  const std::size_t offset = positionOf(stream);
  if (complete) {
    return placeAt(text, offset, "text follows the URI");
  }
  const bool unopened = steps.displayName.length() != 0 && steps.scheme.length() == 0 &&
                        text.find('<', 0) == std::string::npos;
  return placeAt(text, offset, unopened ? "neither a scheme nor an angle bracket comes first" : "");
}

Place placeInTel(const std::string& text) {
  const Diagnostics ignored;
  const std::string_view scheme = schemeOf(text);
  if (!scheme.empty() && scheme != "tel") {
    return placeAt(text, static_cast<std::size_t>(scheme.data() - text.data()),
                   "the scheme of a tel address is tel, in lower case, not " + printable(scheme));
  }
  SipLWSStrStream stream(toSipString(text));
  readTel(stream);
  return placeAt(text, positionOf(stream));
}

Place placeInHeader(const std::string& field) {
  const Diagnostics ignored;
  const std::size_t colon = std::min(field.find(':'), field.size());
  const std::string name = field.substr(0, colon);
  const SipHeader named(toSipString(name), SipString());
  if (colon == field.size() || named.GetLastErrorCode() != VARN_OK) {
    SipLWSStrStream stream(toSipString(name));
    SipMatchToken token;
    return placeAt(field, positionOf(stream) + token.match(stream, 0));
  }
  return placeAt(field, colon + 1 + placeInValue(name, rest(field, colon + 1)));
}

// The headers of a URI, and what follows its bracket. User-info may have a "?".
std::vector<std::string> notKeptOfAddress(const std::string& text) {
  const Diagnostics ignored;
  SipLWSStrStream stream(toSipString(text));
  AddressSteps steps;
  if (steps.read(stream) != VARN_OK) {
    return {};
  }
  std::vector<std::string> pieces;
  const std::size_t end = positionOf(stream);
  const std::string_view read = std::string_view{text}.substr(0, end);
  const std::size_t bracket = read.rfind('<');
  const std::size_t begin = bracket == std::string_view::npos ? 0 : bracket;
  const std::string_view uri = read.substr(begin, read.find('>', begin) - begin);
  const std::size_t user = steps.user.length() == 0 ? 0 : uri.rfind('@');
  const std::size_t headers = uri.find('?', user);
  if (headers != std::string_view::npos) {
    pieces.emplace_back(uri.substr(headers));
  }
  addRest(pieces, stream, text);
  return pieces;
}

std::vector<std::string> notKeptOfTel(const std::string& text) {
  const Diagnostics ignored;
  SipLWSStrStream stream(toSipString(text));
  readTel(stream);
  std::vector<std::string> pieces;
  addRest(pieces, stream, text);
  return pieces;
}

std::string caretLines(std::string_view text, std::size_t offset) {
  const std::size_t begin = offset > kShownBefore ? offset - kShownBefore : 0;
  const std::string before = printable(text.substr(begin, offset - begin));
  const std::string after = printable(text.substr(offset, kShownAfter));
  return "  " + before + after + "\n  " + std::string(widthOf(before), ' ') + "^\n";
}
