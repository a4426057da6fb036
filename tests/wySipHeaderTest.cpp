// wySipHeaderTest.cpp - what a header field is read from, changed to and written as.
#include "wySipHeader.h"

#include <set>

#include "libraryTest.h"

namespace {

constexpr const char* kSource = "sip_utility/src/wySipHeader";

// Returns the line of a failure of the header; "SipHeader::" is left out of the message.
std::string fails(const std::string& message) {
  return failureLine(kSource, "SipHeader::" + message);
}

const Lines kNoText = {fails("toString - getHeaderValue failed")};

constexpr const char* kMixed = "setName | cannot switch between auth and non-auth";

// Returns the log of a refusal for this reason; an empty log for an empty reason.
Lines logOf(const std::string& reason) {
  if (reason.empty()) {
    return {};
  }
  return {reason[0] == 'S' && reason.find(" |") == reason.npos
              ? failureLine("sip_utility/src/wySipParam", reason)
              : fails(reason)};
}

// code type name|value|parameters
std::string dump(const SipHeader& header) {
  return std::to_string(header.GetLastErrorCode()) + ' ' + std::to_string(header.getHeaderType()) +
         ' ' + toStdString(header.getName()) + '|' + toStdString(header.getValue()) + '|' +
         paramTexts(header);
}

using SipHeaderTest = LibraryTest;

TEST_F(SipHeaderTest, ReadsANameAndItsCompleteValue) {
  const struct {
    const char* name;
    const char* value;
    const char* dump;
    const char* text;  // as written
    const char* log = "";
  } cases[] = {
      {" To ", "<sip:h1> ;tag=1", "0 2 To|<sip:h1>|;tag=1", "To: <sip:h1>;tag=1"},
      {"a", " b \r\n c ; d = \"e;\";f\t", "0 2 a|b \r\n c|;f;d=\"e;\"", "a: b \r\n c;f;d=\"e;\""},
      {"proxy-AUTHORIZATION", "Digest r = \"1\" , n=2 ",
       "0 1 proxy-AUTHORIZATION|Digest|;n=2;r=\"1\"", "proxy-AUTHORIZATION: Digest n=2,r=\"1\""},
      {"WWW-Authenticate", "Basic", "0 1 WWW-Authenticate|Basic|", "WWW-Authenticate: Basic"},
      {"Proxy-Authenticate", "", "0 1 Proxy-Authenticate||", ""},
      {"Authorizations", "a b", "0 2 Authorizations|a b|", "Authorizations: a b"},
      {"Via", "", "0 2 Via||", ""},
      {"", "x", "3 0 ||", "", "setName | name was NULL or empty"},
      {"Bad Name", "x", "3 0 ||", "", "setName | parsing failed"},
      {" ", "x", "3 0 ||", "", "setName | parsing failed"},
      {"a:", "x", "3 0 ||", "", "setName | parsing failed"},
      {"a", ";b", "3 2 a||", "", "SipHeader | value parsing failed"},
      {"a", " ", "3 2 a||", "", "SipHeader | value parsing failed"},
      {"Authorization", "\"", "3 1 Authorization||", "", "SipHeader | value parsing failed"},
      {"a", "b;c d", "3 2 a|b|;c", "a: b;c", "SipHeader | trailing characters in value"},
      {"a", "b\r\n", "3 2 a|b|", "a: b", "SipHeader | trailing characters in value"},
      {"Authorization", "D,e", "3 1 Authorization|D|", "Authorization: D",
       "SipHeader | trailing characters in value"},
      {"a", "b;c;@", "3 2 a|b|;c", "a: b;c", "SipParamList::parseParamList - bad parameter name"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.value);
    SipHeader header(c.name, c.value);
    EXPECT_EQ(c.dump, dump(header));
    EXPECT_EQ(logOf(c.log), takeLog());
    EXPECT_STREQ(c.text, header.toString().c_str());
    EXPECT_EQ(VARN_OK, header.GetLastErrorCode());
    EXPECT_EQ(c.text[0] == '\0' ? kNoText : Lines{}, takeLog());
    if (c.text[0] != '\0') {
      EXPECT_EQ(header.toString().length(), header.getStringLength());
      EXPECT_EQ(header.getHeaderValue().length(), header.getHeaderValueLength());
      SipHeader again(header.getName(), header.getHeaderValue());  // each turn reverses parameters
      SipHeader twice(again.getName(), again.getHeaderValue());
      EXPECT_EQ(dump(header), dump(twice));
    }
  }
  EXPECT_EQ(Lines{}, takeAssertions());
}

TEST_F(SipHeaderTest, TakesWhatIsThereOfATelUriThatCountsPastTheEnd) {
  SipHeader header("a", "tel:+1234<tel:1>");
  EXPECT_EQ("0 2 a|tel:+1234<tel:1>|", dump(header));
  EXPECT_NE(Lines{}, takeAssertions());
  EXPECT_EQ("3 2 a|tel:+1<tel:+12|", dump(SipHeader("a", "tel:+1<tel:+123456>")));
  EXPECT_EQ(fails("SipHeader | trailing characters in value"), takeLog().back());
  EXPECT_EQ(VARN_OK, header.setValue("tel:+1234<tel:1>"));
  EXPECT_STREQ("a: tel:+1234<tel:1>", header.toString().c_str());
  EXPECT_NE(Lines{}, takeAssertions());
  takeLog();
}

enum Setter { kName, kValue, kParam, kRemoved };

VARN_EXCEPTION_CODES change(SipHeader& header, Setter setter, const SipString& value) {
  return setter == kName    ? header.setName(value)
         : setter == kValue ? header.setValue(value)
         : setter == kParam ? header.setParameter(value, "\"v\"")
                            : header.removeParameter(value);
}

const struct {
  const char* name;
  const char* value;
  Setter setter;
  const char* change;
  const char* text;  // after it
  const char* log;
} kChanges[] = {
    {"Contact", "<sip:h>;a", kName, " Route\t", "Route: <sip:h>;a", ""},
    {"Contact", "<sip:h>;a", kName, "Authorization", "Contact: <sip:h>;a", kMixed},
    {"Authorization", "D a=1", kName, "Route", "Authorization: D a=1", kMixed},
    {"Authorization", "D a=1", kName, "www-authenticate", "www-authenticate: D a=1", ""},
    {"a", "b", kName, "", "a: b", "setName | name was NULL or empty"},
    {"a", "b", kName, "x y", "a: b", "setName | parsing failed"},
    {"", "", kName, "x", "", ""},
    {"a", "b;p", kValue, " c d ", "a: c d;p", ""},
    {"a", "b;p", kValue, "", "a: ;p", ""},
    {"a", "b", kValue, "", "", ""},
    {"a", "b;p", kValue, "c;p=1", "a: b;p", "setValue | parsing failed"},
    {"a", "b;p", kValue, ";", "a: b;p", "setValue | parsing failed"},
    {"Authorization", "D a=1", kValue, "x", "Authorization: x a=1", ""},
    {"Authorization", "D a=1", kValue, "x y", "Authorization: D a=1", "setValue | parsing failed"},
    {"", "", kValue, "x", "", "setValue | parsing failed"},
    {"a", "b;p;q", kParam, "P", "a: b;P=\"v\";q", ""},
    {"a", "b;p", kParam, " n ", "a: b;n=\"v\";p", ""},
    {"Authorization", "D a=1", kParam, "n", "Authorization: D n=\"v\",a=1", ""},
    {"a", "", kParam, "n", "a: ;n=\"v\"", ""},
    {"a", "b;p", kParam, "@", "a: b;p", "SipParameterList::setParameter invalid name"},
    {"a", "b;p;q", kRemoved, "P", "a: b;q", ""},
    {"a", "b;p", kRemoved, "none", "a: b;p", ""},
};

TEST_F(SipHeaderTest, ChangesOnePieceOrNothingAndWritesItsPresentState) {
  for (const auto& c : kChanges) {
    SCOPED_TRACE(c.change);
    for (const bool written : {false, true}) {
      SipHeader header(c.name, c.value);
      if (written) {
        header.toString();
      }
      takeLog();
      const VARN_EXCEPTION_CODES code = c.log[0] == '\0' ? VARN_OK : VARN_INVALID_INPUT;
      header.VarnSetLastErrorCode(VARN_SHORT_INPUT);
      EXPECT_EQ(code, change(header, c.setter, c.change));
      EXPECT_EQ(code, header.GetLastErrorCode());
      EXPECT_EQ(logOf(c.log), takeLog());
      EXPECT_STREQ(c.text, header.toString().c_str());
      EXPECT_EQ(c.text[0] == '\0' ? kNoText : Lines{}, takeLog());
      header.VarnSetLastErrorCode(VARN_SHORT_INPUT);
      EXPECT_STREQ(c.text, header.toString().c_str());
      EXPECT_EQ(VARN_OK, header.GetLastErrorCode());
      takeLog();
    }
  }
}

TEST_F(SipHeaderTest, KeepsTheTextOfItsValueWhereOnlyItsNameChanges) {
  SipHeader header("a", "b;p=1");
  EXPECT_STREQ("1", header.getParameter("P")->c_str());
  EXPECT_EQ(nullptr, header.getParameter("q"));
  const char* text = header.getHeaderValue().c_str();
  header.VarnSetLastErrorCode(VARN_SHORT_INPUT);
  EXPECT_EQ(text, header.getHeaderValue().c_str());
  EXPECT_EQ(VARN_OK, header.GetLastErrorCode());
  EXPECT_EQ(VARN_OK, header.setName("longer"));
  EXPECT_EQ(text, header.getHeaderValue().c_str());
  EXPECT_STREQ("longer: b;p=1", header.toString().c_str());
  EXPECT_EQ(text, header.getHeaderValue().c_str());
}

TEST_F(SipHeaderTest, ReportsOutOfMemoryInABracketInsteadOfARefusal) {
  const std::string noName = fails("setName | assignment failed.");
  const std::pair<const char*, Runs> cases[] = {
      {"\"B\" <sip:a@b.test>;q=1", {{noName}, {}}},
      {"<tel:+1;ext=1>",
       {{kNoHost, kNoSip, kNoTelObject},
        {kNoHost, kNoSip, kNoTelStream, kOpaque},
        {kNoHost, kNoSip, kOpaque},
        {kNoHost, kNoSip, noName},
        {kNoHost, kNoSip}}},
      {"a <http:b>", {{noName}, {}}},
      {"<sip:x;a;b;c;d;e;f;g;h;i;j;k;l;m;n;o;p;q;r;s;t>",
       {{fails("SipHeader | value parsing failed")}, {noName}, {}}},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.first);
    const SipString name("Contact");
    const SipString text(each.first);
    EXPECT_EQ(each.second, sweepAllocations([&] {
                SipHeader header(name, text);
                const VARN_EXCEPTION_CODES code = header.GetLastErrorCode();
                const unsigned long order = hostFailAllocation(0);
                EXPECT_TRUE(code != VARN_OK || view(header.getHeaderValue()) == view(text));
                hostFailAllocation(order);
                EXPECT_NE(VARN_INVALID_INPUT, code);
                return code;
              }));
  }
}

TEST_F(SipHeaderTest, ReadsATelUriAsAnOpaqueOneWhenOutOfMemory) {
  std::set<std::string> values;
  const SipString name("To");
  const SipString text("<tel:+1>x");
  sweepAllocations([&] {
    SipHeader header(name, text);
    const VARN_EXCEPTION_CODES code = header.GetLastErrorCode();
    values.insert(std::to_string(code) + ' ' + toStdString(header.getValue()));
    return code == VARN_INVALID_INPUT ? VARN_OK : VARN_RESOURCE_FAILURE;
  });
  EXPECT_EQ((std::set<std::string>{"0 <tel:+1>x", "1 ", "3 <tel:+1>"}), values);
}

TEST_F(SipHeaderTest, ReportsOutOfMemoryAndChangesNothing) {
  const SipString name("Contact");
  const SipString value("text/plain;q=1");
  const SipString longer("longer-than-the-pieces-were-before");
  // Sweeps an operation on such a header. The header itself is made first: its logs come first. The
  // run without a failure logs nothing.
  const auto check = [&](const Lines& logs, const auto& operation) {
    Runs runs = {{fails("setName | assignment failed.")}};
    for (const std::string& line : logs) {
      runs.push_back(line.empty() ? Lines{} : Lines{line});
    }
    runs.push_back({});
    EXPECT_EQ(runs, sweepAllocations([&] {
                SipHeader header(name, value);
                return header.GetLastErrorCode() == VARN_OK ? operation(header)
                                                            : header.GetLastErrorCode();
              }));
  };
  const auto set = [&](Setter setter) {
    return [&, setter](SipHeader& header) {
      const std::string before = dump(header);
      const VARN_EXCEPTION_CODES code =
          setter == kParam ? header.setParameter(longer, longer) : change(header, setter, longer);
      EXPECT_EQ(code, header.GetLastErrorCode());
      header.VarnSetLastErrorCode(VARN_OK);
      EXPECT_EQ(code != VARN_OK, before == dump(header));
      EXPECT_LE(code, VARN_RESOURCE_FAILURE);
      return code;
    };
  };
  check(
      {fails("setName | SipStrStream constructor failed."), fails("setName | assignment failed.")},
      set(kName));
  check(
      {fails("setValue | stream constructor failed."),
       fails("setValue | Stream.get failed with error 1"), fails("setValue | assignment failed.")},
      set(kValue));
  check({failureLine("sip_utility/src/wySipParam",
                     "SipParameterList::setParameter SipStrStream constructor failed")},
        set(kParam));
  check({"", fails("toString - getHeaderValue failed")}, [](SipHeader& header) {
    const std::string text = toStdString(header.toString());
    const VARN_EXCEPTION_CODES code = header.GetLastErrorCode();
    EXPECT_EQ(code == VARN_OK ? "Contact: text/plain;q=1" : "", text);
    header.toString();
    EXPECT_EQ(header.getStringLength(), header.toString().length());
    return code;
  });
}

}  // namespace
