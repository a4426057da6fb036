// fuzz_stream.cpp - read cursors: the input is read in steps of its lines' lengths.
#include "params.h"
#include "wySipMatch.h"

namespace {

// Takes a step in each way, on a copy: all or nothing.
void checkExactSteps(const SipStrStream& stream, std::string_view left, unsigned int length) {
  SipStrStream copies[] = {stream, stream};
  const std::unique_ptr<char[]> bytes(new char[length]);
  const VARN_EXCEPTION_CODES code = length <= left.size() ? VARN_OK : VARN_SHORT_INPUT;
  require(copies[0].get(bytes.get(), length) == code, "as many are left", left, "");
  require(copies[1].discard(length) == code, "as many are left", left, "");
  for (const SipStrStream& copy : copies) {
    const unsigned int moved = copy.pos() - stream.pos();
    require(moved == (code == VARN_OK ? length : 0), "all or nothing", left, "");
  }
  const std::string_view read(bytes.get(), code == VARN_OK ? length : 0);
  require(left.substr(0, read.size()) == read, "the bytes", left, read);
  require(copies[0].get(nullptr, length) == VARN_NULL_DESTINATION, "no destination", left, "");
}

void checkStep(SipStrStream& stream, std::string_view text, unsigned int length, bool trimmed) {
  const std::string_view left = text.substr(stream.pos());
  const int ahead = length < left.size() ? static_cast<uint8_t>(left[length]) : -1;
  require(stream.peek(length) == ahead, "the byte ahead", text, left);
  const unsigned int space = trimmed ? SipMatchLWS().match(stream, 0) : 0;
  require(stream.done() == (space == left.size()), "nothing else is left", text, left);
  checkExactSteps(stream, left, length);
  SipString out("before");
  require(stream.get(length, out) == VARN_OK, "short input is no failure", text, left);
  require(view(out) == left.substr(0, length), "what is left of it", view(out), left);
  require(text.substr(stream.pos()) == left.substr(out.length()), "the rest", text, left);
  require(stream.length() == text.size() && stream.valid(), "the text stays", text, left);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  forbidAssertions();
  const MemoryLogWatch watch;
  const std::string_view text(reinterpret_cast<const char*>(data), std::min(size, kLongestInput));
  SipStrStream plain(toSipString(text));
  SipLWSStrStream trimmed(toSipString(text));
  require(trimmed.pos() == SipMatchLWS().match(plain, 0), "after white space", text, "");
  for (const std::string_view line : linesOf(data, size)) {
    checkStep(plain, text, static_cast<unsigned int>(line.size()), false);
    checkStep(trimmed, text, static_cast<unsigned int>(line.size()), true);
  }
  return 0;
}
