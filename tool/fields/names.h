// names.h - which known header field an unknown name is likely to mean.
#ifndef TOOL_NAMES_H
#define TOOL_NAMES_H

#include <string_view>

// Returns the known field that an unknown name is likely to mean; "" for none, for a short name and
// for one that begins with "X-" or "P-".
std::string_view likelyField(std::string_view name);

#endif  // TOOL_NAMES_H
