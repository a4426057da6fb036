// textCommand.h - the commands on one text: read it, apply the edits, show the result.
#ifndef TOOL_TEXT_COMMAND_H
#define TOOL_TEXT_COMMAND_H

#include <optional>
#include <string>
#include <vector>

#include "commands/command.h"
#include "fields/diagnostics.h"
#include "fields/pieceEdit.h"
#include "fields/place.h"
#include "output/dump.h"

// Applies the edits up to the first that is refused. Returns its code, or that of the object.
template <typename Object>
VARN_EXCEPTION_CODES applyAll(Object& object, const std::vector<Edit>& edits) {
  VARN_EXCEPTION_CODES code = object.GetLastErrorCode();
  for (auto edit = edits.begin(); code == VARN_OK && edit != edits.end(); ++edit) {
    code = apply(object, *edit);
  }
  return code;
}

// Whether a text was accepted.
struct Outcome {
  VARN_EXCEPTION_CODES code = VARN_OK;
  std::string reason;              // the tool's own, where the library has none
  std::vector<std::string> notes;  // for people, whether accepted or not
  std::string limit;               // why a refused text is valid all the same; "" if it is not
  std::string raw;                 // the text, for the place
  std::optional<Place> place;      // where it was refused, if known
};

// What a command makes of one text.
struct Reading : Outcome {
  Reading() = default;
  Reading(const Reading&) = delete;
  Reading& operator=(const Reading&) = delete;
  virtual ~Reading() = default;

  virtual nlohmann::ordered_json json() = 0;  // without what show() adds to it
  virtual Pieces line() = 0;                  // of an accepted text, for one line among others
  virtual Pieces lines() { return line(); }   // the same for one text alone
};

// Shows on standard error why a text was refused, the prefix before each line, or all that was
// logged. Returns the exit status.
int report(const Outcome& outcome, const Options& options, const Diagnostics& diagnostics,
           const std::string& prefix);

// Returns why a text was refused; "" for an accepted one.
std::string reasonOf(const Outcome& outcome, const Diagnostics& diagnostics);

// Shows a text on standard output, why it was refused on standard error, and returns the exit
// status. The line is as forEachText() has it.
int show(Reading& reading, const Options& options, const Diagnostics& diagnostics,
         unsigned long line);

// Reads and shows each text of a command. Returns the worst of the exit statuses.
template <typename CommandReading, typename CommandOptions>
int readEachText(const CommandOptions& options) {
  return forEachText(options, [&options](const std::string& text, unsigned long line) {
    const Diagnostics diagnostics;
    CommandReading reading(options, text);
    reading.raw = text;
    return show(reading, options, diagnostics, line);
  });
}

// Notes the pieces of the text that its object does not have.
void addNotKept(Outcome& outcome, const std::vector<std::string>& pieces);

// Returns the pieces and one more after them.
Pieces with(Pieces pieces, const char* label, const SipString& value);

#endif  // TOOL_TEXT_COMMAND_H
