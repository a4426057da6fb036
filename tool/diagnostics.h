// diagnostics.h - what the library logs while a text is handled.
#ifndef TOOL_DIAGNOSTICS_H
#define TOOL_DIAGNOSTICS_H

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

// Collects the module log while it lives; one at a time.
class Diagnostics {
 public:
  Diagnostics();
  ~Diagnostics();
  Diagnostics(const Diagnostics&) = delete;
  Diagnostics& operator=(const Diagnostics&) = delete;

  // Returns the lines as a list of objects.
  nlohmann::ordered_json toJson() const;

  // Writes to standard error why a text was refused with this code, or, when asked for all, every
  // line. The line number of the text, unless 0, goes in front.
  void print(unsigned long line, unsigned int code, bool all) const;

 private:
  struct Line {
    int level;
    int module;
    std::string source;
    std::string text;
  };

  std::vector<Line> lines_;
};

#endif  // TOOL_DIAGNOSTICS_H
