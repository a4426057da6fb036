// wySipStringBench.cpp - counted strings and the cursors over them.
#include "wySipString.h"

#include "harness.h"
#include "inputs.h"

namespace {

constexpr std::size_t kLength = 1024;

void addAppends() {
  const std::string text(kLength, 'x');
  addCase("BM_SipString_AppendByte/1024", kLength, text + '|', [](auto& sink) {
    SipString string;
    for (std::size_t i = 0; i < kLength; ++i) {
      string.append('x');
    }
    touch(sink, string);
  });
  addCase("BM_SipString_AppendByteReserved/1024", kLength, text + '|', [](auto& sink) {
    SipString string;
    string.reserve(kLength);
    for (std::size_t i = 0; i < kLength; ++i) {
      string.append('x');
    }
    touch(sink, string);
  });
  addCase("BM_SipString_AppendText/16x64", kLength, text + '|',
          [piece = std::string(kLength / 16, 'x')](auto& sink) {
            SipString string;
            for (int i = 0; i < 16; ++i) {
              string.append(piece.data(), static_cast<unsigned int>(piece.size()));
            }
            touch(sink, string);
          });
}

void addWholes() {
  const std::string text(inputs::kNameAddr);
  addCase("BM_SipString_Make/nameAddr", text.size(), text + '|',
          [text](auto& sink) { touch(sink, toSipString(text)); });
  addCase("BM_SipString_Copy/nameAddr", text.size(), text + '|',
          [from = toSipString(text)](auto& sink) {
            // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the copy is timed
            const SipString copy(from);
            touch(sink, copy);
          });
  addCase("BM_SipString_Compare/nameAddr", text.size(), "0|0|",
          [text, string = toSipString(text)](auto& sink) {
            sink.number(static_cast<unsigned>(string.compare(text.c_str())));
            sink.number(static_cast<unsigned>(string.caseCompare(text.c_str())));
          });
}

void addStreams() {
  const std::string text(inputs::kNameAddr);
  addCase("BM_SipStrStream_Peek/nameAddr", text.size(), "5648|",
          [from = toSipString(text)](auto& sink) {
            const SipStrStream stream(from);
            unsigned sum = 0;
            for (unsigned int i = 0; i < stream.length(); ++i) {
              sum += static_cast<unsigned>(stream.peek(i));
            }
            sink.number(sum);
          });
  addCase("BM_SipStrStream_Get/nameAddr", text.size(), text + '|',
          [from = toSipString(text)](auto& sink) {
            SipLWSStrStream stream(from);
            SipString out;
            stream.get(from.length(), out);
            touch(sink, out);
          });
}

}  // namespace

void addStringCases() {
  addAppends();
  addWholes();
  addStreams();
}
