// law.h - shared by the fuzz targets: cuts an input into texts, and checks laws.
#ifndef FUZZ_LAW_H
#define FUZZ_LAW_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <typeinfo>
#include <vector>

#include "hostControl.h"
#include "imsdpl.h"
#include "wySipCxx.h"

using siputility::toSipString;
using siputility::toStdString;
using siputility::view;

// Longer inputs find nothing more, and fewer of them run in the same time.
constexpr std::size_t kLongestInput = 4096;

// A zero-terminated text in a block of exactly its size, so that one byte too far is seen.
using Text = std::unique_ptr<char[]>;

// Returns a copy of a text up to its first zero byte.
inline Text copyOf(std::string_view text) {
  const std::size_t length = std::min(text.find('\0'), text.size());
  Text copy(new char[length + 1]);
  copy[text.copy(copy.get(), length)] = '\0';
  return copy;
}

// Returns a copy of bytes, zero bytes among them, in a block of exactly their size.
inline Text blockOf(std::string_view bytes) {
  Text block(new char[bytes.size()]);
  bytes.copy(block.get(), bytes.size());
  return block;
}

// Returns the arguments in an input, one a line; at least two, "" for missing ones.
inline std::vector<Text> argumentsOf(const uint8_t* data, std::size_t size) {
  std::string_view rest(reinterpret_cast<const char*>(data), std::min(size, kLongestInput));
  std::vector<Text> arguments;
  while (!rest.empty() || arguments.size() < 2) {
    const std::size_t length = std::min(rest.find('\n'), rest.size());
    arguments.push_back(copyOf(rest.substr(0, length)));
    rest.remove_prefix(std::min(length + 1, rest.size()));
  }
  return arguments;
}

// Returns the lines of an input, zero bytes included. A CRLF does not end a line: it may be a fold.
inline std::vector<std::string_view> linesOf(const uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), std::min(size, kLongestInput));
  std::vector<std::string_view> lines;
  std::size_t begin = 0;
  for (std::size_t end = 0; end <= input.size(); ++end) {
    const bool fold = end != begin && input[end - 1] == '\r';
    if (end == input.size() || (input[end] == '\n' && !fold)) {
      lines.push_back(input.substr(begin, end - begin));
      begin = end + 1;
    }
  }
  return lines;
}

// Prints both texts and ends the process if a law does not hold.
inline void require(bool holds, const char* law, std::string_view a, std::string_view b) {
  if (!holds) {
    static_cast<void>(std::fprintf(stderr, "broken law: %s\n<%.*s>\n<%.*s>\n", law,
                                   static_cast<int>(a.size()), a.data(), static_cast<int>(b.size()),
                                   b.data()));
    std::abort();
  }
}

// A text that the library handed out.
using HandedOutText = siputility::PlatformBlock<char>;

// Returns a text that was handed out; the other one for null.
inline std::string taken(char* text, const std::string& other) {
  const HandedOutText owner(text);
  return text == nullptr ? other : text;
}

// Ends the process if the library reports a failed assertion.
inline void forbidAssertions() {
  hostSetAssertionHandler(
      [](void*, const HostAssertion& assertion) {
        require(false, "no assertion fails", assertion.sourceFile, std::to_string(assertion.line));
      },
      nullptr);
}

// Counts the entries of the memory log during its lifetime; at its end none may be left.
class MemoryLogWatch {
 public:
  MemoryLogWatch() {
    hostSetMemoryHandler(
        [](void* context, const HostMemoryEvent& event) {
          *static_cast<long*>(context) += event.added ? 1 : -1;
        },
        &entries_);
  }
  MemoryLogWatch(const MemoryLogWatch&) = delete;
  MemoryLogWatch& operator=(const MemoryLogWatch&) = delete;
  ~MemoryLogWatch() {
    hostSetMemoryHandler(nullptr, nullptr);
    require(entries_ == 0, "each entry is removed", std::to_string(entries_), "");
  }

 private:
  long entries_ = 0;
};

// Calls check(text, next) for each argument and the one after it, then checkAll(arguments). No
// block may be left.
template <typename Check, typename CheckAll>
void checkArguments(const uint8_t* data, std::size_t size, Check check, CheckAll checkAll) {
  const std::size_t before = hostLiveBlocks();
  const std::vector<Text> arguments = argumentsOf(data, size);
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    check(arguments[i].get(), arguments[(i + 1) % arguments.size()].get());
  }
  checkAll(arguments);
  require(before == hostLiveBlocks(), "no block is left behind", arguments[0].get(),
          arguments[1].get());
}

#endif  // FUZZ_LAW_H
