// diagnostics.cpp - what the library logs while a text is handled.
#include "diagnostics.h"

#include <iostream>

#include "dump.h"
#include "hostControl.h"

namespace {

constexpr int kFailureLevel = 4;

}  // namespace

Diagnostics::Diagnostics() {
  hostSetLogHandler(
      [](void* self, const HostLogLine& line) {
        static_cast<Diagnostics*>(self)->lines_.push_back(
            {line.level, line.moduleId, line.sourceFile, line.text});
      },
      this);
}

Diagnostics::~Diagnostics() { hostSetLogHandler(nullptr, nullptr); }

nlohmann::ordered_json Diagnostics::toJson() const {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const Line& line : lines_) {
    list.push_back({{"level", line.level},
                    {"module", line.module},
                    {"source", line.source},
                    {"text", line.text}});
  }
  return list;
}

void Diagnostics::print(unsigned long line, unsigned int code, bool all) const {
  const std::string prefix =
      line == 0 ? "siputil: " : "siputil: line " + std::to_string(line) + ": ";
  bool reasoned = code == VARN_OK;
  for (const Line& each : lines_) {
    const bool reason = code != VARN_OK && each.level >= kFailureLevel;
    reasoned = reasoned || reason;
    if (!all && !reason) {
      continue;
    }
    std::cerr << prefix;
    if (all) {
      std::cerr << "level " << each.level << ", module " << each.module << ", " << each.source
                << ": ";
    }
    std::cerr << printable(each.text) << '\n';
  }
  if (!reasoned) {
    std::cerr << prefix << "refused with code " << code << ", the library logged no reason\n";
  }
}
