// fuzz_string.cpp - strings against a twin: each line is an operation, 'a' to 'f', and its text.
#include "params.h"

namespace {

// Pieces go to a buffer of their size, to another string and to the string itself.
VARN_EXCEPTION_CODES copyPiece(SipString& string, std::string& twin, unsigned int length,
                               unsigned int at) {
  const bool inside = at <= twin.size();
  const std::string piece = inside ? twin.substr(at, length) : "";
  const std::unique_ptr<char[]> buffer(new char[length]);
  const std::string_view bytes(buffer.get(), string.copy(buffer.get(), length, at));
  require(bytes == piece, "a piece", twin, piece);
  SipString out("x");
  const VARN_EXCEPTION_CODES code = inside ? VARN_OK : VARN_INVALID_INPUT;
  require(string.copy(out, length, at) == code, "from a place inside", twin, piece);
  require(view(out) == (inside ? piece : "x"), "the same piece", view(out), piece);
  twin = inside ? piece : twin;
  return string.copy(string, length, at) == code ? VARN_OK : VARN_INVALID_INPUT;
}

VARN_EXCEPTION_CODES apply(SipString& string, std::string& twin, int operation,
                           const std::string& text) {
  const auto length = static_cast<unsigned int>(text.size());
  const unsigned int at = text.empty() ? 0 : static_cast<uint8_t>(text[0]) % 16U;  // '0' is 0
  switch (operation) {
    case 'a':
      twin.append(text.c_str());
      return string.append(copyOf(text).get());
    case 'b':  // its own bytes
      twin.append(std::string(twin, 0, at));
      return string.append(string.c_str(), std::min(string.length(), at));
    case 'c':
      string.clear();
      twin.assign(1, static_cast<char>(at));
      return string.append(static_cast<char>(at));
    case 'd':  // nothing ends the content then, until the next change
      require(string.reserve(length * at) == VARN_OK, "there is room", twin, text);
      twin += 'x';
      return string.append('x');
    case 'e':
      return copyPiece(string, twin, length, at);
    case 'f':
      string = toSipString(twin = text);
      return string.append(nullptr, 0);
    default:
      return string.append(toSipString(twin.append(text).substr(twin.size() - length)));
  }
}

// Comparing ends the process if the own text is the beginning of a longer one.
template <typename Compare>
void checkOrder(const std::string& own, const std::string& other, bool exact, Compare compare) {
  const auto step = std::mismatch(own.begin(), own.end(), other.begin(), other.end());
  const bool parts = step.first != own.end() && step.second != other.end();
  if (parts || own.size() >= other.size()) {
    const int expected =
        parts ? static_cast<uint8_t>(*step.first) - static_cast<uint8_t>(*step.second)
              : static_cast<int>(own.size() - other.size());
    const int order = compare();
    const bool sign = parts && !exact && order != 0 && (order < 0) == (expected < 0);
    require(order == expected || sign, "order", own, other);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  const MemoryLogWatch watch;
  SipString string;
  std::string twin;
  for (const std::string_view line : linesOf(data, size)) {
    const std::string text(line.substr(std::min<std::size_t>(line.size(), 1)));
    require(apply(string, twin, line.empty() ? 0 : line[0], text) == VARN_OK, "done", twin, line);
    const bool ended = string.c_str()[string.length()] == '\0';
    require(ended && view(string) == twin, "the twin's content", view(string), twin);
    const SipString other = toSipString(text);
    checkOrder(twin, text, false, [&] { return string.compare(other); });
    checkOrder(lowerCase(twin), lowerCase(text), true, [&] { return string.caseCompare(other); });
  }
  return 0;
}
