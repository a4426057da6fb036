// input.h - a file or standard input, read once from front to end, its first bytes seen before.
#ifndef TOOL_INPUT_H
#define TOOL_INPUT_H

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>

class Input {
 public:
  // As many bytes as it pays to read at once.
  static constexpr std::size_t kPieceSize = std::size_t{1} << 16;

  // Opens a file, or standard input for `-`.
  explicit Input(const std::string& name);

  // Returns whether reading goes well; a directory, for one, cannot be read.
  bool readable() const { return readable_; }

  // Returns what the input begins with, up to 12 bytes. It is read all the same.
  std::string_view head() const { return head_; }

  // Returns how many bytes there are; 0 where that shows at the end only.
  std::size_t size() const { return size_; }

  // Returns how many bytes are read.
  std::size_t position() const { return position_; }

  // Reads and returns how many bytes; 0 at the end.
  std::size_t read(char* buffer, std::size_t length);

  // Appends what is left to a text; false, and the rest is not read, when that would be longer than
  // so many bytes.
  bool readAll(std::string& text, std::size_t most = SIZE_MAX);

 private:
  std::size_t readFile(char* buffer, std::size_t length);

  std::ifstream file_;
  std::istream& in_;
  bool readable_;
  std::string head_;
  std::size_t size_;
  std::size_t position_;
};

#endif  // TOOL_INPUT_H
