// delimiterSearch.cpp - finds the delimiter that ends the content of a part.
#include "multipart/delimiterSearch.h"

#include "multipart/syntax.h"

namespace {

// Returns the length of the run of hyphens that ends before the position. A run is looked through
// once: after an odd number of hyphens only a boundary with another byte than hyphens can begin,
// and that byte ends the run.
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

// Returns how much of the delimiter has matched after one more byte.
unsigned int DelimiterSearch::advanced(unsigned int matched, char byte) const {
  while (matched != 0 && byte != at(matched)) {
    matched = borders_[matched - 1];
  }
  return byte == at(matched) ? matched + 1 : 0;
}
