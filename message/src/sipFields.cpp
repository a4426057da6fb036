// sipFields.cpp - the header fields that SIP and its IMS extensions define, as reading needs them.
#include "sipFields.h"

#include <iterator>

#include "wySipCxx.h"

namespace siputility {

namespace {

constexpr std::size_t kLongestName = 24;
constexpr bool kList = true;
constexpr bool kAddress = true;

const FieldKind kFields[] = {
    {"Accept", 0, kList, false},
    {"Accept-Contact", 'a', kList, false},
    {"Accept-Encoding", 0, kList, false},
    {"Accept-Language", 0, kList, false},
    {"Accept-Resource-Priority", 0, kList, false},
    {"Additional-Identity", 0, false, false},
    {"Alert-Info", 0, kList, false},
    {"AlertMsg-Error", 0, false, false},
    {"Allow", 0, kList, false},
    {"Allow-Events", 'u', kList, false},
    {"Answer-Mode", 0, false, false},
    {"Attestation-Info", 0, false, false},
    {"Authentication-Info", 0, false, false},
    {"Authorization", 0, false, false},
    {"CSeq", 0, false, false},
    {"Call-ID", 'i', false, false},
    {"Call-Info", 0, kList, false},
    {"Cellular-Network-Info", 0, false, false},
    {"Contact", 'm', kList, kAddress},
    {"Content-Disposition", 0, false, false},
    {"Content-Encoding", 'e', kList, false},
    {"Content-Language", 0, kList, false},
    {"Content-Length", 'l', false, false},
    {"Content-Type", 'c', false, false},
    {"DC-Info", 0, false, false},
    {"Date", 0, false, false},
    {"Diversion", 0, kList, kAddress},
    {"Error-Info", 0, kList, false},
    {"Event", 'o', false, false},
    {"Expires", 0, false, false},
    {"Feature-Caps", 0, kList, false},
    {"Flow-Timer", 0, false, false},
    {"From", 'f', false, kAddress},
    {"Geolocation", 0, kList, false},
    {"Geolocation-Error", 0, false, false},
    {"Geolocation-Routing", 0, false, false},
    {"History-Info", 0, kList, kAddress},
    {"Identity", 'y', false, false},
    {"Identity-Info", 'n', false, false},
    {"In-Reply-To", 0, kList, false},
    {"Info-Package", 0, false, false},
    {"Join", 0, false, false},
    {"MIME-Version", 0, false, false},
    {"Max-Breadth", 0, false, false},
    {"Max-Forwards", 0, false, false},
    {"Min-Expires", 0, false, false},
    {"Min-SE", 0, false, false},
    {"Organization", 0, false, false},
    {"Origination-Id", 0, false, false},
    {"P-Access-Network-Info", 0, kList, false},
    {"P-Asserted-Identity", 0, kList, kAddress},
    {"P-Asserted-Service", 0, kList, false},
    {"P-Associated-URI", 0, kList, kAddress},
    {"P-Called-Party-ID", 0, false, kAddress},
    {"P-Charge-Info", 0, false, kAddress},
    {"P-Charging-Vector", 0, false, false},
    {"P-Early-Media", 0, kList, false},
    {"P-Media-Authorization", 0, kList, false},
    {"P-Preferred-Identity", 0, kList, kAddress},
    {"P-Preferred-Service", 0, kList, false},
    {"P-Profile-Key", 0, false, kAddress},
    {"P-Refused-URI-List", 0, kList, kAddress},
    {"P-Served-User", 0, false, kAddress},
    {"P-Visited-Network-ID", 0, kList, false},
    {"Path", 0, kList, kAddress},
    {"Permission-Missing", 0, kList, kAddress},
    {"Policy-Contact", 0, kList, false},
    {"Priority", 0, false, false},
    {"Priority-Share", 0, false, false},
    {"Priority-Verstat", 0, false, false},
    {"Priv-Answer-Mode", 0, false, false},
    {"Privacy", 0, false, false},
    {"Proxy-Authenticate", 0, false, false},
    {"Proxy-Authorization", 0, false, false},
    {"Proxy-Require", 0, kList, false},
    {"RAck", 0, false, false},
    {"RSeq", 0, false, false},
    {"Reason", 0, kList, false},
    {"Record-Route", 0, kList, kAddress},
    {"Recv-Info", 0, kList, false},
    {"Refer-Events-At", 0, false, false},
    {"Refer-Sub", 0, false, false},
    {"Refer-To", 'r', false, kAddress},
    {"Referred-By", 'b', false, kAddress},
    {"Reject-Contact", 'j', kList, false},
    {"Relayed-Charge", 0, false, false},
    {"Remote-Party-ID", 0, kList, kAddress},
    {"Replaces", 0, false, false},
    {"Reply-To", 0, false, kAddress},
    {"Request-Disposition", 'd', kList, false},
    {"Require", 0, kList, false},
    {"Resource-Priority", 0, kList, false},
    {"Resource-Share", 0, false, false},
    {"Response-Source", 0, false, false},
    {"Restoration-Info", 0, false, false},
    {"Retry-After", 0, false, false},
    {"Route", 0, kList, kAddress},
    {"SIP-ETag", 0, false, false},
    {"SIP-If-Match", 0, false, false},
    {"Security-Client", 0, kList, false},
    {"Security-Server", 0, kList, false},
    {"Security-Verify", 0, kList, false},
    {"Server", 0, false, false},
    {"Service-Interact-Info", 0, false, false},
    {"Service-Route", 0, kList, kAddress},
    {"Session-Expires", 'x', false, false},
    {"Session-ID", 0, false, false},
    {"Subject", 's', false, false},
    {"Subscription-State", 0, false, false},
    {"Supported", 'k', kList, false},
    {"Suppress-If-Match", 0, false, false},
    {"Target-Dialog", 0, false, false},
    {"Timestamp", 0, false, false},
    {"To", 't', false, kAddress},
    {"Trigger-Consent", 0, false, false},
    {"Unsupported", 0, kList, false},
    {"User-Agent", 0, false, false},
    {"User-to-User", 0, kList, false},
    {"Via", 'v', kList, false},
    {"WWW-Authenticate", 0, false, false},
    {"Warning", 0, kList, false},
};

// The fields by the length of a name; those of length 1 by their compact form.
class LengthIndex {
 public:
  LengthIndex() : fields_(kLongestName + 1) {
    for (const FieldKind& field : kFields) {
      fields_[field.name.size()].push_back(&field);
      if (field.compact != 0) {
        fields_[1].push_back(&field);
      }
    }
  }

  const std::vector<const FieldKind*>& ofLength(std::size_t length) const {
    return fields_[length > kLongestName ? 0 : length];
  }

 private:
  std::vector<std::vector<const FieldKind*>> fields_;
};

// Whether a walk over a value is between angle brackets, between quotes, or neither.
class Nesting {
 public:
  // Takes the next character; returns whether it is outside of both.
  bool outsideAt(char c) {
    if (escaped_) {
      escaped_ = false;
    } else if (quoted_) {
      escaped_ = c == '\\';
      quoted_ = c != '"';
    } else if (c == '"') {
      quoted_ = true;
    } else if (c == '<') {
      bracketed_ = true;
    } else if (c == '>') {
      bracketed_ = false;
    }
    return !quoted_ && !bracketed_;
  }

 private:
  bool escaped_ = false;
  bool quoted_ = false;
  bool bracketed_ = false;
};

}  // namespace

const FieldKind* findField(std::string_view name) {
  static const LengthIndex index;
  for (const FieldKind* field : index.ofLength(name.size())) {
    const std::string_view known =
        name.size() == 1 ? std::string_view{&field->compact, 1} : field->name;
    if (equalIgnoringCase(name, known)) {
      return field;
    }
  }
  return nullptr;
}

FieldTable knownFields() { return {kFields, std::size(kFields)}; }

std::vector<std::string_view> splitList(std::string_view text, char separator) {
  std::vector<std::string_view> pieces;
  Nesting nesting;
  std::size_t start = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (nesting.outsideAt(text[i]) && text[i] == separator) {
      pieces.push_back(text.substr(start, i - start));
      start = i + 1;
    }
  }
  pieces.push_back(text.substr(start));
  return pieces;
}

}  // namespace siputility
