// command.h - what the commands of siputil share.
#ifndef TOOL_COMMAND_H
#define TOOL_COMMAND_H

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

#include "fields/pieceEdit.h"
#include "selection/messages.h"
#include "text/terminal.h"

// What the commands on one text have in common.
struct Options {
  std::string text;
  bool json = false;
  bool verbose = false;
  std::vector<Edit> edits;  // in the order of the command line
};

// Adds --json and --color to the parser of a command.
void addFormatOptions(CLI::App& parser, bool& json);

// Adds --raw to the parser of a command that shows values.
void addRawOption(CLI::App& parser);

// Adds --json, --color and -v to the parser of a command.
void addOutputOptions(CLI::App& parser, bool& json, bool& verbose);

// Takes the texts after the first ones; no option follows a "--". Throws for an unknown option and
// for more than most texts. For parsers that allow extras, because an option that takes any number
// of texts splits "[a,b]" in two and calls itself for each "[".
void takeRest(const CLI::App& parser, std::vector<std::string>& texts, std::size_t most);

// Adds TEXT, --json, --color and -v to the parser of a command on one text.
void addTextArgument(CLI::App& parser, Options& options);

// Adds the options of a command on one text: those above, --set, --param and --remove-param. --set
// takes the given piece names.
void addTextOptions(CLI::App& parser, Options& options, const std::vector<std::string>& pieces);

// Adds an option that may be repeated. Each occurrence is taken when it is parsed, so that options
// of different kinds keep their order.
void addEditOption(CLI::App& parser, const std::string& flag, const std::string& help,
                   const std::string& form, const std::function<void(const std::string&)>& take);

// Returns the names with commas between them.
std::string joined(const std::vector<std::string>& names);

// Runs the function on the text of the command line or, for `-`, on each line of standard input
// that is not empty, with its line number; 0 means the command line. Returns the worst of
// the statuses.
int forEachText(const Options& options,
                const std::function<int(const std::string& text, unsigned long line)>& run);

// Reads a file, or standard input for `-`. Returns why it cannot be read; "" if it can.
std::string readFile(const std::string& name, std::string& text);

// A command line before it is parsed.
struct CommandLine {
  CLI::App& parser;
  int count;
  char** arguments;
  bool complete;  // it is not to run: its last word is to be completed

  // Prints the help or the completions that are asked for; throws what the parser throws.
  void parse();
};

// Adds FILE, --find, --filter, --follow and the options that choose messages to the parser of a
// command that reads messages, and parses the command line.
void parseWithSources(CommandLine& line, Sources& sources);

// A command: adds its options to the parser, parses the command line, runs and returns the status.
struct Command {
  const char* name;
  const char* help;
  int (*run)(CommandLine& line);
  std::vector<const char*> examples;  // lines for a shell
};

int runAddress(CommandLine& line);
int runTel(CommandLine& line);
int runHeader(CommandLine& line);
int runList(CommandLine& line);
int runMessage(CommandLine& line);
int runEdit(CommandLine& line);
int runCheck(CommandLine& line);
int runCalls(CommandLine& line);
int runVia(CommandLine& line);
int runBody(CommandLine& line);
int runGzip(CommandLine& line);
int runGunzip(CommandLine& line);

// For each of the commands compare, feature-tag, host, imei, max-q, quote and sort.
int runPlainText(CommandLine& line);

#endif  // TOOL_COMMAND_H
