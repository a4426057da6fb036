// fuzz_address.cpp - SIP addresses: each line is read as one, the first is edited with the others.
#include "pieces.h"

// The texts are those of the pieces, whatever was cached. A complete address can be read again,
// which reverses the parameters.
void checkTexts(SipAddress& address) {
  const Pieces p = piecesOf(address);
  const std::string params = joined(p, kSipParams);
  require(countNames(address) == p.size() - kSipParams, "a name each", params, "");
  std::string uri = p[1] + ":" + (p[2].empty() ? "" : p[2] + "@") + p[3];
  uri = address.isWildcard() ? "*" : uri.append(p[4] == "0" ? "" : ":" + p[4]);
  const std::string text = nameAddr(p[0], uri + params, !params.empty());
  require(toStdString(address.toString()) == text, "the text", toStdString(address.toString()),
          text);
  require(toStdString(address.getURI()) == uri, "the URI", toStdString(address.getURI()), uri);
  const std::size_t colon = p[4] == "0" ? 0 : 1;  // is not counted
  require(address.getURIStringLength() + colon == uri.size(), "the URI's length", uri, text);
  require(address.getStringLength() + colon == text.size(), "the length", text, uri);
  const bool complete = !p[1].empty() && !p[3].empty() && areReadable(p, kSipParams);
  if (complete || address.isWildcard()) {
    const SipAddress again(address.toString());
    Pieces read = piecesOf(again);
    std::reverse(read.begin() + kSipParams, read.end());
    require(again.GetLastErrorCode() == VARN_OK, "what is written is accepted", text, "");
    require(again.isWildcard() == address.isWildcard() && read == p, "as it was", text, "");
  }
}

namespace {

void checkReading(const SipString& text, const SipString& next) {
  SipAddress address(text);
  const bool none = !address.isWildcard() && address.getHost().length() == 0;
  require(address.GetLastErrorCode() != VARN_OK || !none, "has a host", text.c_str(), "");
  checkTexts(address);
  SipAddress named(next, text);
  checkTexts(named);
  SipStrStream stream(text);
  const SipAddress front(stream);
  if (front.GetLastErrorCode() == VARN_OK) {
    require(text.c_str()[stream.pos() - 1] == '>', "up to its bracket", text.c_str(), "");
    require(piecesOf(front) == piecesOf(address), "as a text", text.c_str(), "");
  }
}

}  // namespace

void checkEdits(SipAddress& address, const SipString& value, const SipString& other) {
  const std::string bare = trimmedBytes(value);
  for (std::size_t i = 0; i < std::size(kSipSetters); ++i) {
    checkChange(address, [&](Pieces& p) { return p[i] = bare, (address.*kSipSetters[i])(value); });
  }
  checkChange(address, [&](Pieces& p) {
    const Pieces uri = piecesOf(SipAddress(SipString(), value));
    std::copy_n(uri.begin() + 1, 4, p.begin() + 1);
    return address.setURI(value);
  });
  checkChange(address, [&](Pieces& p) {
    eraseParam(p, kSipParams, bare);
    p.insert(p.begin() + kSipParams, paramText(bare, trimmedBytes(other)));
    return address.setParameter(value, other);
  });
  checkChange(address, [&](Pieces& p) {
    eraseParam(p, kSipParams, toStdString(other));
    return address.removeParameter(other);
  });
  checkChange(address, [&](Pieces& p) {
    const auto port = static_cast<unsigned short>(std::strtoul(value.c_str(), nullptr, 10));
    return p[4] = std::to_string(port), address.setPort(port), address.GetLastErrorCode();
  });
  if (bare.empty()) {
    address.clearParamList();
    checkTexts(address);
  }
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  checkArguments(data, size, checkReading, editFirst<SipAddress>);
  return 0;
}
