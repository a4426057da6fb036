// terminal.h - what goes to the terminal, and the exit statuses.
#ifndef TOOL_TERMINAL_H
#define TOOL_TERMINAL_H

#include <string>

// Exit statuses: the text was accepted, the library refused it, the command line was wrong
// or the output could not be written.
constexpr int kAccepted = 0;
constexpr int kRefused = 1;
constexpr int kWrongUsage = 2;

// Prints on standard error what is wrong; returns the status.
int complain(const std::string& what, int status);

// Chooses whether standard output has colours: "always", "never", or "auto", which is the default.
void chooseColours(const std::string& when);

// Returns whether standard output has colours: as chosen, or on a terminal when NO_COLOR is not
// set.
bool colourWanted();

// Returns the width of the terminal that standard output is; 0 where it is none.
std::size_t terminalWidth();

// Each returns the text, red or yellow where colours are wanted.
std::string asFault(const std::string& text);
std::string asNote(const std::string& text);

// Returns the text bold where colours are wanted.
std::string emphasised(const std::string& text);

#endif  // TOOL_TERMINAL_H
