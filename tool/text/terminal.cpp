// terminal.cpp - what goes to the terminal.
#include "text/terminal.h"

#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <stdexcept>

#include "text/text.h"

namespace {

std::string colourChoice = "auto";

}  // namespace

int complain(const std::string& what, int status) {
  std::cerr << "siputil: " << printable(what) << '\n';
  return status;
}

void flushOutput() {
  if (!std::cout.flush()) {
    throw std::runtime_error("the output cannot be written");
  }
}

void chooseColours(const std::string& when) { colourChoice = when; }

bool colourWanted() {
  if (colourChoice != "auto") {
    return colourChoice == "always";
  }
  const char* forbidden = std::getenv("NO_COLOR");
  return isatty(STDOUT_FILENO) != 0 && (forbidden == nullptr || *forbidden == '\0');
}

std::string emphasised(const std::string& text) {
  return colourWanted() ? "\x1b[1m" + text + "\x1b[0m" : text;
}
