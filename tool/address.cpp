// address.cpp - siputil address: takes SIP addresses apart, edits them and writes them back.
#include <unistd.h>

#include <charconv>
#include <cstdlib>
#include <iostream>
#include <memory>

#include "command.h"
#include "diagnostics.h"
#include "dump.h"

namespace {

// Reads a whole text as a port number; false when it is none.
bool readPort(const std::string& text, unsigned short& port) {
  const char* end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, port);
  return result.ec == std::errc() && result.ptr == end;
}

std::string checkEdit(const Edit& edit) {
  unsigned short port = 0;
  return edit.name != "port" || readPort(edit.value, port) ? "" : "a number from 0 to 65535";
}

VARN_EXCEPTION_CODES setPort(SipAddress& address, const std::string& value) {
  unsigned short port = 0;
  readPort(value, port);
  address.setPort(port);
  return address.GetLastErrorCode();
}

// The pieces that --set takes, and the setter of each.
const struct {
  const char* name;
  VARN_EXCEPTION_CODES (*set)(SipAddress& address, const std::string& value);
} kSetters[] = {
    {"displayName",
     [](SipAddress& address, const std::string& value) {
       return address.setDisplayName(sipString(value));
     }},
    {"scheme", [](SipAddress& address,
                  const std::string& value) { return address.setScheme(sipString(value)); }},
    {"user", [](SipAddress& address,
                const std::string& value) { return address.setUser(sipString(value)); }},
    {"host", [](SipAddress& address,
                const std::string& value) { return address.setHost(sipString(value)); }},
    {"port", setPort},
    {"uri", [](SipAddress& address,
               const std::string& value) { return address.setURI(sipString(value)); }},
};

VARN_EXCEPTION_CODES setPiece(SipAddress& address, const Edit& edit) {
  for (const auto& setter : kSetters) {
    if (edit.name == setter.name) {
      return setter.set(address, edit.value);
    }
  }
  return VARN_INVALID_INPUT;
}

VARN_EXCEPTION_CODES apply(SipAddress& address, const Edit& edit) {
  switch (edit.kind) {
    case Edit::Kind::kSet:
      return setPiece(address, edit);
    case Edit::Kind::kParam:
      return address.setParameter(sipString(edit.name), sipString(edit.value));
    case Edit::Kind::kRemoveParam:
      address.removeParameter(sipString(edit.name));
      return address.GetLastErrorCode();
  }
  return VARN_INVALID_INPUT;
}

bool colourWanted() { return isatty(STDOUT_FILENO) != 0 && std::getenv("NO_COLOR") == nullptr; }

// Returns the pieces and what follows from them, one a line.
std::string lines(SipAddress& address) {
  Pieces shown = pieces(address);
  shown.emplace_back("effective port", std::to_string(address.getPort()));
  shown.emplace_back("uri", bytes(address.getURI()));
  shown.emplace_back("text", bytes(address.toString()));
  return aligned(shown, colourWanted());
}

// Returns the pieces and the text on one line.
std::string line(SipAddress& address) {
  Pieces shown = pieces(address);
  shown.emplace_back("text", bytes(address.toString()));
  return oneLine(shown) + '\n';
}

int runOn(const Options& options, const std::string& text, unsigned long number) {
  const Diagnostics diagnostics;
  SipAddress address(sipString(text));
  VARN_EXCEPTION_CODES code = address.GetLastErrorCode();
  for (auto edit = options.edits.begin(); code == VARN_OK && edit != options.edits.end(); ++edit) {
    code = apply(address, *edit);
  }
  if (options.json) {
    const nlohmann::ordered_json logged = diagnostics.toJson();
    nlohmann::ordered_json object = toJson(address, code);
    object["diagnostics"] = logged;
    std::cout << jsonLine(object) << '\n';
  } else if (code != VARN_OK) {
    std::cout << (number == 0 ? "" : "refused\n");
  } else {
    std::cout << (number == 0 ? lines(address) : line(address));
  }
  diagnostics.print(number, code, options.verbose);
  return code == VARN_OK ? kAccepted : kRefused;
}

}  // namespace

std::function<int()> prepareAddress(CLI::App& parser) {
  const auto options = std::make_shared<Options>();
  std::vector<std::string> names;
  for (const auto& setter : kSetters) {
    names.emplace_back(setter.name);
  }
  addCommonOptions(parser, *options);
  addEditOptions(parser, *options, names, checkEdit);
  return [options] {
    return forEachText(*options, [&options](const std::string& text, unsigned long number) {
      return runOn(*options, text, number);
    });
  };
}
