// options.h - options of the command line that may be given more than once.
#ifndef TOOL_OPTIONS_H
#define TOOL_OPTIONS_H

#include <CLI/CLI.hpp>
#include <functional>
#include <string>

// Adds an option that takes one text of this form each time it is given. Each is taken when it is
// parsed, so that options of different kinds keep their order.
void addRepeatable(CLI::App& parser, const std::string& flag, const std::string& form,
                   const std::string& help, const std::function<void(const std::string&)>& take);

#endif  // TOOL_OPTIONS_H
