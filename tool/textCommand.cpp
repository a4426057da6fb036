// textCommand.cpp - the commands on one text: read it, apply the edits, show the result.
#include "textCommand.h"

#include <iostream>

int report(const Outcome& outcome, const Options& options, const Diagnostics& diagnostics,
           const std::string& place) {
  if (!outcome.note.empty()) {
    std::cerr << "siputil: " << place << printable(outcome.note) << '\n';
  }
  if (!outcome.reason.empty()) {
    std::cerr << "siputil: " << place << outcome.reason << '\n';
  } else if (outcome.code != VARN_OK && !(options.verbose && diagnostics.hasFailure())) {
    diagnostics.printReasons(place, outcome.code);
  }
  if (options.verbose) {
    diagnostics.printAll(place);
  }
  return outcome.code == VARN_OK ? kAccepted : kRefused;
}

int show(Reading& reading, const Options& options, const Diagnostics& diagnostics,
         unsigned long line) {
  const Diagnostics ignored;  // of what showing makes the library log
  if (options.json) {
    nlohmann::ordered_json object = reading.json();
    object["diagnostics"] = diagnostics.toJson();
    std::cout << jsonLine(object) << '\n';
  } else if (reading.code != VARN_OK) {
    std::cout << (line == 0 ? "" : "refused\n");
  } else if (line != 0) {
    std::cout << oneLine(reading.line()) << '\n';
  } else {
    std::cout << aligned(reading.lines(), colourWanted());
  }
  return report(reading, options, diagnostics,
                line == 0 ? "" : "line " + std::to_string(line) + ": ");
}

Pieces with(Pieces pieces, const char* label, const SipString& value) {
  pieces.emplace_back(label, view(value));
  return pieces;
}
