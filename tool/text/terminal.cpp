// terminal.cpp - what goes to the terminal.
#include "text/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>

#include "text/sip.h"
#include "text/text.h"

namespace {

constexpr std::size_t kUsualWidth = 80;

std::string colourChoice = "auto";

// Returns the text as the codes of a terminal show it, where colours are wanted.
std::string shown(const char* codes, const std::string& text) {
  return colourWanted() ? "\x1b[" + std::string(codes) + 'm' + text + "\x1b[0m" : text;
}

}  // namespace

int complain(const std::string& what, int status) {
  std::cerr << "siputil: " << printable(what) << '\n';
  return status;
}

void chooseColours(const std::string& when) { colourChoice = when; }

bool colourWanted() {
  if (colourChoice != "auto") {
    return colourChoice == "always";
  }
  const char* forbidden = std::getenv("NO_COLOR");
  return isatty(STDOUT_FILENO) != 0 && (forbidden == nullptr || *forbidden == '\0');
}

std::size_t terminalWidth() {
  if (isatty(STDOUT_FILENO) == 0) {
    return 0;
  }
  winsize size = {};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col != 0) {
    return size.ws_col;
  }
  const char* columns = std::getenv("COLUMNS");
  std::size_t width = 0;
  return columns != nullptr && readNumber(columns, width) && width != 0 ? width : kUsualWidth;
}

std::string asFault(const std::string& text) { return shown("31", text); }

std::string asNote(const std::string& text) { return shown("33", text); }

std::string emphasised(const std::string& text) { return shown("1", text); }
