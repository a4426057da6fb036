// names.h - which known header field an unknown name is likely to mean.
#ifndef TOOL_NAMES_H
#define TOOL_NAMES_H

#include <string>
#include <string_view>

// Returns the known field that an unknown name is likely to mean; "" for none, for a short name and
// for one that begins with "X-" or "P-".
std::string_view likelyField(std::string_view name);

// Returns a note for people on a name that likelyField() has an answer for; "" for another one.
std::string noteOnField(const std::string& name);

// Prints the note on standard error.
void noteLikelyField(const std::string& name);

// Returns the long form of a known name, else the name.
std::string_view longName(std::string_view name);

#endif  // TOOL_NAMES_H
