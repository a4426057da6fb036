// place.h - where the library stopped in a text that it refused, and what it left out of one that
// it accepted.
//
// Each reads the text once more, in the library's own steps, with a stream that stays where a step
// failed. What the library logs meanwhile is ignored.
#ifndef TOOL_PLACE_H
#define TOOL_PLACE_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// Where a text was refused.
struct Place {
  std::size_t offset;  // the length of the text for its end
  std::string words;   // the tool's own; "" where the library's are enough
  std::string byte;    // that the byte there is not allowed, or that the text ends
};

Place placeInAddress(const std::string& text);
Place placeInTel(const std::string& text);

// Takes a complete field, `NAME: VALUE`.
Place placeInHeader(const std::string& field);

// Each returns the pieces of an accepted text that are in no piece of the object, in their order.
std::vector<std::string> notKeptOfAddress(const std::string& text);
std::vector<std::string> notKeptOfTel(const std::string& text);

// Returns the text, cut to a line around the place, and below it a caret at the place. Each line
// begins with two blanks.
std::string caretLines(std::string_view text, std::size_t offset);

#endif  // TOOL_PLACE_H
