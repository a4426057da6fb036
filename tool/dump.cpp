// dump.cpp - the pieces of the library's objects, for people and for programs.
#include "dump.h"

#include <algorithm>

#include "wySipMatch.h"

namespace {

// Returns "name", "ipv4" or "ipv6"; "" for no host.
std::string hostType(const SipString& host) {
  if (host.length() == 0) {
    return "";
  }
  if (host.length() > 1 && host.c_str()[0] == '[') {
    return "ipv6";
  }
  const SipStrStream stream(host);
  SipMatchIIPV4Address address;
  return address.match(stream, 0) == host.length() ? "ipv4" : "name";
}

std::string parameterText(const SipParam& param) {
  std::string text(bytes(param.getName()));
  if (param.getValue().length() != 0) {
    text.append("=").append(bytes(param.getValue()));
  }
  return text;
}

void addPiece(Pieces& pieces, const char* label, const SipString& value) {
  if (value.length() != 0) {
    pieces.emplace_back(label, bytes(value));
  }
}

template <typename Address>
nlohmann::ordered_json parametersJson(const Address& address) {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const SipParam* param = address.firstParam(); param != nullptr;
       param = address.nextParam(param)) {
    list.push_back({{"name", bytes(param->getName())}, {"value", bytes(param->getValue())}});
  }
  return list;
}

unsigned int codeAt(std::string_view text, std::size_t i) {
  return i < text.size() ? static_cast<unsigned char>(text[i]) : 0;
}

bool within(unsigned int code, unsigned int first, unsigned int last) {
  return first <= code && code <= last;
}

// The well-formed UTF-8 characters: the lead byte, the byte behind it, the length.
const struct {
  unsigned int firstLead, lastLead, firstSecond, lastSecond;
  std::size_t length;
} kUtf8Forms[] = {
    {0x00, 0x7F, 0x00, 0xFF, 1}, {0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3},
    {0xE1, 0xEC, 0x80, 0xBF, 3}, {0xED, 0xED, 0x80, 0x9F, 3}, {0xEE, 0xEF, 0x80, 0xBF, 3},
    {0xF0, 0xF0, 0x90, 0xBF, 4}, {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4},
};

// Returns the length of the well-formed character that the text begins with; 0 for none.
std::size_t characterLength(std::string_view text) {
  for (const auto& form : kUtf8Forms) {
    if (!within(codeAt(text, 0), form.firstLead, form.lastLead)) {
      continue;
    }
    bool formed = within(codeAt(text, 1), form.firstSecond, form.lastSecond);
    for (std::size_t i = 2; i < form.length; ++i) {
      formed = formed && within(codeAt(text, i), 0x80, 0xBF);
    }
    return formed ? form.length : 0;
  }
  return 0;
}

// C0 and C1 controls and DEL would steer the terminal.
bool isControl(std::string_view character) {
  const unsigned int first = codeAt(character, 0);
  return first < 0x20 || first == 0x7F || (first == 0xC2 && codeAt(character, 1) < 0xA0);
}

std::string hexEscapes(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string escapes;
  for (const char c : text) {
    const unsigned int code = static_cast<unsigned char>(c);
    escapes.append("\\x").append(1, kDigits[code / 16]).append(1, kDigits[code % 16]);
  }
  return escapes;
}

}  // namespace

Pieces pieces(const SipAddress& address) {
  if (address.isWildcard()) {
    return {{"wildcard", "*"}};
  }
  Pieces result;
  addPiece(result, "display name", address.getDisplayName());
  addPiece(result, "scheme", address.getScheme());
  addPiece(result, "user", address.getUser());
  addPiece(result, "host", address.getHost());
  if (address.getStoredPort() != 0) {
    result.emplace_back("port", std::to_string(address.getStoredPort()));
  }
  for (const SipParam* param = address.firstParam(); param != nullptr;
       param = address.nextParam(param)) {
    result.emplace_back("parameter", parameterText(*param));
  }
  return result;
}

std::string oneLine(const Pieces& pieces) {
  std::string line;
  for (const auto& [label, value] : pieces) {
    line.append(line.empty() ? "" : " | ").append(label).append(": ").append(printable(value));
  }
  return line;
}

std::string aligned(const Pieces& pieces, bool bold) {
  std::size_t width = 0;
  for (const auto& piece : pieces) {
    width = std::max(width, piece.first.size());
  }
  std::string text;
  for (const auto& [label, value] : pieces) {
    text.append(bold ? "\x1b[1m" : "").append(label).append(bold ? "\x1b[0m" : "");
    text.append(width - label.size() + 2, ' ').append(printable(value)).append("\n");
  }
  return text;
}

nlohmann::ordered_json toJson(SipAddress& address, VARN_EXCEPTION_CODES code) {
  const bool ok = code == VARN_OK;
  nlohmann::ordered_json object;
  object["ok"] = ok;
  object["code"] = static_cast<unsigned int>(code);
  object["wildcard"] = address.isWildcard();
  object["displayName"] = bytes(address.getDisplayName());
  object["scheme"] = bytes(address.getScheme());
  object["user"] = bytes(address.getUser());
  object["host"] = bytes(address.getHost());
  object["hostType"] = hostType(address.getHost());
  object["port"] = address.getStoredPort();
  object["effectivePort"] = address.getPort();
  object["parameters"] = parametersJson(address);
  object["uri"] = ok ? nlohmann::ordered_json(bytes(address.getURI())) : nullptr;
  object["text"] = ok ? nlohmann::ordered_json(bytes(address.toString())) : nullptr;
  return object;
}

std::string jsonLine(const nlohmann::ordered_json& object) {
  return object.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

std::string printable(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const std::size_t length = characterLength(text);
    const std::string_view character = text.substr(0, std::max<std::size_t>(length, 1));
    if (length == 0 || isControl(character)) {
      result.append(hexEscapes(character));
    } else {
      result.append(character == "\\" ? "\\\\" : character);
    }
    text.remove_prefix(character.size());
  }
  return result;
}
