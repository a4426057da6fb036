// remarks.cpp - what is wrong with a message by the RFCs, whatever the library accepts.
#include "fields/remarks.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "fields/diagnostics.h"
#include "fields/place.h"
#include "fields/validSip.h"
#include "text/sip.h"
#include "text/text.h"
#include "wySipAddress.h"
#include "wySipHeader.h"
#include "wySipMatch.h"
#include "wyTelAddress.h"

namespace {

constexpr std::uint64_t kMaxSequence = (std::uint64_t{1} << 31U) - 1;

using View = std::string_view;

bool isNumber(View text, std::uint64_t least, std::uint64_t most) {
  std::uint64_t number = 0;
  return readNumber(text, number) && number >= least && number <= most;
}

// Removes the text before the next blanks, and these; returns it.
View takeWord(View& text) {
  const std::size_t end = std::min(text.find_first_of(" \t"), text.size());
  const View word = text.substr(0, end);
  text.remove_prefix(std::min(text.find_first_not_of(" \t", end), text.size()));
  return word;
}

// Returns the value of a field without its parameters.
View valueOf(const Field& field) {
  return trimmed(View{field.value}.substr(0, field.value.find(';')));
}

// A rule takes the start line and the value of its field. Returns whether the value keeps it.
using Rule = bool (*)(const StartLine& line, const Field& field);

template <std::uint64_t kLeast, std::uint64_t kMost>
bool isIn(const StartLine& /*line*/, const Field& field) {
  return isNumber(valueOf(field), kLeast, kMost);
}

bool isNumberAndMethod(View text) {
  return isNumber(takeWord(text), 0, kMaxSequence) && isToken(text);
}

bool isSequence(const StartLine& /*line*/, const Field& field) {
  return isNumberAndMethod(field.value);
}

bool hasTheMethod(const StartLine& line, const Field& field) {
  View rest = field.value;
  takeWord(rest);
  return line.response || line.method.empty() || !isToken(rest) || rest == line.method;
}

bool isAcknowledgement(const StartLine& /*line*/, const Field& field) {
  View rest = field.value;
  return isNumber(takeWord(rest), 1, UINT32_MAX) && isNumberAndMethod(rest);
}

bool isNotEmpty(const StartLine& /*line*/, const Field& field) { return !field.value.empty(); }

template <typename Match>
std::size_t lengthOf(View text) {
  Match rule;
  return rule.match(SipStrStream(toSipString(text)), 0);
}

// host [ COLON port ]: the library has read the value as any text.
bool isSentBy(View text) {
  const std::size_t host = lengthOf<SipMatchHost>(text);
  View rest = trimmed(text.substr(host));
  const bool port = !rest.empty() && rest.front() == ':';
  rest.remove_prefix(port ? 1 : 0);
  const bool bracketAlone = host == 1 && text.front() == '[';
  return host != 0 && !bracketAlone &&
         (port ? isNumber(trimmed(rest), 0, UINT16_MAX) : rest.empty());
}

// "SIP" SLASH "2.0" SLASH transport LWS sent-by
bool isVia(const StartLine& /*line*/, const Field& field) {
  const View value = valueOf(field);
  std::vector<View> words;
  std::size_t begin = 0;
  for (int slashes = 0; slashes < 2; ++slashes) {
    const std::size_t end = std::min(value.find('/', begin), value.size());
    words.push_back(trimmed(value.substr(begin, end - begin)));
    begin = std::min(end + 1, value.size());
  }
  View rest = trimmed(value.substr(begin));
  const bool transport = isToken(takeWord(rest));
  return equalIgnoringCase(words[0], "SIP") && words[1] == "2.0" && transport && isSentBy(rest);
}

// IPv4address / IPv6address as the parameter received, if there is one
bool isReceivedFromAddress(const StartLine& /*line*/, const Field& field) {
  constexpr View kReceived = ";received=";
  const std::size_t begin = field.value.find(kReceived);
  if (begin == std::string::npos) {
    return true;
  }
  const View rest = View{field.value}.substr(begin + kReceived.size());
  View address = trimmed(rest.substr(0, rest.find(';')));
  if (!address.empty() && address.front() == '[' && address.back() == ']') {
    address = address.substr(1, address.size() - 2);
  }
  return !address.empty() && (lengthOf<SipMatchIIPV4Address>(address) == address.size() ||
                              lengthOf<SipMatchIIPV6Address>(address) == address.size());
}

// icid-value EQUAL gen-value, first of all
bool isChargingVector(const StartLine& /*line*/, const Field& field) {
  constexpr View kIcid = "icid-value=";
  const View value = valueOf(field);
  return value.size() > kIcid.size() && equalIgnoringCase(value.substr(0, kIcid.size()), kIcid);
}

// warn-code SP warn-agent SP quoted-string
bool isWarning(const StartLine& /*line*/, const Field& field) {
  View rest = field.value;
  const bool code = isNumber(takeWord(rest), 100, 999);
  return code && !takeWord(rest).empty() && !rest.empty() && rest.front() == '"';
}

bool isSipUri(View text) {
  return SipAddress(toSipString('<' + std::string(text) + '>')).GetLastErrorCode() == VARN_OK;
}

bool isUri(View text) {
  const View scheme = text.substr(0, text.find(':'));
  return equalIgnoringCase(scheme, "sip") || equalIgnoringCase(scheme, "sips")
             ? isSipUri(text)
             : isAbsoluteUri(text);
}

bool hasBracket(const Field& field) { return field.value.find('<') != std::string::npos; }

// name-addr / addr-spec. The library has read what is in brackets, and takes quotes there.
bool isAddress(const StartLine& /*line*/, const Field& field) {
  const View value = field.value;
  const std::size_t open = value.find('<');
  const View before = trimmed(value.substr(0, open));
  if (!hasBracket(field)) {
    return value == "*" || isUri(valueOf(field));
  }
  if (!before.empty() && before.front() == '"') {
    return true;
  }
  return value.find('"', open) >= value.find('>', open) &&
         std::all_of(before.begin(), before.end(), [](char c) {
           return c == ' ' || c == '\t' || WySipIsToken(static_cast<unsigned char>(c)) != 0;
         });
}

bool isInBracketsIfNeeded(const StartLine& /*line*/, const Field& field) {
  return hasBracket(field) || valueOf(field).find_first_of("?,") == View::npos;
}

bool isInBrackets(const StartLine& /*line*/, const Field& field) { return hasBracket(field); }

// delta-seconds as the parameter expires, if there is one
bool expiresInSeconds(const StartLine& /*line*/, const Field& field) {
  constexpr View kExpires = ";expires=";
  const std::size_t begin = field.value.rfind(kExpires);
  if (begin == std::string::npos || field.value.find('>', begin) != std::string::npos) {
    return true;
  }
  const View rest = View{field.value}.substr(begin + kExpires.size());
  return isNumber(trimmed(rest.substr(0, rest.find_first_of(";, "))), 0, UINT32_MAX);
}

struct FieldRule {
  const char* field;
  Rule rule;
  const char* words;  // where the value breaks it
  const char* section;
};

constexpr const char* kNoSeconds = "is no number of seconds below 2^32";

const FieldRule kFieldRules[] = {
    {"Call-ID", isNotEmpty, "is empty", "RFC 3261, 20.8"},
    {"Contact", expiresInSeconds, "has an expires that is no number", "RFC 3261, 20.10"},
    {"CSeq", isSequence, "is not a number below 2^31 and a method", "RFC 3261, 20.16"},
    {"CSeq", hasTheMethod, "has another method than the request", "RFC 3261, 8.1.1.5"},
    {"Event", isNotEmpty, "is empty", "RFC 6665, 8.4"},
    {"Expires", isIn<0, UINT32_MAX>, kNoSeconds, "RFC 3261, 20.19"},
    {"Geolocation", isInBrackets, "is no URI in angle brackets", "RFC 6442, 4.1"},
    {"Max-Forwards", isIn<0, 255>, "is no number from 0 to 255", "RFC 3261, 20.22"},
    {"Min-Expires", isIn<0, UINT32_MAX>, kNoSeconds, "RFC 3261, 20.23"},
    {"Min-SE", isIn<0, UINT32_MAX>, kNoSeconds, "RFC 4028, 5"},
    {"P-Charging-Vector", isChargingVector, "does not begin with an icid-value", "RFC 7315, 5.6"},
    {"RAck", isAcknowledgement, "is not two numbers and a method", "RFC 3262, 7.2"},
    {"RSeq", isIn<1, UINT32_MAX>, "is no number from 1 to 2^32-1", "RFC 3262, 7.1"},
    {"Record-Route", isInBrackets, "is no URI in angle brackets", "RFC 3261, 20.30"},
    {"Route", isInBrackets, "is no URI in angle brackets", "RFC 3261, 20.34"},
    {"Session-Expires", isIn<0, UINT32_MAX>, kNoSeconds, "RFC 4028, 4"},
    {"Via", isVia, "is not SIP/2.0/TRANSPORT HOST", "RFC 3261, 20.42"},
    {"Via", isReceivedFromAddress, "has a received that is no IP address", "RFC 3261, 20.42"},
    {"Warning", isWarning, "is not a code, an agent and a text in quotes", "RFC 3261, 20.43"},
};

// Of every field whose value is an address.
const FieldRule kAddressRules[] = {
    {"", isAddress, "is no address", "RFC 3261, 25.1"},
    {"", isInBracketsIfNeeded, "has '?' or ',' outside angle brackets", "RFC 3261, 20"},
};

// Fields that a message has once, if at all: RFC 3261, 7.3.1.
const char* const kSingleFields[] = {
    "CSeq",
    "Call-ID",
    "Content-Disposition",
    "Content-Length",
    "Content-Type",
    "Date",
    "Event",
    "Expires",
    "From",
    "MIME-Version",
    "Max-Forwards",
    "Min-SE",
    "Min-Expires",
    "RAck",
    "RSeq",
    "Refer-To",
    "Subject",
    "Session-Expires",
    "To",
};

bool always(const StartLine& /*line*/, const Message& /*message*/) { return true; }

bool inRequest(const StartLine& line, const Message& /*message*/) { return !line.response; }

bool inInvite(const StartLine& line, const Message& /*message*/) { return line.method == "INVITE"; }

bool withBody(const StartLine& /*line*/, const Message& message) { return !message.body.empty(); }

struct RequiredField {
  const char* field;
  bool (*when)(const StartLine& line, const Message& message);
  const char* section;  // of RFC 3261
};

const RequiredField kRequiredFields[] = {
    {"Via", always, "8.1.1.7"},       {"From", always, "8.1.1.3"},
    {"To", always, "8.1.1.2"},        {"Call-ID", always, "8.1.1.4"},
    {"CSeq", always, "8.1.1.5"},      {"Max-Forwards", inRequest, "8.1.1.6"},
    {"Contact", inInvite, "8.1.1.8"}, {"Content-Type", withBody, "20.15"},
};

struct LineRule {
  bool (*rule)(const StartLine& line);
  const char* words;  // where the line breaks it
  const char* section;
};

// User-info may have a "?", but no "@".
bool hasHeaders(View uri) {
  const View scheme = uri.substr(0, uri.find(':'));
  const std::size_t at = uri.find('@');
  return (equalIgnoringCase(scheme, "sip") || equalIgnoringCase(scheme, "sips")) &&
         uri.find('?', at == View::npos ? 0 : at) != View::npos;
}

const LineRule kLineRules[] = {
    {[](const StartLine& line) { return line.response || isUri(line.uri); },
     "the Request-URI is no URI", "RFC 3261, 7.1"},
    {[](const StartLine& line) { return line.response || !hasHeaders(line.uri); },
     "the Request-URI has headers", "RFC 3261, 19.1.1"},
    {[](const StartLine& line) {
       return !line.response || (line.status.size() > 3 && line.status[3] == ' ');
     },
     "no blank follows the status code", "RFC 3261, 7.2"},
};

// Returns whether the library may not keep all of an address: it is read again only then.
bool mayLosePieces(View value) {
  constexpr View kTel = "tel:";
  constexpr View kPhone = "+-.()*#0123456789";
  const bool tel = value.substr(0, kTel.size()) == kTel;
  const std::size_t close = value.find('>');
  const std::size_t end = tel                   ? value.find_first_not_of(kPhone, kTel.size())
                          : close == View::npos ? close
                                                : value.find_first_not_of(" \t", close + 1);
  return value.find('?') != View::npos || (end != View::npos && value[end] != ';');
}

// Returns the pieces of an accepted address field that are in no piece of its address.
std::vector<std::string> notKeptOf(const Field& field) {
  const SipHeader header(toSipString(field.name), toSipString(field.value));
  const std::string value(header.GetLastErrorCode() == VARN_OK ? view(header.getValue()) : "");
  const SipAddress sip(toSipString(value));
  if (sip.GetLastErrorCode() == VARN_OK && !equalIgnoringCase(view(sip.getScheme()), "tel")) {
    return notKeptOfAddress(value);
  }
  const bool tel = TelAddress(toSipString(value)).GetLastErrorCode() == VARN_OK;
  return tel ? notKeptOfTel(value) : std::vector<std::string>();
}

// Returns the number of a known field, from 0.
std::size_t numberOf(const FieldKind& field) {
  return static_cast<std::size_t>(&field - knownFields().begin());
}

// The rules of each known field, by its number.
std::vector<std::vector<const FieldRule*>> indexRules() {
  std::vector<std::vector<const FieldRule*>> index(knownFields().count);
  for (const FieldRule& rule : kFieldRules) {
    index[numberOf(*findField(rule.field))].push_back(&rule);
  }
  return index;
}

class Reader {
 public:
  explicit Reader(const Message& message)
      : message_(message), line_(message.startLine), counts_(knownFields().count) {}

  // A line that is no start line at all begins no message.
  std::vector<Remark> read() {
    if (line_.version.substr(0, 4) != "SIP/") {
      return {};
    }
    const bool startLine = isStartLine(message_.startLine);  // else that is the fault
    for (const LineRule& rule : kLineRules) {
      if (startLine && !rule.rule(line_)) {
        add(rule.words, message_.startLine, rule.section, nullptr);
      }
    }
    for (const Field& field : message_.fields) {
      if (field.kind != nullptr) {
        read(field);
      }
    }
    for (const char* name : kSingleFields) {
      if (count(name) > 1) {
        add("more than one " + std::string(name), "", "RFC 3261, 7.3.1", nullptr);
      }
    }
    lookForMissing();
    return std::move(remarks_);
  }

 private:
  void read(const Field& field) {
    static const std::vector<std::vector<const FieldRule*>> index = indexRules();
    const std::size_t number = numberOf(*field.kind);
    ++counts_[number];
    for (const FieldRule* rule : index[number]) {
      apply(*rule, field);
    }
    if (field.kind->address) {
      readAddress(field);
    }
  }

  void readAddress(const Field& field) {
    for (const FieldRule& rule : kAddressRules) {
      apply(rule, field);
    }
    if (!mayLosePieces(field.value)) {
      return;
    }
    for (const std::string& piece : notKeptOf(field)) {
      remarks_.push_back(
          {"not kept of " + std::string(field.kind->name), piece, "", &field, false});
    }
  }

  void apply(const FieldRule& rule, const Field& field) {
    if (!rule.rule(line_, field)) {
      add(std::string(field.kind->name) + ' ' + rule.words, field.value, rule.section, &field);
    }
  }

  void add(const std::string& words, const std::string& text, const char* section,
           const Field* field) {
    remarks_.push_back({words, text, section, field, true});
  }

  std::size_t count(View name) const { return counts_[numberOf(*findField(name))]; }

  void lookForMissing() {
    std::string missing;
    for (const RequiredField& required : kRequiredFields) {
      if (required.when(line_, message_) && count(required.field) == 0) {
        missing.append(missing.empty() ? "" : ", ").append(required.field);
        missing.append(" (").append(required.section).append(")");
      }
    }
    if (!missing.empty()) {
      remarks_.push_back({"missing by RFC 3261: " + missing, "", "", nullptr, false});
    }
  }

  const Message& message_;
  StartLine line_;
  std::vector<std::size_t> counts_;  // of each known field
  std::vector<Remark> remarks_;
};

}  // namespace

std::vector<Remark> remarksOn(const Message& message) {
  const Diagnostics ignored;
  return Reader(message).read();
}

std::string lineOf(const Remark& remark) {
  std::string line = remark.words + (remark.text.empty() ? "" : ": ") + remark.text;
  return *remark.section == '\0' ? line : line + " (" + remark.section + ')';
}

std::string remarkCount(unsigned long count) {
  return count == 0 ? "" : ", " + counted(count, "remark");
}
