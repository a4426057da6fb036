// fields.cpp - the header fields that SIP and its IMS extensions define, as far as reading goes.
#include "fields.h"

#include "text.h"

namespace {

constexpr bool kList = true;
constexpr bool kAddress = true;

const FieldKind kFields[] = {
    {"Accept", 0, kList, false},
    {"Accept-Contact", 'a', kList, false},
    {"Accept-Encoding", 0, kList, false},
    {"Accept-Language", 0, kList, false},
    {"Accept-Resource-Priority", 0, kList, false},
    {"Alert-Info", 0, kList, false},
    {"Allow", 0, kList, false},
    {"Allow-Events", 'u', kList, false},
    {"Call-ID", 'i', false, false},
    {"Call-Info", 0, kList, false},
    {"Contact", 'm', kList, kAddress},
    {"Content-Encoding", 'e', kList, false},
    {"Content-Language", 0, kList, false},
    {"Content-Length", 'l', false, false},
    {"Content-Type", 'c', false, false},
    {"Diversion", 0, kList, kAddress},
    {"Error-Info", 0, kList, false},
    {"Event", 'o', false, false},
    {"Feature-Caps", 0, kList, false},
    {"From", 'f', false, kAddress},
    {"Geolocation", 0, kList, false},
    {"History-Info", 0, kList, kAddress},
    {"Identity", 'y', false, false},
    {"Identity-Info", 'n', false, false},
    {"In-Reply-To", 0, kList, false},
    {"P-Access-Network-Info", 0, kList, false},
    {"P-Asserted-Identity", 0, kList, kAddress},
    {"P-Asserted-Service", 0, kList, false},
    {"P-Associated-URI", 0, kList, kAddress},
    {"P-Called-Party-ID", 0, false, kAddress},
    {"P-Charge-Info", 0, false, kAddress},
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
    {"Proxy-Require", 0, kList, false},
    {"Reason", 0, kList, false},
    {"Record-Route", 0, kList, kAddress},
    {"Recv-Info", 0, kList, false},
    {"Refer-To", 'r', false, kAddress},
    {"Referred-By", 'b', false, kAddress},
    {"Reject-Contact", 'j', kList, false},
    {"Remote-Party-ID", 0, kList, kAddress},
    {"Reply-To", 0, false, kAddress},
    {"Request-Disposition", 'd', kList, false},
    {"Require", 0, kList, false},
    {"Resource-Priority", 0, kList, false},
    {"Route", 0, kList, kAddress},
    {"Security-Client", 0, kList, false},
    {"Security-Server", 0, kList, false},
    {"Security-Verify", 0, kList, false},
    {"Service-Route", 0, kList, kAddress},
    {"Session-Expires", 'x', false, false},
    {"Subject", 's', false, false},
    {"Supported", 'k', kList, false},
    {"To", 't', false, kAddress},
    {"Unsupported", 0, kList, false},
    {"User-to-User", 0, kList, false},
    {"Via", 'v', kList, false},
    {"Warning", 0, kList, false},
};

// Where a walk over a value stands: between angle brackets, quotes, or neither.
class Nesting {
 public:
  // Takes the next character in; returns whether it stands outside of both.
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
  for (const FieldKind& field : kFields) {
    if (sameIgnoringCase(name, field.name) ||
        (field.compact != 0 && sameIgnoringCase(name, {&field.compact, 1}))) {
      return &field;
    }
  }
  return nullptr;
}

std::vector<std::string_view> splitList(std::string_view text) {
  std::vector<std::string_view> pieces;
  Nesting nesting;
  std::size_t start = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (nesting.outsideAt(text[i]) && text[i] == ',') {
      pieces.push_back(text.substr(start, i - start));
      start = i + 1;
    }
  }
  pieces.push_back(text.substr(start));
  return pieces;
}
