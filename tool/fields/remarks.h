// remarks.h - what is wrong with a message by the RFCs, whatever the library accepts.
#ifndef TOOL_REMARKS_H
#define TOOL_REMARKS_H

#include <string>
#include <vector>

#include "text/sip.h"

struct Remark {
  std::string words;
  std::string text;     // what they are about; "" for the complete message
  const char* section;  // of an RFC; "" where the words have it
  const Field* field;   // null for the complete message
  bool fault;           // else something is missing, as in an excerpt, or not kept
};

// Returns the remarks on a message in the order of the tables.
std::vector<Remark> remarksOn(const Message& message);

// Returns a remark as one line.
std::string lineOf(const Remark& remark);

// Returns ", N remarks" for the end of a line of counts; "" for none.
std::string remarkCount(unsigned long count);

#endif  // TOOL_REMARKS_H
