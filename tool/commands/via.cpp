// via.cpp - siputil via: what the value of a Via header field reduces to.
#include "commands/via.h"

#include "commands/textCommand.h"
#include "wySipCxx.h"
#include "wySipUtils.h"

namespace {

using siputility::HandedOut;

// Returns an object as JSON, null for none.
template <typename Object>
nlohmann::ordered_json jsonOrNull(const HandedOut<Object>& object) {
  return object == nullptr ? nullptr : toJson(*object, VARN_OK);
}

struct ViaReading : Reading {
  ViaReading(const Options& /*options*/, const std::string& text)
      : address(ParseViaHeaderToAdress(text.c_str())),
        header(ParseViaHeaderToHeader(text.c_str())) {
    code = address != nullptr && header != nullptr ? VARN_OK : VARN_INVALID_INPUT;
  }

  nlohmann::ordered_json json() override {
    nlohmann::ordered_json object;
    object["ok"] = code == VARN_OK;
    object["sentBy"] = jsonOrNull(address);
    object["header"] = jsonOrNull(header);
    return object;
  }

  Pieces line() override { return reductions(""); }
  Pieces lines() override { return reductions("  "); }

  Pieces reductions(const std::string& indent) const {
    Pieces shown = with({}, "sent by", address->getURI());
    for (const auto& [label, value] : pieces(*address)) {
      shown.emplace_back(indent + label, value);
    }
    shown.emplace_back("header", view(header->toString()));
    for (const auto& [label, value] : pieces(*header)) {
      shown.emplace_back(indent + label, value);
    }
    return shown;
  }

  HandedOut<SipAddress> address;
  HandedOut<SipHeader> header;
};

}  // namespace

std::string sentByUri(const std::string& via) {
  const Diagnostics ignored;
  const HandedOut<SipAddress> address(ParseViaHeaderToAdress(via.c_str()));
  return address == nullptr ? std::string() : toStdString(address->getURI());
}

int runVia(CommandLine& line) {
  Options options;
  addTextArgument(line.parser, options);
  line.parse();
  return readEachText<ViaReading>(options);
}
