// wySipMatchBench.cpp - every matcher on a run of about 1 KiB, or on the longest text it covers.
#include "wySipMatch.h"

#include <memory>

#include "harness.h"
#include "wySipHeaderMatch.h"
#include "wyTelAddressMatch.h"

namespace {

constexpr std::size_t kRun = 1024;

// Returns a text of whole pieces, about kRun long.
std::string run(std::string_view piece) {
  std::string text;
  while (text.size() + piece.size() <= kRun) {
    text += piece;
  }
  return text;
}

// A matcher is made anew for each match.
template <typename Matcher, typename... Arguments>
void add(const char* name, const std::string& text, Arguments... arguments) {
  addCase(std::string("BM_Match_") + name + '/' + std::to_string(text.size()), text.size(),
          std::to_string(text.size()) + '|',
          [stream = std::make_shared<SipStrStream>(toSipString(text)), arguments...](auto& sink) {
            Matcher matcher(arguments...);
            sink.number(matcher.match(*stream, 0));
          });
}

void addRuns() {
  add<SipMatchToken>("Token", run("token-_.!%*+`'~09"));
  add<SipMatchDigit>("Digit", run("0123456789"));
  add<SipMatchHexDigit>("HexDigit", run("0123456789abcdefABCDEF"));
  add<SipMatchAlpha>("Alpha", run("alphabetALPHABET"));
  add<SipMatchUric>("Uric", run("a/b;c?d:e@f&g=h+%20"));
  add<SipMatchOtherParam>("OtherParam", run("a[b]/c:d&%20"));
  add<SipMatchILabel>("ILabel", run("label-09a"));
  add<SipAddressMatchSchemeTrailing>("SchemeTrailing", run("scheme+-.09"));
  add<SipAddressMatchUser>("User", run("alice;x=%41,/?"));
  add<SipAddressMatchPassword>("Password", run("secret=%41,&"));
  add<SipAddressMatchParamChar>("ParamChar", run("a[b]/c:d&%20"));
  add<SipAddressMatchHNameValue>("HNameValue", run("name[%20]/?:"));
  add<TelAddressMatchPhoneDigit>("PhoneDigit", run("555-0123.(0)"));
  add<TelAddressMatchPhoneDigitHex>("PhoneDigitHex", run("*31#0170-AB"));
  add<TelAddressMatchParamName>("ParamName", run("name-09"));
}

void addRules() {
  add<SipMatchLWS>("LWS", run(" ") + "\r\n" + run("\t"));
  add<SipMatchLWSChar>("LWSChar", run(" ") + ';', ';');
  add<SipMatchQuotedString>("QuotedString", '"' + run("quoted \\\" text") + '"');
  add<SipMatchQuotedString>("QuotedStringUtf8", '"' + run("\xC3\xA9\xE2\x82\xAC") + '"');
  add<SipMatchSpecificString>("SpecificString", run("literal"), toSipString(run("literal")));
  add<SipMatchUTF8NonASCII>("UTF8NonASCII", "\xE2\x82\xAC");
  add<SipMatchHostname>("Hostname", run("label.") + "test");
  add<SipMatchIIPV4DecOctet>("DecOctet", "255");
  add<SipMatchIIPV4Address>("IPv4Address", "192.168.100.200");
  add<SipMatchIIPV6H16>("H16", "abcd");
  add<SipMatchIIPV6Address>("IPv6Address", "2001:db8:1:2:3:4:192.0.2.100");
  add<SipMatchHost>("Host", "[2001:db8:1:2:3:4:5:abcd]");
  add<SipMatchHost>("Host", run("label.") + "test");
  add<SipAddressMatchScheme>("Scheme", run("scheme+-.09"));
  add<SipAddressMatchUserInfo>("UserInfo", run("user") + ':' + run("password"));
  add<SipAddressMatchDisplayName>("DisplayName", run("word ") + "end");
  add<SipAddressMatchHeaders>("Headers", '?' + run("name=value&") + "a=b");
}

void addValues() {
  add<SipHeaderMatchValue>("HeaderValue", run("word, ") + "end", WY_SIP_HEADER_TYPE_NON_AUTH);
  add<SipHeaderMatchValue>("HeaderScheme", "Digest", WY_SIP_HEADER_TYPE_AUTH);
  add<SipNonAuthHeaderMatchValue>("NonAuthValue", run("<sip:a@b.test>, ") + "end");
  add<SipHeaderMatchIHeaderChars>("HeaderChars", run("<sip:a@b.test>,"));
  add<SipHeaderMatchAbsoluteURI>("AbsoluteURI", "urn:" + run("service:icsi"));
  add<TelAddressMatchGlobalPhoneNumber>("GlobalPhoneNumber", '+' + run("555-0123."));
  add<TelAddressMatchLocalPhoneNumber>("LocalPhoneNumber", run("*31#0170-AB"));
  add<TelAddressMatchPhoneNumber>("PhoneNumber", '+' + run("555-0123."), WY_SIP_TELURI_TYPE_GLOBAL);
  add<TelAddressMatchContext>("Context", run("label.") + "test");
}

using Predicate = int (*)(int);

unsigned int membersOf(Predicate predicate) {
  unsigned int count = 0;
  for (int c = 0; c < 256; ++c) {
    count += static_cast<unsigned int>(predicate(c));
  }
  return count;
}

void addPredicates() {
  const auto each = [](const char* name, Predicate predicate, unsigned int members) {
    addCase(std::string("BM_Match_") + name + "/256", 256, std::to_string(members) + '|',
            [predicate](auto& sink) { sink.number(membersOf(predicate)); });
  };
  each("WySipIsDigit", WySipIsDigit, 10);
  each("WySipIsHexDigit", WySipIsHexDigit, 22);
  each("WySipIsAlpha", WySipIsAlpha, 52);
  each("WySipIsAlnum", WySipIsAlnum, 62);
  each("WySipIsUnreserved", WySipIsUnreserved, 71);
  each("WySipIsToken", WySipIsToken, 72);
  each("WyTelIsVisualSeparator", WyTelIsVisualSeparator, 4);
}

}  // namespace

void addMatchCases() {
  addRuns();
  addRules();
  addValues();
  addPredicates();
}
