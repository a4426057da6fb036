// wySipAddressTest.cpp - what an address is read from, changed to and written as.
#include "wySipAddress.h"

#include "libraryTest.h"

namespace {

using std::string_view_literals::operator""sv;

constexpr const char* kSource = "sip_utility/src/wySipAddress";

// Returns the line of a failure of the address; "SipAddress::" is left out of the message.
std::string fails(const std::string& message) {
  return failureLine(kSource, "SipAddress::" + message);
}

// code display name|scheme|user|host|port|parameters, as stored
std::string dump(const SipAddress& address) {
  std::string text = std::to_string(address.GetLastErrorCode()) + ' ' +
                     (address.isWildcard() ? "*" : toStdString(address.getDisplayName()));
  for (const auto* piece : {&address.getScheme(), &address.getUser(), &address.getHost()}) {
    text += '|' + toStdString(*piece);
  }
  return text + '|' + std::to_string(address.getStoredPort()) + '|' + paramTexts(address);
}

// Reads the written text again, which must make the same address. Does so twice, since each parse
// reverses the parameters.
void expectToReadBack(SipAddress& address) {
  SipAddress once(address.toString());
  SipAddress twice(once.toString());
  EXPECT_EQ(dump(address), dump(twice));
  EXPECT_EQ(view(address.toString()), view(twice.toString()));
  const unsigned int colon = address.getStoredPort() == 0 ? 0 : 1;  // not in the predicted length
  if (!address.isWildcard()) {
    EXPECT_EQ(address.toString().length(), address.getStringLength() + colon);
    EXPECT_EQ(address.getURI().length(), address.getURIStringLength() + colon);
  }
}

using SipAddressTest = LibraryTest;

TEST_F(SipAddressTest, ReadsACompleteTextOrKeepsThePiecesBeforeItsFault) {
  const auto rule = [](std::string_view text) {
    return traceLine("sip_utility/src/wySipMatch", text);
  };
  const std::string badPort =
      failureLine("sip_utility/src/wySipPort", "SipPort::set | too many digits (0)");
  const std::string badParam = failureLine("sip_utility/src/wySipParam",
                                           "SipParamList::parseParamList - bad parameter name");
  const std::string noName = fails("parseNameAddr | invalid display name");
  const std::string noHost = fails("parseURI couldn't find host");
  const std::string noBracket = fails("parseURI missing '>'");
  const struct {
    std::string_view text;
    std::string_view dump;
    Lines log;
  } cases[] = {
      {"\r\n *\t", "0 *||||0|", {}},
      {"* <sip:a@b.test>", "0 *|sip|a|b.test|0|", {}},
      {"sip:al:pw@b.test:5060;transport=udp", "0 |sip|al:pw|b.test|5060|;transport=udp", {}},
      {"sip:%61;x=1?y/:@b.test.", "0 |sip|%61;x=1?y/:|b.test.|0|", {}},
      {"sip:b.test?subject=x&a=", "0 |sip||b.test|0|", {}},
      {"X-y.z+1:10.0.0.1:00080", "0 |X-y.z+1||10.0.0.1|80|", {}},
      {"sip:[1::2:]:0;a;b=[", "0 |sip||[1::2:]|0|;b=[;a", {}},
      {"sip:[", "0 |sip||[|0|", {}},  // an open bracket is a host of its own
      {"<tel:b.test:65535;lr?x=y>;tag=1", "0 |tel||b.test|65535|;lr", {}},
      {"Bob  B.\r\n <sip:a@b.test>", "0 Bob  B.|sip|a|b.test|0|", {}},
      {"\"\\\"A\\\" \xC3\xA4\" <sip:b.test>", "0 \"\\\"A\\\" \xC3\xA4\"|sip||b.test|0|", {}},
      {"", "3 ||||0|", {fails("SipAddress | NULL or empty address")}},
      {"\0"sv, "3 ||||0|", {noName}},
      {"\r\n*", "3 ||||0|", {noName}},
      {"* ;a", "3 *||||0|", {}},
      {"B\x80 <sip:a@b.test>", "3 B||||0|", {}},
      {"\"B\" C <sip:a@b.test>", "3 \"B\"||||0|", {}},
      {"Bob: <sip:b>", "3 |Bob|||0|", {rule("SipMatchHost invalid character 0x20"), noHost}},
      {"<>", "3 ||||0|", {fails("parseURI - couldn't find scheme")}},
      {"<sip>", "3 ||||0|", {fails("parseURI missing ':' after scheme")}},
      {"sip:", "3 |sip|||0|", {rule("SipMatchHost invalid character 0xff"), noHost}},
      {"sip:a@[::1", "3 |sip|a||0|", {rule("SipMatchHost ']' missing"), noHost}},
      {"sip:b:", "3 |sip||b|0|", {badPort}},
      {"sip:b:5;a;", "3 |sip||b|5|;a", {badParam}},
      {"sip:a@b.test junk", "3 |sip|a|b.test|0|", {}},
      {"sip:b.test\r\n", "3 |sip||b.test|0|", {}},
      {"sip:b.test;lr?x=1&y", "3 |sip||b.test|0|;lr", {}},
      {"<sip:a@b.test:7;lr", "3 |sip|a|b.test|7|;lr", {noBracket}},
      {"<sip:b.test >", "3 |sip||b.test|0|", {noBracket}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    SipAddress address(toSipString(c.text));
    EXPECT_EQ(c.dump, dump(address));
    EXPECT_EQ(c.log, takeLog());
    if (c.dump[0] == '0') {
      expectToReadBack(address);
    }
  }
  EXPECT_EQ(Lines{}, takeAssertions());
}

TEST_F(SipAddressTest, JoinsADisplayNameAndAUri) {
  EXPECT_EQ("0 |sip|a|b|7|;lr", dump(SipAddress("", "sip:a@b:7;lr")));
  EXPECT_EQ("0 \"B\"|sip|a|b|7|;lr", dump(SipAddress(" \"B\" ", " <sip:a@b:7;lr>x")));
  EXPECT_EQ(Lines{}, takeLog());
  EXPECT_EQ("3 ||||0|", dump(SipAddress("<", "")));
  EXPECT_EQ(Lines{fails("SipAddress | empty URI")}, takeLog());
  EXPECT_EQ("3 ||||0|", dump(SipAddress("<", "sip:b")));
  EXPECT_EQ(Lines{fails("setDisplayName | parsing failed")}, takeLog());
  EXPECT_EQ("3 B|sip||b|0|", dump(SipAddress("B", "sip:b x")));
  EXPECT_EQ(Lines{fails("SipAddress | trailing chars in URI")}, takeLog());
}

TEST_F(SipAddressTest, LeavesAStreamAfterTheBracket) {
  const auto rest = [](SipStrStream stream, const char* expected) {
    stream.discard(2);
    EXPECT_EQ(expected, dump(SipAddress(stream)));
    return stream.length() - stream.pos();
  };
  EXPECT_EQ(6U, rest(SipStrStream("x, \r\n\t<sip:b>;t=1,<"), "0 |sip||b|0|"));
  EXPECT_EQ(1U, rest(SipStrStream("x,\"B\"\t<sip:a@b;lr> "), "0 \"B\"|sip|a|b|0|;lr"));
  EXPECT_EQ(2U, rest(SipStrStream("x,sip:b"), "3 sip||||0|"));
  EXPECT_EQ(0U, rest(SipStrStream("x,*"), "3 *||||0|"));
  EXPECT_EQ(Lines{}, takeLog());
}

struct OpenAddress : SipAddress {
  using SipAddress::parseNameAddr;
  using SipAddress::SipAddress;
};

TEST_F(SipAddressTest, ReportsEachOutputThatIsMissingAndTakesOneForAll) {
  OpenAddress address("*");
  SipString text;
  SipPort port;
  SipAddrParamList list;
  for (int missing = 0; missing < 6; ++missing) {
    const auto piece = [&](int i) { return i == missing ? nullptr : &text; };
    SipPort* number = missing == 4 ? nullptr : &port;
    SipAddrParamList* params = missing == 5 ? nullptr : &list;
    SipStrStream stream("B <sip:b.test>");
    EXPECT_EQ(
        3U, address.parseNameAddr(stream, piece(0), piece(1), piece(2), piece(3), number, params));
    EXPECT_EQ(missing == 0 ? 0U : 3U, stream.pos());
  }
  EXPECT_EQ(Lines(11, kSource), takeAssertions());  // two for each null, one for the name
  EXPECT_EQ(Lines(5, fails("parseAddrSpec | Input Parameter NULL")), takeLog());
  SipStrStream stream("B <sip:a@c.test;lr>");
  SipString one;
  EXPECT_EQ(VARN_OK, address.parseNameAddr(stream, &one, &one, &one, &one, &port, &list));
  EXPECT_EQ("c.test", view(one));
}

enum Setter { kDisplayName, kScheme, kUser, kHost, kUri, kPort, kFlag, kRemoved };

const struct {
  const char* name;
  VARN_EXCEPTION_CODES (*set)(SipAddress& address, const SipString& value);
} kSetters[] = {
    {"setDisplayName", [](auto& a, auto& value) { return a.setDisplayName(value); }},
    {"setScheme", [](auto& a, auto& value) { return a.setScheme(value); }},
    {"setUser", [](auto& a, auto& value) { return a.setUser(value); }},
    {"setHost", [](auto& a, auto& value) { return a.setHost(value); }},
    {"setURI", [](auto& a, auto& value) { return a.setURI(value); }},
    {"setPort",
     [](auto& a, auto& value) {
       return a.setPort(value.length() == 0 ? 0 : 65535), a.GetLastErrorCode();
     }},
    {"setParameter", [](auto& a, auto& value) { return a.setParameter(value, ""); }},
    {"removeParameter", [](auto& a, auto& value) { return a.removeParameter(value); }},
};

constexpr const char* kKept = "Bob <sip:a:p@b.test:5070;lr>";

const struct {
  Setter setter;
  std::string_view value;
  std::string_view text;  // of kKept after the change
  Lines log;
} kChanges[] = {
    {kDisplayName, " \"A B\" ", "\"A B\" <sip:a:p@b.test:5070;lr>", {}},
    {kDisplayName, "", "<sip:a:p@b.test:5070;lr>", {}},
    {kDisplayName, " ", kKept, {fails("setDisplayName | parsing failed")}},
    {kDisplayName, "A<", kKept, {fails("setDisplayName | trailing characters in display name")}},
    {kScheme, " SIPS ", "Bob <SIPS:a:p@b.test:5070;lr>", {}},
    {kScheme, "", kKept, {fails("setScheme | NULL or empty scheme")}},
    {kScheme, "1", kKept, {fails("setScheme | parsing failed")}},
    {kScheme, "sip:", kKept, {fails("setScheme | trailing characters in scheme")}},
    {kUser, "\tx;:y ", "Bob <sip:x;:y@b.test:5070;lr>", {}},
    {kUser, "", "Bob <sip:b.test:5070;lr>", {}},
    {kUser, ":y", kKept, {fails("setUser | parsing failed")}},
    {kUser, "x\0"sv, kKept, {fails("setUser | trailing characters in user")}},
    {kHost, "c.test ", "Bob <sip:a:p@c.test:5070;lr>", {}},
    {kHost, "", kKept, {fails("setHost | NULL or empty host")}},
    {kHost, "a.1", kKept, {fails("setHost | parsing failed")}},
    {kHost, "c:1", kKept, {fails("setHost | trailing characters in host")}},
    {kUri, "<sip:x@y.test;transport=tcp>z", "Bob <sip:x@y.test;lr>", {}},
    {kUri, " sips:c.test:1?x=y ", "Bob <sips:c.test:1;lr>", {}},
    {kUri, "", kKept, {fails("parseURI - couldn't find scheme")}},
    {kUri, "sip:c.test x", kKept, {fails("SipAddress | trailing chars in URI")}},
    {kUri, "<sip:c.test:1;x", kKept, {fails("parseURI missing '>'")}},
    {kPort, "65535", "Bob <sip:a:p@b.test:65535;lr>", {}},
    {kPort, "", "Bob <sip:a:p@b.test;lr>", {}},
    {kFlag, "LR", "Bob <sip:a:p@b.test:5070;LR>", {}},
    {kRemoved, "LR", "Bob <sip:a:p@b.test:5070>", {}},
};

TEST_F(SipAddressTest, ChangesOnePieceByItsRuleOrNothing) {
  for (const auto& c : kChanges) {
    SCOPED_TRACE(c.value);
    SipAddress address(kKept);
    const VARN_EXCEPTION_CODES code = c.log.empty() ? VARN_OK : VARN_INVALID_INPUT;
    EXPECT_EQ(code, kSetters[c.setter].set(address, toSipString(c.value)));
    EXPECT_EQ(code, address.GetLastErrorCode());
    EXPECT_EQ(c.log, takeLog());
    EXPECT_EQ(c.text, view(address.toString()));
    expectToReadBack(address);
  }
}

TEST_F(SipAddressTest, WritesItsPresentStateWhateverItWroteBefore) {
  for (const auto write : {&SipAddress::toString, &SipAddress::getURI}) {
    for (const auto& first : kChanges) {
      for (const auto& second : kChanges) {
        SipAddress silent(kKept);
        SipAddress writing(kKept);
        for (const auto* each : {&first, &second}) {
          (writing.*write)();
          kSetters[each->setter].set(writing, toSipString(each->value));
          kSetters[each->setter].set(silent, toSipString(each->value));
        }
        ASSERT_EQ(view(silent.toString()), view(writing.toString()));
        ASSERT_EQ(view(silent.getURI()), view(writing.getURI()));
      }
    }
  }
}

TEST_F(SipAddressTest, RefusesEveryChangeOfAWildcard) {
  for (const auto& c : kSetters) {
    SCOPED_TRACE(c.name);
    SipAddress address(" *");
    EXPECT_EQ(&c == &kSetters[kRemoved] ? VARN_OK : VARN_INVALID_INPUT, c.set(address, ""));
    EXPECT_EQ(Lines{fails(std::string(c.name) + " | cannot modify wildcard address")}, takeLog());
    address.clearParamList();
    EXPECT_EQ("**", toStdString(address.toString()) + toStdString(address.getURI()));
    EXPECT_EQ("0 *||||0|", dump(address));
  }
}

TEST_F(SipAddressTest, ReturnsThePortOfItsSchemeIfItHasNone) {
  const std::pair<const char*, unsigned short> cases[] = {
      {"sip:b", 5060}, {"SIPS:b:0", 5061}, {"sips:b:1", 1}, {"sipsx:b", 5060}, {"*", 0}};
  for (const auto& [text, port] : cases) {
    EXPECT_EQ(port, SipAddress(text).getPort()) << text;
  }
}

TEST_F(SipAddressTest, StoresSuccessOfAWriterAndLeavesTheCodeOnClearingParameters) {
  SipAddress address("sip:b.test;a;b");
  address.toString();
  address.VarnSetLastErrorCode(VARN_SHORT_INPUT);
  address.toString();
  EXPECT_EQ(VARN_OK, address.GetLastErrorCode());
  address.VarnSetLastErrorCode(VARN_SHORT_INPUT);
  const SipString** names = address.getParameterNames();
  EXPECT_EQ(VARN_OK, address.GetLastErrorCode());
  EXPECT_EQ("ba", toStdString(*names[0]) + toStdString(*names[1]));
  address.VarnSetLastErrorCode(VARN_SHORT_INPUT);
  address.clearParamList();
  EXPECT_EQ(VARN_SHORT_INPUT, address.GetLastErrorCode());
  EXPECT_TRUE(names == address.getParameterNames() && names[0] == nullptr);
  EXPECT_EQ("sip:b.test", view(address.toString()));
}

TEST_F(SipAddressTest, ReportsOutOfMemoryAndChangesNothing) {
  const SipString star("*");
  const SipString none;
  const SipString uri("sip:a@b.test:7");
  const SipString before("Bob <sip:a@b.test:7>");
  EXPECT_EQ(Runs{{}}, sweepAllocations([&] {
              SipAddress address(star);
              const VARN_EXCEPTION_CODES code = address.GetLastErrorCode();
              EXPECT_EQ(code == VARN_OK, address.isWildcard());
              EXPECT_EQ(code == VARN_OK ? "**" : "::",
                        toStdString(address.toString()) + toStdString(address.getURI()));
              return code;
            }));
  EXPECT_EQ((Runs{{fails("SipAddress | SipString constructor failed")}, {}}),
            sweepAllocations([&] { return textCode(SipAddress(none, uri), view(uri)); }));
  EXPECT_EQ((Runs{{fails("SipAddress | invalid SipStrStream argument")}, {}}),
            sweepAllocations([&] {
              SipStrStream stream(before);
              return textCode(SipAddress(stream), view(before), VARN_INVALID_INPUT);
            }));
  const char* const noStream = " | SipStrStream constructor failed";
  const char* const noString = " | SipString constructor failed";
  const char* const noPiece = " | Stream.get failed";
  const char* const noRoom = " | assignment failed";
  const struct {
    Setter setter;
    SipString value;
    std::string_view after;
    Lines log;
  } cases[] = {
      {kDisplayName, "longer", "longer <sip:a@b.test:7>", {noStream, noPiece, noRoom}},
      {kScheme, "longer", "Bob <longer:a@b.test:7>", {noString, " | Stream.get() failed", noRoom}},
      {kUser, "longer", "Bob <sip:longer@b.test:7>", {noString, noPiece, "| assignment failed"}},
      {kHost, "longer.test", "Bob <sip:a@longer.test:7>", {noStream, noRoom}},
      {kUri, "sips:longer@longer.test:65535", "Bob <sips:longer@longer.test:65535>", {noStream}},
  };
  for (const auto& c : cases) {
    Runs runs = {{fails("SipAddress | SipStrStream constructor failed")}, {}};
    for (const std::string& line : c.log) {
      runs.push_back({fails(kSetters[c.setter].name + line)});
    }
    runs.push_back({});
    EXPECT_EQ(runs, sweepAllocations([&] {
                SipAddress address(before);
                const VARN_EXCEPTION_CODES code = textCode(address, view(before));
                if (code != VARN_OK || kSetters[c.setter].set(address, c.value) == VARN_OK) {
                  return code == VARN_OK ? textCode(address, c.after) : code;
                }
                EXPECT_EQ(VARN_RESOURCE_FAILURE, address.GetLastErrorCode());
                EXPECT_STREQ("sip", address.getScheme().c_str());
                EXPECT_STREQ("a", address.getUser().c_str());
                EXPECT_STREQ("b.test", address.getHost().c_str());
                EXPECT_EQ(view(before), view(address.toString()));
                return VARN_RESOURCE_FAILURE;
              }));
  }
}

}  // namespace
