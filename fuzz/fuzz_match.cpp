// fuzz_match.cpp - matchers at every offset of the input: its first byte, '0' to '3', chooses the
// family, the rest is the text.
#include "params.h"
#include "wySipHeaderMatch.h"
#include "wySipMatch.h"
#include "wyTelAddressMatch.h"

namespace {

// All rules are tried at all offsets, and some look far ahead: the time grows with the square.
constexpr std::size_t kLongestText = 64;

struct Place {
  const std::vector<SipStrStream>& heads;  // the text's first 0, 1, 2, ... bytes
  const SipStrStream& complete;
  const SipStrStream& here;  // its position is the offset
  unsigned int offset;
  std::string_view text;  // from there on
};

// The text before a match and the text after it do not matter.
template <typename Matcher, typename... Arguments>
void check(const Place& place, Arguments... arguments) {
  const auto countAt = [&](const SipStrStream& stream, unsigned int offset) {
    return Matcher(arguments...).match(stream, offset);
  };
  const unsigned int count = countAt(place.complete, place.offset);
  const unsigned int end = place.offset + count;
  const char* const name = typeid(Matcher).name();
  require(count <= place.text.size(), "not past the end", name, place.text);
  if (count != 0) {
    constexpr bool kRun = std::is_base_of_v<SipMatchCharSet, Matcher> ||
                          std::is_base_of_v<SipMatchEscapedCharSet, Matcher>;
    require(!kRun || countAt(place.complete, end) == 0, "the longest run", name, place.text);
    require(count == countAt(place.here, 0), "nothing in front counts", name, place.text);
    require(count == countAt(place.heads[end], place.offset), "nor after", name, place.text);
  }
}

template <typename... Matchers>
void checkEach(const Place& place) {
  (check<Matchers>(place), ...);
}

void checkFamily(const Place& place, int family) {
  switch (family) {
    case 0:
      check<SipMatchSpecificString>(place, "sip:");
      return checkEach<SipMatchToken, SipMatchDigit, SipMatchHexDigit, SipMatchAlpha, SipMatchUric,
                       SipMatchOtherParam, SipAddressMatchParamChar, SipAddressMatchHNameValue,
                       SipMatchUTF8NonASCII, SipMatchILabel, TelAddressMatchParamName>(place);
    case 1:
      return checkEach<SipMatchHostname, SipMatchIIPV4DecOctet, SipMatchIIPV4Address,
                       SipMatchIIPV6H16, SipMatchIIPV6Address, SipMatchHost,
                       TelAddressMatchPhoneDigit, TelAddressMatchPhoneDigitHex>(place);
    case 2:
      return checkEach<SipAddressMatchScheme, SipAddressMatchSchemeTrailing, SipAddressMatchUser,
                       SipAddressMatchPassword, SipAddressMatchUserInfo, SipAddressMatchHeaders,
                       SipHeaderMatchAbsoluteURI>(place);
    default:
      check<SipMatchLWSChar>(place, ';');
      check<SipHeaderMatchValue>(place, WY_SIP_HEADER_TYPE_AUTH);
      return checkEach<SipMatchLWS, SipMatchQuotedString, SipAddressMatchDisplayName,
                       SipNonAuthHeaderMatchValue, SipHeaderMatchIHeaderChars>(place);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  const MemoryLogWatch watch;
  const std::string_view input(reinterpret_cast<const char*>(data), std::min(size, kLongestText));
  const std::string_view text = input.substr(std::min<std::size_t>(input.size(), 1));
  std::vector<SipStrStream> heads;
  heads.reserve(text.size() + 1);
  for (std::size_t length = 0; length <= text.size(); ++length) {
    heads.emplace_back(toSipString(text.substr(0, length)));
  }
  // A tel URI in brackets counts for its written form, which may end past the text.
  const int family = input.empty() || text.find("<tel:") != text.npos ? 0 : input[0] & 3;
  forbidAssertions();
  for (unsigned int offset = 0; offset <= text.size(); ++offset) {
    SipStrStream here(heads.back());
    here.discard(offset);
    const Place place = {heads, heads.back(), here, offset, text.substr(offset)};
    checkFamily(place, family);
    if (offset == 0) {  // numbers and contexts measure from the position
      checkEach<TelAddressMatchLocalPhoneNumber, TelAddressMatchContext>(place);
      check<TelAddressMatchPhoneNumber>(place, WY_SIP_TELURI_TYPE_GLOBAL);
    }
    require(here.pos() == offset && heads.back().pos() == 0, "no stream moves", text, "");
  }
  return 0;
}
