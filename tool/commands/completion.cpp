// completion.cpp - what may be the next word of a command line, for the completions of the shells.
#include "commands/completion.h"

#include <algorithm>
#include <iostream>

#include "text/sip.h"

namespace {

using Values = std::vector<std::string>;

// Returns the names of the known header fields, each with an end.
Values fieldNames(const std::string& end) {
  Values names;
  for (const FieldKind& field : knownFields()) {
    names.push_back(std::string(field.name) + end);
  }
  return names;
}

// Returns the pieces that the help of --set lists after its colon. Where it takes a piece of a
// field, the field comes first.
Values piecesToSet(const CLI::Option& option, const std::string& text) {
  const std::string& help = option.get_description();
  const std::size_t dot = text.find('.');
  const bool ofField = option.get_type_name().rfind("FIELD.", 0) == 0;
  if (ofField && dot == std::string::npos) {
    return fieldNames(".");
  }
  Values pieces;
  for (const std::string& piece : CLI::detail::split(help.substr(help.find(':') + 1), ',')) {
    pieces.push_back((ofField ? text.substr(0, dot + 1) : "") + CLI::detail::trim_copy(piece) +
                     "=");
  }
  return pieces;
}

// Returns the values with what is before the last comma of the text.
Values inList(const std::string& text, Values values) {
  for (std::string& value : values) {
    value.insert(0, text, 0, text.rfind(',') + 1);
  }
  return values;
}

Values valuesOf(const CLI::Option& option, const std::string& text) {
  const std::string name = option.get_name();
  if (name == "--color") {
    return {"auto", "always", "never"};
  }
  if (name == "--method") {
    return inList(text, {"ACK", "BYE", "CANCEL", "INFO", "INVITE", "MESSAGE", "NOTIFY", "OPTIONS",
                         "PRACK", "PUBLISH", "REFER", "REGISTER", "SUBSCRIBE", "UPDATE"});
  }
  if (name == "--status") {
    return inList(text, {"1xx", "2xx", "3xx", "4xx", "5xx", "6xx"});
  }
  if (name == "--only" || name == "--with" || name == "--remove-header") {
    return fieldNames("");
  }
  if (name == "--set-header" || name == "--add-header") {
    return fieldNames("=");
  }
  return name == "--set" ? piecesToSet(option, text) : Values();
}

void printValues(const CLI::Option* option, const std::string& text, const std::string& before) {
  for (const std::string& value : option == nullptr ? Values() : valuesOf(*option, text)) {
    printCandidate(before + text, before + value, "");
  }
}

void printOptions(const CLI::App& parser, const std::string& text) {
  for (const CLI::Option* option : parser.get_options()) {
    for (const std::string& name : option->get_lnames()) {
      printCandidate(text, "--" + name, option->get_description());
    }
  }
}

}  // namespace

void printCandidate(const std::string& text, const std::string& word, const std::string& help) {
  if (word.compare(0, text.size(), text) == 0) {
    std::cout << word << '\t' << help << '\n';
  }
}

// bash makes "=" a word of its own.
void printCompletions(const CLI::App& parser, std::vector<std::string> words) {
  words.back() = words.back() == "=" ? "" : words.back();
  words.erase(std::remove(words.begin(), words.end(), "="), words.end());
  const std::string text = words.back();
  const std::size_t equal = text.find('=');
  if (text.empty() || text[0] != '-') {
    const std::string before = words.size() > 1 ? words[words.size() - 2] : "";
    printValues(parser.get_option_no_throw(before), text, "");
  } else if (equal != std::string::npos) {
    printValues(parser.get_option_no_throw(text.substr(0, equal)), text.substr(equal + 1),
                text.substr(0, equal + 1));
  } else {
    printOptions(parser, text);
  }
}
