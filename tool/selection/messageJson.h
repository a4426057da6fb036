// messageJson.h - where a message was found and what it is, for programs.
#ifndef TOOL_MESSAGE_JSON_H
#define TOOL_MESSAGE_JSON_H

#include <nlohmann/json.hpp>

#include "selection/messages.h"

// Returns an object with the number of a message, its place, and the pieces of its start line and
// CSeq.
nlohmann::ordered_json summaryJson(const MessageInFile& found);

#endif  // TOOL_MESSAGE_JSON_H
