// selection.h - which of the messages that are read a command is about.
#ifndef TOOL_SELECTION_H
#define TOOL_SELECTION_H

#include <array>
#include <string>
#include <vector>

#include "text/sip.h"

namespace CLI {
class App;
}

// What was asked for. Each list that is not empty must hold for a message; of a list, one value
// must hold. Letters match in either case.
struct Selection {
  struct Range {
    unsigned long first;
    unsigned long last;
  };

  struct FieldText {
    std::string name;  // the long form
    std::string text;  // part of the value; "" for any value
  };

  std::vector<Range> numbers;
  std::vector<std::string> methods;              // of a response, that of its CSeq
  std::vector<std::string> statuses;             // codes with x for any digit; no request has one
  std::array<std::vector<FieldText>, 4> fields;  // a list for each option

  // Returns whether a message is one of these. Numbers begin with 1.
  bool wants(const Message& message, unsigned long number) const;
};

// Adds the options that choose messages to the parser of a command.
void addSelectionOptions(CLI::App& parser, Selection& selection);

#endif  // TOOL_SELECTION_H
