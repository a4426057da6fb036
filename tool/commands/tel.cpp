// tel.cpp - siputil tel: splits tel addresses into pieces, edits them, converts them to SIP
// addresses.
#include <optional>

#include "commands/textCommand.h"

namespace {

struct TelOptions : Options {
  std::optional<std::string> target;  // of the conversion
};

// Makes the SIP form in the target; without a target sip stays "".
VARN_EXCEPTION_CODES convert(TelAddress& tel, const std::optional<std::string>& target,
                             std::string& sip, std::string& reason) {
  if (!target) {
    return VARN_OK;
  }
  SipAddress address(toSipString(*target));
  VARN_EXCEPTION_CODES code = address.GetLastErrorCode();
  if (code == VARN_OK) {
    code = tel.toSipAddress(address);
  } else if (const Place found = placeInAddress(*target); !found.words.empty()) {
    reason = "--to-sip: " + found.words;
  }
  if (code == VARN_OK) {
    sip = view(address.toString());
  }
  return code;
}

struct TelReading : Reading {
  TelReading(const TelOptions& options, const std::string& text) : tel(toSipString(text)) {
    if (tel.GetLastErrorCode() != VARN_OK) {
      place = placeInTel(text);
    } else {
      notKept = notKeptOfTel(text);
      addNotKept(*this, notKept);
    }
    code = applyAll(tel, options.edits);
    if (code == VARN_OK) {
      code = convert(tel, options.target, sip, reason);
    }
  }

  nlohmann::ordered_json json() override {
    nlohmann::ordered_json object = toJson(tel, code);
    object["sip"] = sip.empty() ? nullptr : nlohmann::ordered_json(sip);
    object["notKept"] = notKept;
    return object;
  }

  Pieces line() override {
    Pieces shown = with(pieces(tel), "text", tel.toString());
    if (!sip.empty()) {
      shown.emplace_back("sip", sip);
    }
    return shown;
  }

  TelAddress tel;
  std::string sip;  // "" without a target
  std::vector<std::string> notKept;
};

}  // namespace

int runTel(CommandLine& line) {
  TelOptions options;
  addTextOptions(line.parser, options, telPieceNames());
  line.parser.add_option("--to-sip", options.target, "Make this SIP address the number's SIP form")
      ->type_name("ADDRESS");
  line.parse();
  return readEachText<TelReading>(options);
}
