// wySipUtilsBench.cpp - checks of plain text, and gzip of messages.
#include "wySipUtils.h"

#include <zlib.h>

#include "gzip.h"
#include "harness.h"
#include "inputs.h"
#include "pieces.h"

namespace {

// Returns this many bytes of SIP messages, which compress as such text does.
std::string message(std::size_t length) {
  std::string text;
  for (unsigned int i = 1; text.size() < length; ++i) {
    text.append(inputs::kInvite).append(inputs::kSdp);
    text += "a=candidate:" + std::to_string(i * 2654435761U) + "\r\n";
  }
  return text.substr(0, length);
}

// Hands over an object that a free function handed out, and deletes it.
template <typename Sink, typename Object>
void take(Sink& sink, Object* object) {
  touchPieces(sink, *siputility::HandedOut<Object>(object));
}

// Hands over the length of the text compressed with the library's settings, but in one call of
// zlib: the library gives zlib one byte a call.
template <typename Sink>
void touchDeflatedAtOnce(Sink& sink, const std::string& text) {
  z_stream stream = {};
  deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, 15 + 16, 4, Z_DEFAULT_STRATEGY);
  std::string output(text.size() + 100, '\0');
  stream.next_in = bytesOf(text);
  stream.avail_in = static_cast<unsigned int>(text.size());
  stream.next_out = bytesOf(output);
  stream.avail_out = static_cast<unsigned int>(output.size());
  deflate(&stream, Z_FINISH);
  sink.number(stream.total_out);
  deflateEnd(&stream);
}

void addGzip(const std::string& size, const std::string& text) {
  const std::string zipped = compressed(text);
  addCase("BM_Gzip_Compress/" + size, text.size(), zipped + '|',
          [text](auto& sink) { touchCompressed(sink, text); });
  addCase("BM_Gzip_ZlibAtOnce/" + size, text.size(), std::to_string(zipped.size()) + '|',
          [text](auto& sink) { touchDeflatedAtOnce(sink, text); });
  addCase("BM_Gzip_Expand/" + size, text.size(), text + '|',
          [zipped](auto& sink) { touchExpanded(sink, zipped); });
}

void addVia() {
  using inputs::kVia;
  addCase("BM_Utils_ParseViaHeaderToAdress/via", kVia.size(), "0||sip||pcscf1.visited.test|5060|",
          [](auto& sink) { take(sink, ParseViaHeaderToAdress(kVia.data())); });
  addCase("BM_Utils_ParseViaHeaderToHeader/via", kVia.size(),
          "0|Via|sip:pcscf1.visited.test:5060|rport||branch|z9hG4bK-524287-1---a1b2c|",
          [](auto& sink) { take(sink, ParseViaHeaderToHeader(kVia.data())); });
}

void addUris() {
  const auto compare = [](const char* input, const std::string& remote, const std::string& local) {
    addCase(std::string("BM_Utils_CompareSIPURI/") + input, remote.size() + local.size(), "1|",
            [remote, local](auto& sink) {
              sink.number(static_cast<unsigned>(CompareSIPURI(remote.c_str(), local.c_str())));
            });
  };
  compare("names", "sip:alice@example.test:5060;transport=tcp", "<sip:alice@example.test:5060;lr>");
  compare("ipv6", "sip:alice@[2001:db8::17]:5060", "sip:alice@[2001:db8:0:0:0:0:0:17]:5060");
  const auto hostType = [](const std::string& host, const char* wanted) {
    addCase("BM_Utils_GetHostType/" + host, host.size(), wanted,
            [host](auto& sink) { sink.number(static_cast<unsigned>(GetHostType(host.c_str()))); });
  };
  hostType("192.0.2.10", "1|");
  hostType("[2001:db8::17]", "2|");
  hostType("ims.example.test", "0|");
}

void addValues() {
  addCase("BM_Utils_ValidateAndGetMaxQValue/8", 24, "5|", [](auto& sink) {
    const char* values[] = {"0.1", "0.2", "0.3", "0.7", "0.5", "1.0", "0.6", "0.4"};
    sink.number(ValidateAndGetMaxQValue(const_cast<char**>(values), 8));
  });
  addCase("BM_Utils_CheckIfHeaderValuePresent/8", 56, "1|", [](auto& sink) {
    const char* values[] = {"option1", "option2", "option3", "option4", "option5",
                            "option6", "option7", "OPTION8", nullptr};
    sink.number(static_cast<unsigned>(wySipCheckIfHeaderValuePresent(
        const_cast<char**>(values), const_cast<char*>("option8"), 1)));
  });
  addCase("BM_Utils_wyAtoi32/10", 10, "4294967295|",
          [](auto& sink) { sink.number(wyAtoi32("4294967295")); });
}

// Both functions change their text, so each call gets a copy.
void addCuts() {
  std::string list;
  for (int i = 0; i < 64; ++i) {
    list += "value-of-element";
    list += i == 63 ? "" : ", ";
  }
  addCase("BM_Utils_NSIP_strtok/64", list.size(), "#64 1024 0", [list](auto& sink) {
    std::string text = list;
    char* rest = text.data();
    for (char* at = rest; NSIP_strtok(at, ", ", &rest) != nullptr; at = rest) {
      touch(sink, std::string_view(at));
    }
    touch(sink, std::string_view(rest));
  });
  const std::string blank = std::string(32, ' ') + "value" + std::string(32, ' ');
  addCase("BM_Utils_RemoveSpaces/69", blank.size(), "value|", [blank](auto& sink) {
    std::string text = blank;
    touch(sink, std::string_view(RemoveSpaces(text.data())));
  });
}

}  // namespace

void addUtilsCases() {
  addVia();
  addUris();
  addValues();
  addCuts();
  addGzip("1KB", message(1024));
  addGzip("16KB", message(16384));
}
