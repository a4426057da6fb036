// fuzz_gzip.cpp - compression, compared with zlib. From "A" up, the first byte of the input is how
// often the rest is repeated ("A" once) to make a message to compress. After a lower first byte,
// the rest is data to expand.
#include <zlib.h>

#include "law.h"
#include "wySipUtils.h"

namespace {

constexpr std::size_t kExpansionLimit = 60;
constexpr std::size_t kMessageEnough = 2048;  // a message of one character is past the limit then
constexpr int kGzip = 31;                     // the largest window; gzip header and trailer

unsigned char* asBytes(char* text) { return reinterpret_cast<unsigned char*>(text); }

// Returns the bytes that the library handed out.
std::string takenBytes(unsigned char* output, unsigned int count) {
  const HandedOutText bytes(reinterpret_cast<char*>(output));
  require((count != 0) == (bytes != nullptr), "no bytes, no block", "", "");
  return {bytes.get(), count};
}

// Returns what zlib makes of the input in one step, as much as there is room for; "" for damaged
// data.
std::string converted(bool deflating, std::string in, std::size_t room) {
  std::string out(room, '\0');
  z_stream stream = {};
  deflating ? deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, kGzip, 4, Z_DEFAULT_STRATEGY)
            : inflateInit2(&stream, kGzip);
  stream.next_in = asBytes(in.data());
  stream.avail_in = static_cast<unsigned int>(in.size());
  stream.next_out = asBytes(out.data());
  stream.avail_out = static_cast<unsigned int>(room);
  const int result = deflating ? deflate(&stream, Z_FINISH) : inflate(&stream, Z_NO_FLUSH);
  out.resize(stream.total_out);
  deflating ? deflateEnd(&stream) : inflateEnd(&stream);
  return result == Z_DATA_ERROR ? "" : out;
}

std::string checkExpanding(const std::string& data) {
  unsigned char* bytes = nullptr;
  const auto length = static_cast<unsigned short>(data.size());
  const unsigned int count = DeCompressGzipData(asBytes(blockOf(data).get()), length, &bytes);
  const std::string text = takenBytes(bytes, count);
  const std::size_t limit = kExpansionLimit * length;
  const std::string expected = converted(false, data, limit + 1);
  const bool cut = expected.size() > limit && text == expected.substr(0, limit);
  require(cut || text == (expected.size() <= limit ? expected : ""), "as zlib", data, text);
  return text;
}

void checkMessage(const std::string& text, std::size_t seed) {
  unsigned char* bytes = nullptr;
  const auto length = static_cast<unsigned int>(text.size());
  const unsigned int count = compMessageWithDeflate(blockOf(text).get(), &bytes, length);
  std::string data = takenBytes(bytes, count);
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
