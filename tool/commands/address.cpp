// address.cpp - siputil address: splits SIP addresses into pieces, edits them and writes them back.
#include "commands/textCommand.h"

namespace {

struct AddressReading : Reading {
  AddressReading(const Options& options, const std::string& text) : address(toSipString(text)) {
    if (address.GetLastErrorCode() != VARN_OK) {
      place = placeInAddress(text);
    } else {
      notKept = notKeptOfAddress(text);
      addNotKept(*this, notKept);
    }
    code = applyAll(address, options.edits);
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
  addTextOptions(line.parser, options, addressPieceNames());
  line.parse();
  return readEachText<AddressReading>(options);
}
