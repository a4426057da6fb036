// address.cpp - siputil address: splits SIP addresses into pieces, edits them and writes them back.
#include <charconv>

#include "textCommand.h"

namespace {

// Reads a text as a port number; false when it is none.
bool readPort(std::string_view text, unsigned short& port) {
  const char* end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, port);
  return result.ec == std::errc() && result.ptr == end;
}

std::string checkEdit(const Edit& edit) {
  unsigned short port = 0;
  return edit.name != "port" || readPort(edit.value, port) ? "" : "a number from 0 to 65535";
}

VARN_EXCEPTION_CODES setPort(SipAddress& address, const SipString& value) {
  unsigned short port = 0;
  readPort(view(value), port);
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
    code = applyAll(address, options.edits, kSetters);
  }

  nlohmann::ordered_json json() override { return toJson(address, code); }

  Pieces line() override { return with(pieces(address), "text", address.toString()); }

  Pieces lines() override {
    Pieces shown = pieces(address);
    shown.emplace_back("effective port", std::to_string(address.getPort()));
    return with(with(shown, "uri", address.getURI()), "text", address.toString());
  }

  SipAddress address;
};

}  // namespace

int runAddress(CommandLine& line) {
  Options options;
  addTextOptions(line.parser, options, namesOf(kSetters), checkEdit);
  line.parse();
  return readEachText<AddressReading>(options);
}
