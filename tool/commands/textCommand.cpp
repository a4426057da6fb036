// textCommand.cpp - the commands on one text: read it, apply the edits, show the result.
#include "commands/textCommand.h"

#include <iostream>

#include "fields/validSip.h"

namespace {

void addRefusal(nlohmann::ordered_json& object, const Outcome& outcome,
                const Diagnostics& diagnostics) {
  const std::string reason = reasonOf(outcome, diagnostics);
  object["raw"] = outcome.raw;
  object["reason"] = reason.empty() ? nullptr : nlohmann::ordered_json(reason);
  object["offset"] =
      outcome.place ? nlohmann::ordered_json(outcome.place->offset) : nlohmann::ordered_json();
}

}  // namespace

int report(const Outcome& outcome, const Options& options, const Diagnostics& diagnostics,
           const std::string& prefix) {
  if (outcome.code != VARN_OK) {
    std::cerr << "siputil: " << prefix << (outcome.limit.empty() ? "" : kNotTakenApart)
              << printable(outcome.limit.empty() ? reasonOf(outcome, diagnostics) : outcome.limit)
              << '\n';
    if (outcome.place) {
      std::cerr << caretLines(outcome.raw, outcome.place->offset);
    }
  }
  if (options.verbose) {
    diagnostics.printAll(prefix);
  }
  const bool edited = !options.edits.empty();
  return outcome.code == VARN_OK || (!outcome.limit.empty() && !edited) ? kAccepted : kRefused;
}

std::string reasonOf(const Outcome& outcome, const Diagnostics& diagnostics) {
  if (outcome.code == VARN_OK || !outcome.reason.empty()) {
    return outcome.reason;
  }
  return diagnostics.reason(outcome.code, outcome.place ? &*outcome.place : nullptr);
}

int show(Reading& reading, const Options& options, const Diagnostics& diagnostics,
         unsigned long line) {
  const Diagnostics ignored;  // of what showing makes the library log
  const std::string prefix = line == 0 ? "" : "line " + std::to_string(line) + ": ";
  for (const std::string& note : reading.notes) {
    std::cerr << "siputil: " << prefix << printable(note) << '\n';
  }
  if (options.json) {
    nlohmann::ordered_json object = reading.json();
    addRefusal(object, reading, diagnostics);
    object["diagnostics"] = diagnostics.toJson();
    std::cout << jsonLine(object) << '\n';
  } else if (reading.code != VARN_OK) {
    std::cout << (line == 0 ? "" : "refused\n");
  } else if (line != 0) {
    std::cout << oneLine(reading.line()) << '\n';
  } else {
    std::cout << aligned(reading.lines(), colourWanted());
  }
  return report(reading, options, diagnostics, prefix);
}

void addNotKept(Outcome& outcome, const std::vector<std::string>& pieces) {
  for (const std::string& piece : pieces) {
    outcome.notes.push_back("not kept: " + piece);
  }
}

Pieces with(Pieces pieces, const char* label, const SipString& value) {
  pieces.emplace_back(label, view(value));
  return pieces;
}
