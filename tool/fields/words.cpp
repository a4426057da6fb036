// words.cpp - what the lines that the library logs mean, in plain words.
#include "fields/words.h"

#include <page.h>  // generated

#include <algorithm>
#include <vector>

#include "text/sip.h"
#include "text/text.h"
#include "wySipMatch.h"

namespace {

struct Row {
  std::string_view text;
  std::string_view meaning;
};

// Removes the first line of a text and returns it.
std::string_view takeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return line;
}

// A row is `- LEVEL "text": meaning`, or in a list of texts `LEVEL text` with the meaning of its
// section, which is the title.
std::vector<Row> readPage() {
  constexpr std::string_view kTextEnd = "\": ";
  std::vector<Row> rows;
  std::string_view title;
  for (std::string_view rest = kPage; !rest.empty();) {
    const std::string_view line = takeLine(rest);
    const std::size_t end = line.find(kTextEnd);
    if (line.substr(0, 3) == "## ") {
      title = line.substr(3);
    } else if (line.substr(0, 2) == "- " && end != std::string_view::npos) {
      rows.push_back({trimmed(line.substr(5, end - 5)), line.substr(end + kTextEnd.size())});
    } else if (line.size() > 2 && WySipIsDigit(line[0]) != 0 && line[1] == ' ') {
      rows.push_back({trimmed(line.substr(2)), title});
    }
  }
  return rows;
}

// Returns the length of a conversion such as "%s" or "0x%02x" without its "0x".
std::size_t conversionLength(std::string_view pattern) {
  return std::min(pattern.find_first_of("dsux") + 1, pattern.size());
}

// Returns whether a line is the pattern with something in place of each conversion.
bool fits(std::string_view line, std::string_view pattern) {
  bool first = true;
  for (;;) {
    const std::size_t percent = pattern.find('%');
    const std::string_view literal = pattern.substr(0, percent);
    if (percent == std::string_view::npos) {
      return first ? line == literal
                   : line.size() >= literal.size() &&
                         line.substr(line.size() - literal.size()) == literal;
    }
    const std::size_t found = line.find(literal);
    if (found == std::string_view::npos || (first && found != 0)) {
      return false;
    }
    line.remove_prefix(found + literal.size());
    pattern.remove_prefix(percent);
    pattern.remove_prefix(conversionLength(pattern));
    first = false;
  }
}

// Returns the text up to the first ":", ";" or "." that a blank or the end follows, its first
// letter in lower case.
std::string firstClause(std::string_view text) {
  std::size_t end = text.find_first_of(":;.");
  while (end < text.size() && end + 1 != text.size() && text[end + 1] != ' ') {
    end = text.find_first_of(":;.", end + 1);
  }
  std::string clause(text.substr(0, end));
  // A name such as IPv4 keeps its capital.
  if (clause.size() > 1 && WySipIsAlpha(clause[0]) != 0 &&
      (clause[1] == ' ' || (clause[1] >= 'a' && clause[1] <= 'z'))) {
    clause[0] = static_cast<char>(clause[0] | 0x20);
  }
  return clause;
}

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

}  // namespace

LineMeaning meaningOf(std::string_view line) {
  static const std::vector<Row> rows = readPage();
  const auto row = std::find_if(rows.begin(), rows.end(), [line](const Row& candidate) {
    return fits(trimmed(line), candidate.text);
  });
  if (row == rows.end()) {
    return {"", false, false, false};
  }
  return {firstClause(row->meaning), contains(row->meaning, " byte"),
          contains(row->meaning, "previous line"), contains(row->meaning, "*Nothing")};
}
