// dump.h - the pieces of the library's objects, for people and for programs.
#ifndef TOOL_DUMP_H
#define TOOL_DUMP_H

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "text/sip.h"
#include "text/text.h"
#include "wySipAddress.h"
#include "wySipHeader.h"
#include "wyTelAddress.h"

// Labels and values in the order in which they are shown.
using Pieces = std::vector<std::pair<std::string, std::string>>;

// Each returns the pieces that an object has; a wildcard address has one.
Pieces pieces(const SipAddress& address);
Pieces pieces(const TelAddress& tel);
Pieces pieces(const SipHeader& header);

// Returns the pieces of the SIP or tel address that a header's value is; none for another value.
Pieces addressPieces(const SipHeader& header);

// Returns the pieces as `label: value | label: value`.
std::string oneLine(const Pieces& pieces);

// Returns the pieces one a line, the values below each other, the labels bold where asked for.
std::string aligned(const Pieces& pieces, bool bold);

// Each returns an object for JSON. What the last operation on it returned is given by the caller;
// the texts are null unless it is success. Changes the last-error code.
nlohmann::ordered_json toJson(SipAddress& address, VARN_EXCEPTION_CODES code);
nlohmann::ordered_json toJson(TelAddress& tel, VARN_EXCEPTION_CODES code);
nlohmann::ordered_json toJson(SipHeader& header, VARN_EXCEPTION_CODES code);

// Returns an object for the SIP or tel address that a text is; null for another text.
nlohmann::ordered_json addressJson(std::string_view text);

// Returns JSON text for the object on one line, in ASCII: other characters, and those that would
// steer a terminal, are escaped; bytes that are not UTF-8 become U+FFFD.
std::string jsonLine(const nlohmann::ordered_json& object);

#endif  // TOOL_DUMP_H
