// delimiterSearch.cpp - finds the delimiter that ends the content of a part.
#include "multipart/delimiterSearch.h"

#include "multipart/syntax.h"

namespace {

// Returns the length of the run of hyphens that ends before the position. Each run is counted once,
// so the search stays linear: after an odd count the delimiter has a byte that is no hyphen. That
// byte ends the run, and the next match begins after it.
std::size_t hyphensBefore(std::string_view text, std::size_t position) {
  std::size_t count = 0;
  while (count < position && text[position - count - 1] == '-') {
    ++count;
  }
  return count;
}

}  // namespace

DelimiterSearch::DelimiterSearch(std::string_view boundary)
    : boundary_(boundary), borders_(newZeroed<unsigned int>(length())) {
  if (valid()) {
    findBorders();
  }
}

// Hyphens are taken in pairs from the start of their run: in "---b" the pair is the first two, and
// the "--b" after an odd hyphen is no delimiter.
std::size_t DelimiterSearch::findIn(std::string_view text) const {
  unsigned int matched = 0;
  for (std::size_t i = text.find('-'); i < text.size();
       i = matched == 0 ? text.find('-', i + 1) : i + 1) {
    matched = advanced(matched, text[i]);
    if (matched < length()) {
      continue;
    }
    const std::size_t begin = i + 1 - matched;
    if (hyphensBefore(text, begin) % 2 == 0) {
      return begin;
    }
    matched = borders_[matched - 1];
  }
  return std::string_view::npos;
}

std::size_t DelimiterSearch::length() const { return kDashes.size() + boundary_.size(); }

// Returns a byte of the delimiter.
char DelimiterSearch::at(std::size_t i) const {
  return i < kDashes.size() ? kDashes[i] : boundary_[i - kDashes.size()];
}

void DelimiterSearch::findBorders() {
  borders_[0] = 0;
  for (std::size_t i = 1; i < length(); ++i) {
    borders_[i] = advanced(borders_[i - 1], at(i));
  }
}

// Returns how much of the delimiter has matched after one more byte. On a mismatch it falls back to
// the longest start of the delimiter that the text still ends with.
unsigned int DelimiterSearch::advanced(unsigned int matched, char byte) const {
  while (matched != 0 && byte != at(matched)) {
    matched = borders_[matched - 1];
  }
  return byte == at(matched) ? matched + 1 : 0;
}
