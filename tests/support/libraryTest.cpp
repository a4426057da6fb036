// libraryTest.cpp - the fixture of every suite, and allocations that can be made to fail.
#include "libraryTest.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <new>

namespace {

std::string logLine(int level, int moduleId, std::string_view source, std::string_view text) {
  std::string line = std::to_string(level) + ' ' + std::to_string(moduleId) + ' ';
  return line.append(source).append(" | ").append(text);
}

// Expects the place of an assertion to be a source line that asserts. The framework's header is not
// in this project, so its place is not checked.
void expectAsserts(const HostAssertion& assertion) {
  const std::string family = std::string(SIPUTILITY_SOURCE_DIR) + '/' + assertion.sourceFile;
  std::ifstream source(family + ".cpp");
  if (!source.is_open()) {
    EXPECT_STREQ("framework/inc/singoConfig", assertion.sourceFile);
    return;
  }
  std::string line;
  for (int i = 0; i < assertion.line; ++i) {
    std::getline(source, line);
  }
  EXPECT_NE(std::string::npos, line.find("ssert")) << family << ':' << assertion.line;
}

}  // namespace

// The library allocates with these two; everything else in a test program does not.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return hostMayAllocate() ? std::malloc(size) : nullptr;
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return hostMayAllocate() ? std::malloc(size) : nullptr;
}

void* operator new(std::size_t size) {
  void* block = std::malloc(size);
  return block != nullptr ? block : throw std::bad_alloc();
}

void* operator new[](std::size_t size) { return operator new(size); }

void operator delete(void* block) noexcept { std::free(block); }

void operator delete[](void* block) noexcept { std::free(block); }

void operator delete(void* block, std::size_t /*size*/) noexcept { std::free(block); }

void operator delete[](void* block, std::size_t /*size*/) noexcept { std::free(block); }

std::string failureLine(std::string_view source, std::string_view text) {
  return logLine(4, 6054, source, text);
}

std::string severeLine(std::string_view source, std::string_view text) {
  return logLine(5, 6054, source, text);
}

std::string traceLine(std::string_view source, std::string_view text) {
  return logLine(3, 6054, source, text);
}

std::string addressText(const void* address) {
  char text[2 * sizeof(unsigned int) + 1];
  std::snprintf(text, sizeof(text), "%x",
                static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(address)));
  return text;
}

std::pair<std::string, std::string> sidesOf(const std::string& row) {
  const std::size_t left = row.find(" => ");
  return {row.substr(0, left), row.substr(left + 4)};
}

std::unique_ptr<char[]> exactCopy(std::string_view text) {
  auto copy = std::make_unique<char[]>(text.size() + 1);
  text.copy(copy.get(), text.size());
  return copy;
}

LibraryTest::LibraryTest() {
  hostSetLogHandler(
      [](void* self, const HostLogLine& line) {
        static_cast<LibraryTest*>(self)->log_.push_back(
            logLine(line.level, line.moduleId, line.sourceFile, line.text));
      },
      this);
  hostSetAssertionHandler(
      [](void* self, const HostAssertion& assertion) {
        EXPECT_STREQ("ASSERT Failure:", assertion.message);
        expectAsserts(assertion);
        static_cast<LibraryTest*>(self)->assertions_.emplace_back(assertion.sourceFile);
      },
      this);
  hostSetMemoryHandler(
      [](void* self, const HostMemoryEvent& event) {
        auto& recorded = static_cast<LibraryTest*>(self)->recorded_;
        if (event.added) {
          EXPECT_TRUE(recorded.emplace(event.pointer, event.category).second);
        } else {
          const auto entry = recorded.find(event.pointer);
          ASSERT_NE(recorded.end(), entry) << "a block is taken off the record twice";
          EXPECT_EQ(entry->second, event.category);
          recorded.erase(entry);
        }
      },
      this);
}

LibraryTest::~LibraryTest() {
  hostSetLogHandler(nullptr, nullptr);
  hostSetAssertionHandler(nullptr, nullptr);
  hostSetMemoryHandler(nullptr, nullptr);
  EXPECT_TRUE(recorded_.empty());
  EXPECT_EQ(0U, hostLiveBlocks());
}

Lines LibraryTest::takeLog() { return std::exchange(log_, {}); }

Lines LibraryTest::takeAssertions() { return std::exchange(assertions_, {}); }
