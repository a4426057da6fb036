// platformTest.cpp - what the host platform does that no test of the library shows.
#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstring>
#include <set>

#include "imsdpl.h"
#include "imsxml.h"
#include "libraryTest.h"
#include "naive.h"

namespace {

using PlatformTest = LibraryTest;

TEST_F(PlatformTest, CountsEveryBlockItsOwnStrdupIncluded) {
  void* blocks[] = {__malloc(1), __calloc(3, 5), __strdup("text")};
  EXPECT_EQ(3U, hostLiveBlocks());
  EXPECT_EQ(0, std::memcmp(blocks[1], std::string(15, '\0').data(), 15));
  EXPECT_STREQ("text", static_cast<char*>(blocks[2]));
  for (void* block : blocks) {
    __free(block);
  }
  __free(nullptr);
  EXPECT_EQ(nullptr, __strdup(nullptr));
  EXPECT_EQ(nullptr, __calloc(SIZE_MAX / 2, 3));
}

TEST_F(PlatformTest, FailsTheAllocationThatItIsAskedToFail) {
  hostFailAllocation(2);
  void* first = __malloc(1);
  EXPECT_EQ(nullptr, __strdup("text"));
  void* third = __malloc(1);
  EXPECT_EQ(0U, hostFailAllocation(0));
  EXPECT_TRUE(first != nullptr && third != nullptr);
  __free(first);
  __free(third);
}

TEST_F(PlatformTest, ComparesBytesOrAsciiLettersOfEitherCase) {
  const auto sign = [](int difference) { return (difference > 0) - (difference < 0); };
  const struct {
    const char* a;
    const char* b;
    int bytes;
    int letters;
  } cases[] = {
      {"", "", 0, 0},        {"", "a", -1, -1},   {"tAG", "Tag", 1, 0},     {"a", "B", 1, -1},
      {"Z", "[", -1, 1},     {"@", "`", -1, -1},  {"[", "{", -1, -1},       {"ab", "A", 1, 1},
      {"z", "\xDA", -1, -1}, {"abc", "ab", 1, 1}, {"\xDA", "\xFA", -1, -1}, {"Zz", "zZ", -1, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.a);
    const auto a = exactCopy(c.a);
    const auto b = exactCopy(c.b);
    const std::size_t size = std::min(__strlen(a.get()), __strlen(b.get())) + 1;
    EXPECT_EQ(c.bytes, sign(__strcmp(a.get(), b.get())));
    EXPECT_EQ(-c.bytes, sign(__memcmp(b.get(), a.get(), size)));
    EXPECT_EQ(c.letters, sign(__stricmp(a.get(), b.get())));
    EXPECT_EQ(-c.letters, sign(__stricmp(b.get(), a.get())));
  }
}

TEST_F(PlatformTest, SearchesFillsAndCopies) {
  const auto owned = exactCopy("tel:+1;x=1");
  char* const text = owned.get();
  EXPECT_EQ(10U, __strlen(text));
  EXPECT_EQ(text + 9, __strstr(text + 6, "1"));
  EXPECT_EQ(nullptr, __strstr(text, "11"));
  EXPECT_EQ(text + 5, __strchr(text, '1'));
  EXPECT_EQ(text + 10, __strchr(text, '\0'));
  EXPECT_EQ(nullptr, __strchr(text, '2'));
  EXPECT_EQ(text, __memcpy(text, "sip", 3));
  EXPECT_EQ(text + 9, __memset(text + 9, 0x102, 1));
  EXPECT_STREQ("sip:+1;x=\2", text);
}

TEST_F(PlatformTest, CopiesAndAppendsWhatFits) {
  const struct {
    size_t (*write)(char* out, const char* cstr, size_t size);
    size_t size;
    const char* after;  // of "ab" and "cde", "." for a zero byte
    size_t length;
  } cases[] = {
      {__strlcpy, 0, "ab.###", 3}, {__strlcpy, 1, ".b.###", 3}, {__strlcpy, 3, "cd.###", 3},
      {__strlcpy, 4, "cde.##", 3}, {__strlcpy, 6, "cde.##", 3}, {__strlcat, 0, "ab.###", 3},
      {__strlcat, 1, "ab.###", 4}, {__strlcat, 2, "ab.###", 5}, {__strlcat, 3, "ab.###", 5},
      {__strlcat, 5, "abcd.#", 5}, {__strlcat, 6, "abcde.", 5},
  };
  for (const auto& c : cases) {
    std::string out("ab\0###", 6);
    EXPECT_EQ(c.length, c.write(out.data(), "cde", c.size));
    std::replace(out.begin(), out.end(), '\0', '.');
    EXPECT_EQ(c.after, out);
  }
}

TEST_F(PlatformTest, ConvertsNumbers) {
  char text[70];
  EXPECT_STREQ("-1010", __itoaL(-10, text, 2));
  EXPECT_EQ(std::to_string(LONG_MIN), __itoaL(LONG_MIN, text, 10));
  EXPECT_EQ(-12, __atoi(" -12x"));
  EXPECT_EQ(INT_MAX, __atoi("99999999999"));
  EXPECT_EQ(0, __atoi(nullptr));
}

TEST_F(PlatformTest, WritesAddressesAsRecordsThatAreEqualWhereFamilyAndAddressAre) {
  const auto record = [](const char* text, char before = '#') {
    std::string bytes(20, before);
    return wyDplInetPton(bytes.data(), exactCopy(text).get()) == 1 ? bytes : "";
  };
  EXPECT_EQ(record("1.2.3.4", '-'), record("1.2.3.4"));
  EXPECT_EQ(record("::1.2.3.4"), record("0:0:0:0:0:0:0102:0304"));
  std::set<std::string> records = {""};
  for (const char* text : {"0.0.0.0", "1.2.3.4", "1.2.3.5", "::", "::1.2.3.4", "1::", "1::1"}) {
    EXPECT_TRUE(records.insert(record(text)).second) << text;
  }
  for (const char* text : {"", "h", "1.2.3", "1.2.3.4 ", "[::1]", "1::2:", ":::", "::1%lo"}) {
    EXPECT_EQ("", record(text)) << text;
  }
}

TEST_F(PlatformTest, QuotesBytesThatAUserPartCannotHoldAsFarAsThereIsRoom) {
  const auto quoted = [](std::string_view text, unsigned int size) {
    const auto out = std::make_unique<char[]>(size);
    wyDplStrURIQuote(out.get(), reinterpret_cast<unsigned char*>(exactCopy(text).get()), size);
    return std::string(out.get());
  };
  for (int c = 1; c < 256; ++c) {
    const std::string text(1, static_cast<char>(c));
    char escape[4];
    std::snprintf(escape, sizeof(escape), "%%%02X", static_cast<unsigned int>(c));
    EXPECT_EQ(naive::consistsOf(text, naive::unreservedAnd("&=+$,;?/:")) ? text : escape,
              quoted(text, 4));
    EXPECT_EQ(text, (wyDplStrURIDequote(escape), escape));
  }
  EXPECT_EQ("a a%40", quoted("", 1) + quoted("a@b", 4) + ' ' + quoted("a@b", 5));
}

TEST_F(PlatformTest, DecodesCompleteEscapesOnlyAndCutsNoText) {
  for (const char* row : {" => ", "% => %", "%4 => %4", "%4g%G4 => %4g%G4", "%%41 => %A",
                          "%2541 => %41", "%00a => %00a", "%e9%E9 => \xE9\xE9"}) {
    const auto [text, decoded] = sidesOf(row);
    const auto exact = exactCopy(text);
    EXPECT_EQ(decoded, (wyDplStrURIDequote(exact.get()), exact.get()));
  }
}

TEST_F(PlatformTest, RemovesOnePairOfQuotes) {
  for (const char* row : {"\"a b\" => a b", "\"a => \"a", "a\" => a\"", "\" => \"", "\"\" => ",
                          " => ", "a\"b => a\"b", "\"\"a\"\" => \"a\""}) {
    auto [text, bare] = sidesOf(row);
    EXPECT_EQ(bare, XmlCommon::RemoveQuotes(text.data()));
  }
  EXPECT_EQ(nullptr, XmlCommon::RemoveQuotes(nullptr));
}

}  // namespace
