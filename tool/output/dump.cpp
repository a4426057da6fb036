// dump.cpp - the pieces of the library's objects, for people and for programs.
#include "output/dump.h"

#include <algorithm>
#include <memory>

#include "fields/diagnostics.h"
#include "text/sip.h"
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

std::string typeName(WY_SIP_TELURI_TYPE type) {
  switch (type) {
    case WY_SIP_TELURI_TYPE_LOCAL:
      return "local";
    case WY_SIP_TELURI_TYPE_GLOBAL:
      return "global";
    default:
      return "unknown";
  }
}

void addPiece(Pieces& pieces, const char* label, const SipString& value) {
  if (value.length() != 0) {
    pieces.emplace_back(label, view(value));
  }
}

// Parameters in the order in which they are written: names, and values or empty texts.
using Params = std::vector<std::pair<std::string, std::string>>;

template <typename Object>
Params paramsOf(const Object& object) {
  Params params;
  for (const SipParam& param : siputility::paramsOf(object)) {
    params.emplace_back(view(param.getName()), view(param.getValue()));
  }
  return params;
}

// Returns the length of the first parameter of `name[=value];...`: a value may be in quotes.
std::size_t paramLength(std::string_view text) {
  bool quoted = false;
  std::size_t length = 0;
  for (; length < text.size() && (quoted || text[length] != ';'); ++length) {
    quoted = quoted != (text[length] == '"');
    length += quoted && text[length] == '\\' ? 1U : 0U;
  }
  return std::min(length, text.size());
}

// Each step over a tel address looks through all its parameters. The library sorts them once for
// the URI, so they are read from there.
Params paramsOf(const TelAddress& tel) {
  SipString uri;
  tel.getURIString(uri);
  std::string_view rest = view(uri);
  const auto pass = [&rest](std::string_view name, const SipString& value) {
    rest.remove_prefix(value.length() == 0 ? 0 : name.size() + value.length());
  };
  pass("", tel.getPhoneNumber());
  pass(";isub=", tel.getISDNSubAddr());
  pass(";ext=", tel.getExtension());
  pass(";phone-context=", tel.getContext());
  Params params;
  while (!rest.empty()) {
    rest.remove_prefix(1);
    const std::string_view param = rest.substr(0, paramLength(rest));
    const std::size_t equal = std::min(param.find('='), param.size());
    params.emplace_back(param.substr(0, equal), param.substr(std::min(equal + 1, param.size())));
    rest.remove_prefix(param.size());
  }
  return params;
}

template <typename Object>
void addParameters(Pieces& pieces, const Object& object) {
  for (const auto& [name, value] : paramsOf(object)) {
    std::string text(name);
    text.append(value.empty() ? "" : "=").append(value);
    pieces.emplace_back("parameter", text);
  }
}

template <typename Object>
nlohmann::ordered_json parametersJson(const Object& object) {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const auto& [name, value] : paramsOf(object)) {
    list.push_back({{"name", name}, {"value", value}});
  }
  return list;
}

nlohmann::ordered_json textOrNull(bool ok, const SipString& text) {
  return ok ? nlohmann::ordered_json(view(text)) : nullptr;
}

// The address that a text is: one of the two, or none.
struct TextAddress {
  explicit TextAddress(const SipString& text) {
    if (text.length() == 0) {
      return;
    }
    sip = read<SipAddress>(text);
    if (sip != nullptr && equalIgnoringCase(view(sip->getScheme()), "tel")) {
      sip.reset();
    }
    if (sip == nullptr) {
      tel = read<TelAddress>(text);
    }
  }

  template <typename Address>
  std::unique_ptr<Address> read(const SipString& text) {
    const Diagnostics diagnostics;
    auto address = std::make_unique<Address>(text);
    logged = diagnostics.toJson();
    return address->GetLastErrorCode() == VARN_OK ? std::move(address) : nullptr;
  }

  std::unique_ptr<SipAddress> sip;
  std::unique_ptr<TelAddress> tel;
  nlohmann::ordered_json logged;
};

// Returns the text of a header field that may be an address; "" for none.
SipString addressText(const SipHeader& header) {
  const FieldKind* field = findField(view(header.getName()));
  const bool may = (field != nullptr && field->address) ||
                   view(header.getValue()).find('<') != std::string_view::npos;
  return may ? header.getValue() : SipString();
}

nlohmann::ordered_json addressJson(const SipString& text) {
  const TextAddress address(text);
  nlohmann::ordered_json object;
  if (address.sip != nullptr) {
    object = toJson(*address.sip, VARN_OK);
  } else if (address.tel != nullptr) {
    object = toJson(*address.tel, VARN_OK);
    object["sip"] = nullptr;
  } else {
    return object;
  }
  object["diagnostics"] = address.logged;
  return object;
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
  addParameters(result, address);
  return result;
}

Pieces pieces(const TelAddress& tel) {
  Pieces result;
  addPiece(result, "display name", tel.getDisplayName());
  addPiece(result, "phone number", tel.getPhoneNumber());
  result.emplace_back("type", typeName(tel.getType()));
  addPiece(result, "isub", tel.getISDNSubAddr());
  addPiece(result, "ext", tel.getExtension());
  addPiece(result, "phone-context", tel.getContext());
  addParameters(result, tel);
  return result;
}

Pieces pieces(const SipHeader& header) {
  Pieces result;
  addPiece(result, "name", header.getName());
  addPiece(result, "value", header.getValue());
  addParameters(result, header);
  return result;
}

Pieces addressPieces(const SipHeader& header) {
  const TextAddress address(addressText(header));
  if (address.sip != nullptr) {
    return pieces(*address.sip);
  }
  return address.tel != nullptr ? pieces(*address.tel) : Pieces();
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
  object["displayName"] = view(address.getDisplayName());
  object["scheme"] = view(address.getScheme());
  object["user"] = view(address.getUser());
  object["host"] = view(address.getHost());
  object["hostType"] = hostType(address.getHost());
  object["port"] = address.getStoredPort();
  object["effectivePort"] = address.getPort();
  object["parameters"] = parametersJson(address);
  object["uri"] = textOrNull(ok, address.getURI());
  object["text"] = textOrNull(ok, address.toString());
  return object;
}

nlohmann::ordered_json toJson(TelAddress& tel, VARN_EXCEPTION_CODES code) {
  const bool ok = code == VARN_OK;
  SipString uri;
  tel.getURIString(uri);
  nlohmann::ordered_json object;
  object["ok"] = ok;
  object["code"] = static_cast<unsigned int>(code);
  object["displayName"] = view(tel.getDisplayName());
  object["phoneNumber"] = view(tel.getPhoneNumber());
  object["type"] = typeName(tel.getType());
  object["isub"] = view(tel.getISDNSubAddr());
  object["ext"] = view(tel.getExtension());
  object["phoneContext"] = view(tel.getContext());
  object["parameters"] = parametersJson(tel);
  object["uri"] = ok ? nlohmann::ordered_json("tel:" + std::string(view(uri))) : nullptr;
  object["text"] = textOrNull(ok, tel.toString());
  return object;
}

nlohmann::ordered_json toJson(SipHeader& header, VARN_EXCEPTION_CODES code) {
  const bool ok = code == VARN_OK;
  nlohmann::ordered_json object;
  object["ok"] = ok;
  object["code"] = static_cast<unsigned int>(code);
  object["name"] = view(header.getName());
  object["type"] =
      header.getHeaderType() == WY_SIP_HEADER_TYPE_AUTH ? "authentication" : "ordinary";
  object["value"] = view(header.getValue());
  object["parameters"] = parametersJson(header);
  object["text"] = textOrNull(ok, header.toString());
  object["address"] = ok ? addressJson(addressText(header)) : nullptr;
  return object;
}

nlohmann::ordered_json addressJson(std::string_view text) { return addressJson(toSipString(text)); }

std::string jsonLine(const nlohmann::ordered_json& object) {
  constexpr bool kAscii = true;
  return object.dump(-1, ' ', kAscii, nlohmann::ordered_json::error_handler_t::replace);
}
