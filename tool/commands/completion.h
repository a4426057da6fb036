// completion.h - what may be the next word of a command line, for the completions of the shells.
#ifndef TOOL_COMPLETION_H
#define TOOL_COMPLETION_H

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

// Prints the word and, after a tab, what it does, if it begins as the text does.
void printCandidate(const std::string& text, const std::string& word, const std::string& help);

// Prints the options of a command, or the values of the option before, that may be the last word;
// nothing where that is a file or any text.
void printCompletions(const CLI::App& parser, std::vector<std::string> words);

#endif  // TOOL_COMPLETION_H
