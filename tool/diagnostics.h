// diagnostics.h - what the library logs while a text is handled.
#ifndef TOOL_DIAGNOSTICS_H
#define TOOL_DIAGNOSTICS_H

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

// Collects the module log while it lives. One made while another lives takes the log over until
// it goes.
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

  // Writes the reasons or all lines to standard error, the place in front of each.
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
