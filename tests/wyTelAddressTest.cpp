// wyTelAddressTest.cpp - what a tel address is read from, changed to, written as and converted to.
#include "wyTelAddress.h"

#include <algorithm>
#include <functional>
#include <random>

#include "libraryTest.h"
#include "naive.h"

namespace {

constexpr const char* kSource = "sip_utility/src/wyTelAddress";

// Returns the line of a failure of the address; "TelAddress::" is left out of the message.
std::string fails(const std::string& message) {
  return failureLine(kSource, "TelAddress::" + message);
}

// Returns the last line of a refusal. "TelAddress::" is left out of its reason. A reason that
// begins with a blank also leaves out "parseTelNameAddr".
std::string lineOf(const std::string& reason) {
  if (reason[0] == 'S') {
    const bool listed = reason.find("duplicate param ") != reason.npos;
    return failureLine(listed ? kSource : "sip_utility/src/wySipParam", reason);
  }
  return fails(reason[0] == ' ' ? "parseTelNameAddr" + reason : reason);
}

// Returns the last line of a log, which must have at most one failure.
std::string lastOf(const Lines& log) {
  EXPECT_GE(1, std::count_if(log.begin(), log.end(), [](auto& line) { return line[0] == '4'; }));
  return log.empty() ? "" : log.back();
}

// code type, "<" for brackets, display name|number|isub|ext|context|parameters in their order
std::string dump(const TelAddress& address) {
  std::string text = std::to_string(address.GetLastErrorCode()) + ' ' +
                     std::to_string(address.getType()) + (address.isBracketed() ? "<" : "") +
                     toStdString(address.getDisplayName());
  for (const auto* piece : {&address.getPhoneNumber(), &address.getISDNSubAddr(),
                            &address.getExtension(), &address.getContext()}) {
    text += '|' + toStdString(*piece);
  }
  return text + '|' + paramTexts(address);
}

// Reads the written text again, which must make the same address. Brackets that are not written are
// not compared.
void expectToReadBack(TelAddress& address) {
  const std::string text = toStdString(address.toString());
  TelAddress again(address.toString());
  EXPECT_EQ(text, view(again.toString()));
  EXPECT_EQ(text.back() == '>', again.isBracketed());
  std::string expected = dump(address);
  if (again.isBracketed() && !address.isBracketed()) {
    expected.insert(3, "<");
  }
  EXPECT_EQ(expected, dump(again));
  const bool unforeseen = text[0] == '<' && text.find(';') == std::string::npos;
  EXPECT_EQ(text.size(), address.getStringLength() + (unforeseen ? 2 : 0));
  SipString uri;
  EXPECT_EQ(VARN_OK, address.getURIString(uri));
  EXPECT_EQ(address.getURIStringLength(), uri.length() + 4);
  EXPECT_NE(std::string::npos, text.find("tel:" + toStdString(uri)));
}

using TelAddressTest = LibraryTest;

TEST_F(TelAddressTest, ReadsACompleteTextOrKeepsThePiecesBeforeItsFault) {
  const char* noOpening = " uri doesn't begin with display name or tel: or '<' ";
  const char* noBracket = " missing < after display name";
  const char* noScheme = " missing 'tel:' scheme";
  const char* noNumber = " parseTelephoneURI no valid phonenumber";
  const char* const cases[][3] = {
      {"\r\n tel:+1-201-555-0123", "0 2|+1-201-555-0123||||", ""},
      {"tel:(7)*#aF.;phone-context=a.test.", "0 1|(7)*#aF.|||a.test.|", ""},
      {"tel:+-1;ext=(2);phone-context=+33-1;b;a=1", "0 2|+-1||(2)|+33-1|;a=1;b", ""},
      {"<tel:+1;isub=%41:[;Phone-context=x>;y", "0 2<|+1|%41:[|||;Phone-context=x", ""},
      {"Bob  B. <tel:+1;ext=12>x", "0 2<Bob  B.|+1||12||", ""},
      {"\"\\\"\xC3\xA4\"<tel:1>", "0 1<\"\\\"\xC3\xA4\"|1||||", ""},
      {"tel:1 ;ext=1", "0 1|1||||", ""},
      {"tel:1;ISUB=x;Ext=y;b-1", "0 1|1||||;b-1;Ext=y;ISUB=x", ""},
      {"tel <tel:1>", "0 1<tel|1||||", ""},
      {"", "3 0|||||", "TelAddress | NULL or empty address"},
      {" ", "3 0|||||", noOpening},
      {"\"Bob <tel:1>", "3 0|||||", noOpening},
      {"Bob tel:+1", "3 0Bob tel|||||", noBracket},
      {"TEL:1", "3 0TEL|||||", noBracket},
      {"<sip:a>", "3 0<|||||", noScheme},
      {"< tel:1>", "3 0<|||||", noScheme},
      {"tel:", "3 1|||||", noNumber},
      {"<tel:-.()>", "3 1<|||||", noNumber},
      {"tel:+;a", "3 2|||||", noNumber},
      {"tel:1;isub=;a", "3 1|1||||", " could not match isub param value"},
      {"tel:1;ext=x", "3 1|1||||", " could not match ext param value"},
      {"tel:1;ext=2;phone-context=1.", "3 1|1||2||", " could not match context param value"},
      {"tel:1;isub=x;ext=1", "3 1|1|x|||", "SipParamList::parseParamList - duplicate param ext"},
      {"tel:1;ext=1;isub", "3 1|1||1||", "SipParamList::parseParamList - duplicate param isub"},
      {"<tel:1;a;phone-context=x>", "3 1<|1||||;a",
       "SipParamList::parseParamList - duplicate param phone-context"},
      {"tel:1;b;a;B", "3 1|1||||;a;b", "SipParamList::parseParamList - duplicate parameter name"},
      {"tel:1;b;_", "3 1|1||||;b", "SipParamList::parseParamList - bad parameter name"},
      {"<tel:1;b=>", "3 1<|1||||", "SipParamList::parseParamList - bad parameter value"},
      {"<tel:1;b ", "3 1<|1||||;b", "parseTelephoneURI uri with '<' does not terminate with '>'"},
  };
  for (const auto& [text, pieces, reason] : cases) {
    SCOPED_TRACE(text);
    TelAddress address(text);
    EXPECT_EQ(pieces, dump(address));
    const Lines log = takeLog();
    if (pieces[0] == '0') {
      EXPECT_EQ(Lines{}, log);
      expectToReadBack(address);
    } else {
      EXPECT_EQ(lineOf(reason), lastOf(log));
    }
  }
  EXPECT_EQ(Lines{}, takeAssertions());
}

TEST_F(TelAddressTest, ReadsAStreamIntoEachOfItsOutputsOrIntoNone) {
  SipString texts[5];
  TelAddrParamList list;
  TelAddress address("tel:1");
  for (int missing = 6; missing >= 0; --missing) {
    const auto piece = [&](int i) { return i == missing ? nullptr : &texts[i]; };
    SipStrStream stream("x<tel:+1;ext=2;phone-context=b>y");
    stream.discard(1);
    const VARN_EXCEPTION_CODES code = address.parseTelNameAddr(
        stream, piece(0), piece(1), piece(2), piece(3), piece(4), missing == 5 ? nullptr : &list);
    EXPECT_EQ(missing == 6 ? VARN_OK : VARN_INVALID_INPUT, code);
    EXPECT_EQ(missing == 6 ? 31U : 1U, stream.pos());
  }
  EXPECT_EQ("0 2<|1||||", dump(address));
  EXPECT_EQ("|+1||2|b", toStdString(texts[0]) + '|' + toStdString(texts[1]) + '|' +
                            toStdString(texts[2]) + '|' + toStdString(texts[3]) + '|' +
                            toStdString(texts[4]));
  EXPECT_EQ(Lines(6, kSource), takeAssertions());
  EXPECT_EQ(Lines(6, fails("parseTelNameAddr | Input Parameter NULL")), takeLog());
  // One string for several outputs has the last text. What begins no address leaves it alone.
  SipString& one = texts[0];
  const auto code = [&](const char* text) {
    SipStrStream stream(text);
    return address.parseTelNameAddr(stream, &one, &one, &one, &one, &one, &list);
  };
  EXPECT_EQ(VARN_OK, code("B <tel:+1;phone-context=c>"));
  EXPECT_EQ(VARN_INVALID_INPUT, code(";"));
  EXPECT_EQ("c", view(one));
}

enum Setter { kName, kNumber, kIsub, kExt, kContext, kRemoved, kParam };

constexpr VARN_EXCEPTION_CODES (TelAddress::*kSetters[])(const SipString&) = {
    &TelAddress::setDisplayName, &TelAddress::setPhoneNumber, &TelAddress::setISDNSubAddr,
    &TelAddress::setExtension,   &TelAddress::setContext,     &TelAddress::removeParameter};

VARN_EXCEPTION_CODES change(TelAddress& address, Setter setter, const std::string& value) {
  const std::size_t equal = std::min(value.find('='), value.size());
  return setter == kParam ? address.setParameter(toSipString(value.substr(0, equal)),
                                                 toSipString(value.substr(equal).erase(0, 1)))
                          : (address.*kSetters[setter])(toSipString(value));
}

constexpr const char* kBare = "tel:+1";
constexpr const char* kFull = "B <tel:+1;ext=7;phone-context=c;b>";
constexpr const char* kLocal = "<tel:12;isub=a;phone-context=c>";

const struct {
  const char* from;
  Setter setter;
  std::string value;
  const char* text;  // after the change
} kChanges[] = {
    {kBare, kName, " \"A B\" ", "\"A B\" <tel:+1>"},
    {"<tel:+1>", kName, "", "tel:+1"},
    {kFull, kName, "", "<tel:+1;ext=7;phone-context=c;b>"},
    {kBare, kNumber, "+2.(3) ", "tel:+2.(3)"},
    {kFull, kNumber, "*2#", "B <tel:*2#;ext=7;phone-context=c;b>"},
    {kLocal, kNumber, "+5", "<tel:+5;isub=a;phone-context=c>"},
    {kBare, kIsub, "\ta1 ", "<tel:+1;isub=a1>"},
    {kFull, kExt, "(8)", "B <tel:+1;ext=(8);phone-context=c;b>"},
    {kBare, kContext, "d.test", "<tel:+1;phone-context=d.test>"},
    {kLocal, kContext, "+(3)", "<tel:12;isub=a;phone-context=+(3)>"},
    {kFull, kParam, "A=%41", "B <tel:+1;ext=7;phone-context=c;A=%41;b>"},
    {kBare, kParam, "iSub=x", "<tel:+1;isub=x>"},
    {kFull, kParam, "EXT=8", "B <tel:+1;ext=8;phone-context=c;b>"},
    {kLocal, kParam, "Phone-Context=d", "<tel:12;isub=a;phone-context=d>"},
    {kFull, kRemoved, "B", "B <tel:+1;ext=7;phone-context=c>"},
    {kFull, kRemoved, "Ext", "B <tel:+1;phone-context=c;b>"},
    {kFull, kRemoved, "PHONE-context", "B <tel:+1;ext=7;b>"},
    {kLocal, kRemoved, "ISUB", "<tel:12;phone-context=c>"},
    {kBare, kRemoved, "none", "tel:+1"},
};

TEST_F(TelAddressTest, ChangesOnePieceByItsRule) {
  for (const auto& c : kChanges) {
    SCOPED_TRACE(c.from + (' ' + c.value));
    TelAddress address(c.from);
    address.VarnSetLastErrorCode(VARN_SHORT_INPUT);
    EXPECT_EQ(VARN_OK, change(address, c.setter, c.value));
    EXPECT_EQ(VARN_OK, address.GetLastErrorCode());
    EXPECT_STREQ(c.text, address.toString().c_str());
    expectToReadBack(address);
    EXPECT_EQ(Lines{}, takeLog());
  }
}

TEST_F(TelAddressTest, RefusesWhatIsNoPieceAndChangesNothing) {
  const std::string exclusive = " param exists already";
  const struct {
    const char* from;
    Setter setter;
    const char* value;
    std::string reason;  // a trace, after "3"
  } cases[] = {
      {kFull, kName, " ", "TelAddress::setDisplayName | parsing failed"},
      {kFull, kName, "A<", "TelAddress::setDisplayName | trailing characters in display name"},
      {kBare, kNumber, "", "TelAddress::setPhoneNumber | NULL or empty string"},
      {kBare, kNumber, " +2",
       "Converting from global to local phone number type not allowed unless phone-context "
       "parameter is set"},
      {kFull, kNumber, " +2", "TelAddress::setPhoneNumber | parsing failed"},
      {kBare, kNumber, "+1x", "TelAddress::setPhoneNumber | trailing characters in scheme"},
      {kFull, kIsub, "", "TelAddress::setISDNSubAddr | NULL or empty ISDNSubAddr"},
      {kFull, kIsub, "?", "3TelAddress::setISDNSubAddr | mutual exclusive ext" + exclusive},
      {kBare, kIsub, "?", "TelAddress::setISDNSubAddr | parsing failed"},
      {kLocal, kIsub, "a;", "TelAddress::setISDNSubAddr | trailing characters in scheme"},
      {kLocal, kExt, "", "TelAddress::setExtension | NULL or empty string"},
      {kLocal, kParam, "ext=1", "3TelAddress::setExtension | mutual exclusive isub" + exclusive},
      {kFull, kExt, "+", "TelAddress::setExtension | parsing failed"},
      {kFull, kExt, "1a", "TelAddress::setExtension | trailing characters in scheme"},
      {kFull, kContext, "", "TelAddress::setContext | NULL or empty string"},
      {kFull, kContext, "-", "TelAddress::setContext | parsing failed"},
      {kFull, kContext, "d:", "TelAddress::setContext | trailing characters in scheme"},
      {kFull, kParam, "ISUB", "isub BNF does not allow parameter without value"},
      {kLocal, kParam, "EXT", "extension BNF does not allow parameter without value"},
      {kFull, kParam, "PHONE-CONTEXT", "context BNF does not allow parameter without value"},
      {kLocal, kRemoved, "Phone-Context",
       "TelAddress::removeParameter | trying to remove 'phone-context' from Local phone type"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.reason);
    TelAddress address(c.from);
    const std::string before = dump(address);
    EXPECT_EQ(VARN_INVALID_INPUT, change(address, c.setter, c.value));
    EXPECT_EQ(VARN_INVALID_INPUT, address.GetLastErrorCode());
    EXPECT_EQ(c.reason[0] == '3' ? traceLine(kSource, c.reason.substr(1))
                                 : failureLine(kSource, c.reason),
              lastOf(takeLog()));
    address.VarnSetLastErrorCode(VARN_OK);
    EXPECT_EQ(before, dump(address));
    EXPECT_STREQ(c.from, address.toString().c_str());
  }
}

TEST_F(TelAddressTest, WritesItsPresentStateWhateverItWroteBefore) {
  for (const auto& first : kChanges) {
    for (const auto& second : kChanges) {
      TelAddress silent(first.from);
      TelAddress writing(first.from);
      for (const auto* each : {&first, &second}) {
        writing.toString();
        change(writing, each->setter, each->value);
        change(silent, each->setter, each->value);
      }
      ASSERT_EQ(view(silent.toString()), view(writing.toString()));
      writing.VarnSetLastErrorCode(VARN_SHORT_INPUT);
      writing.toString();  // as it is kept
      EXPECT_EQ(VARN_OK, writing.GetLastErrorCode());
    }
  }
}

TEST_F(TelAddressTest, NamesItsParametersAndFindsThemInAnyCase) {
  const auto names = [](TelAddress& address) {
    std::string all;
    address.VarnSetLastErrorCode(VARN_SHORT_INPUT);
    for (const SipString** name = address.getParameterNames(); *name != nullptr; ++name) {
      all += toStdString(**name) + ' ';
    }
    EXPECT_EQ(VARN_OK, address.GetLastErrorCode());
    return all;
  };
  TelAddress bare(kBare);
  EXPECT_EQ("", names(bare));
  EXPECT_EQ(nullptr, bare.getParameter("ext"));
  EXPECT_EQ(nullptr, bare.getParameter("PHONE-CONTEXT"));
  TelAddress local("tel:1;isub=x;phone-context=y;a;b=z;c");
  EXPECT_EQ("c b a isub phone-context ", names(local));
  for (const auto& [name, value] :
       {std::pair{"ISUB", "x"}, {"Phone-Context", "y"}, {"B", "z"}, {"A", ""}}) {
    ASSERT_NE(nullptr, local.getParameter(name)) << name;
    EXPECT_STREQ(value, local.getParameter(name)->c_str());
  }
  local.removeParameter("a");
  local.removeParameter("Isub");
  local.setParameter("ext", "5");
  EXPECT_EQ("c b ext phone-context ", names(local));
}

TEST_F(TelAddressTest, EmptiesItsNamesOnlyWhereOneOfThemIsGone) {
  const struct {
    const char* text;
    const char* removed;
    bool empties;
  } cases[] = {
      {"tel:+1;a", "none", false},
      {"tel:+1;a", "Ext", false},
      {"tel:+1;a", "ISUB", false},                        // set after the names were taken
      {"tel:1;phone-context=c", "phone-context", false},  // refused
      {"tel:+1;a", "A", true},
      {"tel:+1;isub=x", "ISUB", true},
      {"tel:+1;phone-context=c", "phone-context", true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.removed);
    TelAddress address(c.text);
    EXPECT_EQ(VARN_OK, address.setParameter(" isub ", ""));  // goes to the list
    const SipString** held = address.getParameterNames();
    const SipString* first = held[0];
    EXPECT_EQ(VARN_OK, address.setISDNSubAddr("later"));
    address.removeParameter(c.removed);
    EXPECT_EQ(c.empties ? nullptr : first, held[0]);
  }
}

struct OpenList : TelAddrParamList {
  using TelAddrParamList::chain;
};

// Returns the name in lower case, by which a walk orders.
std::string folded(const SipParam* param) {
  std::string name = toStdString(param->getName());
  std::transform(name.begin(), name.end(), name.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; });
  return name;
}

std::vector<SipParam*> chainOf(const OpenList& list) {
  std::vector<SipParam*> nodes;
  for (SipParam* node = list.chain(); node != nullptr; node = node->next()) {
    nodes.push_back(node);
  }
  return nodes;
}

// The walk from a name on, by sorting the chain. Of equal names the first one counts.
std::vector<const SipParam*> sorted(const OpenList& list, const SipParam* above) {
  std::map<std::string, const SipParam*> nodes;
  for (const SipParam* node : chainOf(list)) {
    if (above == nullptr || folded(above) < folded(node)) {
      nodes.emplace(folded(node), node);
    }
  }
  std::vector<const SipParam*> walk;
  for (const auto& node : nodes) {
    walk.push_back(node.second);
  }
  return walk;
}

std::vector<const SipParam*> walked(const OpenList& list, const SipParam* from) {
  std::vector<const SipParam*> nodes;
  while ((from = list.nextParam(from)) != nullptr && nodes.size() < 1000) {
    nodes.push_back(from);
  }
  return nodes;
}

TEST_F(TelAddressTest, WalksParametersInOrderOfNamesThroughEveryChange) {
  std::mt19937 random(3966);
  const auto some = [&](std::size_t most) { return random() % most; };
  const auto randomName = [&](std::string_view bytes) {
    std::string name;
    do {
      name += bytes[some(bytes.size())];
    } while (some(5) != 0);
    return toSipString(name);
  };
  for (const unsigned int size : {3U, 40U}) {
    OpenList list;
    const auto anyNode = [&] { return chainOf(list)[some(chainOf(list).size())]; };
    const auto add = [&] { list.setParameter(randomName("aAbB-1"), ""); };
    const auto drop = [](SipParam* node) { siputility::HandedOut<SipParam>(node).reset(); };
    const std::function<void()> changes[] = {
        add,
        [&] { anyNode()->setName(randomName("aAbB@[`{\x7F\xE9")); },
        [&] { list.find(anyNode()->getName())->setName(anyNode()->getName()); },
        [&] { list.removeParameter(anyNode()->getName()); },
        [&] { list.setParameter(SipString(anyNode()->getName()), "v"); },
        [&] { drop(list.find(anyNode()->getName())); },
        [&] {
          list.removeParameter(list.chain()->getName());
          add();
        },
        [&] {
          SipStrStream stream(some(2) == 0 ? ";aab=1;X" : ";zz;ext=1");
          list.parseParamList(stream);
        },
    };
    EXPECT_EQ(nullptr, list.firstParam());
    for (int round = 0; round < 200 && !HasFailure(); ++round) {
      while (chainOf(list).size() != size) {
        chainOf(list).size() < size ? add() : drop(list.chain());
      }
      EXPECT_EQ(sorted(list, nullptr), walked(list, nullptr));
      changes[some(std::size(changes))]();
      EXPECT_EQ(sorted(list, nullptr), walked(list, nullptr));
      const auto walk = walked(list, nullptr);
      const SipParam* from = list.firstParam();
      for (std::size_t steps = some(walk.size()); steps != 0; --steps) {
        from = list.nextParam(from);
      }
      list.setParameter(toSipString('n' + std::to_string(round)), "");
      from = some(2) == 0 ? anyNode() : from;
      anyNode()->setName(randomName("aAbB-1"));
      EXPECT_EQ(sorted(list, from), walked(list, from));
      if (some(50) == 0) {
        list.clearParamList();
        EXPECT_EQ(nullptr, list.firstParam());
      }
    }
    takeLog();
  }
  EXPECT_EQ(Lines{}, takeAssertions());
}

TEST_F(TelAddressTest, WritesAListInWalkOrderWithOrWithoutMemoryForASort) {
  for (const int size : {15, 16, 17, 300}) {
    TelAddrParamList list;
    for (int i = 0; i < size; ++i) {
      list.setParameter(toSipString('n' + std::to_string(i * 7 % size)), i % 2 == 0 ? "v" : "");
    }
    list.find("n3")->setName("N5");  // two of one name: the newest is written
    list.find("n9")->setName("");
    const std::string walked = paramTexts(list);
    sweepAllocations([&] {
      SipString text;
      const VARN_EXCEPTION_CODES code = list.appendToString(text);
      EXPECT_TRUE(code != VARN_OK || walked == view(text));
      return code;
    });
  }
}

struct RoundaboutList : TelAddrParamList {
  const SipParam* firstParam() const override { return nextParam(nullptr); }
};

struct EveryOtherList : TelAddrParamList {
  const SipParam* nextParam(const SipParam* param) const override {
    const SipParam* passed = TelAddrParamList::nextParam(param);
    return passed == nullptr ? nullptr : TelAddrParamList::nextParam(passed);
  }
};

TEST_F(TelAddressTest, AsksADerivedListForTheFirstParameterAsForTheNext) {
  for (const char last : {'d', 'z'}) {
    RoundaboutList all;
    EveryOtherList some;
    std::string expected[2];
    for (char name = 'a'; name <= last; ++name) {
      all.setParameter(toSipString({&name, 1}), "");
      some.setParameter(toSipString({&name, 1}), "");
      expected[0] += {';', name};
      expected[1] += (name - 'a') % 2 == 0 ? "" : std::string{';', name};
    }
    SipString written[2];
    all.appendToString(written[0]);
    some.appendToString(written[1]);
    EXPECT_EQ(expected[0], view(written[0]));
    EXPECT_EQ(expected[1], view(written[1]));
  }
}

std::string converted(SipStrStream&& stream) {
  TelAddress address(kBare);
  SipString out("before");
  EXPECT_EQ(VARN_OK, address.convertTelToSipUserInfoSyntax(stream, out));
  EXPECT_EQ(VARN_OK, address.GetLastErrorCode());
  EXPECT_TRUE(stream.done());
  return toStdString(out);
}

TEST_F(TelAddressTest, ConvertsToAUserPartInLowerCase) {
  const auto naive = [](std::string_view text) {
    std::string out;
    while (!text.empty()) {
      const std::size_t unit =
          std::min(naive::run(text, naive::unreservedAnd("$&+,/;=?"), true), std::size_t{1});
      const auto c = static_cast<unsigned char>(text[0]);
      char escape[4];
      std::snprintf(escape, sizeof escape, "%%%02x", c);
      out += unit == 0 ? escape : std::string(1, static_cast<char>(std::tolower(c)));
      // the two digits of an escape are user characters themselves
      text.remove_prefix(1);
    }
    return out;
  };
  for (int c = 0; c < 256; ++c) {
    const std::string text(1, static_cast<char>(c));
    EXPECT_EQ(naive(text), converted(SipStrStream(toSipString(text))));
  }
  naive::forEachText({"A", "%", "4", "g", "#", ":", "\xE9", " "}, 4, [&](const std::string& text) {
    EXPECT_EQ(naive(text), converted(SipStrStream(toSipString(text))));
  });
  const std::pair<const char*, const char*> cases[] = {{" \tA \r\n B \t", "a%20%0d%0a%20b"},
                                                       {"A  \r\n", "a%20%20%0d%0a"},
                                                       {" \r\n ", ""},
                                                       {"\r\nA", "%0d%0aa"},
                                                       {"# # ", "%23%20%23"}};
  for (const auto& [text, out] : cases) {
    EXPECT_EQ(out, converted(SipLWSStrStream(text)));
  }
}

// Is done from a position on, whatever it has left.
class StoppingStream : public SipLWSStrStream {
 public:
  StoppingStream(const SipString& text, unsigned int end) : SipLWSStrStream(text), end_(end) {}
  bool done() const override { return pos() >= end_; }

 private:
  unsigned int end_;
};

TEST_F(TelAddressTest, ConvertsAStreamOfACallersClassUntilItIsDone) {
  const struct {
    std::string_view text;
    unsigned int end;  // past the text for a stream that is never done
    const char* out;
    unsigned int position;
  } cases[] = {
      {"1  2", 2, "1%20", 2},   {"1  2", 3, "1%20%20", 3}, {"##", 1, "%23", 1}, {"A", 0, "", 0},
      {"1 #", 9, "1%20%23", 3}, {"A", 9, "a", 1},          {"", 9, "", 0},
  };
  TelAddress address(kBare);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    StoppingStream stream(toSipString(c.text), c.end);
    SipString out;
    EXPECT_EQ(VARN_OK, address.convertTelToSipUserInfoSyntax(stream, out));
    EXPECT_EQ(c.out, view(out));
    EXPECT_EQ(c.position, stream.pos());
  }
}

TEST_F(TelAddressTest, BecomesASipAddressUpToTheFirstFailure) {
  const struct {
    const char* tel;
    const char* target;
    const char* text;
  } cases[] = {
      {"tel:+1-555;ext=7", "sip:x@h.test", "<sip:+1-555;ext=7@h.test;user=phone>"},
      {"\"B\" <tel:A#;phone-context=C;Z=%4A;a>", "D <sips:h:7;lr;User=ip>",
       "\"B\" <sips:a%23;phone-context=c;a;z=%4a@h:7;user=phone>"},
      {"tel:+1", "sip:", "<sip:+1@;user=phone>"},
      {"<sip:a>", "sip:x@h;lr", "<sip:h;user=phone>"},
      {"tel:+1", "*", "*"},
  };
  const std::string fixed = failureLine("sip_utility/src/wySipAddress",
                                        "SipAddress::setUser | cannot modify wildcard address");
  for (const auto& c : cases) {
    SCOPED_TRACE(c.tel);
    SipAddress target(c.target);
    TelAddress tel(c.tel);
    takeLog();
    const VARN_EXCEPTION_CODES code = target.isWildcard() ? VARN_INVALID_INPUT : VARN_OK;
    EXPECT_EQ(code, tel.toSipAddress(target));
    EXPECT_EQ(code, tel.GetLastErrorCode());
    EXPECT_EQ(c.text, view(target.toString()));
    EXPECT_EQ(code == VARN_OK ? Lines{} : Lines{fixed}, takeLog());
  }
}

TEST_F(TelAddressTest, ReportsOutOfMemoryAndChangesNothing) {
  const std::string noStream = fails("TelAddress | SipLWSStrStream constructor failed");
  const auto param = [](const char* text) {
    return failureLine("sip_utility/src/wySipParam", text);
  };
  const SipString before("\"Robert\" <tel:+1;phone-context=c.test;b=1>");
  // Sweeps an operation on such an address. The address itself is made first: its logs come first.
  // The run without a failure logs nothing.
  const auto check = [&](const Runs& logs, const auto& operation) {
    Runs runs = {{noStream}};
    runs.insert(runs.end(), logs.begin(), logs.end());
    runs.push_back({});
    EXPECT_EQ(runs, sweepAllocations([&] {
                TelAddress address(before);
                return address.GetLastErrorCode() == VARN_OK ? operation(address)
                                                             : address.GetLastErrorCode();
              }));
  };
  check({}, [&](TelAddress& address) { return textCode(address, toStdString(before)); });
  std::string many = "<tel:+1";
  for (int i = 10; i < 30; ++i) {
    many += ";p" + std::to_string(i);
  }
  const SipString longList = toSipString(many + '>');
  EXPECT_EQ((Runs{{noStream}, {kNotAssigned}, {}, {kNotAssigned}, {}}), sweepAllocations([&] {
              return textCode(TelAddress(longList), toStdString(longList));
            }));
  const SipString longer("longer-than-the-old-piece.test");
  const SipString digits("+1234567890123456789012345");
  const SipString extension("1234567890123456789012345");
  const struct {
    Setter setter;
    const SipString& value;
    std::string name;
    const char* get;
  } setters[] = {{kName, longer, "setDisplayName", " | Stream.get failed"},
                 {kNumber, digits, "setPhoneNumber", " | Stream.get() failed"},
                 {kIsub, longer, "setISDNSubAddr", " | Stream.get() failed"},
                 {kExt, extension, "setExtension", " | Stream.get() failed"},
                 {kContext, longer, "setContext", " | Stream.get() failed"}};
  for (const auto& c : setters) {
    check({{fails(c.name + " | SipStrStream constructor failed")},
           {fails(c.name + c.get)},
           {fails(c.name + " | assignment failed")}},
          [&](TelAddress& address) {
            const std::string old = dump(address);
            const VARN_EXCEPTION_CODES code = (address.*kSetters[c.setter])(c.value);
            EXPECT_EQ(code, address.GetLastErrorCode());
            address.VarnSetLastErrorCode(VARN_OK);
            EXPECT_EQ(code != VARN_OK, old == dump(address));
            EXPECT_LE(code, VARN_RESOURCE_FAILURE);
            return code;
          });
  }
  check({{param("SipParamList::getParameterNames - new failed")},
         {fails("getParameterNames - new failed")}},
        [](TelAddress& address) {
          const SipString** held = address.getParameterNames();
          const bool succeeds = address.GetLastErrorCode() == VARN_OK;
          EXPECT_EQ(succeeds, held != nullptr && held[1] != nullptr && held[2] == nullptr);
          return address.GetLastErrorCode();
        });
  const auto sip = [](const char* text) {
    return failureLine("sip_utility/src/wySipAddress", std::string("SipAddress::") + text);
  };
  const SipString uri("sip:h");
  check({{sip("SipAddress | SipStrStream constructor failed")},
         {},
         {fails("toSipAddress | SipStrStream constructor failed")},
         {},
         {sip("setUser | SipString constructor failed")},
         {sip("setUser | Stream.get failed")},
         {sip("setUser| assignment failed")},
         {sip("setDisplayName | SipStrStream constructor failed")},
         {sip("setDisplayName | Stream.get failed")},
         {sip("setDisplayName | assignment failed")},
         {param("SipParameterList::setParameter SipStrStream constructor failed")}},
        [&](TelAddress& address) {
          SipAddress target(uri);
          if (target.GetLastErrorCode() != VARN_OK) {
            return target.GetLastErrorCode();
          }
          const VARN_EXCEPTION_CODES code = address.toSipAddress(target);
          EXPECT_EQ(code, address.GetLastErrorCode());
          return code != VARN_OK
                     ? code
                     : textCode(target,
                                "\"Robert\" <sip:+1;phone-context=c.test;b=1@h;user=phone>");
        });
}

}  // namespace
