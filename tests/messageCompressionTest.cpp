// messageCompressionTest.cpp - gzip data written and read, compared with zlib itself.
#include <zlib.h>

#include "imsdpl.h"
#include "libraryTest.h"
#include "wySipUtils.h"

namespace {

using MessageCompressionTest = LibraryTest;

constexpr int kGzip = 31;

unsigned char* bytes(std::string& text) { return reinterpret_cast<unsigned char*>(text.data()); }

// Returns what a step of zlib makes of an input, with room for so many bytes.
std::string run(int (*step)(z_stream*, int), int flush, z_stream& stream, std::string input,
                std::size_t room, int& code) {
  std::string result(room, '\0');
  stream.next_in = bytes(input);
  stream.avail_in = static_cast<uInt>(input.size());
  stream.next_out = bytes(result);
  stream.avail_out = static_cast<uInt>(room);
  code = step(&stream, flush);
  result.resize(stream.total_out);
  return result;
}

// Returns what zlib makes of a text in one run.
std::string zipped(const std::string& text, int level = -1, int memoryLevel = 4) {
  z_stream stream = {};
  EXPECT_EQ(Z_OK, deflateInit2(&stream, level, Z_DEFLATED, kGzip, memoryLevel, 0));
  int code = 0;
  std::string result = run(deflate, Z_FINISH, stream, text, text.size() + 1000, code);
  EXPECT_EQ(Z_STREAM_END, code);
  deflateEnd(&stream);
  return result;
}

// Returns what zlib reads in one run, with room for 60 times the data. Shows also whether the data
// was sound: the stream or the data came to their end.
std::string unzipped(const std::string& data, bool& good) {
  z_stream stream = {};
  EXPECT_EQ(Z_OK, inflateInit2(&stream, kGzip));
  int code = 0;
  std::string result = run(inflate, Z_NO_FLUSH, stream, data, 60 * data.size(), code);
  good = code == Z_STREAM_END || (code == Z_OK && stream.avail_in == 0);
  inflateEnd(&stream);
  return result;
}

// Each returns the result of the library; "-" for none, which leaves *output as it is.
template <typename Operation>
std::string resultOf(Operation operation) {
  unsigned char untouched = 0;
  unsigned char* output = &untouched;
  const unsigned int length = operation(&output);
  if (length == 0) {
    EXPECT_EQ(&untouched, output);
    return "-";
  }
  const std::string result(output, output + length);
  __free(output);
  return result;
}

std::string compressed(std::string text) {
  return resultOf([&](unsigned char** output) {
    return compMessageWithDeflate(text.data(), output, static_cast<unsigned int>(text.size()));
  });
}

std::string expanded(std::string_view data) {
  unsigned char nothing = 0;
  std::vector<unsigned char> input(data.begin(), data.end());  // exactly as long
  return resultOf([&](unsigned char** output) {
    return DeCompressGzipData(input.empty() ? &nothing : input.data(),
                              static_cast<unsigned short>(input.size()), output);
  });
}

// Returns bytes that do not compress.
std::string noise(std::size_t length) {
  std::string text;
  for (std::uint32_t state = 1; text.size() < length;
       text.push_back(static_cast<char>(state >> 24))) {
    state = state * 1664525U + 1013904223U;
  }
  return text;
}

const char* const kError = "4 6062 sip_utility/src/wySipUtils | DeCompressGzipData | ERROR";

TEST_F(MessageCompressionTest, WritesTheBytesOfASingleRunIfTheyFit) {
  bool exactFit = false;
  bool oneTooLong = false;
  for (std::size_t length = 0; length <= 400; ++length) {
    SCOPED_TRACE(length);
    std::string text = noise(50) + std::string(350, 'v');
    text.resize(length);
    const std::string reference = zipped(text);
    EXPECT_EQ(reference.size() <= length ? reference : "-", compressed(text));
    exactFit = exactFit || reference.size() == length;
    oneTooLong = oneTooLong || reference.size() == length + 1;
  }
  EXPECT_TRUE(exactFit && oneTooLong);
  std::string message;
  for (std::size_t i = 0; i < 3000; ++i) {
    message += "Via: SIP/2.0/UDP 10.0.0." + std::to_string(i) + '\0' + noise(i % 40) + "\r\n";
  }
  const std::string result = compressed(message);
  EXPECT_TRUE(zipped(message) == result);
  bool good = false;
  EXPECT_TRUE(message == unzipped(result, good) && good);
  EXPECT_EQ("-", compressed(noise(70000)));
  EXPECT_EQ(Lines{}, takeLog());
}

TEST_F(MessageCompressionTest, ReadsWhatZlibWrites) {
  EXPECT_EQ("-", expanded(zipped("")));
  EXPECT_EQ("-", expanded(""));
  for (const std::size_t length : {1U, 100U, 32769U, 60000U}) {
    for (const int level : {0, 1, 9}) {
      SCOPED_TRACE(length);
      EXPECT_TRUE(noise(length) == expanded(zipped(noise(length), level, 9)));
    }
  }
  EXPECT_EQ("text", expanded(zipped("text") + "more"));
  EXPECT_EQ(Lines{}, takeLog());
}

TEST_F(MessageCompressionTest, ReadsPiecesAndDamagedDataAsZlibDoes) {
  std::string text = noise(40);
  text += text + "text text text";
  const std::string all = zipped(text);
  std::vector<std::string> inputs = {noise(50), "\x1F\x8B"};
  for (std::size_t i = 0; i < all.size(); ++i) {
    inputs.push_back(all.substr(0, i));
    for (const char flip : {'\x01', '\x80', '\xFF'}) {
      inputs.push_back(all);
      inputs.back()[i] = static_cast<char>(inputs.back()[i] ^ flip);
    }
  }
  for (const std::string& input : inputs) {
    SCOPED_TRACE(testing::PrintToString(input));
    bool good = false;
    const std::string reference = unzipped(input, good);
    EXPECT_EQ(good && !reference.empty() ? reference : "-", expanded(input));
    EXPECT_EQ(good || input.empty() ? Lines{} : Lines{kError}, takeLog());
  }
}

TEST_F(MessageCompressionTest, ExpandsToSixtyTimesTheDataAndNoFurther) {
  std::string text(1000, '\0');
  while (zipped(text).size() * 60 != text.size()) {
    ASSERT_LT(text.size(), 5000U);
    text.push_back('\0');
  }
  EXPECT_TRUE(text == expanded(zipped(text)));
  EXPECT_EQ(Lines{}, takeLog());
  for (const std::size_t length : {text.size() + 1, std::size_t{1} << 24U}) {
    EXPECT_EQ("-", expanded(zipped(std::string(length, '\0'))));
    EXPECT_EQ(Lines{kError}, takeLog());
  }
}

TEST_F(MessageCompressionTest, RefusesNull) {
  unsigned char byte = 0;
  unsigned char* output = &byte;
  for (const bool noInput : {true, false}) {
    char* const text = noInput ? nullptr : reinterpret_cast<char*>(&byte);
    EXPECT_EQ(0U, compMessageWithDeflate(text, noInput ? &output : nullptr, 1));
    EXPECT_EQ(Lines{}, takeLog());
    EXPECT_EQ(0U, DeCompressGzipData(noInput ? nullptr : &byte, 1, noInput ? &output : nullptr));
    EXPECT_EQ(Lines{"4 6062 sip_utility/src/wySipUtils | DeCompressGzipData | input param is NULL"},
              takeLog());
  }
  EXPECT_EQ(&byte, output);
}

TEST_F(MessageCompressionTest, ReportsOutOfMemory) {
  std::string text(300, 'a');
  std::string data = zipped(text);
  for (const bool expands : {false, true}) {
    int nulls = 0;
    const Runs runs = sweepAllocations([&] {
      unsigned char* output = bytes(text);
      const unsigned int length =
          expands
              ? DeCompressGzipData(bytes(data), static_cast<unsigned short>(data.size()), &output)
              : compMessageWithDeflate(text.data(), &output, 300);
      if (length == 0) {
        EXPECT_TRUE(output == nullptr || output == bytes(text));
        nulls += output == nullptr ? 1 : 0;
        return VARN_RESOURCE_FAILURE;
      }
      EXPECT_EQ(expands ? text : data, std::string(output, output + length));
      __free(output);
      return VARN_OK;
    });
    const auto line = [&](const char* start, const char* end) {
      return std::string(start) + " sip_utility/src/wySipUtils | " +
             (expands ? "DeCompressGzipData" : "compMessageWithDeflate") + " | " + end;
    };
    const char* const noMemory = expands ? "3 6062" : "3 6068";
    EXPECT_EQ((Runs{{line(noMemory, "calloc failed")},
                    {line(expands ? "4 6062" : "4 6068", "varnDeflateInit2 Failed")},
                    {line("3 6068", "calloc failed")},
                    {}}),
              runs);
    EXPECT_EQ(1, nulls);
  }
}

}  // namespace
