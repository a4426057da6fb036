// words.h - what the lines that the library logs mean, in plain words.
#ifndef TOOL_WORDS_H
#define TOOL_WORDS_H

#include <string>
#include <string_view>

// What docs/diagnostics.md says of a log line. The page is part of the program.
struct LineMeaning {
  std::string words;     // the row up to its first ":", ";" or "."; "" for a line of no row
  bool ofByte;           // the row says that a byte may be the reason
  bool previousSaysWhy;  // the row refers to the previous line
  bool harmless;         // the row says that there is nothing to do
};

// Returns the meaning of a log line, whatever its numbers and texts are.
LineMeaning meaningOf(std::string_view line);

#endif  // TOOL_WORDS_H
