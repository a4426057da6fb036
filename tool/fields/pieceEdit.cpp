// pieceEdit.cpp - edits of the pieces of addresses and header fields.
#include "fields/pieceEdit.h"

#include "text/sip.h"

namespace {

template <typename Object>
struct Setter {
  const char* name;
  VARN_EXCEPTION_CODES (*set)(Object& object, const SipString& value);
};

using Text = const SipString&;

VARN_EXCEPTION_CODES setPort(SipAddress& address, Text value) {
  unsigned short port = 0;
  readNumber(view(value), port);
  address.setPort(port);
  return address.GetLastErrorCode();
}

const Setter<SipAddress> kOfAddress[] = {
    {"displayName", [](SipAddress& a, Text value) { return a.setDisplayName(value); }},
    {"scheme", [](SipAddress& a, Text value) { return a.setScheme(value); }},
    {"user", [](SipAddress& a, Text value) { return a.setUser(value); }},
    {"host", [](SipAddress& a, Text value) { return a.setHost(value); }},
    {"port", setPort},
    {"uri", [](SipAddress& a, Text value) { return a.setURI(value); }},
};

const Setter<TelAddress> kOfTel[] = {
    {"phoneNumber", [](TelAddress& a, Text value) { return a.setPhoneNumber(value); }},
    {"isub", [](TelAddress& a, Text value) { return a.setISDNSubAddr(value); }},
    {"ext", [](TelAddress& a, Text value) { return a.setExtension(value); }},
    {"phone-context", [](TelAddress& a, Text value) { return a.setContext(value); }},
    {"displayName", [](TelAddress& a, Text value) { return a.setDisplayName(value); }},
};

const Setter<SipHeader> kOfHeader[] = {
    {"name", [](SipHeader& h, Text value) { return h.setName(value); }},
    {"value", [](SipHeader& h, Text value) { return h.setValue(value); }},
};

template <typename Setters>
std::vector<std::string> namesOf(const Setters& setters) {
  std::vector<std::string> names;
  for (const auto& setter : setters) {
    names.emplace_back(setter.name);
  }
  return names;
}

template <typename Object, typename Setters>
VARN_EXCEPTION_CODES applyWith(const Setters& setters, Object& object, const Edit& edit) {
  if (edit.kind == Edit::Kind::kParam) {
    return object.setParameter(toSipString(edit.name), toSipString(edit.value));
  }
  if (edit.kind == Edit::Kind::kRemoveParam) {
    object.removeParameter(toSipString(edit.name));
    return object.GetLastErrorCode();
  }
  for (const auto& setter : setters) {
    if (edit.name == setter.name) {
      return setter.set(object, toSipString(edit.value));
    }
  }
  return VARN_INVALID_INPUT;
}

}  // namespace

std::vector<std::string> addressPieceNames() { return namesOf(kOfAddress); }
std::vector<std::string> telPieceNames() { return namesOf(kOfTel); }
std::vector<std::string> headerPieceNames() { return namesOf(kOfHeader); }

std::string expectedValue(const Edit& edit) {
  unsigned short port = 0;
  const bool wrong =
      edit.kind == Edit::Kind::kSet && edit.name == "port" && !readNumber(edit.value, port);
  return wrong ? "a number from 0 to 65535" : "";
}

VARN_EXCEPTION_CODES apply(SipAddress& address, const Edit& edit) {
  return applyWith(kOfAddress, address, edit);
}

VARN_EXCEPTION_CODES apply(TelAddress& tel, const Edit& edit) {
  return applyWith(kOfTel, tel, edit);
}

VARN_EXCEPTION_CODES apply(SipHeader& header, const Edit& edit) {
  return applyWith(kOfHeader, header, edit);
}
