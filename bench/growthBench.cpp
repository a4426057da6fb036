// growthBench.cpp - the same operation on 1 KiB to 1 MiB of text: what a byte costs must not grow.
//
// The check is the number of pieces that come out.
#include "gzip.h"
#include "harness.h"
#include "imsdpl.h"
#include "pieces.h"
#include "sipMultipartmessagebodyUtility.h"
#include "wySipCommon.h"
#include "wySipUtils.h"

namespace {

constexpr std::size_t kSizes[] = {1U << 10U, 1U << 14U, 1U << 18U, 1U << 20U};

class Count : public Sum {
 public:
  void text(const char* text, std::size_t length) {
    Sum::text(text, length);
    ++texts_;
  }

  std::size_t texts() const { return texts_; }

 private:
  std::size_t texts_ = 0;
};

// A text of head, numbered units, each as many bytes, and tail. A "#" in the unit is its number.
struct Shape {
  const char* name;
  std::string head;
  std::string unit;
  std::string tail;
  std::size_t pieces;         // that come out
  std::size_t piecesOfUnit;   // and of each unit besides
  std::size_t separator = 0;  // bytes of the last unit that are left out
};

using Text = std::pair<std::string, std::size_t>;

Text textOf(const Shape& shape, std::size_t size) {
  Text text = {shape.head, 0};
  const std::size_t mark = shape.unit.find('#');
  while (text.first.size() + shape.unit.size() + shape.tail.size() < size) {
    std::string unit = shape.unit;
    if (mark != std::string::npos) {
      unit.replace(mark, 1, std::to_string(1000000 + text.second));
    }
    text.first += unit;
    ++text.second;
  }
  text.first.resize(text.first.size() - shape.separator);
  text.first += shape.tail;
  return text;
}

// The operation takes a sink and the text.
template <typename Operation>
void grow(Cases& cases, const Shape& shape, Operation operation) {
  for (const std::size_t size : kSizes) {
    const auto [text, units] = textOf(shape, size);
    cases.add(std::string("BM_Growth_") + shape.name + '/' + std::to_string(size), text.size(),
              std::to_string(shape.pieces + units * shape.piecesOfUnit) + '|',
              [text = text, operation](auto& sink) {
                Count count;
                operation(count, text);
                benchmark::DoNotOptimize(count.value());
                sink.number(count.texts());
              });
  }
}

void growAddress(Cases& cases, const Shape& shape) {
  grow(cases, shape, [](Count& sink, const std::string& text) {
    const SipAddress address(toSipString(text));
    touchPieces(sink, address);
  });
}

void growHeader(Cases& cases, const Shape& shape, const char* name = "Route") {
  grow(cases, shape, [name](Count& sink, const std::string& text) {
    const SipHeader header(name, toSipString(text));
    touchPieces(sink, header);
  });
}

void growTel(Cases& cases, const Shape& shape) {
  grow(cases, shape, [](Count& sink, const std::string& text) {
    const TelAddress address(toSipString(text));
    touchPieces(sink, address);
  });
}

void growBody(Cases& cases, const Shape& shape) {
  grow(cases, shape, [](Count& sink, const std::string& text) {
    SipMultipartMessageBodyUtility utility;
    touchPieces(sink, utility.wySipGetMultiPartMessageBody(bytesOf(text),
                                                           static_cast<unsigned int>(text.size()),
                                                           "multipart/mixed;boundary=b"));
  });
}

void addAddresses(Cases& cases) {
  growAddress(cases, {"UriParams", "sip:a@h.test", ";p#=v", "", 4, 2});
  growAddress(cases, {"DisplayName", "\"", "long \\\" name ", "\" <sip:a@h.test>", 4, 0});
  growAddress(cases, {"User", "sip:", "user%41;", "@h.test", 4, 0});
  growAddress(cases, {"HostName", "sip:a@", "label.", "test", 4, 0});
  growTel(cases, {"TelNumber", "tel:+", "555-0123.", "", 5, 0});
  growTel(cases, {"TelParams", "tel:+1", ";p#=v", "", 5, 2});
  grow(cases, {"WriteUriParams", "sip:a@h.test", ";p#=v", "", 1, 0},
       [](Count& sink, const std::string& text) {
         SipAddress address(toSipString(text));
         touch(sink, address.toString());
       });
  grow(cases, {"CompareSIPURI", "sip:a@h.test:5060", ";p#=v", "", 1, 0},
       [](Count& sink, const std::string& text) {
         sink.text(text.data(), CompareSIPURI(text.c_str(), text.c_str()) == 1 ? 1 : 0);
       });
}

void addHeaders(Cases& cases) {
  growHeader(cases, {"HeaderParams", "value", ";p#=v", "", 2, 2});
  growHeader(cases, {"AuthParams", "Digest ", "p#=\"v\",", "", 2, 2, 1}, "WWW-Authenticate");
  growHeader(cases, {"RouteAddresses", "", "<sip:a@h#.test;lr>, ", "", 2, 0, 2});
  growHeader(cases, {"RouteUrns", "", "<urn:service:sos>, ", "", 2, 0, 2});
  growHeader(cases, {"ViaList", "", "SIP/2.0/UDP h#.test:5060, ", "", 2, 0, 2}, "Via");
  growHeader(cases, {"OpenBrackets", "", "<", "", 2, 0});
  growHeader(cases, {"OpenAddresses", "", "<sip:a@b", "", 2, 0});
  growHeader(cases, {"Token", "", "token", "", 2, 0});
  growHeader(cases, {"QuotedString", "\"", "quoted \\\" text ", "\"", 2, 0});
  growHeader(cases, {"OpenQuotes", "", "\"x", "", 2, 0});
}

void addBodies(Cases& cases) {
  growBody(cases, {"Parts", "", "--b\r\n\r\nx\r\n", "--b--\r\n", 0, 1});
  growBody(cases, {"PartsWithFields", "", "--b\r\nSubject: s#\r\n\r\nx\r\n", "--b--\r\n", 0, 3});
  growBody(cases, {"Hyphens", "--b\r\n\r\n", "-- ", "\r\n--b--\r\n", 1, 0});
}

void addTexts(Cases& cases) {
  grow(cases, {"NSIP_strtok", "", "value-#, ", "end", 1, 1},
       [](Count& sink, const std::string& text) {
         std::string copy = text;
         char* rest = copy.data();
         for (char* at = rest; NSIP_strtok(at, ", ", &rest) != nullptr; at = rest) {
           sink.text(at, 1);
         }
         sink.text(rest, 1);
       });
  grow(cases, {"QuoteUserInfo", "", "<sip:a:b@h#.test>,", "", 1, 0, 1},
       [](Count& sink, const std::string& text) {
         char* out = nullptr;
         wyQuoteUserInfoInSipUri(const_cast<char*>(text.c_str()), &out);
         touch(sink, std::string_view(out));
         __free(out);
       });
  // Level enough for the limits of DeCompressGzipData() on its input and its result.
  const Shape message = {"GzipCompress",
                         "",
                         "Via: SIP/2.0/UDP pcscf1.visited.test:5060;branch=z9hG4bK#\r\n",
                         "",
                         1,
                         0};
  grow(cases, message, [](Count& sink, const std::string& text) { touchCompressed(sink, text); });
  for (const std::size_t size : kSizes) {
    const std::string text = textOf(message, size).first;
    cases.add("BM_Growth_GzipExpand/" + std::to_string(size), text.size(),
              Record::tallyOf(1, text.size(), 0),
              [zipped = compressed(text)](auto& sink) { touchExpanded(sink, zipped); });
  }
}

}  // namespace

void addGrowthCases(Cases& cases) {
  addAddresses(cases);
  addHeaders(cases);
  addBodies(cases);
  addTexts(cases);
}
