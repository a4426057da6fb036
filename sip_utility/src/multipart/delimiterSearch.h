// delimiterSearch.h - finds the delimiter that ends the content of a part.
#ifndef SIPUTILITY_MULTIPART_DELIMITER_SEARCH_H
#define SIPUTILITY_MULTIPART_DELIMITER_SEARCH_H

#include <cstddef>
#include <string_view>

#include "base/platformBlock.h"

// The search for "--" boundary by the algorithm of Knuth, Morris and Pratt. Boundaries come from
// the network, and one like "-----x" makes a plain search slow.
class DelimiterSearch {
 public:
  // The boundary must outlive the search.
  explicit DelimiterSearch(std::string_view boundary);

  // Returns false if out of memory; the search must not be used then.
  bool valid() const { return borders_ != nullptr; }

  // Returns the position of the first delimiter with an even number of hyphens right before it;
  // npos for none.
  std::size_t findIn(std::string_view text) const;

 private:
  std::size_t length() const;
  char at(std::size_t i) const;
  void findBorders();
  unsigned int advanced(unsigned int matched, char byte) const;

  std::string_view boundary_;

  // borders_[i] is the length of the longest text, shorter than i + 1 bytes, with which the first
  // i + 1 bytes of the delimiter both begin and end.
  PlatformBlock<unsigned int> borders_;
};

#endif  // SIPUTILITY_MULTIPART_DELIMITER_SEARCH_H
