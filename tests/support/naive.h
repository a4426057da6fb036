// naive.h - slow, plain readings of grammar rules, and the comparison of matchers with them.
//
// Each reading takes a text and returns how many bytes at its start the rule covers, 0 for none.
#ifndef TESTS_SUPPORT_NAIVE_H
#define TESTS_SUPPORT_NAIVE_H

#include <algorithm>

#include "libraryTest.h"

namespace naive {

constexpr std::string_view kDigit = "0123456789";
constexpr std::string_view kHexDigit = "0123456789ABCDEFabcdef";
constexpr std::string_view kAlpha = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

inline std::string alnumAnd(std::string_view more) {
  return std::string(kAlpha).append(kDigit).append(more);
}

inline std::string unreservedAnd(std::string_view more) {
  return alnumAnd("-_.!~*'()").append(more);
}

// A text with a match in it: text[start, start + count).
struct Marked {
  std::string text;
  unsigned int start;
  unsigned int count;
};

// Removes the marks from a row. The match goes from "^", or the start, to "|"; a row without "|"
// has none.
inline Marked marked(std::string_view row) {
  std::string text(row);
  const std::size_t start = text.find('^');
  text.erase(std::min(start, text.size()), 1);
  const std::size_t end = text.find('|');
  text.erase(std::min(end, text.size()), 1);
  const auto offset = static_cast<unsigned int>(start == std::string::npos ? 0 : start);
  return {text, offset, end == std::string::npos ? 0 : static_cast<unsigned int>(end) - offset};
}

// Returns the count of a rule at the offset of a fresh stream.
template <typename Rule>
unsigned int countOf(std::string_view text, unsigned int offset = 0) {
  return Rule().match(SipStrStream(toSipString(text)), offset);
}

// Calls check(text) for each row of up to `most` of the pieces, until the test has failed.
template <typename Check>
void forEachText(const std::vector<std::string>& pieces, unsigned int most, const Check& check,
                 const std::string& text = {}) {
  check(text);
  for (const std::string& piece : pieces) {
    if (most != 0 && !testing::Test::HasFailure()) {
      forEachText(pieces, most - 1, check, text + piece);
    }
  }
}

// Compares a rule with its naive reading for each row of up to `most` of the pieces.
template <typename Rule, typename Naive>
void expectAlike(const std::vector<std::string>& pieces, unsigned int most, const Naive& naive) {
  forEachText(pieces, most, [&](const std::string& text) {
    EXPECT_EQ(naive(text), countOf<Rule>(text)) << testing::PrintToString(text);
  });
}

inline bool consistsOf(std::string_view text, std::string_view members) {
  return text.find_first_not_of(members) == std::string_view::npos;
}

// *( member / "%" HEXDIG HEXDIG ), the escapes only if wanted
inline std::size_t run(std::string_view text, std::string_view members, bool escapes = false) {
  const bool member = !text.empty() && consistsOf(text.substr(0, 1), members);
  const bool escape =
      escapes && text.size() > 2 && text[0] == '%' && consistsOf(text.substr(1, 2), kHexDigit);
  const std::size_t unit = member ? 1 : 3;
  return member || escape ? unit + run(text.substr(unit), members, escapes) : 0;
}

// Compares a predicate with the members of its class.
inline void expectPredicate(int (*predicate)(int), std::string_view members) {
  for (int c = -300; c <= 600; ++c) {
    const bool member = c > 0 && c < 128 && run(std::string(1, static_cast<char>(c)), members) == 1;
    EXPECT_EQ(member ? 1 : 0, predicate(c)) << c << " in " << members;
  }
}

// Compares a matcher of a class with its members: each byte alone, and runs of special ones.
template <typename Rule>
void expectClass(std::string_view members, bool escapes = false) {
  for (int c = 0; c < 256; ++c) {
    const std::string text(1, static_cast<char>(c));
    EXPECT_EQ(run(text, members) == 1, Rule().matchChar(text[0])) << c << " in " << members;
  }
  expectAlike<Rule>({"a", "%", "4", "g", "\xE9", std::string(1, '\0')}, 5,
                    [&](std::string_view text) { return run(text, members, escapes); });
}

// White space with at most one fold; after the fold there must be some.
inline bool isLws(std::string_view text) {
  const std::size_t fold = std::min(text.find("\r\n"), text.size());
  const std::string_view last = fold == text.size() ? text : text.substr(fold + 2);
  return !last.empty() && consistsOf(last, " \t") && consistsOf(text.substr(0, fold), " \t");
}

// The longest LWS, unless a CR follows it.
inline std::size_t lws(std::string_view text) {
  std::size_t count = text.size();
  while (count != 0 && !isLws(text.substr(0, count))) {
    --count;
  }
  return text.substr(count, 1) == "\r" ? 0 : count;
}

// The text after an opening quote, for texts of " \ a U+00E9 and white space.
inline std::size_t quotedRest(std::string_view text) {
  if (text.empty() || text[0] == '"') {
    return text.empty() ? 0 : 1;
  }
  std::size_t piece = text[0] == 'a' ? 1 : lws(text);
  if (text.substr(0, 2) == "\xC3\xA9" ||
      (text[0] == '\\' && text.size() > 1 && !consistsOf(text.substr(1, 1), "\r\n"))) {
    piece = 2;
  }
  const std::size_t rest = piece == 0 ? 0 : quotedRest(text.substr(piece));
  return rest == 0 ? 0 : piece + rest;
}

inline std::size_t label(std::string_view text) {
  const std::size_t count = run(text, alnumAnd("-"));
  return count != 0 && (text[0] == '-' || text[count - 1] == '-') ? 0 : count;
}

// The first label, and after its dot a name, or a text that begins with no label.
inline std::size_t hostname(std::string_view text) {
  const std::size_t first = label(text);
  const std::size_t end = text.substr(first, 1) == "." ? first + 1 : first;
  if (first != 0 && end != first && label(text.substr(end)) != 0) {
    const std::size_t rest = hostname(text.substr(end));
    return rest == 0 ? 0 : end + rest;
  }
  return first != 0 && consistsOf(text.substr(0, 1), kAlpha) ? end : 0;
}

// A number up to 255, written as std::to_string writes it.
inline std::size_t octet(std::string_view text) {
  const std::string digits(text.substr(0, run(text, kDigit)));
  const int value = digits.empty() || digits.size() > 3 ? 256 : std::stoi(digits);
  return value <= 255 && std::to_string(value) == digits ? digits.size() : 0;
}

inline std::size_t ipv4(std::string_view text, int octets = 4) {
  const std::size_t first = octet(text);
  if (first == 0 || octets == 1) {
    return first;
  }
  const bool dot = text.substr(first, 1) == ".";
  const std::size_t rest = dot ? ipv4(text.substr(first + 1), octets - 1) : 0;
  return rest == 0 ? 0 : first + 1 + rest;
}

inline std::size_t h16(std::string_view text) {
  const std::size_t digits = run(text, kHexDigit);
  return digits > 4 ? 0 : digits;
}

constexpr std::size_t kNoAddress = std::string_view::npos;

// The text after a group of an IPv6 address, with so many groups left.
inline std::size_t ipv6Rest(std::string_view text, int groupsLeft, bool compressed) {
  const bool gap = !compressed && text.substr(0, 2) == "::";
  const std::size_t colons = gap ? 2 : run(text.substr(0, 1), ":");
  const int left = gap ? groupsLeft - 1 : groupsLeft;
  const bool mayEnd = compressed || gap;
  const std::string_view next = text.substr(colons);
  const std::size_t tail = left >= 2 ? ipv4(next) : 0;
  const std::size_t group = h16(next);
  if (groupsLeft == 0) {
    return 0;
  }
  if (colons != 0 && tail != 0) {
    return mayEnd || left == 2 ? colons + tail : kNoAddress;
  }
  if (colons == 0 || left == 0 || group == 0) {
    return mayEnd ? colons : kNoAddress;
  }
  const std::size_t rest = ipv6Rest(next.substr(group), left - 1, mayEnd);
  return rest == kNoAddress ? kNoAddress : colons + group + rest;
}

inline std::size_t ipv6(std::string_view text) {
  const std::size_t first = h16(text);
  const bool begins = first != 0 || text.substr(0, 2) == "::";
  const std::size_t rest = ipv6Rest(text.substr(first), first == 0 ? 8 : 7, false);
  return !begins || rest == kNoAddress ? 0 : first + rest;
}

// The first (number modulo 256) elements of a list, each in turn exchanged with the last smaller
// one after it, and the others.
inline std::string onePass(std::string list) {
  Lines elements;
  list += ';';
  for (std::size_t end = 0; (end = list.find(';')) != list.npos; list.erase(0, end + 1)) {
    elements.push_back(list.substr(0, end));
  }
  const std::size_t count = elements.size() % 256;
  for (std::size_t i = 0; i < count; ++i) {
    std::size_t j = count - 1;
    while (j > i && elements[j] >= elements[i]) {
      --j;
    }
    elements[i].swap(elements[j]);
  }
  for (const std::string& element : elements) {
    list += ';' + element;
  }
  return list.substr(1);
}

}  // namespace naive

#endif  // TESTS_SUPPORT_NAIVE_H
