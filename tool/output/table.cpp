// table.cpp - cells below each other, a line at a time.
#include "output/table.h"

#include <algorithm>
#include <numeric>
#include <string_view>
#include <utility>

#include "text/text.h"

namespace {

constexpr std::string_view kCut = "~";

// Returns where the character with this number begins.
std::size_t offsetOf(std::string_view text, std::size_t number) {
  std::size_t offset = 0;
  for (; offset < text.size() && number != 0; --number) {
    ++offset;
    while (offset < text.size() && isContinued(text[offset])) {
      ++offset;
    }
  }
  return offset;
}

// Returns the text in this width, with `~` for what is left out.
std::string cut(const std::string& text, std::size_t width, bool bothEnds) {
  const std::size_t length = widthOf(text);
  if (length <= width) {
    return text;
  }
  const std::size_t kept = width - std::min(width, kCut.size());
  const std::size_t atEnd = bothEnds ? kept / 2 : 0;
  return text.substr(0, offsetOf(text, kept - atEnd)).append(kCut.substr(0, width - kept)) +
         text.substr(offsetOf(text, length - atEnd));
}

}  // namespace

Table::Table(std::vector<Column> columns, std::size_t bound)
    : columns_(std::move(columns)), bound_(bound == 0 ? SIZE_MAX : bound), grows_(true) {
  for (const Column& column : columns_) {
    widths_.push_back(column.usual);
  }
  grows_ = room() != 0;
  if (!grows_) {
    shareOut();
  }
}

// Gives each column its least width and its share of what is left.
void Table::shareOut() {
  std::size_t wanted = 0;
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    wanted += columns_[column].usual - columns_[column].least;
    widths_[column] = columns_[column].least;
  }
  const std::size_t left = std::min(room(), wanted);
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    const std::size_t more = columns_[column].usual - columns_[column].least;
    widths_[column] += wanted == 0 ? 0 : left * more / wanted;
  }
}

std::string Table::line(const std::vector<std::string>& cells) {
  std::string line;
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    line.append(column == 0 ? "" : columns_[column].before);
    if (column + 1 == columns_.size()) {
      line += cut(cells[column], bound_ - std::min(widthOf(line), bound_), false);
    } else {
      line += fitted(column, cells[column]);
    }
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return cut(line, bound_, false);
}

// Returns how much longer lines may become.
std::size_t Table::room() const {
  const std::size_t used = std::accumulate(widths_.begin(), widths_.end(), std::size_t{0});
  const std::size_t between = std::accumulate(
      columns_.begin() + 1, columns_.end(), std::size_t{0},
      [](std::size_t sum, const Column& column) { return sum + widthOf(column.before); });
  return bound_ - std::min(bound_, used + between);
}

std::string Table::fitted(std::size_t column, const std::string& cell) {
  std::size_t& width = widths_[column];
  if (columns_[column].side == Column::Side::kRight) {
    width = std::max(width, widthOf(cell));
    return std::string(width - widthOf(cell), ' ') + cell;
  }
  const std::size_t wanted = widthOf(cell);
  if (grows_ && wanted > width && wanted <= columns_[column].most) {
    width += std::min(wanted - width, room());
  }
  const std::string text = bound_ == SIZE_MAX ? cell : cut(cell, width, columns_[column].bothEnds);
  return text + std::string(width - std::min(width, widthOf(text)), ' ');
}
