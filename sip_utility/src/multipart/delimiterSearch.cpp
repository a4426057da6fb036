// delimiterSearch.cpp - finds the delimiter that ends the content of a part.
#include "multipart/delimiterSearch.h"

#include "base/platformBlock.h"
#include "multipart/syntax.h"

namespace {

// How many pairs of hyphens are compared with the delimiter before a table is made for it. Few
// contents have more.
constexpr int kPlainTries = 8;

// Returns the position of the first two hyphens at the offset or after it; npos for none.
std::size_t findDashes(std::string_view text, std::size_t offset) {
  std::size_t i = text.find('-', offset);
  while (i < text.size() && !startsWith(text.substr(i), kDashes)) {
    i = text.find('-', i + 1);
  }
  return i;
}

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

// The search for "--" boundary by the algorithm of Knuth, Morris and Pratt. Boundaries come from
// the network, and one like "-----x" makes a plain search slow.
class DelimiterSearch {
 public:
  // The boundary must outlive the search.
  explicit DelimiterSearch(std::string_view boundary);

  // Does what findDelimiter() does, from an offset on.
  std::size_t findIn(std::string_view text, std::size_t offset) const;

 private:
  std::size_t length() const { return kDashes.size() + boundary_.size(); }

  // Returns a byte of the delimiter.
  char at(std::size_t i) const {
    return i < kDashes.size() ? kDashes[i] : boundary_[i - kDashes.size()];
  }

  unsigned int advanced(unsigned int matched, char byte) const;

  std::string_view boundary_;

  // borders_[i] is the length of the longest text, shorter than i + 1 bytes, with which the first
  // i + 1 bytes of the delimiter both begin and end. Null if out of memory.
  PlatformBlock<unsigned int> borders_;
};

DelimiterSearch::DelimiterSearch(std::string_view boundary)
    : boundary_(boundary), borders_(newZeroed<unsigned int>(length())) {
  for (std::size_t i = 1; borders_ != nullptr && i < length(); ++i) {
    borders_[i] = advanced(borders_[i - 1], at(i));
  }
}

std::size_t DelimiterSearch::findIn(std::string_view text, std::size_t offset) const {
  if (borders_ == nullptr) {
    return std::string_view::npos;
  }
  unsigned int matched = 0;
  for (std::size_t i = text.find('-', offset); i < text.size();
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

// Returns how much of the delimiter has matched after one more byte. On a mismatch it falls back to
// the longest start of the delimiter that the text still ends with.
unsigned int DelimiterSearch::advanced(unsigned int matched, char byte) const {
  while (matched != 0 && byte != at(matched)) {
    matched = borders_[matched - 1];
  }
  return byte == at(matched) ? matched + 1 : 0;
}

}  // namespace

// Hyphens are taken in pairs from the start of their run: in "---b" the pair is the first two, and
// the "--b" after an odd hyphen is no delimiter.
std::size_t findDelimiter(std::string_view text, std::string_view boundary) {
  std::size_t pair = findDashes(text, 0);
  for (int tries = 0; pair != std::string_view::npos && tries < kPlainTries; ++tries) {
    const std::size_t after = pair + kDashes.size();
    if (startsWith(text.substr(after), boundary)) {
      return pair;
    }
    pair = findDashes(text, after);
  }
  const bool none = pair == std::string_view::npos;
  return none ? pair : DelimiterSearch(boundary).findIn(text, pair);
}
