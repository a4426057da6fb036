// ladder.cpp - the picture of a call: a column for each endpoint, an arrow for each message.
#include "output/ladder.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>

namespace {

constexpr std::size_t kWidth = 80;
constexpr std::size_t kTimeWidth = 11;
constexpr std::size_t kMaxSpacing = 40;
constexpr std::size_t kMaxOthers = 50;
constexpr std::size_t kArrowEnds = 4;    // what an arrow needs beside its label
constexpr std::size_t kShortReason = 7;  // less of a reason says nothing

std::string ascii(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
  return text;
}

std::string secondsText(std::int64_t microseconds) {
  constexpr double kSecondsOfDay = 86400;
  const double seconds = static_cast<double>(microseconds) / 1e6;
  char text[32] = "";
  if (std::abs(seconds) < 100000) {
    static_cast<void>(std::snprintf(text, sizeof(text), "%+.3f", seconds));
  } else if (std::abs(seconds) < 1e6 * kSecondsOfDay) {
    static_cast<void>(std::snprintf(text, sizeof(text), "%+.0f d", seconds / kSecondsOfDay));
  }
  return text;
}

// Where the text form draws its columns.
struct Grid {
  explicit Grid(const Ladder& ladder)
      : first(ladder.timed() ? kTimeWidth : 1),
        spacing(std::min(kMaxSpacing, (kWidth - 1 - first) /
                                          std::max<std::size_t>(ladder.columns().size() - 1, 1))) {}

  std::size_t at(std::size_t column) const { return first + column * spacing; }

  std::size_t first;
  std::size_t spacing;
};

// Returns a line with the given number of columns.
std::string emptyLine(const Grid& grid, std::size_t columns) {
  std::string line(kWidth, ' ');
  for (std::size_t column = 0; column < columns; ++column) {
    line[grid.at(column)] = '|';
  }
  return line;
}

void put(std::string& line, std::size_t offset, const std::string& text) {
  line.replace(offset, text.size(), text);
}

void addLine(std::string& lines, const std::string& line) {
  lines.append(line, 0, line.find_last_not_of(' ') + 1).append("\n");
}

// Adds the names, each where its column begins. One that has no room after the one before begins
// another line.
void addNames(std::string& lines, const Ladder& ladder, const Grid& grid) {
  std::string line = emptyLine(grid, 0);
  std::size_t used = 0;
  for (std::size_t column = 0; column < ladder.columns().size(); ++column) {
    const std::string name = ladder.columns()[column].substr(0, kWidth);
    const std::size_t begin = std::min(grid.at(column), kWidth - name.size());
    if (begin < used) {
      addLine(lines, line);
      line = emptyLine(grid, column);
    }
    put(line, begin, name);
    used = begin + name.size() + 1;
  }
  addLine(lines, line);
}

// Returns an arrow to the right without the columns at its ends.
std::string arrowText(const Step& step, std::size_t length) {
  const char stroke = step.again ? '.' : '-';
  const std::string label = labelOf(step, length - kArrowEnds);
  const std::size_t left = length - label.size();
  const std::size_t before = left / 2;
  return std::string(before - 1, stroke) + ' ' + label + ' ' +
         std::string(left - before - 1, stroke);
}

// Returns a line with a message from an endpoint to itself, which is before or after its column.
void putLoop(std::string& line, const Ladder::Arrow& arrow, const Grid& grid, bool last) {
  const std::string mark = arrow.step.again ? ".." : "--";
  const std::size_t at = grid.at(arrow.from);
  const std::string label = labelOf(arrow.step, grid.spacing - kArrowEnds - 3);
  if (last) {
    put(line, at - label.size() - 4, label + ' ' + mark + '>');
  } else {
    put(line, at + 1, '<' + mark + ' ' + label);
  }
}

std::string arrowLine(const Ladder& ladder, const Ladder::Arrow& arrow, const Grid& grid) {
  const std::size_t columns = ladder.columns().size();
  std::string line = emptyLine(grid, columns);
  if (!arrow.after.empty()) {
    put(line, kTimeWidth - 1 - std::min(arrow.after.size(), kTimeWidth - 1), arrow.after);
  }
  line[grid.first - 1] = arrow.step.again ? '*' : ' ';
  if (arrow.from == arrow.to) {
    putLoop(line, arrow, grid, columns > 1 && arrow.from + 1 == columns);
    return line;
  }
  const bool right = arrow.from < arrow.to;
  const std::size_t begin = grid.at(std::min(arrow.from, arrow.to)) + 1;
  const std::size_t end = grid.at(std::max(arrow.from, arrow.to));
  put(line, begin, arrowText(arrow.step, end - begin));
  line[right ? end - 1 : begin] = right ? '>' : '<';
  return line;
}

}  // namespace

Ladder::Ladder(const std::vector<std::string>& heading, const std::vector<Step>& steps) {
  std::transform(heading.begin(), heading.end(), std::back_inserter(heading_), ascii);
  std::optional<std::int64_t> before;
  for (const Step& step : steps) {
    const std::size_t from = columnOf(ascii(step.source));
    const std::size_t to = columnOf(ascii(step.destination));
    const bool both = before.has_value() && step.time.has_value();
    arrows_.push_back({from, to, both ? secondsText(*step.time - *before) : "", step});
    Step& kept = arrows_.back().step;
    kept.name = ascii(step.name);
    kept.reason = ascii(step.reason);
    kept.body = ascii(step.body);
    before = step.time;
    timed_ = timed_ || step.time.has_value();
    again_ = again_ || step.again;
  }
  if (columns_.size() == kMaxColumns && !others_.empty()) {
    others_.insert(others_.begin(), columns_.back());
    columns_.back() = "others";
  }
}

// Returns the column of an endpoint, which gets one if there is room.
std::size_t Ladder::columnOf(const std::string& endpoint) {
  const auto known = std::find(columns_.begin(), columns_.end(), endpoint);
  const auto column = static_cast<std::size_t>(known - columns_.begin());
  if (known != columns_.end()) {
    return column;
  }
  if (columns_.size() < kMaxColumns) {
    columns_.push_back(endpoint);
    return column;
  }
  if (std::find(others_.begin(), others_.end(), endpoint) == others_.end()) {
    if (others_.size() < kMaxOthers) {
      others_.push_back(endpoint);
    } else {
      unnamed_ = true;
    }
  }
  return kMaxColumns - 1;
}

std::vector<std::string> Ladder::legend() const {
  std::vector<std::string> lines;
  if (again_) {
    lines.emplace_back("dotted, *: sent again");
  }
  for (const std::string& other : others_) {
    lines.push_back((&other == &others_.front() ? "others: " : "        ") + other);
  }
  if (unnamed_) {
    lines.emplace_back("        and more");
  }
  return lines;
}

std::string labelOf(const Step& step, std::size_t room) {
  const std::string body = step.body.empty() ? "" : " (" + step.body + ')';
  if (step.name.size() + body.size() > room) {
    return step.name.substr(0, room);
  }
  room -= step.name.size() + body.size();
  std::string reason = step.reason.empty() ? "" : ' ' + step.reason;
  if (reason.size() > room) {
    reason.resize(room < kShortReason ? 0 : reason.find_last_not_of(' ', room - 3) + 1);
    reason.append(reason.empty() ? "" : "..");
  }
  return step.name + reason + body;
}

std::string ladderText(const Ladder& ladder) {
  const Grid grid(ladder);
  std::string lines;
  for (const std::string& line : ladder.heading()) {
    addLine(lines, line);
  }
  lines.append("\n");
  addNames(lines, ladder, grid);
  addLine(lines, emptyLine(grid, ladder.columns().size()));
  for (const Ladder::Arrow& arrow : ladder.arrows()) {
    addLine(lines, arrowLine(ladder, arrow, grid));
  }
  lines.append(ladder.legend().empty() ? "" : "\n");
  for (const std::string& line : ladder.legend()) {
    addLine(lines, line);
  }
  return lines;
}
