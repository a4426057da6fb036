// validSip.h - valid SIP that the library's rules of header values do not cover.
#ifndef TOOL_VALID_SIP_H
#define TOOL_VALID_SIP_H

#include <string>
#include <string_view>

// How a limit is shown, before its words.
constexpr const char* kNotTakenApart = "valid SIP that this library does not take apart: ";

// Returns what makes a field that the library refuses valid all the same; "" when it is faulty.
std::string limitOf(std::string_view name, std::string_view value);

// Returns whether the text is an absoluteURI of RFC 3261, section 25.1, with or without "/" after
// its scheme.
bool isAbsoluteUri(std::string_view text);

#endif  // TOOL_VALID_SIP_H
