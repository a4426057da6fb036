// check.cpp - siputil check: what the library refuses of many messages, grouped by reason.
#include <algorithm>
#include <cctype>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <iostream>
#include <iterator>
#include <map>
#include <optional>
#include <tuple>

#include "body.h"
#include "capture.h"
#include "command.h"
#include "diagnostics.h"
#include "dump.h"
#include "input.h"
#include "log.h"
#include "message.h"
#include "progress.h"
#include "remarks.h"
#include "textInput.h"
#include "validSip.h"

namespace {

namespace fs = std::filesystem;

// Bounds of what is kept, whatever is checked.
constexpr std::size_t kMaxReasons = 1000;
constexpr std::size_t kMaxExampleText = 100;

struct CheckOptions {
  std::vector<std::string> paths;
  bool find = false;
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

struct Counts {
  unsigned long files = 0;
  unsigned long messages = 0;
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

// Returns the start of the Call-ID; "" for none.
std::string callIdOf(const Message& message) {
  for (const Field& field : message.fields) {
    if (sameIgnoringCase(trimmed(field.name), "Call-ID")) {
      return field.value.substr(0, kMaxExampleText);
    }
  }
  return "";
}

// Called with how many bytes of a file are done.
using Reached = std::function<void(std::size_t position)>;

// Checks texts and keeps what was refused.
class Checker {
 public:
  void begin(const std::string& file) {
    file_ = file;
    ++counts_.files;
  }

  // Checks the text of the file, a message of a log or a captured one, which has a passage and no
  // lines. Reports how far it is.
  void check(std::string_view text, const Passage* passage, const LineAt& lineAt,
             const Reached& reached) {
    passage_ = passage;
    lineAt_ = lineAt;
    MessageReader reader(text);
    while (std::optional<Message> message = reader.next()) {
      if (passage != nullptr && passage->missing != 0) {
        message->faults.insert(message->faults.begin(), cutText(*passage));
      }
      callId_ = callIdOf(*message);
      check(*message);
      reached(reader.position());
    }
  }

  const std::string& file() const { return file_; }
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
  void check(const Message& message) {
    ++counts_.messages;
    for (const std::string& fault : message.faults) {
      add(Kind::kRefused, withoutNumbers(fault.substr(0, fault.find(": "))),
          {message.offset, nullptr, fault});
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
    Example first = {
        file_, 0, {}, callId_, std::nullopt, std::string(find.text.substr(0, kMaxExampleText))};
    if (passage_ == nullptr) {
      first.line = lineAt_(find.offset);
    } else {
      first.passage = *passage_;
    }
    if (find.field != nullptr) {
      first.field = find.field->name.substr(0, kMaxExampleText);
    }
    ++groups_.emplace(std::move(reason), Group{0, std::move(first)}).first->second.count;
  }

  std::string file_;
  const Passage* passage_ = nullptr;
  LineAt lineAt_;
  std::string callId_;
  Counts counts_;
  std::map<Reason, Group> groups_;
};

// Appends the files and directories in a directory to the pending paths, the first name last.
// Returns what is wrong when it cannot be read. Without symbolic links, so that no walk comes back
// to where it was.
std::error_code list(const fs::path& directory, std::vector<fs::path>& pending) {
  std::error_code error;
  const auto known = static_cast<std::ptrdiff_t>(pending.size());
  fs::directory_iterator entry(directory, error);
  while (!error && entry != fs::directory_iterator()) {
    const fs::file_status status = entry->symlink_status(error);
    if (fs::is_regular_file(status) || fs::is_directory(status)) {
      pending.push_back(entry->path());
    }
    entry.increment(error);
  }
  std::sort(pending.begin() + known, pending.end(), std::greater<>());
  return error;
}

// Visits each file at or below the paths in the order of their names; reports the directories that
// cannot be read.
void walk(
    const std::vector<std::string>& paths,
    const std::function<void(const std::string& file)>& visit,
    const std::function<void(const std::string& directory, const std::string& fault)>& unreadable) {
  std::vector<fs::path> pending(paths.rbegin(), paths.rend());
  while (!pending.empty()) {
    const fs::path path = pending.back();
    pending.pop_back();
    std::error_code error;
    if (!fs::is_directory(path, error)) {
      visit(path.string());
    } else if ((error = list(path, pending))) {
      unreadable(path.string(), error.message());
    }
  }
}

// Returns how many bytes the files at or below the paths have.
std::size_t sizeOf(const std::vector<std::string>& paths) {
  std::size_t sum = 0;
  const auto add = [&sum](const std::string& file) {
    std::error_code error;
    const std::uintmax_t size = fs::file_size(file, error);
    sum += error ? 0 : static_cast<std::size_t>(size);
  };
  walk(paths, add, [](const std::string&, const std::string&) {});
  return sum;
}

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
    std::cout << std::string(width - count.size(), ' ') << emphasised(count)
              << (reason.kind == Kind::kRemark ? "  remark: " : "  ") << printable(reason.words)
              << '\n';
    const Example& first = group.first;
    std::cout << indent << "first: " << printable(first.file) << ':' << placeText(first) << ": "
              << (first.field ? printable(*first.field) + ": " : "") << printable(first.text)
              << "\n\n";
  }
  const Counts& counts = checker.counts();
  std::cout << counts.files << " files, " << counts.messages << " messages, " << counts.fields
            << " header fields, " << counts[Kind::kRefused] << " refused"
            << remarkCount(counts[Kind::kRemark]);
  if (counts[Kind::kLimit] != 0) {
    std::cout << ", " << counts[Kind::kLimit] << " valid but not taken apart";
  }
  std::cout << '\n';
}

// Each checks a file and reports how far it is. Returns what is wrong with it, or "". Of a capture
// without messages, what is left out is printed.
std::string checkCapture(Input& input, Checker& checker, const Reached& reached) {
  CaptureCounts counts;
  const auto check = [&](const Passage& passage, std::string_view message) {
    checker.check(message, &passage, nullptr, [&](std::size_t) { reached(input.position()); });
  };
  try {
    const unsigned long before = checker.counts().messages;
    std::string error = readCapture(input, "", check, counts);
    if (checker.counts().messages == before) {
      printNotes(checker.file(), counts);
    }
    return error;
  } catch (const CaptureUsageError& error) {
    return error.what();  // built without libpcap
  }
}

std::string checkText(Input& input, Checker& checker, const Reached& reached) {
  std::string text;
  if (!readText(input, kMaxText, text)) {
    return "is too large";
  }
  LineCounter lines(text);
  checker.check(
      text, nullptr, [&lines](std::size_t offset) { return lines.at(offset); }, reached);
  return input.error();
}

std::string checkLog(Input& input, Checker& checker, const Reached& reached) {
  Log log([&](std::string_view message) {
    checker.check(
        message, nullptr, [&log](std::size_t offset) { return log.lineAt(offset); },
        [&input, &reached](std::size_t) { reached(input.position()); });
  });
  std::string piece;
  for (TextInput reader(input); reader.read(piece); piece.clear()) {
    log.add(piece);
  }
  log.finish();
  return input.error();
}

// Checks the files at or below the paths; returns the status for those that cannot be read or have
// no message.
int checkAll(const CheckOptions& options, Checker& checker) {
  int status = kAccepted;
  Progress progress(sizeOf(options.paths));
  std::size_t done = 0;
  const auto complainOf = [&status](const std::string& path, const std::string& fault) {
    status = complain(path + ": " + fault, kWrongUsage);
  };
  const auto check = [&](const std::string& file) {
    Input input(file);
    if (!input.readable()) {
      return complainOf(file, input.error());
    }
    input.expand();
    checker.begin(file);
    const unsigned long before = checker.counts().messages;
    const auto reached = [&](std::size_t position) { progress.at(done + position); };
    const auto readText = options.find ? checkLog : checkText;
    const auto read = isCapture(input.head()) ? checkCapture : readText;
    std::string fault = read(input, checker, reached);
    if (fault.empty()) {
      fault = input.fault();
    }
    if (!fault.empty()) {
      complainOf(file, fault);
    } else if (checker.counts().messages == before) {
      status = std::max(status, complain("no SIP message in " + file, kRefused));
    }
    done += input.position();
    progress.at(done);
  };
  walk(options.paths, check, complainOf);
  return status;
}

int run(const CheckOptions& options) {
  Checker checker;
  const int status = checkAll(options, checker);
  if (options.json) {
    printJson(checker);
  } else {
    printGroups(checker);
  }
  return std::max(status, checker.counts()[Kind::kRefused] == 0 ? kAccepted : kRefused);
}

}  // namespace

int runCheck(CommandLine& line) {
  CLI::App& parser = line.parser;
  CheckOptions options;
  parser
      .add_option(
          "PATH", options.paths,
          "Files with messages, as text or captures, directories of them; - is standard input")
      ->required()
      ->type_name("")
      ->expected(1)
      ->allow_extra_args(false);
  parser.allow_extras();
  addFormatOptions(parser, options.json);
  parser.add_flag("--find", options.find, "Of texts, read the messages between other lines");
  line.parse();
  takeRest(parser, options.paths, SIZE_MAX);
  return run(options);
}
