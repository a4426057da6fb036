// text.cpp - text as the tool needs it: for terminals, and compared.
#include "text/text.h"

#include <utf8.h>

#include <algorithm>
#include <cstdint>
#include <numeric>

namespace {

// C0 and C1 controls and DEL would steer the terminal.
bool isControl(char32_t character) {
  return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

// Removes and returns the first character of well-formed UTF-8.
char32_t takeCharacter(std::string_view& text) {
  const char* end = text.data();
  const char32_t character = utf8::unchecked::next(end);
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return character;
}

std::string hexEscapes(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string escapes;
  for (const char c : text) {
    const unsigned int code = static_cast<unsigned char>(c);
    escapes.append("\\x").append(1, kDigits[code / 16]).append(1, kDigits[code % 16]);
  }
  return escapes;
}

// The marks that change the direction in which a terminal shows what follows.
bool isDirectionMark(char32_t character) {
  return character == 0x061C || character == 0x200E || character == 0x200F ||
         (character >= 0x202A && character <= 0x202E) ||
         (character >= 0x2066 && character <= 0x2069);
}

bool isUnsafe(char32_t character) { return isControl(character) || isDirectionMark(character); }

// Returns well-formed UTF-8 with the characters of a kind escaped and this for each backslash.
std::string withEscapes(std::string_view text, bool (*escaped)(char32_t),
                        std::string_view backslash) {
  std::string result;
  while (!text.empty()) {
    const std::string_view rest = text;
    const bool escape = escaped(takeCharacter(text));
    const std::string_view character = rest.substr(0, rest.size() - text.size());
    if (escape) {
      result.append(hexEscapes(character));
    } else {
      result.append(character == "\\" ? backslash : character);
    }
  }
  return result;
}

std::string_view shownBackslash = "\\\\";

int lowerCase(char c) { return c >= 'A' && c <= 'Z' ? c | 0x20 : c; }

// Returns how many steps lead from one text to the other: a letter more, less or another one, or
// two neighbours swapped; SIZE_MAX for more than so many. Row i of the table holds the steps from i
// letters of a to j of b.
std::size_t distance(std::string_view a, std::string_view b, std::size_t most) {
  const std::size_t width = b.size() + 1;
  std::vector<std::size_t> steps((a.size() + 1) * width);
  std::iota(steps.begin(), steps.begin() + static_cast<std::ptrdiff_t>(width), 0);
  const auto same = [a, b](std::size_t i, std::size_t j) {
    return lowerCase(a[i - 1]) == lowerCase(b[j - 1]);
  };
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t* row = &steps[i * width];
    const std::size_t* above = row - width;
    row[0] = i;
    for (std::size_t j = 1; j < width; ++j) {
      const bool swapped = i > 1 && j > 1 && same(i, j - 1) && same(i - 1, j);
      const std::size_t swap = swapped ? (above - width)[j - 2] + 1 : row[j - 1] + 1;
      row[j] = std::min({swap, above[j] + 1, row[j - 1] + 1, above[j - 1] + (same(i, j) ? 0 : 1)});
    }
    if (*std::min_element(row, row + width) > most) {
      return SIZE_MAX;  // no later row has less
    }
  }
  return steps.back();
}

}  // namespace

std::string printable(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const std::size_t end = std::min(utf8::find_invalid(text), text.size());
    result.append(withEscapes(text.substr(0, end), isUnsafe, shownBackslash));
    result.append(hexEscapes(text.substr(end, 1)));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return result;
}

std::string shortened(std::string_view text, std::size_t length) {
  if (text.size() <= length) {
    return std::string(text);
  }
  constexpr std::size_t kMostContinued = 3;  // bytes of a character after its first one
  std::size_t end = length;
  while (end != 0 && length - end < kMostContinued && isContinued(text[end])) {
    --end;
  }
  return std::string(text.substr(0, end)) + "...";
}

void keepBackslashes() { shownBackslash = "\\"; }

std::string printableLines(std::string_view text) {
  return withEscapes(text, isDirectionMark, "\\");
}

bool isContinued(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

std::size_t widthOf(std::string_view text) {
  return text.size() -
         static_cast<std::size_t>(std::count_if(text.begin(), text.end(), isContinued));
}

std::string counted(unsigned long count, const std::string& noun) {
  return std::to_string(count) + ' ' + noun + (count == 1 ? "" : "s");
}

bool containsIgnoringCase(std::string_view text, std::string_view part) {
  return std::search(text.begin(), text.end(), part.begin(), part.end(),
                     [](char a, char b) { return lowerCase(a) == lowerCase(b); }) != text.end() ||
         part.empty();
}

bool isPlainText(std::string_view text) {
  bool plain = utf8::is_valid(text);
  while (plain && !text.empty()) {
    const char32_t character = takeCharacter(text);
    plain = !isControl(character) || character == '\t' || character == '\r' || character == '\n';
  }
  return plain;
}

std::string_view closest(std::string_view name, const std::vector<std::string_view>& names,
                         std::size_t most) {
  std::string_view best;
  std::size_t fewest = most + 1;
  for (const std::string_view candidate : names) {
    // A name from the network may be of any length.
    if (name.size() > candidate.size() + most || candidate.size() > name.size() + most) {
      continue;
    }
    const std::size_t steps = distance(name, candidate, fewest - 1);
    if (steps < fewest) {
      fewest = steps;
      best = candidate;
    }
  }
  return best;
}
