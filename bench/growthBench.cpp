// growthBench.cpp - the same operation on 1 KiB to 1 MiB of text: the cost of a byte must not grow.
//
// The check counts the pieces of the result.
#include "gzip.h"
#include "harness.h"
#include "imsdpl.h"
#include "pieces.h"
#include "sipMultipartmessagebodyUtility.h"
#include "wySipCommon.h"
#include "wySipUtils.h"

namespace {

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

// A text of a head, units of the same length, and a tail. A "#" in a unit is replaced by its
// number.
struct Shape {
  const char* name;
  std::string head;
  std::string unit;
  std::string tail;
  std::size_t pieces;         // of the result, without those of the units
  std::size_t piecesOfUnit;   // of the result, for each unit
  std::size_t separator = 0;  // bytes at the end of the last unit that are left out
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

// Adds a case for each size. The state's range is the size.
template <typename Function>
void addSizes(const std::string& name, const Function& function) {
  auto* const sizes = benchmark::RegisterBenchmark(name.c_str(), function);
  for (const int size : {1 << 10, 1 << 14, 1 << 18, 1 << 20}) {
    sizes->Arg(size);
  }
}

// The operation takes a sink and the text.
template <typename Operation>
void grow(const Shape& shape, const Operation& operation) {
  const std::string name = std::string("BM_Growth_") + shape.name;
  addSizes(name, [name, shape, operation](benchmark::State& state) {
    const auto [text, units] = textOf(shape, static_cast<std::size_t>(state.range(0)));
    measure(state, name, text.size(),
            std::to_string(shape.pieces + units * shape.piecesOfUnit) + '|',
            [&text = text, &operation](auto& sink) {
              Count count;
              operation(count, text);
              benchmark::DoNotOptimize(count.value());
              sink.number(count.texts());
            });
  });
}

void growAddress(const Shape& shape) {
  grow(shape, [](Count& sink, const std::string& text) {
    const SipAddress address(toSipString(text));
    touchPieces(sink, address);
  });
}

void growHeader(const Shape& shape, const char* name = "Route") {
  grow(shape, [name](Count& sink, const std::string& text) {
    const SipHeader header(name, toSipString(text));
    touchPieces(sink, header);
  });
}

void growBody(const Shape& shape) {
  grow(shape, [](Count& sink, const std::string& text) {
    SipMultipartMessageBodyUtility utility;
    touchPieces(sink, utility.wySipGetMultiPartMessageBody(bytesOf(text),
                                                           static_cast<unsigned int>(text.size()),
                                                           "multipart/mixed;boundary=b"));
  });
}

void addAddresses() {
  growAddress({"UriParams", "sip:a@h.test", ";p#=v", "", 4, 2});
  growAddress({"DisplayName", "\"", "long \\\" name ", "\" <sip:a@h.test>", 4, 0});
  growAddress({"User", "sip:", "user%41;", "@h.test", 4, 0});
  growAddress({"HostName", "sip:a@", "label.", "test", 4, 0});
  grow({"TelNumber", "tel:+", "555-0123.", "", 5, 0}, [](Count& sink, const std::string& text) {
    const TelAddress address(toSipString(text));
    touchPieces(sink, address);
  });
  // Asks for all names at once: a walk by nextParam() is quadratic here.
  grow({"TelParams", "tel:+1", ";p#=v", "", 0, 1}, [](Count& sink, const std::string& text) {
    TelAddress address(toSipString(text));
    for (const SipString** name = address.getParameterNames(); *name != nullptr; ++name) {
      touch(sink, **name);
    }
  });
  grow({"WriteUriParams", "sip:a@h.test", ";p#=v", "", 1, 0},
       [](Count& sink, const std::string& text) {
         SipAddress address(toSipString(text));
         touch(sink, address.toString());
       });
  grow({"CompareSIPURI", "sip:a@h.test:5060", ";p#=v", "", 1, 0},
       [](Count& sink, const std::string& text) {
         sink.text(text.data(), CompareSIPURI(text.c_str(), text.c_str()) == 1 ? 1 : 0);
       });
}

void addHeaders() {
  growHeader({"HeaderParams", "value", ";p#=v", "", 2, 2});
  growHeader({"AuthParams", "Digest ", "p#=\"v\",", "", 2, 2, 1}, "WWW-Authenticate");
  growHeader({"RouteAddresses", "", "<sip:a@h#.test;lr>, ", "", 2, 0, 2});
  growHeader({"RouteUrns", "", "<urn:service:sos>, ", "", 2, 0, 2});
  growHeader({"ViaList", "", "SIP/2.0/UDP h#.test:5060, ", "", 2, 0, 2}, "Via");
  growHeader({"OpenBrackets", "", "<", "", 2, 0});
  growHeader({"OpenAddresses", "", "<sip:a@b", "", 2, 0});
  growHeader({"Token", "", "token", "", 2, 0});
  growHeader({"QuotedString", "\"", "quoted \\\" text ", "\"", 2, 0});
  growHeader({"OpenQuotes", "", "\"x", "", 2, 0});
}

void addBodies() {
  growBody({"Parts", "", "--b\r\n\r\nx\r\n", "--b--\r\n", 0, 1});
  growBody({"PartsWithFields", "", "--b\r\nSubject: s#\r\n\r\nx\r\n", "--b--\r\n", 0, 3});
  growBody({"Hyphens", "--b\r\n\r\n", "-- ", "\r\n--b--\r\n", 1, 0});
}

void addTexts() {
  grow({"NSIP_strtok", "", "value-#, ", "end", 1, 1}, [](Count& sink, const std::string& text) {
    std::string copy = text;
    char* rest = copy.data();
    for (char* at = rest; NSIP_strtok(at, ", ", &rest) != nullptr; at = rest) {
      sink.text(at, 1);
    }
    sink.text(rest, 1);
  });
  grow({"QuoteUserInfo", "", "<sip:a:b@h#.test>,", "", 1, 0, 1},
       [](Count& sink, const std::string& text) {
         char* out = nullptr;
         wyQuoteUserInfoInSipUri(const_cast<char*>(text.c_str()), &out);
         touch(sink, std::string_view(out));
         __free(out);
       });
  // Compresses little enough for the limits of DeCompressGzipData() on its input and its result.
  const Shape message = {"GzipCompress",
                         "",
                         "Via: SIP/2.0/UDP pcscf1.visited.test:5060;branch=z9hG4bK#\r\n",
                         "",
                         1,
                         0};
  grow(message, [](Count& sink, const std::string& text) { touchCompressed(sink, text); });
  addSizes("BM_Growth_GzipExpand", [message](benchmark::State& state) {
    const std::string text = textOf(message, static_cast<std::size_t>(state.range(0))).first;
    measure(state, "BM_Growth_GzipExpand", text.size(), Record::tallyOf(1, text.size(), 0),
            [zipped = compressed(text)](auto& sink) { touchExpanded(sink, zipped); });
  });
}

}  // namespace

void addGrowthCases() {
  addAddresses();
  addHeaders();
  addBodies();
  addTexts();
}
