// fuzz_tel.cpp - tel addresses: each line is read as one and becomes a SIP address, the first is
// edited with the others.
#include "pieces.h"

void checkTexts(TelAddress& tel) {
  const Pieces p = piecesOf(tel);
  std::string uri = p[1];
  for (unsigned int i = 2; i < kTelBracket; ++i) {
    uri += p[i].empty() ? "" : paramText(kTelNames[i], p[i]);
  }
  uri += joined(p, kTelParams);
  const bool plain = uri == p[1] && p[0].empty();
  const std::string text = nameAddr(p[0], "tel:" + uri, !plain || tel.isBracketed());
  require(toStdString(tel.toString()) == text, "the text", toStdString(tel.toString()), text);
  const std::size_t brackets = plain && tel.isBracketed() ? 2 : 0;  // are not counted
  require(tel.getStringLength() + brackets == text.size(), "the length", text, "");
  SipString written;
  require(tel.getURIString(written) == VARN_OK && toStdString(written) == uri, "the URI", text,
          uri);
  require(tel.getURIStringLength() == uri.size() + 4, "the URI's length", text, "");
  require(std::is_sorted(p.begin() + kTelParams, p.end(), isLessByName), "in order", text, "");
  require(p[2].empty() || p[3].empty(), "isub or ext", text, "");
  const std::size_t specials =
      3U - static_cast<std::size_t>(std::count(p.begin() + 2, p.begin() + kTelBracket, ""));
  require(countNames(tel) == p.size() - kTelParams + specials, "a name each", text, "");
  if (!p[1].empty() && areTelReadable(p)) {
    const TelAddress again(tel.toString());
    Pieces read = piecesOf(again);
    read[kTelBracket] = p[kTelBracket];  // parameters alone also make the text have them
    require(again.GetLastErrorCode() == VARN_OK, "what is written is accepted", text, "");
    require(read == p && again.getType() == tel.getType(), "as it was", text, "");
  }
}

namespace {

// The user part has the content of the URI.
void checkSip(const char* text, const char* /*next*/) {
  TelAddress tel{SipString(text)};
  const bool accepted = tel.GetLastErrorCode() == VARN_OK;
  require(!accepted || tel.getPhoneNumber().length() != 0, "has a number", text, "");
  checkTexts(tel);
  if (!accepted) {
    return;
  }
  SipAddress sip{SipString("sip:x@host.test;lr")};
  require(tel.toSipAddress(sip) == VARN_OK, "every number becomes an address", text, "");
  SipString uri;
  require(tel.getURIString(uri) == VARN_OK, "the URI", text, "");
  const std::string user = toStdString(sip.getUser());
  require(unescaped(user, false) == unescaped(toStdString(uri), true), "the same user", user, text);
  const Pieces expected = {
      toStdString(tel.getDisplayName()), "sip", user, "host.test", "0", ";user=phone"};
  require(piecesOf(sip) == expected, "the SIP address", toStdString(sip.toString()), text);
  const SipAddress again(sip.toString());
  require(again.GetLastErrorCode() == VARN_OK, "is accepted", toStdString(sip.toString()), text);
  require(piecesOf(again) == expected, "as it was", toStdString(sip.toString()), text);
}

}  // namespace

void checkEdits(TelAddress& tel, const SipString& value, const SipString& other) {
  const std::string bare = trimmedBytes(value);
  for (std::size_t i = 0; i < std::size(kTelSetters); ++i) {
    checkChange(tel, [&](Pieces& p) {
      p[kTelBracket] = i == 0 && bare.empty() ? "" : p[kTelBracket];
      return p[i] = bare, (tel.*kTelSetters[i])(value);
    });
  }
  checkChange(
      tel, [&](Pieces& p) { return setTelParam(p, value, other), tel.setParameter(value, other); });
  checkChange(tel, [&](Pieces& p) { return eraseTelParam(p, other), tel.removeParameter(other); });
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  checkArguments(data, size, checkSip, editFirst<TelAddress>);
  return 0;
}
