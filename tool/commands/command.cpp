// command.cpp - what the commands of siputil share.
#include "commands/command.h"

#include <algorithm>
#include <iostream>

#include "input/input.h"
#include "text/options.h"
#include "text/text.h"

namespace {

// Splits `name=value` at the first "="; without one the value is empty.
Edit makeEdit(Edit::Kind kind, const std::string& text) {
  const std::size_t equal = std::min(text.find('='), text.size());
  return {kind, text.substr(0, equal), text.substr(std::min(equal + 1, text.size()))};
}

std::string joined(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names) {
    list.append(list.empty() ? "" : ", ").append(name);
  }
  return list;
}

}  // namespace

void addFormatOptions(CLI::App& parser, bool& json) {
  parser.add_flag("--json", json, "Print JSON, one object a line");
  parser
      .add_option_function<std::string>("--color", chooseColours,
                                        "Print colours: auto, always or never")
      ->check(CLI::IsMember({"auto", "always", "never"}).description(""))
      ->type_name("WHEN");
}

void addRawOption(CLI::App& parser) {
  parser.add_flag_callback("--raw", keepBackslashes, "Show each backslash once, not twice");
}

void addOutputOptions(CLI::App& parser, bool& json, bool& verbose) {
  addFormatOptions(parser, json);
  parser.add_flag("-v,--verbose", verbose, "Show everything the library logs");
}

void takeRest(const CLI::App& parser, std::vector<std::string>& texts, std::size_t most) {
  bool optionsEnd = false;
  for (const std::string& text : parser.remaining()) {
    if (!optionsEnd && text == "--") {
      optionsEnd = true;
    } else if (texts.size() == most || (!optionsEnd && text.size() > 1 && text[0] == '-')) {
      throw CLI::ExtrasError({text});
    } else {
      texts.push_back(text);
    }
  }
}

void addTextArgument(CLI::App& parser, Options& options) {
  parser.add_option("TEXT", options.text, "The text; - reads one from each line of standard input")
      ->required()
      ->type_name("");
  addOutputOptions(parser, options.json, options.verbose);
}

void addTextOptions(CLI::App& parser, Options& options, const std::vector<std::string>& pieces,
                    std::string (*check)(const Edit& edit)) {
  addTextArgument(parser, options);
  addRawOption(parser);
  const auto takeSet = [&options, pieces, check](const std::string& text) {
    const Edit edit = makeEdit(Edit::Kind::kSet, text);
    const bool known = std::find(pieces.begin(), pieces.end(), edit.name) != pieces.end();
    if (!known || text.find('=') == std::string::npos) {
      throw CLI::ValidationError("--set", "expected PIECE=VALUE with one of " + joined(pieces));
    }
    const std::string expected = check == nullptr ? "" : check(edit);
    if (!expected.empty()) {
      throw CLI::ValidationError("--set", edit.name + " takes " + expected);
    }
    options.edits.push_back(edit);
  };
  addRepeatable(parser, "--set", "PIECE=VALUE", "Replace a piece: " + joined(pieces), takeSet);
  addRepeatable(parser, "--param", "NAME[=VALUE]", "Add or replace a parameter",
                [&options](const std::string& text) {
                  options.edits.push_back(makeEdit(Edit::Kind::kParam, text));
                });
  addRepeatable(parser, "--remove-param", "NAME", "Remove a parameter",
                [&options](const std::string& text) {
                  options.edits.push_back({Edit::Kind::kRemoveParam, text, ""});
                });
}

int forEachText(const Options& options,
                const std::function<int(const std::string& text, unsigned long line)>& run) {
  if (options.text != "-") {
    return run(options.text, 0);
  }
  int status = kAccepted;
  std::string text;
  for (unsigned long line = 1; std::getline(std::cin, text); ++line) {
    if (!text.empty() && text.back() == '\r') {
      text.pop_back();
    }
    if (!text.empty()) {
      status = std::max(status, run(text, line));
    }
  }
  return status;
}

std::string readFile(const std::string& name, std::string& text) {
  Input input(name);
  input.readAll(text);
  return input.error();
}

// The help is printed while the variables of the options live.
void CommandLine::parse() {
  try {
    parser.parse(count, arguments);
  } catch (const CLI::CallForHelp&) {
    std::cout << parser.help("siputil");
    throw;
  }
}

void parseWithSources(CommandLine& line, Sources& sources) {
  CLI::App& parser = line.parser;
  std::vector<std::string> paths;
  parser
      .add_option(
          "FILE", paths,
          sources.directories
              ? "Files with messages, as text or captures, directories of them; - or none is "
                "standard input"
              : "Files with messages, as text or as pcap or pcapng captures; - or none is "
                "standard input")
      ->type_name("")
      ->expected(1)
      ->allow_extra_args(false);
  parser.allow_extras();
  parser.add_flag("--find", sources.find, "Of texts, read the messages between other lines");
  parser.add_option("--filter", sources.filter, "Of captures, read what passes this pcap filter")
      ->type_name("EXPR")
      ->allow_extra_args(false);
  addSelectionOptions(parser, sources.selection);
  line.parse();
  takeRest(parser, paths, SIZE_MAX);
  if (!paths.empty()) {
    sources.paths = paths;
  }
}
