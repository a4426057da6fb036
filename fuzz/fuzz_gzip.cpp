// fuzz_gzip.cpp - compression, held against zlib. The input's first byte says how often the rest is
// repeated ("A" once) for a message to compress; the rest behind a byte below is data to expand.
#include <zlib.h>

#include "law.h"
#include "wySipUtils.h"

namespace {

constexpr std::size_t kExpansionLimit = 60;
constexpr std::size_t kMessageEnough = 2048;  // beyond the limit, if of one character
constexpr int kGzip = 31;                     // the largest window; gzip header and trailer

unsigned char* toStdString(char* text) { return reinterpret_cast<unsigned char*>(text); }

// Returns what the library gave away.
std::string takenBytes(unsigned char* bytes, unsigned int count) {
  const GivenText given(reinterpret_cast<char*>(bytes));
  require((count != 0) == (given != nullptr), "no bytes, no block", "", "");
  return {given.get(), count};
}

// Returns what zlib makes of the input in one step, as much as there is room for; "" of damaged
// data.
std::string converted(bool deflating, std::string in, std::size_t room) {
  std::string out(room, '\0');
  z_stream stream = {};
  deflating ? deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, kGzip, 4, Z_DEFAULT_STRATEGY)
            : inflateInit2(&stream, kGzip);
  stream.next_in = toStdString(in.data());
  stream.avail_in = static_cast<unsigned int>(in.size());
  stream.next_out = toStdString(out.data());
  stream.avail_out = static_cast<unsigned int>(room);
  const int result = deflating ? deflate(&stream, Z_FINISH) : inflate(&stream, Z_NO_FLUSH);
  out.resize(stream.total_out);
  deflating ? deflateEnd(&stream) : inflateEnd(&stream);
  return result == Z_DATA_ERROR ? "" : out;
}

std::string checkExpanding(const std::string& data) {
  unsigned char* given = nullptr;
  const auto length = static_cast<unsigned short>(data.size());
  const unsigned int count = DeCompressGzipData(toStdString(blockOf(data).get()), length, &given);
  const std::string text = takenBytes(given, count);
  const std::size_t limit = kExpansionLimit * length;
  const std::string expected = converted(false, data, limit + 1);
  const bool cut = expected.size() > limit && text == expected.substr(0, limit);
  require(cut || text == (expected.size() <= limit ? expected : ""), "as zlib", data, text);
  return text;
}

void checkMessage(const std::string& text, std::size_t seed) {
  unsigned char* given = nullptr;
  const auto length = static_cast<unsigned int>(text.size());
  const unsigned int count = compMessageWithDeflate(blockOf(text).get(), &given, length);
  std::string data = takenBytes(given, count);
  const std::string expected = converted(true, text, length + 1);
  require(data == (expected.size() <= length ? expected : ""), "as zlib, if shorter", text, data);
  const bool fits = !data.empty() && length <= kExpansionLimit * data.size();
  require(checkExpanding(data) == text || !fits, "there and back", text, data);
  const std::size_t place = seed * data.size() / 256;
  checkExpanding(seed % 2 == 0 ? data.substr(0, place)
                               : data.replace(place, data.empty() ? 0 : 1, 1, '?'));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  const std::size_t before = hostLiveBlocks();
  const std::string text(data + (size != 0 ? 1 : 0), data + std::min(size, kLongestInput));
  const std::size_t seed = size == 0 ? 0 : *data;
  std::string message;
  for (std::size_t i = '@'; i < seed && message.size() < kMessageEnough; ++i) {
    message += text;
  }
  seed < 'A' ? static_cast<void>(checkExpanding(text)) : checkMessage(message, seed);
  require(before == hostLiveBlocks(), "no block is left behind", text, "");
  return 0;
}
