// textInput.cpp - the text of an input, whatever its encoding.
#include "input/textInput.h"

#include <utf8.h>

#include <algorithm>
#include <iterator>

namespace {

using namespace std::string_view_literals;

constexpr std::uint32_t kReplacement = 0xFFFD;

bool beginsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

bool isLead(std::uint16_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool isTrail(std::uint16_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

}  // namespace

TextInput::TextInput(Input& input) : input_(input), encoding_(Encoding::kUtf8), mark_(0), lead_(0) {
  const std::string_view head = input.head();
  const auto zeroAt = [head](std::size_t i) { return i < head.size() && head[i] == '\0'; };
  if (beginsWith(head, "\xEF\xBB\xBF"sv)) {
    mark_ = 3;
  } else if (beginsWith(head, "\xFF\xFE"sv) || (zeroAt(1) && zeroAt(3) && !zeroAt(0))) {
    encoding_ = Encoding::kUtf16Little;
    mark_ = zeroAt(1) ? 0 : 2;
  } else if (beginsWith(head, "\xFE\xFF"sv) || (zeroAt(0) && zeroAt(2) && !zeroAt(1))) {
    encoding_ = Encoding::kUtf16Big;
    mark_ = zeroAt(0) ? 0 : 2;
  }
}

bool TextInput::read(std::string& text) {
  std::string piece(Input::kPieceSize, 0);
  piece.resize(input_.read(piece.data(), piece.size()));
  if (piece.empty()) {
    return false;
  }
  const std::size_t mark = std::min(mark_, piece.size());
  mark_ -= mark;
  if (encoding_ == Encoding::kUtf8) {
    text.append(piece, mark);
  } else {
    convert(left_.append(piece, mark), text);
    left_.erase(0, left_.size() / 2 * 2);
  }
  return true;
}

void TextInput::convert(std::string_view bytes, std::string& text) {
  const std::size_t high = encoding_ == Encoding::kUtf16Big ? 0 : 1;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const unsigned int upper = static_cast<unsigned char>(bytes[i + high]);
    const unsigned int lower = static_cast<unsigned char>(bytes[i + 1 - high]);
    append(static_cast<std::uint16_t>(upper << 8 | lower), text);
  }
}

// Half a surrogate pair becomes U+FFFD.
void TextInput::append(std::uint16_t unit, std::string& text) {
  const auto put = [&text](std::uint32_t character) {
    utf8::unchecked::append(character, std::back_inserter(text));
  };
  if (isTrail(unit) && lead_ != 0) {
    put(0x10000U + ((lead_ - 0xD800U) << 10U) + (unit - 0xDC00U));
    lead_ = 0;
    return;
  }
  if (lead_ != 0) {
    put(kReplacement);
  }
  lead_ = isLead(unit) ? unit : 0;
  if (lead_ == 0) {
    put(isTrail(unit) ? kReplacement : unit);
  }
}
