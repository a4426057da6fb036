// text.h - text as the tool needs it: for terminals, and compared.
#ifndef TOOL_TEXT_H
#define TOOL_TEXT_H

#include <string>
#include <string_view>
#include <vector>

// Returns a text fit for a terminal: control characters, direction marks and bytes outside
// well-formed UTF-8 as \xHH, a backslash doubled unless keepBackslashes() was called.
std::string printable(std::string_view text);

// Returns a text of at most so many bytes, or its characters that fit into them and "...".
std::string shortened(std::string_view text, std::size_t length);

// Makes printable() leave each backslash alone.
void keepBackslashes();

// Returns plain text with its lines, but with direction marks as \xHH.
std::string printableLines(std::string_view text);

// Returns whether a byte of UTF-8 continues a character.
bool isContinued(char byte);

// Returns how many columns of a terminal a printable text has, one for each character.
std::size_t widthOf(std::string_view text);

// Returns `1 file` or `2 files` for the noun `file`.
std::string counted(unsigned long count, const std::string& noun);

// Returns whether a text has another one in it, ASCII letters without regard to case.
bool containsIgnoringCase(std::string_view text, std::string_view part);

// Returns whether the text is well-formed UTF-8 without control characters but tab and line ends.
bool isPlainText(std::string_view text);

// Returns which of the names is closest to this one, ASCII letters without regard to case; ""
// when more than so many letters are missing, added, wrong or swapped with a neighbour.
std::string_view closest(std::string_view name, const std::vector<std::string_view>& names,
                         std::size_t most);

#endif  // TOOL_TEXT_H
