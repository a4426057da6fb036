// platformTest.cpp - the host platform, where the library does not show it.
#include <climits>
#include <cstring>

#include "imsdpl.h"
#include "imsxml.h"
#include "libraryTest.h"

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

TEST_F(PlatformTest, ConvertsNumbers) {
  char text[70];
  EXPECT_STREQ("-1010", __itoaL(-10, text, 2));
  EXPECT_EQ(std::to_string(LONG_MIN), __itoaL(LONG_MIN, text, 10));
  EXPECT_EQ(-12, __atoi(" -12x"));
  EXPECT_EQ(INT_MAX, __atoi("99999999999"));
  EXPECT_EQ(0, __atoi(nullptr));
}

TEST_F(PlatformTest, RemovesAQuoteAtEachEnd) {
  const struct {
    const char* quoted;
    const char* bare;
  } cases[] = {{"\"a b\"", "a b"}, {"\"a", "a"}, {"a\"", "a"},    {"\"", ""},
               {"\"\"", ""},       {"", ""},     {"a\"b", "a\"b"}};
  for (const auto& c : cases) {
    std::string text(c.quoted);
    EXPECT_STREQ(c.bare, XmlCommon::RemoveQuotes(text.data()));
  }
  EXPECT_EQ(nullptr, XmlCommon::RemoveQuotes(nullptr));
}

}  // namespace
