// input.h - a file or standard input, read once from start to end; its first bytes are known first.
#ifndef TOOL_INPUT_H
#define TOOL_INPUT_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "input/gzipReader.h"

class Input {
 public:
  // How many bytes to read at once.
  static constexpr std::size_t kPieceSize = std::size_t{1} << 16;

  // Opens a file, or standard input for `-`.
  explicit Input(const std::string& name);
  ~Input();
  Input(const Input&) = delete;
  Input& operator=(const Input&) = delete;

  // Returns whether it could be opened and every read succeeded; a directory cannot be read.
  bool readable() const { return error_ == 0; }

  // Returns the system's words for why it cannot be read; "" if it can.
  std::string error() const;

  // Makes gzip data what it holds; for a call before the first read(). Does nothing to other data.
  void expand();

  // Returns whether it is gzip data that expand() made what it holds.
  bool expanded() const { return gzip_ != nullptr; }

  // Returns what is wrong with the gzip data that was read, or "".
  const char* fault() const;

  // Returns the first bytes of the input, up to 12. read() returns them as well.
  std::string_view head() const { return head_; }

  // Returns how many bytes there are; 0 when that is not known.
  std::size_t size() const { return size_; }

  // Returns how many bytes of the file were read.
  std::size_t position() const { return fileRead_; }

  // Reads and returns how many bytes; 0 at the end.
  std::size_t read(char* buffer, std::size_t length);

  // Appends the rest to a text.
  void readAll(std::string& text);

 private:
  std::size_t readExpanded(char* buffer, std::size_t length);
  std::size_t readFile(char* buffer, std::size_t length);

  int file_;
  int error_;  // of the first failure; 0 for none
  std::string head_;
  std::size_t size_;
  std::size_t position_;
  std::size_t fileRead_;
  std::unique_ptr<GzipReader> gzip_;
};

#endif  // TOOL_INPUT_H
