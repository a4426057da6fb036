// wySipParamTest.cpp - what parameter lists read, look up, change and write.
#include "wySipParam.h"

#include <algorithm>
#include <cctype>
#include <random>
#include <set>

#include "libraryTest.h"
#include "wySipMatch.h"

namespace {

using std::string_view_literals::operator""sv;

constexpr const char* kSource = "sip_utility/src/wySipParam";

const std::string kBadName =
    failureLine(kSource, "SipParamList::parseParamList - bad parameter name");
const std::string kBadValue =
    failureLine(kSource, "SipParamList::parseParamList - bad parameter value");
const std::string kDuplicate =
    failureLine(kSource, "SipParamList::parseParamList - duplicate parameter name");
const std::string kQuotedTag =
    traceLine(kSource, "SipParamList::parseParamList - Quoted Feature tag");

std::string rule(std::string_view text) { return traceLine("sip_utility/src/wySipMatch", text); }

std::string setFails(const std::string& reason) {
  return failureLine(kSource, "SipParameterList::setParameter " + reason);
}

// Writes the list, whose length must be the predicted one.
VARN_EXCEPTION_CODES writes(const SipParamList& list, std::string_view expected) {
  SipString out;
  const VARN_EXCEPTION_CODES code = list.appendToString(out);
  EXPECT_TRUE(code != VARN_OK || view(out) == expected) << view(out);
  EXPECT_EQ(expected.size(), list.getStringLength());
  return code;
}

VARN_EXCEPTION_CODES parse(SipParamList& list, const SipString& text) {
  SipStrStream stream(text);
  return stream.valid() ? list.parseParamList(stream) : VARN_RESOURCE_FAILURE;
}

using SipParamTest = LibraryTest;
using SipParamListTest = LibraryTest;

TEST_F(SipParamTest, LinksItselfAtTheFrontAndUnlinksItself) {
  SipParam* head = nullptr;
  SipParam last(&head);
  {
    SipParam middle(&head);
    SipParam first(&head);
    EXPECT_TRUE(head == &first && first.next() == &middle && middle.next() == &last);
    middle.remove();
    EXPECT_TRUE(first.next() == &last && middle.next() == nullptr);
    middle.insert(&head);
  }
  EXPECT_TRUE(head == &last && last.next() == nullptr);
  EXPECT_EQ(Lines{}, takeAssertions());
  { SipParam(nullptr).remove(); }
  EXPECT_EQ(Lines(3, kSource), takeAssertions());  // the third is the destructor's
}

TEST_F(SipParamTest, JudgesAValueByItsName) {
  SipParam* head = nullptr;
  SipParam param(&head);
  EXPECT_EQ(VARN_RESOURCE_FAILURE, param.setValue("v"));  // no name yet, but the value is there
  EXPECT_EQ("v", view(param.getValue()));
  EXPECT_EQ(VARN_OK, param.setName("n"));
  const SipString longer("longer");
  hostFailAllocation(1);
  EXPECT_EQ(VARN_OK, param.setValue(longer));  // the value is lost, the name is not
  EXPECT_EQ(0U, param.getValue().length());
}

TEST_F(SipParamListTest, ReadsTheParametersOfItsDialectAndWritesThemNewestFirst) {
  const std::string openQuote =
      rule("SipMatchQuotedString::doMatch - end of string without end quote");
  const std::string noHost = rule("SipMatchHost invalid character 0x22");
  enum { kNone, kAuth, kOther, kUri };
  const struct {
    int dialect;  // the type of a header, or of none for a URI
    std::string_view text;
    std::string_view rest;
    std::string_view written;
    Lines log;  // a last line of level 4 means a failure
  } cases[] = {
      {kUri, " ;a", " ;a", "", {}},
      {kUri, ";lr;transport=tcp?x", "?x", ";transport=tcp;lr", {}},
      {kUri, ";user=phone=x", "=x", ";user=phone", {}},
      {kUri, ";%41=[/:&+$];(b)", "", ";(b);%41=[/:&+$]", {}},
      {kUri, ";a\0;b"sv, "\0;b"sv, ";a", {}},
      {kUri, ";tag;branch", "", ";branch;tag", {}},
      {kUri, ";Tag=a;BRANCH=b;tagg=c", "", ";tagg=c;BRANCH=b;Tag=a", {}},
      {kUri, ";+i=\"<urn:\\\"x>\";a", "", ";a;+i=\"<urn:\\\"x>\"", {kQuotedTag}},
      {kUri, "; lr", " lr", "", {kBadName}},
      {kUri, ";a=1;\xFF", "\xFF", ";a=1", {kBadName}},
      {kUri, ";A=1;a=2", "=2", ";A=1", {kDuplicate}},
      {kUri, ";a=", "", "", {kBadValue}},
      {kUri, ";tag=abc", "abc", "", {kBadValue}},
      {kUri, ";b;branch=\"b\"", "\"b\"", ";b", {kBadValue}},
      {kUri, ";a=\"b", "\"b", "", {kQuotedTag, openQuote, kBadValue}},
      {kOther, ";a = 1 ;b", "", ";b;a=1", {}},
      {kOther, " \r\n ; a\t=\r\n 1 ,x", " ,x", ";a=1", {}},
      {kOther, ";a=\"x; \\\" y\";b", "", ";b;a=\"x; \\\" y\"", {}},
      {kOther, ";received=2001:db8::1", "", ";received=2001:db8::1", {}},
      {kOther, ";a=[", "", ";a=[", {}},                // an open bracket is a host of its own
      {kOther, ";a=b.test!c", "", ";a=b.test!c", {}},  // the token is longer than the host
      {kOther, ";a=::1!c;b", "!c;b", ";a=::1", {}},    // the address is longer than the token
      {kOther, ";tag=a%b;branch=c", "", ";branch=c;tag=a%b", {}},
      {kOther, ";a=", "", "", {rule("SipMatchHost invalid character 0xff"), kBadValue}},
      {kOther, ";tag=\"a\"", "\"a\"", "", {kBadValue}},
      {kOther, ";a=\"b", "\"b", "", {openQuote, noHost, kQuotedTag, openQuote, kBadValue}},
      {kAuth, " realm=\"x\", nonce=\"y\"", "", " nonce=\"y\",realm=\"x\"", {}},
      {kAuth, "\r\n\ta = 1\t,\r\n b;c", ";c", " b,a=1", {}},
      {kNone, " a=1,b", "", " b,a=1", {}},
      {kNone, "realm=\"x\"", "realm=\"x\"", "", {}},
      {kNone, " ,a", ",a", "", {kBadName}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    SipAddrParamList uri;
    SipHdrParamList header;
    if (c.dialect == kAuth || c.dialect == kOther) {  // else as it was made
      header.setHeaderType(static_cast<WY_SIP_SIPHEADER_TYPE>(c.dialect));
    }
    SipParamList& list = c.dialect == kUri ? static_cast<SipParamList&>(uri) : header;
    SipStrStream stream(toSipString(c.text));
    const bool fails = !c.log.empty() && c.log.back()[0] == '4';
    EXPECT_EQ(fails ? VARN_INVALID_INPUT : VARN_OK, list.parseParamList(stream));
    EXPECT_EQ(c.rest, c.text.substr(stream.pos()));
    EXPECT_EQ(VARN_OK, writes(list, c.written));
    EXPECT_EQ(c.log, takeLog());
  }
  EXPECT_EQ(Lines{}, takeAssertions());
}

TEST_F(SipParamListTest, FindsDuplicatesWhateverTheNames) {
  std::mt19937 random(3261);
  for (unsigned int round = 0; round < 500; ++round) {
    std::set<std::string> known;  // in lower case
    std::string text;
    std::string expected;
    for (bool isNew = true; isNew && known.size() < 100;) {
      std::string name(1 + round % 6 + random() % 2, ' ');
      std::generate(name.begin(), name.end(), [&] { return "aAbB-_"[random() % 6]; });
      text += ';' + name;
      expected.insert(0, ';' + name);
      std::transform(name.begin(), name.end(), name.begin(), ::tolower);
      isNew = known.insert(name).second;
      expected.erase(0, isNew ? 0 : name.size() + 1);
    }
    SipAddrParamList list;
    ASSERT_EQ(known.size() < 100 ? VARN_INVALID_INPUT : VARN_OK, parse(list, toSipString(text)));
    ASSERT_EQ(known.size() < 100 ? Lines{kDuplicate} : Lines{}, takeLog()) << text;
    ASSERT_EQ(VARN_OK, writes(list, expected)) << text;
  }
}

TEST_F(SipParamListTest, DistinguishesThousandsOfSimilarNames) {
  std::string text;
  std::string prefix;
  for (int i = 1; i <= 2500; ++i) {
    prefix += i % 2 == 0 ? 'a' : 'B';
    text += ';' + (i <= 1000 ? prefix : std::string(100, 'x') + std::to_string(i));
    text += (i % 2 == 0 ? ";N" : ";n") + std::to_string(i);
  }
  for (const char* last : {"", ";b", ";N1", ";n2500", ";bab", ";EARLIER"}) {
    SipAddrParamList list;
    EXPECT_EQ(VARN_OK, parse(list, ";earlier"));
    EXPECT_EQ(*last == '\0' ? VARN_OK : VARN_INVALID_INPUT, parse(list, toSipString(text + last)));
    EXPECT_EQ(*last == '\0' ? Lines{} : Lines{kDuplicate}, takeLog());
    EXPECT_EQ(text.size() + 8, list.getStringLength());
  }
}

TEST_F(SipParamListTest, SetsOnlyWhatItsGrammarCovers) {
  const struct {
    std::string_view name;
    std::string_view value;
    std::string_view written;
    Lines log;
  } cases[] = {
      {" q ", "\t0.5\r\n ", ";q=0.5;y;X=2", {}},
      {"x", "1", ";x=1;y", {}},
      {"Y", " ", ";Y;X=2", {}},
      {"tag", "1", ";tag=1;y;X=2", {}},  // the rule for tags is for parsed ones only
      {"", "1", ";y;X=2", {setFails("name is empty")}},
      {"a b", "1", ";y;X=2", {setFails("invalid name")}},
      {"x\r\n", "1", ";y;X=2", {setFails("invalid name")}},
      {"x", "1\0"sv, ";y;X=2", {setFails("invalid value")}},
      {"x", "\"1\"", ";y;X=2", {setFails("invalid value")}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.written);
    SipAddrParamList list;
    EXPECT_EQ(VARN_OK, parse(list, ";X=2;y"));
    const VARN_EXCEPTION_CODES code = list.setParameter(toSipString(c.name), toSipString(c.value));
    EXPECT_EQ(c.log.empty() ? VARN_OK : VARN_INVALID_INPUT, code);
    EXPECT_EQ(c.log, takeLog());
    EXPECT_EQ(VARN_RESOURCE_FAILURE, list.setParameter(" ", "1"));  // a name without a buffer
    EXPECT_EQ(VARN_OK, writes(list, c.written));
  }
  SipHdrParamList list;
  EXPECT_EQ(VARN_OK, list.setParameter("q", " \"c d\" "));
  EXPECT_EQ(VARN_OK, list.setParameter("r", ""));
  EXPECT_EQ(VARN_OK, writes(list, " r,q=\"c d\""));
  EXPECT_TRUE(list.getParameter("R")->length() == 0);
  list.find("r")->setName("");
  EXPECT_TRUE(list.getParameter("") == nullptr && list.removeParameter("") == VARN_OK);
  EXPECT_EQ(VARN_OK, writes(list, " ,q=\"c d\""));
}

TEST_F(SipParamListTest, KeepsItsNamesArrayUntilAParameterIsSetOrRemoved) {
  SipAddrParamList list;
  VARN_EXCEPTION_CODES code = VARN_INVALID_INPUT;
  EXPECT_EQ(nullptr, list.getParameterNames(&code));
  EXPECT_EQ(VARN_OK, code);
  const auto names = [&] {
    std::string text;
    for (const SipString** name = list.getParameterNames(&code); *name != nullptr; ++name) {
      text += view(**name);
    }
    return text;
  };
  parse(list, ";a;b");
  EXPECT_EQ("ba", names());
  parse(list, ";c");
  list.removeParameter("x");
  list.setParameter("d", "=");
  EXPECT_EQ("ba", names());
  list.removeParameter("A");
  EXPECT_EQ("cb", names());
  list.setParameter("d", "1");
  EXPECT_EQ("dcb", names());
  list.clearParamList();
  parse(list, ";e");
  EXPECT_EQ("", names());
  EXPECT_EQ(nullptr, list.getParameterNames(nullptr));
  EXPECT_EQ(Lines{kSource}, takeAssertions());
}

TEST_F(SipParamListTest, RemovesANodeFromTheChainThatACallerLedPastAnother) {
  for (const bool replaces : {false, true}) {
    SipAddrParamList list;
    EXPECT_EQ(VARN_OK, parse(list, ";d;c;b;a"));
    SipParam* a = list.find("a");
    SipParam* b = list.find("b");  // the caller's, once no chain leads to it
    SipParam* d = list.find("d");
    a->setNext(list.find("c"));
    EXPECT_EQ(VARN_OK, replaces ? list.setParameter("C", "1") : list.removeParameter("C"));
    EXPECT_TRUE(a->next() == d && b->next() == d);
    EXPECT_EQ(VARN_OK, writes(list, replaces ? ";C=1;a;d" : ";a;d"));
    EXPECT_EQ(VARN_OK, list.removeParameter(replaces ? "e" : "d"));
    siputility::HandedOut<SipParam>(b).reset();
    EXPECT_EQ(VARN_OK, writes(list, replaces ? ";C=1;a;d" : ";a"));
  }
  EXPECT_EQ(Lines{}, takeAssertions());
}

TEST_F(SipParamListTest, RemovesNodesInAnyOrderThatACallerChose) {
  const auto name = [](int i) { return toSipString(std::string(1, static_cast<char>('a' + i))); };
  int order[] = {0, 1, 2, 3};
  do {
    for (const int renewed : {-1, 0, 3}) {
      SipAddrParamList list;
      EXPECT_EQ(VARN_OK, parse(list, ";d;c;b;a"));
      SipParam* nodes[4];
      std::transform(order, order + 4, nodes, [&](int i) { return list.find(name(i)); });
      for (int i = 0; i < 3; ++i) {
        nodes[i]->setNext(nodes[i + 1]);
      }
      nodes[3]->setNext(nullptr);
      std::string text;
      for (const int i : order) {
        text += i == renewed ? "" : std::string(";") + static_cast<char>('a' + i);
      }
      if (renewed >= 0) {
        list.setParameter(name(renewed), "1");
        text = std::string(";") + static_cast<char>('a' + renewed) + "=1" + text;
      }
      EXPECT_EQ(VARN_OK, writes(list, text.c_str()));
      for (const int i : {2, 0, 3, 1}) {
        list.removeParameter(name(i));
        const std::size_t at = text.find(static_cast<char>('a' + i));
        text.erase(at - 1, i == renewed ? 4 : 2);
        EXPECT_EQ(VARN_OK, writes(list, text.c_str()));
      }
    }
  } while (std::next_permutation(order + 1, order + 4));
}

class NumberedList : public SipAddrParamList {
 public:
  using SipParamList::parseParam;
  unsigned int matchName(const SipStrStream& stream, unsigned int offset) const override {
    return SipMatchDigit().match(stream, offset);
  }
  const char* getSep(int first) const override { return first == 1 ? "?" : "&&"; }
};

TEST_F(SipParamListTest, AsksADerivedListForItsGrammarAndStoresNothingWithoutANode) {
  NumberedList list;
  EXPECT_EQ(VARN_OK, parse(list, ";1=ab;23"));
  EXPECT_EQ(VARN_OK, list.setParameter("4", "c"));
  EXPECT_EQ(VARN_INVALID_INPUT, list.setParameter("c", "4"));
  takeLog();
  for (const char* text : {"5=a", "4=a", "a", "5=="}) {
    SipStrStream stream(text);
    EXPECT_EQ(text == "5=a"sv ? VARN_OK : VARN_INVALID_INPUT, list.parseParam(nullptr, stream));
  }
  EXPECT_EQ((Lines{kDuplicate, kBadName, kBadValue}), takeLog());
  EXPECT_EQ(Lines(4, kSource), takeAssertions());
  EXPECT_EQ(VARN_OK, writes(list, "?4=c&&23&&1=ab"));
}

// Renames and removes its own nodes while it is asked for its rules.
class RestlessList : public SipHdrParamList {
 public:
  using SipParamList::head;
  using SipParamList::parseParam;
  unsigned int matchSep(const SipStrStream& stream, unsigned int offset, int first) const override {
    remove();
    return SipHdrParamList::matchSep(stream, offset, first);
  }
  unsigned int matchName(const SipStrStream& stream, unsigned int offset) const override {
    remove();
    return SipHdrParamList::matchName(stream, offset);
  }
  void remove() const {
    if (removes_ != nullptr) {
      const_cast<RestlessList*>(this)->removeParameter(removes_);
    }
  }
  const char* removes_ = nullptr;
};

TEST_F(SipParamListTest, ReadsOnWhereItsNodesChangeOnTheWay) {
  for (const int count : {2, 40}) {
    SCOPED_TRACE(count);
    RestlessList list;
    list.setHeaderType(WY_SIP_HEADER_TYPE_NON_AUTH);
    std::string text = ";x=1";
    for (int i = 0; i < count; ++i) {
      text += ";name-of-some-length-" + std::to_string(i);
    }
    EXPECT_EQ(VARN_OK, parse(list, toSipString(text)));
    list.removes_ = "X";
    EXPECT_EQ(VARN_OK, parse(list, ";x=2;y;x=3"));
    EXPECT_EQ(nullptr, list.find("x"));
    list.setParameter("x", "4");
    EXPECT_EQ(VARN_OK, list.setParameter(list.find("x")->getName(), "5"));
    EXPECT_EQ("5", view(*list.getParameter("x")));
    list.removes_ = nullptr;
    SipStrStream stream("a-name-that-is-longer-than-the-one-before=1");
    EXPECT_EQ(VARN_OK, list.parseParam(*list.head(), stream));
    SipStrStream again("A-NAME-THAT-IS-LONGER-THAN-THE-ONE-BEFORE");
    EXPECT_EQ(VARN_INVALID_INPUT, list.parseParam(*list.head(), again));
  }
}

TEST_F(SipParamListTest, FindsDuplicatesAndChangesNothingWhenOutOfMemory) {
  std::string text;
  for (int i = 1; i <= 70; ++i) {
    text += ";n" + std::to_string(i);
  }
  const SipString duplicated = toSipString(text + ";N40=v;x");
  const SipString name(" n40 ");
  const SipString value(" 1 ");
  const Runs given = sweepAllocations([&] {
    SipAddrParamList list;
    VARN_EXCEPTION_CODES code = parse(list, duplicated);
    EXPECT_NE(VARN_OK, code);
    const SipString** names = code == VARN_INVALID_INPUT ? list.getParameterNames(&code) : nullptr;
    if (code != VARN_OK) {
      return code;
    }
    code = list.setParameter(name, value);
    EXPECT_EQ(text.size() + (code == VARN_OK ? 2 : 0), list.getStringLength());
    if (code != VARN_OK) {
      EXPECT_EQ(names, list.getParameterNames(&code));
      return VARN_RESOURCE_FAILURE;
    }
    SipString out;
    return list.appendToString(out);
  });
  const std::string noNames = failureLine(kSource, "SipParamList::getParameterNames - new failed");
  const std::string noStream = setFails("SipStrStream constructor failed");
  // Eight parameters share an allocation. The second pair of lines is the index that does not get
  // its tree, the fourth one that gets no greater one: then the list finds the duplicate.
  EXPECT_EQ((Runs{{},
                  {kNotAssigned},
                  {kDuplicate},
                  {kNotAssigned},
                  {kDuplicate},
                  {kDuplicate, kNotAssigned},
                  {kDuplicate, noNames},
                  {kDuplicate, noStream},
                  {kDuplicate}}),
            given);
  const SipString digit("4");
  EXPECT_EQ((Runs{{noStream}, {}}), sweepAllocations([&] {
              NumberedList list;
              const VARN_EXCEPTION_CODES code = list.setParameter(digit, value);
              const VARN_EXCEPTION_CODES written = writes(list, code == VARN_OK ? "?4=1" : "");
              return code == VARN_OK ? written : code;
            }));
}

}  // namespace
