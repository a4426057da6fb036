// text.cpp - text as the tool needs it: for terminals, and compared.
#include "text.h"

#include <algorithm>
#include <numeric>

#include "wySipMatch.h"

namespace {

unsigned int codeAt(std::string_view text, std::size_t i) {
  return i < text.size() ? static_cast<unsigned char>(text[i]) : 0;
}

bool within(unsigned int code, unsigned int first, unsigned int last) {
  return first <= code && code <= last;
}

// The well-formed UTF-8 characters: the lead byte, the byte behind it, the length.
const struct {
  unsigned int firstLead, lastLead, firstSecond, lastSecond;
  std::size_t length;
} kUtf8Forms[] = {
    {0x00, 0x7F, 0x00, 0xFF, 1}, {0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3},
    {0xE1, 0xEC, 0x80, 0xBF, 3}, {0xED, 0xED, 0x80, 0x9F, 3}, {0xEE, 0xEF, 0x80, 0xBF, 3},
    {0xF0, 0xF0, 0x90, 0xBF, 4}, {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4},
};

// Returns the length of the well-formed character that the text begins with; 0 for none.
std::size_t characterLength(std::string_view text) {
  for (const auto& form : kUtf8Forms) {
    if (!within(codeAt(text, 0), form.firstLead, form.lastLead)) {
      continue;
    }
    bool formed = within(codeAt(text, 1), form.firstSecond, form.lastSecond);
    for (std::size_t i = 2; i < form.length; ++i) {
      formed = formed && within(codeAt(text, i), 0x80, 0xBF);
    }
    return formed ? form.length : 0;
  }
  return 0;
}

// C0 and C1 controls and DEL would steer the terminal.
bool isControl(std::string_view character) {
  const unsigned int first = codeAt(character, 0);
  return first < 0x20 || first == 0x7F || (first == 0xC2 && codeAt(character, 1) < 0xA0);
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

int lowerCase(char c) {
  const int code = static_cast<unsigned char>(c);
  return WySipIsAlpha(code) != 0 ? code | 0x20 : code;
}

// Returns how many steps lead from one text to the other: a letter more, less or another one, or
// two neighbours swapped. Row i of the table holds the steps from i letters of a to j of b.
std::size_t distance(std::string_view a, std::string_view b) {
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
  }
  return steps.back();
}

}  // namespace

std::string printable(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const std::size_t length = characterLength(text);
    const std::string_view character = text.substr(0, std::max<std::size_t>(length, 1));
    if (length == 0 || isControl(character)) {
      result.append(hexEscapes(character));
    } else {
      result.append(character == "\\" ? "\\\\" : character);
    }
    text.remove_prefix(character.size());
  }
  return result;
}

bool isPlainText(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = characterLength(text);
    const std::string_view character = text.substr(0, length);
    const bool layout =
        length == 1 && std::string_view("\t\r\n").find(text[0]) != std::string_view::npos;
    if (length == 0 || (isControl(character) && !layout)) {
      return false;
    }
    text.remove_prefix(length);
  }
  return true;
}

bool sameIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return lowerCase(x) == lowerCase(y); });
}

std::string_view trimmed(std::string_view text) {
  const std::size_t first = std::min(text.find_first_not_of(" \t"), text.size());
  const std::size_t last = text.find_last_not_of(" \t");
  return last == std::string_view::npos ? std::string_view() : text.substr(first, last + 1 - first);
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
    const std::size_t steps = distance(name, candidate);
    if (steps < fewest) {
      fewest = steps;
      best = candidate;
    }
  }
  return best;
}
