// via.h - what a Via header field reduces to.
#ifndef TOOL_VIA_H
#define TOOL_VIA_H

#include <string>

// Returns the SIP URI of the sent-by of a Via value; "" where the library finds none. What the
// library logs meanwhile is ignored.
std::string sentByUri(const std::string& via);

#endif  // TOOL_VIA_H
