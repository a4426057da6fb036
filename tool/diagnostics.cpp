// diagnostics.cpp - what the library logs while a text is handled.
#include "diagnostics.h"

#include <algorithm>
#include <iostream>

#include "hostControl.h"
#include "text.h"

namespace {

constexpr int kFailureLevel = 4;

Diagnostics* current = nullptr;

}  // namespace

Diagnostics::Diagnostics() : outer_(current) { install(); }

Diagnostics::~Diagnostics() {
  if (outer_ != nullptr) {
    outer_->install();
  } else {
    hostSetLogHandler(nullptr, nullptr);
    current = nullptr;
  }
}

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

bool Diagnostics::hasFailure() const {
  return std::any_of(lines_.begin(), lines_.end(),
                     [](const Line& line) { return line.level >= kFailureLevel; });
}

std::vector<std::string> Diagnostics::reasons(unsigned int code) const {
  std::vector<std::string> texts;
  for (const Line& line : lines_) {
    if (line.level >= kFailureLevel) {
      texts.push_back(line.text);
    }
  }
  if (texts.empty()) {
    texts.push_back("refused with code " + std::to_string(code) + ", the library logged no reason");
  }
  return texts;
}

void Diagnostics::printReasons(const std::string& place, unsigned int code) const {
  for (const std::string& reason : reasons(code)) {
    std::cerr << "siputil: " << place << printable(reason) << '\n';
  }
}

void Diagnostics::printAll(const std::string& place) const {
  for (const Line& line : lines_) {
    std::cerr << "siputil: " << place << "level " << line.level << ", module " << line.module
              << ", " << line.source << ": " << printable(line.text) << '\n';
  }
}

void Diagnostics::install() {
  current = this;
  hostSetLogHandler(
      [](void* self, const HostLogLine& line) {
        static_cast<Diagnostics*>(self)->lines_.push_back(
            {line.level, line.moduleId, line.sourceFile, line.text});
      },
      this);
}
