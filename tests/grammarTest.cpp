// grammarTest.cpp - compares the table of docs/grammar.md with the matchers.
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <typeinfo>

#include "libraryTest.h"
#include "wySipHeaderMatch.h"
#include "wySipMatch.h"
#include "wyTelAddressMatch.h"

namespace {

using Matcher = std::function<unsigned int(const SipStrStream&)>;

// Returns the question to a matcher of this kind, made from the arguments.
template <typename Rule, typename... Arguments>
Matcher matcher(Arguments... arguments) {
  return [=](const SipStrStream& stream) { return Rule(arguments...).match(stream, 0); };
}

// Returns the name of a matcher: a mangled name without the length at its start.
template <typename Rule>
std::string nameOf() {
  const std::string mangled = typeid(Rule).name();
  return mangled.substr(mangled.find_first_not_of("0123456789"));
}

template <typename... Rules>
std::map<std::string, Matcher> matchersOf() {
  return {{nameOf<Rules>(), matcher<Rules>()}...};
}

std::map<std::string, Matcher> allMatchers() {
  auto matchers =
      matchersOf<SipMatchToken, SipMatchDigit, SipMatchHexDigit, SipMatchAlpha, SipMatchUric,
                 SipMatchLWS, SipMatchQuotedString, SipMatchUTF8NonASCII, SipMatchILabel,
                 SipMatchHostname, SipMatchIIPV4DecOctet, SipMatchIIPV4Address, SipMatchIIPV6H16,
                 SipMatchIIPV6Address, SipMatchHost, SipAddressMatchScheme,
                 SipAddressMatchSchemeTrailing, SipAddressMatchUser, SipAddressMatchPassword,
                 SipAddressMatchUserInfo, SipAddressMatchDisplayName, SipAddressMatchParamChar,
                 SipMatchOtherParam, SipAddressMatchHNameValue, SipAddressMatchHeaders,
                 SipNonAuthHeaderMatchValue, SipHeaderMatchIHeaderChars, SipHeaderMatchAbsoluteURI,
                 TelAddressMatchPhoneDigit, TelAddressMatchPhoneDigitHex, TelAddressMatchParamName,
                 TelAddressMatchGlobalPhoneNumber, TelAddressMatchLocalPhoneNumber,
                 TelAddressMatchContext>();
  matchers["SipMatchLWSChar"] = matcher<SipMatchLWSChar>(';');
  matchers["SipMatchSpecificString"] = matcher<SipMatchSpecificString>("tel:");
  matchers["SipHeaderMatchValue"] = matcher<SipHeaderMatchValue>(WY_SIP_HEADER_TYPE_AUTH);
  matchers["TelAddressMatchPhoneNumber"] =
      matcher<TelAddressMatchPhoneNumber>(WY_SIP_TELURI_TYPE_GLOBAL);
  return matchers;
}

std::string contentOf(const std::string& file) {
  std::ifstream in(SIPUTILITY_SOURCE_DIR "/" + file);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// Returns the names of the matchers that the headers declare, without base classes.
std::set<std::string> declaredMatchers() {
  std::set<std::string> names;
  for (const char* header : {"wySipMatch.h", "wySipHeaderMatch.h", "wyTelAddressMatch.h"}) {
    const std::string text = contentOf(std::string("sip_utility/inc/") + header);
    const std::regex declaration("class SIPUTILITY_EXPORT (\\w+)");
    for (std::sregex_iterator each(text.begin(), text.end(), declaration), end; each != end;
         ++each) {
      names.insert((*each)[1]);
    }
  }
  for (const char* base : {"SipMatch", "SipMatchCharSet", "SipMatchEscapedCharSet"}) {
    EXPECT_EQ(1U, names.erase(base));
  }
  return names;
}

// Returns the bytes that a text of the table means; a backslash without a meaning is a byte.
std::string bytesOf(const std::string& written) {
  std::string bytes;
  for (std::size_t i = 0; i < written.size(); ++i) {
    const std::size_t escape = written[i] == '\\' ? std::string("rntx").find(written[i + 1]) : 4;
    if (escape < 3) {
      bytes += "\r\n\t"[escape];
      ++i;
    } else if (escape == 3) {
      bytes += static_cast<char>(std::strtol(written.substr(i + 2, 2).c_str(), nullptr, 16));
      i += 3;
    } else {
      bytes += written[i];
    }
  }
  return bytes;
}

class GrammarPage : public LibraryTest {
 protected:
  // Checks a text of the table; accepted means that the match covers all of it.
  void expectCount(const std::string& name, const std::string& written, const std::string& count,
                   bool accepted) {
    const auto found = matchers_.find(name);
    ASSERT_NE(matchers_.end(), found) << name;
    const SipString text = toSipString(bytesOf(written));
    const unsigned int covered = found->second(SipStrStream(text));
    EXPECT_EQ(count, std::to_string(covered)) << name << ' ' << written;
    EXPECT_EQ(accepted, covered == text.length()) << name << ' ' << written;
    takeLog();
  }

  const std::map<std::string, Matcher> matchers_ = allMatchers();
};

TEST_F(GrammarPage, SaysWhatTheMatchersReturn) {
  const std::string page = contentOf("docs/grammar.md");
  const std::regex row(R"(\n\|[^|]+\| `(\w+)` \|[^|]+\| `([^`]*)` (\d+) \| `([^`]*)` (\d+) \|)");
  std::set<std::string> shown;
  for (std::sregex_iterator each(page.begin(), page.end(), row), end; each != end; ++each) {
    const std::smatch& cells = *each;
    expectCount(cells[1], cells[2], cells[3], true);
    expectCount(cells[1], cells[4], cells[5], false);
    shown.insert(cells[1]);
  }
  EXPECT_EQ(declaredMatchers(), shown);
}

}  // namespace
