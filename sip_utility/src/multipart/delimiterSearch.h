// delimiterSearch.h - finds the delimiter that ends the content of a part.
#ifndef SIPUTILITY_MULTIPART_DELIMITER_SEARCH_H
#define SIPUTILITY_MULTIPART_DELIMITER_SEARCH_H

#include <cstddef>
#include <string_view>

// Returns the position of the first "--" boundary with an even number of hyphens right before it;
// npos for none and if out of memory. The time is linear, whatever the boundary.
std::size_t findDelimiter(std::string_view text, std::string_view boundary);

#endif  // SIPUTILITY_MULTIPART_DELIMITER_SEARCH_H
