// address.cpp - siputil address: splits SIP addresses into pieces, edits them and writes them back.

#include "commands/textCommand.h"
#include "text/sip.h"
#include "text/text.h"

namespace {

std::string checkEdit(const Edit& edit) {
  unsigned short port = 0;
  return edit.name != "port" || readNumber(edit.value, port) ? "" : "a number from 0 to 65535";
}

VARN_EXCEPTION_CODES setPort(SipAddress& address, const SipString& value) {
  unsigned short port = 0;
  readNumber(view(value), port);
  address.setPort(port);
  return address.GetLastErrorCode();
}

using Text = const SipString&;

const Setter<SipAddress> kSetters[] = {
    {"displayName", [](SipAddress& a, Text value) { return a.setDisplayName(value); }},
    {"scheme", [](SipAddress& a, Text value) { return a.setScheme(value); }},
    {"user", [](SipAddress& a, Text value) { return a.setUser(value); }},
    {"host", [](SipAddress& a, Text value) { return a.setHost(value); }},
    {"port", setPort},
    {"uri", [](SipAddress& a, Text value) { return a.setURI(value); }},
};

struct AddressReading : Reading {
  AddressReading(const Options& options, const std::string& text) : address(toSipString(text)) {
    if (address.GetLastErrorCode() != VARN_OK) {
      place = placeInAddress(text);
    } else {
      notKept = notKeptOfAddress(text);
      addNotKept(*this, notKept);
    }
    code = applyAll(address, options.edits, kSetters);
  }

  nlohmann::ordered_json json() override {
    nlohmann::ordered_json object = toJson(address, code);
    object["notKept"] = notKept;
    return object;
  }

  Pieces line() override { return with(pieces(address), "text", address.toString()); }

  Pieces lines() override {
    Pieces shown = pieces(address);
    shown.emplace_back("effective port", std::to_string(address.getPort()));
    return with(with(shown, "uri", address.getURI()), "text", address.toString());
  }

  SipAddress address;
  std::vector<std::string> notKept;
};

}  // namespace

int runAddress(CommandLine& line) {
  Options options;
  addTextOptions(line.parser, options, namesOf(kSetters), checkEdit);
  line.parse();
  return readEachText<AddressReading>(options);
}
