// check.cpp - siputil check: what the library refuses of many messages, grouped by reason.
#include <algorithm>
#include <cctype>
#include <cstdint>
#include <iostream>
#include <iterator>
#include <map>
#include <optional>
#include <tuple>

#include "commands/command.h"
#include "fields/diagnostics.h"
#include "fields/remarks.h"
#include "fields/validSip.h"
#include "output/body.h"
#include "output/dump.h"
#include "output/summary.h"
#include "selection/messages.h"
#include "text/sip.h"
#include "text/text.h"

namespace {

// Bounds of what is kept, whatever is checked.
constexpr std::size_t kMaxReasons = 1000;
constexpr std::size_t kMaxExampleText = 100;

struct CheckOptions {
  Sources sources;
  bool json = false;
};

// What is said of a message: that it is faulty, that something is remarkable, that the library does
// not take it apart.
enum class Kind { kRefused, kRemark, kLimit };

struct Reason {
  Kind kind;
  std::string words;

  bool operator<(const Reason& other) const {
    return std::tie(kind, words) < std::tie(other.kind, other.words);
  }
};

const char* nameOf(Kind kind) {
  constexpr const char* kNames[] = {"refused", "remark", "limit"};
  return kNames[static_cast<std::size_t>(kind)];
}

struct Example {
  std::string file;
  std::size_t line;                // in a text
  std::optional<Passage> passage;  // of a captured message, as its Call-ID
  std::string callId;
  std::optional<std::string> field;  // none for a message apart from its fields
  std::string text;
};

// Where something was found.
struct Find {
  std::size_t offset;
  const Field* field;  // null for a message apart from its fields
  std::string_view text;
};

struct Group {
  unsigned long count;
  Example first;
};

struct Counts : FileCounts {
  unsigned long fields = 0;
  unsigned long of[3] = {};  // each kind

  unsigned long operator[](Kind kind) const { return of[static_cast<std::size_t>(kind)]; }
};

bool isAlphanumeric(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; }

// Returns the text with N for each word that begins with a digit, as ports and lengths do: a reason
// is the same for all of them.
std::string withoutNumbers(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const auto* const end = std::find_if_not(text.begin(), text.end(), isAlphanumeric);
    const auto length = static_cast<std::size_t>(end - text.begin());
    const bool number = length != 0 && std::isdigit(static_cast<unsigned char>(text[0])) != 0;
    result.append(number ? "N" : text.substr(0, length)).append(text.substr(length, 1));
    text.remove_prefix(std::min(length + 1, text.size()));
  }
  return result;
}

// Checks messages and keeps what was refused.
class Checker {
 public:
  void check(const MessageInFile& found) {
    found_ = &found;
    const Message& message = found.message;
    for (const Fault& fault : message.faults) {
      add(Kind::kRefused, withoutNumbers(fault.words.substr(0, fault.words.find(": "))),
          {fault.offset, nullptr, fault.words});
    }
    const std::vector<Remark> remarks = remarksOn(message);
    for (const Remark& remark : remarks) {
      if (remark.field == nullptr) {
        add(remark, {message.offset, nullptr, message.startLine});
      }
    }
    checkFields(message, remarks);
    checkBody(message);
  }

  Counts& counts() { return counts_; }
  const Counts& counts() const { return counts_; }

  // Returns the groups of each kind, the largest first.
  std::vector<std::pair<Reason, Group>> groups() const {
    std::vector<std::pair<Reason, Group>> sorted(groups_.begin(), groups_.end());
    std::stable_sort(sorted.begin(), sorted.end(), [](const auto& a, const auto& b) {
      return std::make_pair(a.first.kind, b.second.count) <
             std::make_pair(b.first.kind, a.second.count);
    });
    return sorted;
  }

 private:
  void checkFields(const Message& message, const std::vector<Remark>& remarks) {
    // The remarks on fields are together, in the order of the fields.
    auto next = std::find_if(remarks.begin(), remarks.end(),
                             [](const Remark& remark) { return remark.field != nullptr; });
    for (const Field& field : message.fields) {
      ++counts_.fields;
      check(field);
      for (; next != remarks.end() && next->field == &field; ++next) {
        add(*next, {field.offset, &field, field.value});
      }
    }
  }

  void checkBody(const Message& message) {
    const MessageBody body(message);
    const std::string bytes = "body, " + std::to_string(message.contentSize()) + " bytes";
    for (const std::string& fault : body.faults) {
      add(Kind::kRefused, withoutNumbers(fault), {message.bodyOffset, nullptr, bytes});
    }
    if (!body.limit.empty()) {
      add(Kind::kLimit, kNotTakenApart + body.limit, {message.bodyOffset, nullptr, bytes});
    }
  }

  void check(const Field& field) {
    const Diagnostics diagnostics;
    const SipHeader header(toSipString(field.name), toSipString(field.value));
    if (header.GetLastErrorCode() == VARN_OK) {
      return;
    }
    const std::string limit = limitOf(field.name, field.value);
    const Kind kind = limit.empty() ? Kind::kRefused : Kind::kLimit;
    add(kind,
        limit.empty() ? withoutNumbers(diagnostics.reason(header.GetLastErrorCode()))
                      : kNotTakenApart + limit,
        {field.offset, &field, field.value});
  }

  void add(const Remark& remark, const Find& find) {
    add(remark.fault ? Kind::kRefused : Kind::kRemark,
        lineOf({remark.words, "", remark.section, nullptr, false}), find);
  }

  void add(Kind kind, const std::string& words, const Find& find) {
    ++counts_.of[static_cast<std::size_t>(kind)];
    Reason reason = {kind, words};
    const auto known = groups_.find(reason);
    if (known != groups_.end()) {
      ++known->second.count;
      return;
    }
    if (groups_.size() >= kMaxReasons) {
      reason.words = "other reasons";
    }
    Example first = {found_->file, 0,
                     {},           shortened(callIdOf(found_->message), kMaxExampleText),
                     std::nullopt, shortened(find.text, kMaxExampleText)};
    if (found_->passage == nullptr) {
      first.line = found_->lineAt(find.offset);
    } else {
      first.passage = *found_->passage;
    }
    if (find.field != nullptr) {
      first.field = shortened(find.field->name, kMaxExampleText);
    }
    ++groups_.emplace(std::move(reason), Group{0, std::move(first)}).first->second.count;
  }

  const MessageInFile* found_ = nullptr;  // what is being checked
  Counts counts_;
  std::map<Reason, Group> groups_;
};

void printJson(const Checker& checker) {
  const Counts& counts = checker.counts();
  nlohmann::ordered_json object = {{"files", counts.files},
                                   {"messages", counts.messages},
                                   {"fields", counts.fields},
                                   {"refused", counts[Kind::kRefused]},
                                   {"remarks", counts[Kind::kRemark]},
                                   {"limits", counts[Kind::kLimit]},
                                   {"reasons", nlohmann::ordered_json::array()}};
  for (const auto& [reason, group] : checker.groups()) {
    const Example& first = group.first;
    nlohmann::ordered_json example = {{"file", first.file}};
    if (first.passage) {
      const std::string time = timeText(first.passage->time);
      example["frame"] = first.passage->frame;
      example["time"] = time.empty() ? nullptr : nlohmann::ordered_json(time);
      example["callId"] = first.callId;
    } else {
      example["line"] = first.line;
    }
    example["field"] = first.field ? nlohmann::ordered_json(*first.field) : nullptr;
    example["text"] = first.text;
    object["reasons"].push_back({{"kind", nameOf(reason.kind)},
                                 {"reason", reason.words},
                                 {"count", group.count},
                                 {"first", example}});
  }
  std::cout << jsonLine(object) << '\n';
}

// Returns the line, or `frame 7, 2024-02-29T23:59:59.000001Z, Call-ID a`.
std::string placeText(const Example& example) {
  if (!example.passage) {
    return std::to_string(example.line);
  }
  const std::string time = timeText(example.passage->time);
  return "frame " + std::to_string(example.passage->frame) + (time.empty() ? "" : ", " + time) +
         (example.callId.empty() ? "" : ", Call-ID " + printable(example.callId));
}

void printGroups(const Checker& checker) {
  const auto groups = checker.groups();
  std::size_t width = 0;
  for (const auto& each : groups) {
    width = std::max(width, std::to_string(each.second.count).size());
  }
  const std::string indent(width + 2, ' ');
  for (const auto& [reason, group] : groups) {
    const std::string count = std::to_string(group.count);
    const std::string words = printable(reason.words);
    std::cout << std::string(width - count.size(), ' ') << emphasised(count) << "  "
              << (reason.kind == Kind::kRefused  ? asFault(words)
                  : reason.kind == Kind::kRemark ? asNote("remark: " + words)
                                                 : asNote(words))
              << '\n';
    const Example& first = group.first;
    std::cout << indent << "first: " << printable(first.file) << ':' << placeText(first) << ": "
              << (first.field ? printable(*first.field) + ": " : "") << printable(first.text)
              << "\n\n";
  }
  const Counts& counts = checker.counts();
  std::cout << counted(counts.files, "file") << ", " << counted(counts.messages, "message") << ", "
            << counted(counts.fields, "header field") << ", " << counts[Kind::kRefused]
            << " refused" << remarkCount(counts[Kind::kRemark]);
  if (counts[Kind::kLimit] != 0) {
    std::cout << ", " << counts[Kind::kLimit] << " valid but not taken apart";
  }
  std::cout << '\n';
}

int run(const CheckOptions& options) {
  Checker checker;
  const int status = readMessages(options.sources, checker.counts(),
                                  [&checker](const MessageInFile& found) { checker.check(found); });
  if (options.json) {
    printJson(checker);
  } else {
    printGroups(checker);
  }
  return std::max(status, checker.counts()[Kind::kRefused] == 0 ? kAccepted : kRefused);
}

}  // namespace

int runCheck(CommandLine& line) {
  CheckOptions options;
  options.sources.directories = true;
  options.sources.notes = false;
  options.sources.summary = true;
  addFormatOptions(line.parser, options.json);
  addRawOption(line.parser);
  parseWithSources(line, options.sources);
  return run(options);
}
