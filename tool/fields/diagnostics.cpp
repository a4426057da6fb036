// diagnostics.cpp - what the library logs while a text is handled.
#include "fields/diagnostics.h"

#include <algorithm>
#include <iostream>

#include "fields/words.h"
#include "hostControl.h"
#include "text/text.h"
#include "wySipString.h"

namespace {

constexpr int kFailureLevel = 4;

constexpr std::size_t kNone = std::string::npos;

Diagnostics* current = nullptr;

// Returns whether a source has grammar rules.
bool isOfRule(std::string_view source) {
  constexpr std::string_view kRules = "Match";
  return source.size() > kRules.size() && source.substr(source.size() - kRules.size()) == kRules;
}

// Returns the reason of a text that was refused without a line.
std::string withoutLine(unsigned int code, const Place* place) {
  if (code == VARN_RESOURCE_FAILURE) {
    return "out of memory";
  }
  return "the text is malformed" +
         (place == nullptr || place->byte.empty() ? "" : ": " + place->byte);
}

// Returns words for the byte that a trace has as 0xHH; "" without one. 0xff may be the end of the
// text.
std::string wordsOfByte(std::string_view trace) {
  const std::size_t hex = trace.rfind("0x");
  return hex == std::string_view::npos || trace.substr(hex) == "0xff"
             ? ""
             : "byte " + std::string(trace.substr(hex)) + " is not allowed here";
}

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

// Returns the index of the last line before this one that may say why: a failure, or with traces
// the trace of a grammar rule; kNone for none.
std::size_t Diagnostics::lastCause(std::size_t before, bool traces) const {
  while (before-- != 0) {
    const Line& line = lines_[before];
    const bool failure = line.level >= kFailureLevel;
    if ((failure || (traces && isOfRule(line.source))) && !meaningOf(line.text).harmless) {
      return before;
    }
  }
  return kNone;
}

// A row that refers to the previous line gives way to it. The trace of a rule just before a failure
// makes it more precise.
std::string Diagnostics::reason(unsigned int code, const Place* place) const {
  const std::size_t last = lastCause(lines_.size(), !hasFailure());
  if (last == kNone) {
    return place != nullptr && !place->words.empty() ? place->words : withoutLine(code, place);
  }
  std::size_t i = last;
  LineMeaning meaning = meaningOf(lines_[i].text);
  while (meaning.previousSaysWhy && lastCause(i, true) != kNone) {
    i = lastCause(i, true);
    meaning = meaningOf(lines_[i].text);
  }
  if (meaning.words.empty()) {
    return lines_[i].text;
  }
  const bool traced = i != 0 && lines_[i].level >= kFailureLevel && lastCause(i, true) == i - 1 &&
                      lines_[i - 1].level < kFailureLevel;
  const std::string& trace = lines_[traced ? i - 1 : i].text;
  const LineMeaning traceMeaning = meaningOf(trace);
  std::string detail;
  if (traced && !traceMeaning.ofByte) {
    detail = traceMeaning.words;
  } else if (meaning.ofByte) {
    detail = place != nullptr ? place->byte : wordsOfByte(trace);
  }
  if (place != nullptr && !place->words.empty()) {
    meaning.words = place->words;
    detail = "";
  }
  return meaning.words + (detail.empty() ? "" : ": ") + detail + " [" + lines_[i].text + "]";
}

void Diagnostics::printAll(const std::string& prefix) const {
  for (const Line& line : lines_) {
    std::cerr << "siputil: " << prefix << "level " << line.level << ", module " << line.module
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
