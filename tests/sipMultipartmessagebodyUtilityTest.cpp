// sipMultipartmessagebodyUtilityTest.cpp - what tree of parts a body becomes.
#include "sipMultipartmessagebodyUtility.h"

#include <cstdio>

#include "base/platformBlock.h"
#include "base/recorded.h"
#include "libraryTest.h"

namespace {

using std::string_literals::operator""s;
using std::string_view_literals::operator""sv;

using Node = SipMultipartMessageBody;
using Utility = SipMultipartMessageBodyUtility;

const std::string kSource = "sip_utility/src/sipMultipartmessagebodyUtility";
constexpr const char* kMixed = "multipart/mixed;boundary=b";

// A letter for each event: the level and message of a fault, or of an end.
const std::map<std::string, char> kEvents = {
    {"4 SipConnection::wySipGetMultiPartMessageBody | message content is null", '0'},
    {"4 SipMultipartMessageBody::wySipGetMultiPartMessageBody | No content-type", '1'},
    {"4 SipMultipartMessageBody::ParseAndStoreMsgHeaders| header parsing failed", '2'},
    {"4 SipConnection::wySipGetMultiPartMessageBody | no boundary parameter", '3'},
    {"4 SipConnection::wySipGetMultiPartMessageBody | failure in parsing Sip message", 'F'},
    {"4 SC::wySipProcessMultipartMsgBody | api input parameter/m_pCurrentboundary is null", 'a'},
    {"4 SipConnection::wySipProcessMultipartMsgBody | no CRLF found", 'b'},
    {"4 SipConnection::wySipProcessMultipartMsgBody | open boundary failed", 'c'},
    {"4 SipConnection::wySipProcessMultipartMsgBody | no body delimiter", 'd'},
    {"4 SipConnection::wySipProcessMultipartMsgBody | message headers failed", 'e'},
    {"4 SipConnection::wySipProcessMultipartMsgBody | error in validating close delimiter", 'f'},
    {"4 SipConnection::wySipProcessMultipartMsgBody | did not found CRLF", 'E'},
    {"4 SipConnection::wySipProcessMultipartMsgBody | epilogues take more than 4 times the body and "
     "64 MiB",
     'g'},
    {"4 SipConnection::Validateboundary | input parameter is null", 'h'},
    {"4 SipMultipartMessageBody::Validateboundary |invalid dash boundary", 'i'},
    {"4 SipConnection::Validateboundary | invalid dash boundary", 'j'},
    {"4 SipConnection::Validateboundary | boundary dosent match", 'k'},
    {"4 SipConnection::Validateboundary | wrong dash boundary", 'l'},
    {"4 SipConnection::Storedashboundary | input parameter is null", 'm'},
    {"4 SipConnection::wySipProcessMessageBody | input parameter is null", 'n'},
    {"4 SipConnection::wySipProcessMessageBody |found dash boundary in the message body", 'o'},
    {"4 SipConnection::ParseAndStoreMsgHeaders |input parameter is null", 'p'},
    {"4 SipConnection::ParseAndStoreMsgHeaders | no Headers", 'q'},
    {"4 SipConnection::ParseAndStoreMsgHeaders | AllocSipHeaders return false", 'r'},
    {"4 SipConnection::ParseAndStoreMsgHeaders | illegal header", 's'},
    {"4 SipConnection::ParseAndStoreMsgHeaders| no boundary", 't'},
    {"4 SipConnection::ParseAndStoreMsgHeaders| empty boundary", 'u'},
    {"4 SipConnection::ValidateCloseDelimiter | ValidateCloseDelimiter return error", 'v'},
    {"4 SipMultipartMessageBody::ValidateCloseDelimiter | wrong dash boundary", 'w'},
    {"4 SipConnection::ValidateCloseDelimiter | not a close delimiter", 'N'},
    {"3 SipConnection::wySipGetMultiPartMessageBody : setmessagebody failed. Malloc failed", 'A'},
    {"3 SipConnection::wySipGetMultiPartMessageBody | new failed", 'B'},
    {"3 SipConnection::wySipProcessMultipartMsgBody | strdup failed", 'C'},
    {"3 SipConnection::wySipProcessMultipartMsgBody | Calloc for Boundary failed", 'D'},
    {"3 SipConnection::wySipProcessMultipartMsgBody | Preamble Calloc failed", 'G'},
    {"3 SipConnection::ParseAndStoreMsgHeaders | sip header returns exception", 'H'},
    {"3 SipMultipartMessageBody::Storedashboundary | new failed", 'I'},
    {"3 SipConnection::Storedashboundary | strdup failed", 'J'},
    {"3 SipConnection::Storedashboundary |  strdup failed", 'K'},
    {"3 SipConnection::ValidateCloseDelimiter | end of the message body", 'L'},
    {"3 SipConnection::wySipProcessMultipartMsgBody | not a Close delimiter", 'S'},
    {"4 SipConnection::Validateboundary | invalid temp dash boundary", 'x'},
    {"4 SipConnection::Validateboundary  | Storedashboundary return error", 'y'},
};

std::string textOf(const char* text) { return text == nullptr ? "none" : text; }

unsigned char* bytes(const char* text) {
  return reinterpret_cast<unsigned char*>(const_cast<char*>(text));
}

// preamble|headers|free slots|content|epilogue(children) + siblings
std::string dump(const Node* node, const Node* parent = nullptr) {
  std::string text;
  for (; node != nullptr; node = node->next) {
    text += node->parent == parent ? "" : "!parent ";
    text += (node->preamble == nullptr ? "-"s : node->preamble) + '|';
    for (SipHeader** slot = node->headers; slot != nullptr && *slot != nullptr; ++slot) {
      text += toStdString((*slot)->toString()) + ',';
    }
    text += '|' + std::to_string(node->freeHeaderSlots) + '|';
    text.append(node->body, node->body + node->bodyLength);
    text += '|' + (node->epilogue == nullptr ? "-"s : node->epilogue);
    text += node->child == nullptr ? "" : '(' + dump(node->child, node) + ')';
    text += node->next == nullptr ? "" : " + ";
  }
  return text;
}

Node* parse(Utility& utility, std::string_view body, const char* contentType) {
  std::vector<unsigned char> exact(body.begin(), body.end());
  return utility.wySipGetMultiPartMessageBody(exact.data(), static_cast<unsigned int>(body.size()),
                                              contentType);
}

class MultipartParserTest : public LibraryTest {
 protected:
  // Returns the parser's own lines since the last call, level and message.
  Lines takeOwn() {
    Lines own;
    const std::string middle = " 6054 " + kSource + " | ";
    for (const std::string& line : takeLog()) {
      if (line.find(middle) == 1) {
        own.push_back(line.substr(0, 2) + line.substr(1 + middle.size()));
      }
    }
    return own;
  }

  // Returns the letters of the events since the last call, "?" for an unknown failure.
  std::string takeEvents() {
    std::string letters;
    for (const std::string& line : takeOwn()) {
      const auto event = kEvents.find(line);
      letters += event != kEvents.end() ? std::string(1, event->second) : line[0] >= '4' ? "?" : "";
    }
    return letters;
  }
};

TEST_F(MultipartParserTest, LogsEveryStep) {
  Utility utility;
  EXPECT_EQ(Lines{"3 SipMultipartMessageBody::SipMultipartMessageBody | " + addressText(&utility)},
            takeOwn());
  const Node* root = parse(utility,
                           "pre\r\namble\r\n--b  \r\nA :  <sip:h>  \r\nBad Name:\r\nX:y\r\n\r\n"
                           "hi\0!\r\n--b\r\n\r\nho--b--\r\nepi\r\nlogue"sv,
                           "multipart/mixed;boundary=\"b\"");
  EXPECT_EQ("pre\r\namble|A: <sip:h>,X: y,|1|hi\0!\r\n|- + -||0|ho|epi\r\nlogue"s, dump(root));
  EXPECT_EQ(2, utility.nodeCount);
  EXPECT_EQ(root->next, utility.current);
  const std::string makes =
      "3 SipConnection::wySipConstructMultipartMessageStructure new SipMultipartMessageBody[";
  EXPECT_EQ((Lines{"3 SipConnection::wySipGetMultiPartMessageBody | Decode App MsgBody",
                   "3 SipConnection::wySipProcessMultipartMsgBody |Preamble of lenght 10 found",
                   "3 SipConnection::wySipProcessMessageBody iContentLen:0 iLength:2",
                   makes + addressText(root) + ']', "3 SipConnection::ParseAndStoreMsgHeaders",
                   "3 ParseAndStoreMsgHeaders | header-name: A ",
                   "3 ParseAndStoreMsgHeaders | header-value: <sip:h>",
                   "3 ParseAndStoreMsgHeaders | header-name: Bad Name",
                   "3 ParseAndStoreMsgHeaders | header-value: ",
                   "3 SipConnection::ParseAndStoreMsgHeaders | sip header returns exception",
                   "3 ParseAndStoreMsgHeaders | header-name: X",
                   "3 ParseAndStoreMsgHeaders | header-value: y",
                   "4 SipConnection::ValidateCloseDelimiter | not a close delimiter",
                   "3 SipConnection::wySipProcessMultipartMsgBody | not a Close delimiter",
                   "3 SipConnection::wySipProcessMessageBody iContentLen:0 iLength:19",
                   makes + addressText(root->next) + ']'}),
            takeOwn());
}

const struct {
  std::string_view body;
  std::string dump;    // of the parts that were made, also before a failure
  const char* events;  // F among them: no result
  const char* type = kMixed;
} kBodies[] = {
    {"a\0c"sv, "-||0|a\0c|-"s, "", "text/plain"},
    {"a\r\n--b", "-||0|a\r\n--b|-", "", "Multipart/mixed;boundary=b"},
    {"abc", "-||0|abc|-", "1", nullptr},
    {"a", "", "2", ";"},
    {"", "", "0"},
    {"a", "", "3", "multipart/mixed;boundary"},
    // Delimiters.
    {"--b", "", ""},
    {"--b\r\nA: b/c\r\n\r\nhi\r\n--b--\r\n", "-|A: b/c,|0|hi\r\n|", "E"},
    {"--b  \r\n\r\nhi--b", "-||0|hi|-", "NS"},
    {"--bx\r\n\r\nhi--b", "", "lcF"},
    {"--B\r\n\r\nhi--b", "", "kcF"},
    {"-b\r\n--b\r\n\r\nhi--b", "-||0|hi|-", "NS"},
    {"x-\r\nb\r\n--b\r\n", "", "icF"},  // no preamble, but one line to skip
    {"x-\r\n", "", "bF"},
    {"x\0\r\n--b\r\n\r\nhi--b"sv, "", ""},  // a zero byte ends the preamble
    {"\r\n--b\r\n\r\nhi--b", "-||0|hi|-", "NS"},
    {" \r\n--b\r\n\r\nhi--b", " ||0|hi|-", "NS"},
    {"--b\r\n\r\n-\0--b"sv, "-||0|-\0|-"s, "NS"},
    {"--b\r\n\r\na---b--b--\r\n", "-||0|a---b|", "E"},
    {"--b\r\n\r\n--bx", "", "oeF"},
    {"--b\r\n\r\nhi--", "", "eF"},
    {"--b\r\n\r\n", "", "eF"},
    {"pre\r\n--b\r\n\r\nhi", "", "eF"},
    {"--b\r\n\r\nhi--b\r\n\r\nho", "-||0|hi|-", "NSeF"},
    {"--b\r\n\r\nhi--b----\r\n", "-||0|hi|-", "LwfF"},
    {"--b c \r\n\r\nhi--b c--", "-||0|hi|", "LE", "multipart/x;boundary=\"b c\""},
    {"--\r\n\r\nhi----", "-||0|hi|", "LE", "multipart/x;boundary=\"\""},
    // Epilogues: blanks before one count twice, a delimiter may follow, the last epilogue stays.
    {"--b\r\n\r\nhi--b--  ", "-||0|hi|", "LE"},
    {"--b\r\n\r\nhi--b--  \r\na", "-||0|hi|", "E"},
    {"--b\r\n\r\nhi--b-- \r\nabc", "-||0|hi|bc", "E"},
    {"--b\r\n\r\nhi--b--\r\ne\r\n--b\r\n\r\nho--b--", "-||0|hi|e\r\n--b\r\n\r\nho--b-- + -||0|ho|",
     "NSLE"},
    {"--b\r\n\r\nhi--b--\r\ne\r\n--b--\r\nf\r\n--b--g", "-||0|hi|g", "LE"},
    {"--b\r\n\r\nhi--b--\r\n--b--\r\n--b\r\n\r\nho--b--", "-||0|hi|- + -||0|ho|", "NSLE"},
    {"--b\r\n\r\nhi--b--\r\ne\r\nf\r\n", "-||0|hi|e\r\nf\r\n", "icF"},
    // Headers.
    {"--b\r\nA: b\r\nhi--b", "", "dF"},
    {"--b\r\nA\0: b\r\n\r\nhi--b"sv, "", "dF"},
    {"--b\r\nA: b\r\nC\r\nD: e\r\n\r\nhi--b", "-|A: b,|2|hi|-", "sNS"},
    {"--b\r\nA: b\r\nC@: d\r\nD: e\r\n\r\nhi--b", "-|A: b,D: e,|1|hi|-", "HNS"},
    {"--b\r\nA: b\r\nContent-Type: multipart/x;c\r\nD: e\r\n\r\nhi--b", "-|A: b,|2|hi|-", "tNS"},
    {"--b\r\ncontent-TYPE: multipart/x;boundary\r\nD: e\r\n\r\nhi--b", "-||2|hi|-", "uNS"},
    {"--b\r\nA: b\r\nContent-Type: multipart/x;boundary=c;boundary=b\r\n\r\nhi--b",
     "-|A: b,|1|hi|-", "HNS"},
    // A part that is multipart itself.
    {"--b\r\nContent-Type: multipart/x;boundary=c\r\n\r\n--c\r\n\r\nhi--c----b--",
     "-|Content-Type: multipart/x;boundary=c,|0|--c\r\n\r\nhi--c--|-", "wfF"},
    {"--b\r\nContent-Type: multipart/x;boundary=b\r\n\r\nhi--b\r\n\r\nho--b--",
     "-|Content-Type: multipart/x;boundary=b,|0|hi|- + -||0|ho|", "NSLE"},
    {"--bc\r\nContent-Type: multipart/x;boundary=b\r\n\r\nhi--bc--\r\n",
     "-|Content-Type: multipart/x;boundary=b,|0|hi|-", "NSlcF", "multipart/x;boundary=bc"},
    {"--b--\r\nContent-Type: multipart/x;boundary=b\r\n\r\nhi--b--\r\ne\r\n--b--\r\n\r\nho--b--",
     "-|Content-Type: multipart/x;boundary=b,|0|hi|e\r\n--b--\r\n\r\nho--b-- + -||0|ho|-", "NSNS",
     "multipart/x;boundary=b--"},
};

TEST_F(MultipartParserTest, MakesATreeOfABody) {
  for (const auto& c : kBodies) {
    SCOPED_TRACE(testing::PrintToString(c.body));
    Utility utility;
    const Node* root = parse(utility, c.body, c.type);
    EXPECT_EQ(c.events, takeEvents());
    EXPECT_EQ(c.dump, dump(utility.m_pMultipartMsgHead));
    const bool failed = std::string_view(c.events).find('F') != std::string_view::npos;
    EXPECT_EQ(failed ? nullptr : utility.m_pMultipartMsgHead, root);
  }
}

TEST_F(MultipartParserTest, TakesContentsAndHeadersOfAnyLength) {
  for (const std::size_t count : {255U, 256U, 257U}) {
    std::string body = "--b\r\n";
    std::string headers;
    for (std::size_t i = 0; i < count; ++i) {
      body += "a: b\r\n";
      headers += i < count % 256 ? "a: b," : "";
    }
    Utility utility;
    const Node* root = parse(utility, body + "\r\n" + std::string(70000, 'x') + "--b--", kMixed);
    EXPECT_EQ("-|" + headers + "|0|" + std::string(70000 % 65536, 'x') + '|', dump(root));
    EXPECT_EQ(std::string(70000, 'x'), std::string(root->body, root->body + 70000));
    EXPECT_EQ(count == 256 ? "qLE" : "LE", takeEvents());
  }
}

// Parts of 17 bytes, the epilogue of each from its 15th byte to the end, and a last part without.
TEST_F(MultipartParserTest, EndsBeforeTheEpiloguesTakeMuchMoreThanTheBody) {
  for (const std::size_t count : {20U, 200U}) {
    std::string body;
    for (std::size_t i = 0; i < count; ++i) {
      body += "--b\r\n\r\nx--b--\r\n\r\n";
    }
    const std::size_t longest =
        ((64U << 20U) + 17 * count * (count - 1) / 2 + 14 * count) / (count - 4);
    for (const bool tooLong : {false, true}) {
      const std::size_t length = longest + (tooLong ? 1 : 0) - body.size() - 10;
      Utility utility;
      const Node* root =
          parse(utility, body + "--b\r\n\r\n" + std::string(length, 'x') + "--b", kMixed);
      const std::string events = takeEvents();
      EXPECT_EQ(tooLong ? "NSgF" : "NSNS", events.substr(events.size() - 4));
      EXPECT_EQ(tooLong, root == nullptr);
      EXPECT_EQ(tooLong ? count : count + 1, utility.nodeCount);  // the earlier parts stay
      EXPECT_EQ(nullptr, utility.current->epilogue);
      EXPECT_EQ(utility.m_pMultipartMsgHead,
                utility.wySipGetMultiPartMessageBody(nullptr, 0, nullptr));
      takeLog();
    }
  }
}

// The search without its shortcuts: two hyphens are one step. Returns -1 for no delimiter.
int naiveLength(std::string_view text, std::string_view boundary) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text.substr(i, 2) == "--") {
      if (text.substr(i + 2, boundary.size()) == boundary) {
        return static_cast<int>(i);
      }
      ++i;
    }
  }
  return -1;
}

TEST_F(MultipartParserTest, FindsDelimitersAsTheNaiveSearchDoes) {
  for (const char* boundary : {"b", "-", "--", "-b", "b-b", "b--b", "--b"}) {
    Utility utility;
    utility.m_pCurrentboundary = boundary;
    for (unsigned int bits = 2; bits < 1U << 12U; ++bits) {
      // The bits below the highest one. The search makes a table after eight pairs of hyphens.
      std::string text = bits % 2 == 0 ? "" : "--x--x--x--x--x--x--x--x";
      for (unsigned int rest = bits / 2; rest > 1; rest /= 2) {
        text += rest % 2 == 0 ? '-' : 'b';
      }
      SCOPED_TRACE(text);
      const PlatformText exact = copyOf(text);
      utility.partContentLength = -1;
      const int found = utility.wySipProcessMessageBody(bytes(exact.get()));
      ASSERT_EQ(naiveLength(text, boundary), utility.partContentLength);
      ASSERT_EQ(utility.partContentLength == -1 ? 0 : 1, found);
    }
  }
}

TEST_F(MultipartParserTest, RefusesStepsThatHaveNothingToWorkOn) {
  Utility utility;
  char* none = nullptr;
  char text[] = "--b\r\n";
  char* cursor = text;
  EXPECT_EQ((std::vector<int>{0, 0, 0, 0, 0, 0, 0, 2, 1, 0}),
            (std::vector<int>{
                utility.wySipProcessMultipartMsgBody(nullptr),
                utility.wySipProcessMultipartMsgBody(bytes(text)),
                utility.Validateboundary(nullptr), utility.Validateboundary(text),
                utility.wySipProcessMessageBody(nullptr), utility.ParseAndStoreMsgHeaders(nullptr),
                utility.ParseAndStoreMsgHeaders(text), utility.ValidateCloseDelimiter(none),
                utility.ValidateCloseDelimiter(cursor), utility.Storedashboundary(nullptr)}));
  EXPECT_EQ("aahjnprvwm", takeEvents());
}

TEST_F(MultipartParserTest, MakesChildrenWhileTheBoundaryIsNotTheLastOne) {
  Utility utility;
  const auto adds = [&](std::string boundary) {
    EXPECT_EQ(1, utility.Storedashboundary(boundary.data()));
    EXPECT_EQ(1, utility.wySipConstructMultipartMessageStructure());
    return utility.m_pCurrentboundary + " "s + utility.lastBoundary;
  };
  EXPECT_EQ("a a", adds(" a "));
  EXPECT_EQ("b a", adds("b"));
  EXPECT_EQ("b b", adds("b"));
  EXPECT_EQ("c b", adds("c"));
  EXPECT_EQ("-||0||-(-||0||- + -||0||-(-||0||-))", dump(utility.m_pMultipartMsgHead));
  const struct {
    const char* text;
    int result;
    unsigned int moved;  // by the cursor
  } cases[] = {{"--c", 4, 0},          {"-", 1, 0},          {"", 1, 0},
               {"--c-- \r", 3, 7},     {"--c--\r\nx", 3, 7}, {"--c--   \r\nabcd", 3, 13},
               {"--c--     \r", 3, 11}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    const PlatformText exact = copyOf(c.text);
    char* cursor = exact.get();
    EXPECT_EQ(c.result, utility.ValidateCloseDelimiter(cursor));
    EXPECT_EQ(c.moved, cursor - exact.get());
    EXPECT_STREQ("c", utility.m_pCurrentboundary);  // the latest stored one
    EXPECT_NE(nullptr, utility.dashBoundaryList);
  }
  EXPECT_EQ("NwwLL", takeEvents());
  EXPECT_EQ("c c", adds("c"));
  char closing[] = "--c--";
  char* cursor = closing;
  EXPECT_EQ(3, utility.ValidateCloseDelimiter(cursor));
  EXPECT_EQ(nullptr, utility.dashBoundaryList);
  EXPECT_EQ("d d", adds("d"));
  utility.current = utility.m_pMultipartMsgHead;  // a caller may go back
  EXPECT_EQ("e d", adds("e"));
  EXPECT_EQ("e e", adds("e"));
  EXPECT_EQ("-||0||-(-||0||- + -||0||- + -||0||- + -||0||-(-||0||- + -||0||- + -||0||-))",
            dump(utility.m_pMultipartMsgHead));
  utility.current = nullptr;
  EXPECT_EQ(0, utility.wySipConstructMultipartMessageStructure());
}

TEST_F(MultipartParserTest, RefusesAContentThatBeginsWithAnyStoredBoundary) {
  const std::string texts[] = {"a", "ab", "abc", "b", "ba", "c"};
  for (int choice = 0; choice < 6 * 6 * 6; ++choice) {
    SCOPED_TRACE(choice);
    Utility utility;
    const Lines stored = {texts[choice % 6], texts[choice / 6 % 6], texts[choice / 36]};
    for (std::string boundary : stored) {
      EXPECT_EQ(1, utility.Storedashboundary(boundary.data()));
    }
    for (const std::string& text : texts) {
      const bool begins = std::any_of(stored.begin(), stored.end(), [&](const auto& boundary) {
        return text.compare(0, boundary.size(), boundary) == 0;
      });
      const std::string body = "--" + text + "\r\n--" + utility.m_pCurrentboundary;
      EXPECT_EQ(begins ? 0 : 1, utility.wySipProcessMessageBody(bytes(body.c_str())));
      EXPECT_EQ(begins ? "o" : "", takeEvents());
    }
    auto*& list = utility.dashBoundaryList;  // a caller may take one out
    auto* const first = std::exchange(list, list->next);
    __free(first->boundary);
    deleteRecorded(first);
    const std::string body = "--" + stored.back();
    utility.m_pCurrentboundary = "-";
    EXPECT_EQ(0, utility.wySipProcessMessageBody(bytes(body.c_str())));
    EXPECT_EQ(list == nullptr ? "" : "o", takeEvents());
  }
}

// A parser, and what its boundaries should be.
struct Watched {
  Watched() { parser.lastBoundary = "none"; }

  void store(const char* boundary) {
    const std::string text = boundary;
    last = stored.empty() ? text : stored.size() > 1 ? stored.back() : last;
    if (stored.empty() || stored.back() != text) {
      current = text;
      stored.push_back(text);
    }
    EXPECT_EQ(1, parser.Storedashboundary(const_cast<char*>(boundary)));
  }

  void close() {
    std::string text = "--" + current + "--";
    char* cursor = text.data();
    if (parser.ValidateCloseDelimiter(cursor) == 3 && current == last) {
      stored.clear();
    } else if (cursor != text.data() && !stored.empty()) {
      current = stored.back();
    }
  }

  void nest() {
    char header[] = "Content-Type: multipart/x;boundary=e";
    EXPECT_EQ(1, parser.wySipConstructMultipartMessageStructure());
    EXPECT_EQ(1, parser.ParseAndStoreMsgHeaders(header));
    current = "e";
  }

  // Lets a boundary show a text, without a "b" that it begins with.
  static void show(const char*& shown, std::string& text, const char* boundary) {
    if (boundary != nullptr) {
      shown = boundary + (*boundary == 'b' ? 1 : 0);
      text = shown;
    }
  }

  Utility parser;
  std::string current = "none";
  std::string last = "none";
  Lines stored;
};

// Callers let the two boundaries show what they like: a text of their own, one that belongs to the
// parser, a piece of it.
TEST_F(MultipartParserTest, NeitherFreesNorOutlivesWhatItsBoundariesShow) {
  using Step = void (*)(Watched&);
  const Step steps[] = {
      [](Watched& w) { Watched::show(w.parser.m_pCurrentboundary, w.current, "a"); },
      [](Watched& w) { Watched::show(w.parser.lastBoundary, w.last, w.parser.m_pCurrentboundary); },
      [](Watched& w) {
        Watched::show(w.parser.m_pCurrentboundary, w.current, w.parser.lastBoundary);
      },
      [](Watched& w) {
        const auto* const list = w.parser.dashBoundaryList;
        Watched::show(w.parser.m_pCurrentboundary, w.current, list ? list->boundary : nullptr);
      },
      [](Watched& w) { w.store("ba"); },
      [](Watched& w) { w.store("c"); },
      [](Watched& w) { w.store(w.current == "none" ? "d" : w.parser.m_pCurrentboundary); },
      [](Watched& w) { w.close(); },
      [](Watched& w) { w.nest(); },
  };
  hostSetLogHandler(nullptr, nullptr);
  for (int sequence = 0; sequence < 9 * 9 * 9 * 9 * 9 && !HasFailure(); ++sequence) {
    SCOPED_TRACE(sequence);
    Watched watched;
    for (int rest = sequence; rest > 0; rest /= 9) {
      steps[rest % 9](watched);
      EXPECT_EQ(watched.current, textOf(watched.parser.m_pCurrentboundary));
      EXPECT_EQ(watched.last, textOf(watched.parser.lastBoundary));
    }
  }
}

TEST_F(MultipartParserTest, ReadsAllHeadersOfANodeOrFails) {
  sweepAllocations([&] {
    Utility utility;
    const auto reads = [&](std::string headers, const char* tree) {
      const bool done = utility.ParseAndStoreMsgHeaders(headers.data()) == 1;
      const unsigned long left = hostFailAllocation(0);  // a dump allocates
      EXPECT_TRUE(!done || tree == dump(utility.current));
      hostFailAllocation(left);
      return done;
    };
    const bool done = utility.wySipConstructMultipartMessageStructure() == 1 &&
                      reads("A: b\r\nC: d", "-|A: b,C: d,|0||-") &&
                      reads("Content-Type: multipart/x;boundary=c\r\n@: g\r\n",
                            "-|Content-Type: multipart/x;boundary=c,|1||-");
    EXPECT_TRUE(!done || utility.m_pCurrentboundary == "c"sv);
    return done ? VARN_OK : VARN_RESOURCE_FAILURE;
  });
}

TEST_F(MultipartParserTest, KeepsItsTreeAndTakesNewContent) {
  Utility utility;
  EXPECT_EQ(nullptr, parse(utility, ";", ";"));
  EXPECT_EQ(nullptr, utility.wySipGetMultiPartMessageBody(bytes("abc"), 3, utility.content));
  Node* const root = utility.wySipGetMultiPartMessageBody(nullptr, 0, "text/plain");
  EXPECT_EQ("-||0|abc|-", dump(root));
  takeLog();
  EXPECT_EQ(root, parse(utility, "other", kMixed));
  char address[20];
  std::snprintf(address, sizeof(address), "%zx", reinterpret_cast<std::size_t>(root));
  EXPECT_EQ("4 SipConnection::wySipGetMultiPartMessageBody | m_pMultipartMsgHead: "s + address,
            takeOwn().back());
  EXPECT_STREQ("other", utility.content);
  EXPECT_EQ("-||0|abc|-", dump(root));
  for (const unsigned int length : {0x80000000U, 0xFFFFFFFFU}) {
    EXPECT_EQ(nullptr, utility.wySipGetMultiPartMessageBody(bytes("x"), length, "text/plain"));
    EXPECT_EQ("A", takeEvents());
    EXPECT_EQ(5U, utility.contentLength);
  }
}

TEST_F(MultipartParserTest, InstanceIsANewObjectAtEveryCall) {
  const std::string name = "3 SipMultipartMessageBodyUtility::";
  Utility* const first = Utility::getInstance();
  EXPECT_EQ(name + "creating new object " + addressText(first), takeOwn().back());
  EXPECT_NE(nullptr, parse(*first, "abc", "text/plain"));
  Utility* const second = initSipMultipartMessageBodyUtilityObj();
  EXPECT_NE(first, second);
  takeLog();
  Utility::deleteInstance();
  Utility::deleteInstance();
  const std::string address = addressText(second);
  EXPECT_EQ(
      (Lines{name + "deleting object " + address,
             name + "~SipMultipartMessageBodyUtility | " + address, name + "deleting object 0"}),
      takeOwn());
  deleteRecorded(first);
}

TEST_F(MultipartParserTest, FreesAlsoTheNodesThatNoNodeReaches) {
  hostSetLogHandler(nullptr, nullptr);
  Utility utility;
  const auto makes = [] { return newRecorded<Node>(kSource.c_str()); };
  Node* node = utility.m_pMultipartMsgHead = makes();
  for (int i = 0; i < 100000; ++i) {  // children of siblings of children, many levels deep
    node->child = makes();
    node->next = makes();
    node->next->child = makes();
    node = i % 3 == 0 ? node->child : node->next->child;
  }
}

TEST_F(MultipartParserTest, ReturnsACompleteTreeOrNoneWhenOutOfMemory) {
  std::string events;  // of each run that differs from the one before it
  std::string latest = "none";
  const auto check = [&](bool complete, std::string_view tree, const Node* root) {
    const unsigned long left = hostFailAllocation(0);  // a dump allocates
    EXPECT_TRUE(!complete || tree == dump(root));
    hostFailAllocation(left);
    const std::string run = takeEvents();
    events += run == latest ? "" : run + ' ';
    latest = run;
    return complete ? VARN_OK : VARN_RESOURCE_FAILURE;
  };
  sweepAllocations([&] {
    Utility utility;
    const Node* root = parse(utility, "abc", "text/plain");
    return check(root != nullptr, "-||0|abc|-", root);
  });
  events += "| ";
  sweepAllocations([&] {
    Utility utility;
    const Node* root =
        parse(utility,
              "pre\r\n--b\r\nA: d;x=1\r\nB: <sip:h>\r\n\r\n----------------\r\n--b\r\n\r\n"
              "ho--b--\r\nepi\r\nlogue",
              "multipart/mixed;boundary=\"b\"");
    return check(root != nullptr,
                 "pre|A: d;x=1,B: <sip:h>,|0|----------------\r\n|- + -||0|ho|epi\r\nlogue", root);
  });
  events += "| ";
  sweepAllocations([&] {  // the inner boundary refuses the outer delimiter, also without memory
    Utility utility;
    const char* body = "--b\r\nContent-Type: multipart/x;boundary=c\r\n\r\nhi--b--";
    EXPECT_EQ(nullptr, parse(utility, body, kMixed));
    return check(false, "", nullptr), VARN_OK;
  });
  events += "| ";
  sweepAllocations([&] {
    Utility utility;
    std::string texts[] = {"a", "b", "b", "c"};
    for (std::string& text : texts) {
      if (utility.Storedashboundary(text.data()) == 0) {
        return check(false, "", nullptr);
      }
      EXPECT_EQ(text, utility.m_pCurrentboundary);
    }
    return VARN_OK;
  });
  EXPECT_EQ(
      "A 2 B  | A 2 F CF DF xcF IycF JycF eF F rF HF GF F NSF NS "
      "| A 2 F CF IycF JycF F rF HF F wfF | I J K ",
      events);
}

}  // namespace
