// wySipStringTest.cpp - counted strings and the cursors over them.
#include "wySipString.h"

#include <algorithm>
#include <csignal>
#include <cstring>
#include <utility>

#include "libraryTest.h"
#include "naive.h"

namespace {

using std::string_literals::operator""s;

constexpr unsigned int kHuge = 0xFFFFFFFFU;

using Change = VARN_EXCEPTION_CODES (*)(SipString&);

using SipStringTest = LibraryTest;
using SipStringDeathTest = LibraryTest;
using SipStrStreamTest = LibraryTest;
using SipLWSStrStreamTest = LibraryTest;

// From now on fills new buffers with '#' and traces them instead of the fixture: "+4 " is a new
// buffer of four bytes, "- " a deleted one.
void traceBuffers(std::string& trace) {
  hostSetMemoryHandler(
      [](void* buffers, const HostMemoryEvent& event) {
        EXPECT_EQ(2, event.category);
        static_cast<std::string*>(buffers)->append(
            event.added ? "+" + std::to_string(event.size) + " " : "- ");
        if (event.added) {
          EXPECT_STREQ("sip_utility/src/wySipString", event.sourceFile);
          std::memset(const_cast<void*>(event.pointer), '#', event.size);
        }
      },
      &trace);
}

TEST_F(SipStringTest, EmptyTextsTakeNoBuffer) {
  std::string buffers;
  traceBuffers(buffers);
  const SipString empties[] = {SipString(), SipString(nullptr), SipString("a", 0), SipString("")};
  for (const SipString& empty : empties) {
    SipString copy(empty);
    copy = empty;
    EXPECT_EQ(VARN_OK, copy.append(empty));
    EXPECT_EQ(VARN_OK, copy.append(nullptr));
    EXPECT_EQ(VARN_OK, copy.append(nullptr, 0));
    EXPECT_EQ(VARN_INVALID_INPUT, copy.append(nullptr, 2));
    EXPECT_EQ(0U, copy.length());
    EXPECT_STREQ("", copy.c_str());
  }
  EXPECT_EQ("", buffers);
}

TEST_F(SipStringTest, GrowsToExactlyTheLengthAskedFor) {
  const struct {
    Change change;
    std::string content;
    const char* buffers;
  } steps[] = {
      {[](SipString& text) { return text.append("abc"); }, "abc", "+4 "},
      {[](SipString& text) { return text.append('\0'); }, "abc\0"s, "+5 - "},
      {[](SipString& text) { return text.append("\0d", 2); }, "abc\0\0d"s, "+7 - "},
      {[](SipString& text) { return text.clear(), text.append("UVWXYZ"); }, "UVWXYZ", ""},
      {[](SipString& text) { return text.reserve(6); }, "UVWXYZ", ""},
      {[](SipString& text) { return text.reserve(9), text.append("123"); }, "UVWXYZ123", "+10 - "},
      {[](SipString& text) { return (text = SipString("xyz")), VARN_OK; }, "xyz", "+4 - "},
  };
  std::string buffers;
  traceBuffers(buffers);
  SipString text;
  for (const auto& step : steps) {
    EXPECT_EQ(VARN_OK, step.change(text));
    const SipString& self = text;
    text = self;
    EXPECT_EQ(step.content, view(text));
    EXPECT_EQ('\0', text.c_str()[text.length()]);
    EXPECT_EQ(step.buffers, std::exchange(buffers, {}));
  }
  EXPECT_EQ(VARN_OK, text.reserve(10));  // ends the buffer, not the content
  EXPECT_EQ("xyz#######\0"s, std::string(text.c_str(), 11));
}

TEST_F(SipStringTest, CopiesAndTakesAnyPartEvenOfItself) {
  const std::string letters = "ab\0c"s;
  for (unsigned int i = 0; i < 2 * 6 * 6; ++i) {
    const unsigned int position = i / 2 % 6;
    const unsigned int length = i < 60 ? i / 12 : kHuge - position;
    SCOPED_TRACE(testing::Message() << length << " bytes from " << position);
    SipString text;
    text.reserve(i % 2 * 20);  // what is appended fits or does not
    text.append(letters.data(), 4);
    const bool inside = position <= 4;
    const std::string part = inside ? letters.substr(position, length) : "";
    const auto count = static_cast<unsigned int>(part.size());
    const auto exact = std::make_unique<char[]>(count);
    EXPECT_EQ(count, text.copy(exact.get(), length, position));
    EXPECT_EQ(part, std::string(exact.get(), count));
    EXPECT_EQ(0U, text.copy(nullptr, length, position));
    SipString out("out");
    EXPECT_EQ(inside ? VARN_OK : VARN_INVALID_INPUT, text.copy(out, length, position));
    EXPECT_EQ(inside ? part : "out", view(out));
    EXPECT_EQ(VARN_OK, text.append(text.c_str() + std::min(position, 4U), count));
    EXPECT_EQ(VARN_OK, text.append(text));
    const std::string twice = letters + part + letters + part;
    EXPECT_EQ(twice, view(text));
    EXPECT_EQ(VARN_OK, text.copy(text, length, position));
    EXPECT_EQ(twice.substr(position, length), view(text));
    EXPECT_EQ('\0', text.c_str()[text.length()]);
  }
}

TEST_F(SipStringTest, ComparesUnsignedBytesAndFoldsAsciiLettersOnly) {
  const struct {
    std::string text;
    std::string other;
    int sign;
    int caseCompared;
  } cases[] = {{"", "", 0, 0},
               {"abcd", "ab", 1, 2},
               {"AZ", "az", -1, 0},
               {"a[", "A{", 1, '[' - '{'},
               {"@", "`", -1, '@' - '`'},
               {"B", "a", -1, 1},
               {"\xE9", "e", 1, 0xE9 - 'e'},
               {"\xC1", "\xE1", -1, 0xC1 - 0xE1},
               {"a\0b"s, "a\0c"s, -1, -1},
               {"a\0b"s, "A", 1, 2}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.text));
    const SipString text = toSipString(c.text);
    const std::vector<char> exact(c.other.begin(), c.other.end());
    const auto length = static_cast<unsigned int>(exact.size());
    const int difference = text.compare(exact.data(), length);
    EXPECT_EQ(c.sign, (difference > 0 ? 1 : 0) - (difference < 0 ? 1 : 0));
    EXPECT_EQ(difference == 0, text.compare(toSipString(c.other)) == 0);
    EXPECT_EQ(c.caseCompared, text.caseCompare(exact.data(), length));
    EXPECT_EQ(c.caseCompared, text.caseCompare(toSipString(c.other)));
  }
  EXPECT_EQ(1, SipString("abcd").compare("abc"));
  EXPECT_EQ(3, SipString("abcd").caseCompare("A"));
  EXPECT_EQ(4, SipString("ab").compare(nullptr) + SipString("ab").caseCompare(nullptr));
}

TEST_F(SipStringTest, FailedAssignmentLeavesACapacityThatStoresNothing) {
  const SipString longer("abcdef");
  SipString text("abc");
  hostFailAllocation(1);
  text = longer;
  EXPECT_EQ(Lines{kNotAssigned}, takeLog());
  const Change changes[] = {
      [](SipString& lost) { return lost.append("xyz"); },
      [](SipString& lost) { return lost = SipString("xyz"), lost.append('x'); },
      [](SipString& lost) { return SipString("xyz").copy(lost, 3, 0); },
      [](SipString& lost) { return lost.clear(), lost.reserve(3); },
  };
  for (const Change change : changes) {
    EXPECT_EQ(VARN_OK, change(text));
    EXPECT_EQ(0U, text.length());
    EXPECT_STREQ("", text.c_str());
  }
  EXPECT_EQ(VARN_OK, text.append("wxyz"));
  EXPECT_EQ("wxyz", view(text));
}

TEST_F(SipStringTest, FailedAllocationChangesNothing) {
  const Change changes[] = {
      [](SipString& text) { return text.reserve(9); },
      [](SipString& text) { return text.append("cde"); },
      [](SipString& text) { return text.append(text); },
      [](SipString& text) { return text.copy(*std::make_unique<SipString>(), 2, 0); },
  };
  for (const Change change : changes) {
    SipString text("ab");
    hostFailAllocation(1);
    EXPECT_EQ(VARN_RESOURCE_FAILURE, change(text));
    EXPECT_STREQ("ab", text.c_str());
    EXPECT_EQ(VARN_OK, change(text));
    hostFailAllocation(1);
    EXPECT_EQ(0U, SipString(text).length());
  }
}

TEST_F(SipStringDeathTest, LengthsThatWrapEndTheProcess) {
  const auto aborted = testing::KilledBySignal(SIGABRT);
  SipString text("ab");
  SipStrStream stream(text);
  stream.discard(1);
  EXPECT_EXIT(text.compare("abc"), aborted, kSilence);
  EXPECT_EXIT(SipString().compare(text), aborted, kSilence);
  EXPECT_EXIT(text.caseCompare("ABC"), aborted, kSilence);
  EXPECT_EXIT(text.reserve(kHuge), aborted, kSilence);
  EXPECT_EXIT(text.append("c", kHuge), aborted, kSilence);
  EXPECT_EXIT(SipString().append("c", kHuge), aborted, kSilence);
  EXPECT_EXIT(text.copy(text, kHuge, 1), aborted, kSilence);
  EXPECT_EXIT(stream.peek(kHuge), aborted, kSilence);
  EXPECT_EXIT(stream.get(kHuge, text), aborted, kSilence);
}

TEST_F(SipStrStreamTest, TakesTheRequestedBytesOrStays) {
  const std::string bytes = "a\xE9\0cd"s;
  SipStrStream start(toSipString(bytes));
  EXPECT_EQ(-1, start.peek(kHuge));
  start.discard(1);
  for (const unsigned int length : {0U, 1U, 3U, 4U, 5U, kHuge - 1}) {
    SCOPED_TRACE(length);
    const int next = length < 4 ? static_cast<unsigned char>(bytes[1 + length]) : -1;
    EXPECT_EQ(next, start.peek(length));
    const std::string part = bytes.substr(1, length);
    const VARN_EXCEPTION_CODES code = length <= 4 ? VARN_OK : VARN_SHORT_INPUT;
    const std::size_t moved = length <= 4 ? 1 + length : 1;
    SipStrStream skipped(start);
    EXPECT_EQ(code, skipped.discard(length));
    EXPECT_EQ(moved, skipped.pos());
    EXPECT_EQ(length == 4, skipped.done());
    SipStrStream copied(start);
    const auto exact = std::make_unique<char[]>(part.size());
    EXPECT_EQ(VARN_NULL_DESTINATION, copied.get(nullptr, length));
    EXPECT_EQ(code, copied.get(exact.get(), length));
    EXPECT_EQ(part, std::string(exact.get(), part.size()));
    EXPECT_EQ(moved, copied.pos());
    SipStrStream taken(start);
    SipString out("out");
    EXPECT_EQ(VARN_OK, taken.get(length, out));  // takes what is left
    EXPECT_EQ(part, view(out));
    EXPECT_EQ(1 + part.size(), taken.pos());
  }
  EXPECT_EQ(1U, start.pos());
}

TEST_F(SipStrStreamTest, IsInvalidAndEmptyIfItsTextRunsOutOfMemory) {
  SipStrStream moved(SipString(" abc"));
  moved.discard(2);
  const auto expectInvalid = [](const SipStrStream& stream) {
    EXPECT_FALSE(stream.valid());
    EXPECT_FALSE(SipStrStream(stream).valid());
    EXPECT_TRUE(stream.done());
    EXPECT_EQ(0U, stream.length() + stream.pos());
    EXPECT_EQ(-1, stream.peek(0));
  };
  const SipString text(" abc");
  hostFailAllocation(1);
  expectInvalid(SipStrStream(text));
  hostFailAllocation(1);
  expectInvalid(SipStrStream(moved));
  hostFailAllocation(1);
  expectInvalid(SipLWSStrStream(text));
  SipString out;
  hostFailAllocation(1);
  EXPECT_EQ(VARN_RESOURCE_FAILURE, moved.get(1, out));
  EXPECT_EQ(2U, moved.pos());
  EXPECT_TRUE(moved.valid() && SipStrStream(out).valid());
}

TEST_F(SipLWSStrStreamTest, SkipsOneLeadingLwsAndEndsBeforeATrailingOne) {
  const auto doneAfterMatch = [](const char* row) {
    SCOPED_TRACE(testing::PrintToString(row));
    const naive::Marked expected = naive::marked(row);
    SipLWSStrStream stream(toSipString(expected.text));
    EXPECT_EQ(expected.start, stream.pos());
    EXPECT_EQ(VARN_OK, stream.discard(expected.count));
    return stream.done();
  };
  for (const char* row : {"  \r\n\t^abc| \t", "\r\nabc|", "abc|\r\n ", " \t^", ""}) {
    EXPECT_TRUE(doneAfterMatch(row)) << testing::PrintToString(row);
  }
  for (const char* row : {"ab|c", "abc| \r\n", " \rabc", " \r\n \r\n ", " ^a| b "}) {
    EXPECT_FALSE(doneAfterMatch(row)) << testing::PrintToString(row);
  }
}

}  // namespace
