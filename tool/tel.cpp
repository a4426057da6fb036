// tel.cpp - siputil tel: takes tel addresses apart, edits them, turns them into SIP addresses.
#include <optional>

#include "textCommand.h"

namespace {

using Text = const SipString&;

const Setter<TelAddress> kSetters[] = {
    {"phoneNumber", [](TelAddress& a, Text value) { return a.setPhoneNumber(value); }},
    {"isub", [](TelAddress& a, Text value) { return a.setISDNSubAddr(value); }},
    {"ext", [](TelAddress& a, Text value) { return a.setExtension(value); }},
    {"phone-context", [](TelAddress& a, Text value) { return a.setContext(value); }},
    {"displayName", [](TelAddress& a, Text value) { return a.setDisplayName(value); }},
};

struct TelOptions : Options {
  std::optional<std::string> target;  // of the conversion
};

// Makes the SIP form in the target, the text of which is left "" without one.
VARN_EXCEPTION_CODES convert(TelAddress& tel, const std::optional<std::string>& target,
                             std::string& sip) {
  if (!target) {
    return VARN_OK;
  }
  SipAddress address(sipString(*target));
  VARN_EXCEPTION_CODES code = address.GetLastErrorCode();
  if (code == VARN_OK) {
    code = tel.toSipAddress(address);
  }
  if (code == VARN_OK) {
    sip = bytes(address.toString());
  }
  return code;
}

int runOn(const TelOptions& options, const std::string& text, unsigned long line) {
  const Diagnostics diagnostics;
  TelAddress tel(sipString(text));
  std::string sip;
  Result result;
  result.code = applyAll(tel, options.edits, kSetters);
  if (result.code == VARN_OK) {
    result.code = convert(tel, options.target, sip);
  }
  const auto withSip = [&sip](Pieces shown) {
    if (!sip.empty()) {
      shown.emplace_back("sip", sip);
    }
    return shown;
  };
  result.json = [&] {
    nlohmann::ordered_json object = toJson(tel, result.code);
    object["sip"] = sip.empty() ? nullptr : nlohmann::ordered_json(sip);
    return object;
  };
  result.line = [&] { return withSip(with(pieces(tel), "text", tel.toString())); };
  result.lines = result.line;
  return show(result, options, diagnostics, line);
}

}  // namespace

std::function<int()> prepareTel(CLI::App& parser) {
  const auto options = std::make_shared<TelOptions>();
  addTextOptions(parser, *options, namesOf(kSetters), [](const Edit&) { return std::string(); });
  parser.add_option("--to-sip", options->target, "Make this SIP address the number's SIP form")
      ->type_name("ADDRESS");
  return runOnEachText<TelOptions>(options, runOn);
}
