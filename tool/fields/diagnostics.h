// diagnostics.h - what the library logs while a text is handled.
#ifndef TOOL_DIAGNOSTICS_H
#define TOOL_DIAGNOSTICS_H

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "fields/place.h"

// Collects the module log during its lifetime. While an inner object lives, it alone collects.
class Diagnostics {
 public:
  Diagnostics();
  ~Diagnostics();
  Diagnostics(const Diagnostics&) = delete;
  Diagnostics& operator=(const Diagnostics&) = delete;

  // Returns the lines as a list of objects.
  nlohmann::ordered_json toJson() const;

  // Returns whether a failure was logged.
  bool hasFailure() const;

  // Returns why a text was refused with this code: plain words, and in brackets the line of the
  // library that they are about, if there is one. A place in the text makes them more precise.
  std::string reason(unsigned int code, const Place* place = nullptr) const;

  // Prints all lines on standard error, the prefix before each.
  void printAll(const std::string& prefix) const;

 private:
  struct Line {
    int level;
    int module;
    std::string source;
    std::string text;
  };

  void install();
  std::size_t lastCause(std::size_t before, bool traces) const;

  std::vector<Line> lines_;
  Diagnostics* outer_;
};

#endif  // TOOL_DIAGNOSTICS_H
