// list.cpp - siputil list: a line for each message.
#include <iostream>

#include "commands/command.h"
#include "output/dump.h"
#include "output/summary.h"
#include "output/table.h"
#include "selection/messageJson.h"

namespace {

struct ListOptions {
  Sources sources;
  bool json = false;
  bool wide = false;
};

// From this width on, lines have room for ports and wider gaps.
constexpr std::size_t kRoomy = 158;

// Returns the columns of a list with passages or without, with those of --wide or without.
std::vector<Column> columnsOf(bool passages, bool wide, bool roomy) {
  constexpr Column::Side kLeft = Column::Side::kLeft;
  const char* const gap = passages && !roomy ? " " : "  ";
  const std::size_t endpoint = roomy ? 20 : 15;
  std::vector<Column> columns = {{3, 3, 20, Column::Side::kRight}};
  if (wide) {
    columns.push_back({20, 20, 60});
  }
  if (passages) {
    columns.push_back({12, 12, 27, kLeft, false, gap});
    columns.push_back({9, endpoint, 48, kLeft, true, gap});
    columns.push_back({9, endpoint, 48, kLeft, true, " -> "});
  }
  if (passages && wide) {
    columns.push_back({4, 4, 4});
  }
  columns.push_back({9, 23, 36, kLeft, false, gap});
  columns.push_back({7, 12, 20, kLeft, false, gap});
  columns.push_back({7, 15, 24, kLeft, true, gap});
  columns.push_back({7, 15, 24, kLeft, true, gap});
  columns.push_back({6, 20, 20, kLeft, false, gap});
  return columns;
}

// Lists messages, those in texts and those of captures with columns of their own.
class Lister {
 public:
  explicit Lister(const ListOptions& options)
      : options_(options),
        bound_(options.wide ? 0 : terminalWidth()),
        roomy_(bound_ == 0 || bound_ >= kRoomy),
        texts_(columnsOf(false, options.wide, roomy_), bound_),
        captures_(columnsOf(true, options.wide, roomy_), bound_) {}

  void print(const MessageInFile& found) {
    std::cout << (options_.json ? jsonLine(json(found)) : line(found)) << '\n';
  }

 private:
  static nlohmann::ordered_json json(const MessageInFile& found) {
    const auto textOrNull = [](std::string_view text) {
      return text.empty() ? nlohmann::ordered_json() : nlohmann::ordered_json(text);
    };
    nlohmann::ordered_json object = summaryJson(found);
    object["from"] = textOrNull(userOf(found.message, "From"));
    object["to"] = textOrNull(userOf(found.message, "To"));
    object["callId"] = textOrNull(callIdOf(found.message));
    return object;
  }

  std::string line(const MessageInFile& found) {
    const Message& message = found.message;
    const Sequence sequence = sequenceOf(message);
    std::vector<std::string> cells = {std::to_string(found.number)};
    if (options_.wide) {
      cells.push_back(printable(placeText(found)));
    }
    if (found.passage != nullptr) {
      addPassage(cells, *found.passage);
    }
    cells.push_back(printable(headlineOf(message)));
    cells.push_back(printable(std::string(sequence.text).append(" ").append(sequence.method)));
    cells.push_back(printable(userOf(message, "From")));
    cells.push_back(printable(userOf(message, "To")));
    cells.push_back(printable(callIdOf(message)));
    return (found.passage == nullptr ? texts_ : captures_).line(cells);
  }

  void addPassage(std::vector<std::string>& cells, const Passage& passage) const {
    const auto text = roomy_ ? endpointText : addressText;
    cells.push_back(options_.wide ? timeText(passage.time) : clockText(passage.time));
    cells.push_back(text(passage.source));
    cells.push_back(text(passage.destination));
    if (options_.wide) {
      cells.emplace_back(passage.transport);
    }
  }

  static std::string placeText(const MessageInFile& found) {
    return found.file + (found.passage == nullptr
                             ? ':' + std::to_string(found.lineAt(found.message.offset))
                             : ":frame " + std::to_string(found.passage->frame));
  }

  const ListOptions& options_;
  std::size_t bound_;  // of the lines; 0 for none
  bool roomy_;
  Table texts_;
  Table captures_;
};

int run(const ListOptions& options) {
  FileCounts counts;
  Lister lister(options);
  return readMessages(options.sources, counts,
                      [&lister](const MessageInFile& found) { lister.print(found); });
}

}  // namespace

int runList(CommandLine& line) {
  ListOptions options;
  options.sources.directories = true;
  options.sources.notes = false;
  addFormatOptions(line.parser, options.json);
  addRawOption(line.parser);
  line.parser.add_flag("--wide", options.wide, "Show all, whatever the width of the terminal");
  parseWithSources(line, options.sources);
  return run(options);
}
