// diagnostics.h - what the library logs while a text is handled.
#ifndef TOOL_DIAGNOSTICS_H
#define TOOL_DIAGNOSTICS_H

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

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

  // Returns why a text was refused with this code: the failures that were logged, or a line that
  // says there are none.
  std::vector<std::string> reasons(unsigned int code) const;

  // Prints the reasons or all lines on standard error, the place before each.
  void printReasons(const std::string& place, unsigned int code) const;
  void printAll(const std::string& place) const;

 private:
  struct Line {
    int level;
    int module;
    std::string source;
    std::string text;
  };

  void install();

  std::vector<Line> lines_;
  Diagnostics* outer_;
};

#endif  // TOOL_DIAGNOSTICS_H
