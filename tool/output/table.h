// table.h - cells below each other, a line at a time: no line waits for the widths of later ones.
#ifndef TOOL_TABLE_H
#define TOOL_TABLE_H

#include <cstddef>
#include <string>
#include <vector>

struct Column {
  enum class Side { kLeft, kRight };

  // How many columns of the terminal it has in narrow lines, in those with room, and after cells of
  // this length; longer ones, from an enemy, widen nothing.
  std::size_t least;
  std::size_t usual;
  std::size_t most;
  Side side = Side::kLeft;    // where the cells are; at the right, such as numbers, none is cut
  bool bothEnds = false;      // a cut cell keeps its end as well
  const char* before = "  ";  // what is between it and the column before
};

// Lines without room for the usual widths are shared out once; in longer ones each column grows
// with its cells. A cell that is longer is cut, or moves the cells after it where the length of a
// line has no bound. The last column takes what is left.
class Table {
 public:
  // Lines have at most so many columns of a terminal; 0 for no bound.
  Table(std::vector<Column> columns, std::size_t bound);

  // Returns the line of these cells, one for each column, each fit for a terminal.
  std::string line(const std::vector<std::string>& cells);

 private:
  void shareOut();
  std::size_t room() const;
  std::string fitted(std::size_t column, const std::string& cell);

  std::vector<Column> columns_;
  std::vector<std::size_t> widths_;
  std::size_t bound_;
  bool grows_;
};

#endif  // TOOL_TABLE_H
