// calls.cpp - siputil calls: the calls in messages by Call-ID, the picture of one, and counts.
#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "commands/command.h"
#include "output/dump.h"
#include "output/ladder.h"
#include "output/ladderSvg.h"
#include "output/summary.h"
#include "output/table.h"
#include "selection/calls.h"
#include "text/sip.h"
#include "text/text.h"

namespace {

constexpr std::size_t kMinCell = 7;      // columns of a cell in a narrow table
constexpr std::size_t kMaxCell = 48;     // and in a wide one
constexpr std::size_t kMaxNames = 1000;  // methods and codes that are counted

struct CallsOptions {
  Sources sources;
  std::string show;  // a part of a Call-ID; "" for all calls
  std::string svg;   // the file for the picture; "" for none
  bool stats = false;
  bool json = false;
  bool wide = false;
};

nlohmann::ordered_json textOrNull(const std::string& text) {
  return text.empty() ? nullptr : nlohmann::ordered_json(text);
}

nlohmann::ordered_json codeOrNull(const std::string& text) {
  unsigned int code = 0;
  return readNumber(text, code) ? nlohmann::ordered_json(code) : nullptr;
}

double secondsOf(std::int64_t microseconds) { return static_cast<double>(microseconds) / 1e6; }

// Returns the first time that is known, or "".
std::string firstTime(const Call& call) { return call.begin ? timeText(call.first) : ""; }

std::string secondsText(const Call& call) {
  if (!call.begin) {
    return "";
  }
  char text[64] = "";
  static_cast<void>(std::snprintf(text, sizeof(text), "%.3f", secondsOf(*call.end - *call.begin)));
  return text;
}

nlohmann::ordered_json toJson(const Call& call) {
  nlohmann::ordered_json object = {{"callId", call.id}, {"time", textOrNull(firstTime(call))}};
  object["seconds"] =
      call.begin ? nlohmann::ordered_json(secondsOf(*call.end - *call.begin)) : nullptr;
  object["from"] = textOrNull(call.from);
  object["to"] = textOrNull(call.to);
  object["methods"] = call.methods;
  object["statusCode"] = codeOrNull(call.status);
  object["reasonPhrase"] = textOrNull(call.reason);
  object["messages"] = call.messages;
  return object;
}

std::string joined(const std::vector<std::string>& texts) {
  std::string line;
  for (const std::string& text : texts) {
    line.append(line.empty() ? "" : " ").append(text);
  }
  return line;
}

using Row = std::vector<std::string>;

Row rowOf(const Call& call, bool wide) {
  Row row = {wide || !call.begin ? firstTime(call) : clockText(call.first),
             call.from,
             call.to,
             joined(call.methods),
             call.status,
             secondsText(call),
             std::to_string(call.messages),
             call.id};
  for (std::string& cell : row) {
    cell = cell.empty() ? "-" : printable(cell);
  }
  return row;
}

// Returns columns with these titles for the rows of the calls.
std::vector<Column> columnsFor(const Row& titles, const std::vector<Call>& calls, bool wide) {
  std::vector<Column> columns;
  for (const std::string& title : titles) {
    const bool number = title == "seconds" || title == "messages";
    columns.push_back({title.size(), title.size(), kMaxCell,
                       number ? Column::Side::kRight : Column::Side::kLeft});
  }
  for (const Call& call : calls) {
    const Row row = rowOf(call, wide);
    for (std::size_t column = 0; column + 1 < row.size(); ++column) {
      std::size_t& usual = columns[column].usual;
      usual = std::max(usual, std::min(widthOf(row[column]), kMaxCell));
    }
  }
  for (Column& column : columns) {
    column.least = std::max(column.least, std::min(column.usual, kMinCell));
  }
  columns.front().least = columns.front().usual;
  return columns;
}

void printTable(const std::vector<Call>& calls, bool wide) {
  const Row titles = {"time", "from", "to", "methods", "status", "seconds", "messages", "Call-ID"};
  Table table(columnsFor(titles, calls, wide), wide ? 0 : terminalWidth());
  std::cout << emphasised(table.line(titles)) << '\n';
  for (const Call& call : calls) {
    std::cout << table.line(rowOf(call, wide)) << '\n';
  }
}

void printCalls(const std::vector<Call>& calls, const CallsOptions& options) {
  if (!options.json && !calls.empty()) {
    printTable(calls, options.wide);
    return;
  }
  for (const Call& call : calls) {
    std::cout << jsonLine(toJson(call)) << '\n';
  }
}

// Says on standard error what is in no call.
void printNotes(const CallList& list) {
  if (list.withoutId() != 0) {
    complain(counted(list.withoutId(), "message") + " without a Call-ID", kAccepted);
  }
  if (list.leftOut() != 0) {
    complain(counted(list.leftOut(), "message") + " left out, of more than " +
                 std::to_string(CallList::kMaxCalls) + " calls",
             kAccepted);
  }
}

int runList(const CallsOptions& options) {
  CallList list;
  FileCounts counts;
  const int status = readMessages(options.sources, counts,
                                  [&list](const MessageInFile& found) { list.add(found); });
  printNotes(list);
  printCalls(list.calls(), options);
  return status;
}

nlohmann::ordered_json toJson(const Step& step, const Step& first) {
  nlohmann::ordered_json object;
  const bool timed = step.time && first.time;
  object["seconds"] = timed ? nlohmann::ordered_json(secondsOf(*step.time - *first.time)) : nullptr;
  object["source"] = step.source;
  object["destination"] = step.destination;
  object["method"] = textOrNull(step.response ? "" : step.name);
  object["statusCode"] = codeOrNull(step.response ? step.name : "");
  object["reasonPhrase"] = textOrNull(step.reason);
  object["body"] = textOrNull(step.body);
  object["again"] = step.again;
  return object;
}

std::string orUnknown(const std::string& text) { return text.empty() ? "?" : text; }

// Returns what is above the picture of a call.
std::vector<std::string> headingOf(const Call& call, std::size_t shown) {
  std::vector<std::string> lines = {"Call-ID: " + call.id};
  std::string line =
      orUnknown(call.from) + " -> " + orUnknown(call.to) + ", " + counted(call.messages, "message");
  if (call.begin) {
    line += " in " + secondsText(call) + " s from " + timeText(call.first);
  }
  lines.push_back(line);
  if (shown < call.messages) {
    lines.push_back("the first " + std::to_string(shown) + " of them");
  }
  return lines;
}

int writeFile(const std::string& name, const std::string& text) {
  if (name == "-") {
    std::cout << text;
    return kAccepted;
  }
  std::ofstream file(name, std::ios::binary);
  const bool written =
      file.write(text.data(), static_cast<std::streamsize>(text.size())).flush().good();
  return written ? kAccepted : complain(name + ": " + std::strerror(errno), kWrongUsage);
}

int show(const CallsOptions& options, const Call& call, const std::vector<Step>& steps) {
  if (options.json) {
    nlohmann::ordered_json object = toJson(call);
    object["ladder"] = nlohmann::ordered_json::array();
    for (const Step& step : steps) {
      object["ladder"].push_back(toJson(step, steps.front()));
    }
    std::cout << jsonLine(object) << '\n';
    return kAccepted;
  }
  const Ladder ladder(headingOf(call, steps.size()), steps);
  if (!options.svg.empty()) {
    return writeFile(options.svg, ladderSvg(ladder));
  }
  std::cout << ladderText(ladder);
  return kAccepted;
}

int runShow(const CallsOptions& options) {
  ChosenCall chosen(options.show);
  FileCounts counts;
  const int status = readMessages(options.sources, counts,
                                  [&chosen](const MessageInFile& found) { chosen.add(found); });
  const std::vector<Call>& calls = chosen.list().calls();
  if (calls.empty()) {
    return std::max(status, complain("no Call-ID has '" + options.show + "' in it", kRefused));
  }
  if (calls.size() == 1) {
    return std::max(status, show(options, calls.front(), chosen.steps()));
  }
  printNotes(chosen.list());
  printCalls(calls, options);
  return complain(counted(calls.size(), "Call-ID") + " have '" + options.show + "' in them",
                  kWrongUsage);
}

// Counts names, as long as these are few.
class Tally {
 public:
  using Count = std::pair<std::string, unsigned long>;

  void add(const std::string& name) {
    const auto known = counts_.find(name);
    if (known != counts_.end()) {
      ++known->second;
    } else {
      ++counts_[counts_.size() < kMaxNames ? name : "others"];
    }
  }

  // Returns the names, the most frequent first.
  std::vector<Count> sorted() const {
    std::vector<Count> counts(counts_.begin(), counts_.end());
    std::stable_sort(counts.begin(), counts.end(),
                     [](const Count& a, const Count& b) { return a.second > b.second; });
    return counts;
  }

 private:
  std::map<std::string, unsigned long> counts_;
};

nlohmann::ordered_json toJson(const Tally& tally, const char* name) {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const auto& [text, count] : tally.sorted()) {
    list.push_back({{name, text}, {"count", count}});
  }
  return list;
}

void print(const Tally& tally, const char* title) {
  constexpr std::size_t kCountWidth = 8;
  std::cout << emphasised(title) << '\n';
  for (const auto& [text, count] : tally.sorted()) {
    const std::string number = std::to_string(count);
    std::cout << std::string(kCountWidth - std::min(kCountWidth, number.size()), ' ') << number
              << "  " << printable(text) << '\n';
  }
}

int runStats(const CallsOptions& options) {
  Tally requests;
  Tally responses;
  FileCounts counts;
  const int status = readMessages(options.sources, counts, [&](const MessageInFile& found) {
    const StartLine line(found.message.startLine);
    const std::string_view name = line.response ? line.code() : headlineOf(found.message);
    (line.response ? responses : requests).add(shortened(name, kMaxCell));
  });
  if (options.json) {
    const nlohmann::ordered_json object = {{"messages", counts.messages},
                                           {"requests", toJson(requests, "method")},
                                           {"responses", toJson(responses, "status")}};
    std::cout << jsonLine(object) << '\n';
    return status;
  }
  print(requests, "requests");
  print(responses, "responses");
  std::cout << counted(counts.messages, "message") << '\n';
  return status;
}

}  // namespace

int runCalls(CommandLine& line) {
  CallsOptions options;
  options.sources.directories = true;
  options.sources.notes = false;
  options.sources.summary = true;
  addFormatOptions(line.parser, options.json);
  addRawOption(line.parser);
  line.parser.add_flag("--wide", options.wide, "Show all, whatever the width of the terminal");
  const auto add = [&line](const char* name, std::string& value, const char* help,
                           const char* form) {
    return line.parser.add_option(name, value, help)->type_name(form)->allow_extra_args(false);
  };
  CLI::Option* show = add("--show", options.show,
                          "Draw the call of this Call-ID; a part of it is enough", "CALL-ID");
  add("--svg", options.svg,
      "Write the picture of --show to this file, as SVG; - is standard output", "FILE")
      ->needs(show)
      ->excludes("--json");
  line.parser.add_flag("--stats", options.stats, "Count requests by method, responses by code")
      ->excludes(show);
  parseWithSources(line, options.sources);
  if (options.stats) {
    return runStats(options);
  }
  return show->count() == 0 ? runList(options) : runShow(options);
}
