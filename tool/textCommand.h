// textCommand.h - the run of a command on one text: read it, apply the edits, show the result.
#ifndef TOOL_TEXT_COMMAND_H
#define TOOL_TEXT_COMMAND_H

#include <iostream>
#include <memory>

#include "command.h"
#include "diagnostics.h"
#include "dump.h"

// A piece that --set takes.
template <typename Object>
struct Setter {
  const char* name;
  VARN_EXCEPTION_CODES (*set)(Object& object, const SipString& value);
};

template <typename Object, std::size_t kCount>
std::vector<std::string> namesOf(const Setter<Object> (&setters)[kCount]) {
  std::vector<std::string> names;
  for (const auto& setter : setters) {
    names.emplace_back(setter.name);
  }
  return names;
}

template <typename Object, std::size_t kCount>
VARN_EXCEPTION_CODES apply(Object& object, const Edit& edit,
                           const Setter<Object> (&setters)[kCount]) {
  if (edit.kind == Edit::Kind::kParam) {
    return object.setParameter(sipString(edit.name), sipString(edit.value));
  }
  if (edit.kind == Edit::Kind::kRemoveParam) {
    object.removeParameter(sipString(edit.name));
    return object.GetLastErrorCode();
  }
  for (const auto& setter : setters) {
    if (edit.name == setter.name) {
      return setter.set(object, sipString(edit.value));
    }
  }
  return VARN_INVALID_INPUT;
}

// Applies the edits up to the first that is refused. Returns its code, or that of the object.
template <typename Object, std::size_t kCount>
VARN_EXCEPTION_CODES applyAll(Object& object, const std::vector<Edit>& edits,
                              const Setter<Object> (&setters)[kCount]) {
  VARN_EXCEPTION_CODES code = object.GetLastErrorCode();
  for (auto edit = edits.begin(); code == VARN_OK && edit != edits.end(); ++edit) {
    code = apply(object, *edit, setters);
  }
  return code;
}

// What is shown of one text. Each part is asked for only where it is needed.
struct Result {
  VARN_EXCEPTION_CODES code = VARN_OK;
  std::string reason;                            // the tool's own, where the library has none
  std::string note;                              // for people, whether accepted or not
  std::function<nlohmann::ordered_json()> json;  // without the diagnostics
  std::function<Pieces()> line;                  // for one line among others
  std::function<Pieces()> lines;                 // for one text alone
};

// Shows on standard error why a text was refused, the place in front of each line, or all that was
// logged. Returns the exit status.
inline int report(const Result& result, const Options& options, const Diagnostics& diagnostics,
                  const std::string& place) {
  if (!result.note.empty()) {
    std::cerr << "siputil: " << place << printable(result.note) << '\n';
  }
  if (!result.reason.empty()) {
    std::cerr << "siputil: " << place << result.reason << '\n';
  } else if (result.code != VARN_OK && !(options.verbose && diagnostics.hasFailure())) {
    diagnostics.printReasons(place, result.code);
  }
  if (options.verbose) {
    diagnostics.printAll(place);
  }
  return result.code == VARN_OK ? kAccepted : kRefused;
}

// Shows the result on standard output, why a text was refused on standard error, and returns the
// exit status.
inline int show(const Result& result, const Options& options, const Diagnostics& diagnostics,
                unsigned long line) {
  const Diagnostics unheard;  // what is logged from here on is the tool's own doing
  if (options.json) {
    nlohmann::ordered_json object = result.json();
    object["diagnostics"] = diagnostics.toJson();
    std::cout << jsonLine(object) << '\n';
  } else if (result.code != VARN_OK) {
    std::cout << (line == 0 ? "" : "refused\n");
  } else if (line != 0) {
    std::cout << oneLine(result.line()) << '\n';
  } else {
    std::cout << aligned(result.lines(), colourWanted());
  }
  return report(result, options, diagnostics,
                line == 0 ? "" : "line " + std::to_string(line) + ": ");
}

// Returns what runs a command on each of its texts; the options live as long.
template <typename CommandOptions>
std::function<int()> runOnEachText(std::shared_ptr<const CommandOptions> options,
                                   int (*run)(const CommandOptions& options,
                                              const std::string& text, unsigned long line)) {
  return [options = std::move(options), run] {
    return forEachText(*options, [&options, run](const std::string& text, unsigned long line) {
      return run(*options, text, line);
    });
  };
}

// Returns the pieces with one more behind them.
inline Pieces with(Pieces pieces, const char* label, const SipString& value) {
  pieces.emplace_back(label, bytes(value));
  return pieces;
}

#endif  // TOOL_TEXT_COMMAND_H
