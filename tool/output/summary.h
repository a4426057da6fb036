// summary.h - what lists show of a message, read off it without the library's objects.
//
// The texts are as received; printable() makes them fit for a terminal.
#ifndef TOOL_SUMMARY_H
#define TOOL_SUMMARY_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "packets/packet.h"
#include "text/sip.h"

// The CSeq of a message, as a view into its field.
struct Sequence {
  std::optional<std::uint32_t> number;  // none where the text is no number
  std::string_view text;                // of the number
  std::string_view method;
};

// Returns the value of the first field of this name; "" for none.
std::string_view valueOf(const Message& message, std::string_view name);

// Returns the two words of the CSeq; empty ones for none.
Sequence sequenceOf(const Message& message);

// Returns the method of a request, or that of the CSeq of a response, as a view into the message;
// "" for what is no SIP.
std::string_view methodOf(const Message& message);

// Returns the method of a request, `180 Ringing` of a response, "not SIP" of another text.
std::string_view headlineOf(const Message& message);

// Returns the user in a value such as `"Alice" <sip:alice@host.test>;tag=1`, or the number of a tel
// URI; what follows the scheme of a URI without a user.
std::string_view userOf(std::string_view value);

// Returns userOf() the first field of this name; "" for none.
std::string_view userOf(const Message& message, std::string_view name);

// Returns the value of the Call-ID; "" for none.
std::string_view callIdOf(const Message& message);

// Returns the time of day in UTC, `23:59:59.000`; "?" for an impossible time.
std::string clockText(const timeval& time);

#endif  // TOOL_SUMMARY_H
