// via.cpp - siputil via: what the value of a Via header field reduces to.
#include "via.h"

#include <memory>

#include "imsdpl.h"
#include "textCommand.h"
#include "wySipUtils.h"

namespace {

constexpr int kMemoryCategory = 2;

// Deletes an object that a function of the library handed out.
struct Deleter {
  template <typename Object>
  void operator()(Object* object) const {
    pzmemlog_remove(kMemoryCategory, object);
    delete object;
  }
};

// Returns an object as JSON, null for none.
template <typename Object>
nlohmann::ordered_json jsonOrNull(const std::unique_ptr<Object, Deleter>& object) {
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
    shown.emplace_back("header", bytes(header->toString()));
    for (const auto& [label, value] : pieces(*header)) {
      shown.emplace_back(indent + label, value);
    }
    return shown;
  }

  std::unique_ptr<SipAddress, Deleter> address;
  std::unique_ptr<SipHeader, Deleter> header;
};

}  // namespace

std::string sentByUri(const std::string& via) {
  const Diagnostics ignored;
  const std::unique_ptr<SipAddress, Deleter> address(ParseViaHeaderToAdress(via.c_str()));
  return address == nullptr ? std::string() : std::string(bytes(address->getURI()));
}

int runVia(CommandLine& line) {
  Options options;
  addTextArgument(line.parser, options);
  line.parse();
  return readEachText<ViaReading>(options);
}
