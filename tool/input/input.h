// input.h - a file or standard input, read once from start to end; its first bytes are known first.
//
// A live input has more bytes later: a pipe, a terminal, a file that is followed. A read waits for
// them and returns those that are there; an Interrupt ends it.
#ifndef TOOL_INPUT_H
#define TOOL_INPUT_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "input/gzipReader.h"

class Input {
 public:
  // How many bytes to read at once.
  static constexpr std::size_t kPieceSize = std::size_t{1} << 16;

  // Opens a file, or standard input for `-`. The end of a regular file that is followed is not the
  // end of the input, until the file becomes shorter.
  explicit Input(const std::string& name, bool follow = false);
  ~Input();
  Input(const Input&) = delete;
  Input& operator=(const Input&) = delete;

  // Returns whether it could be opened and every read succeeded; a directory cannot be read.
  bool readable() const { return error_ == 0; }

  // Returns the system's words for why it cannot be read; "" if it can.
  std::string error() const;

  // Returns whether it is a live one.
  bool live() const { return pipe_ || follow_; }

  // Takes what to do each time a live input has had no byte for a moment.
  void whenQuiet(std::function<void()> quiet) { quiet_ = std::move(quiet); }

  // Returns whether it ended because a followed file became shorter, which is at its start then.
  bool becameShorter() const { return shorter_; }

  // Reads the first bytes, and makes gzip data what it holds; for a call before the first read().
  void begin();

  // Returns what is wrong with the gzip data that was read, or "".
  const char* fault() const;

  // Returns the first bytes of the input, up to 12, after begin(). read() returns them as well.
  std::string_view head() const { return head_; }

  // Returns how many bytes of the file were read.
  std::size_t position() const { return fileRead_; }

  // Reads what is there and returns how many bytes; 0 at the end.
  std::size_t read(char* buffer, std::size_t length);

  // Appends the rest to a text.
  void readAll(std::string& text);

 private:
  std::size_t readExpanded(char* buffer, std::size_t length);
  std::size_t readFile(char* buffer, std::size_t length);
  std::string firstBytes();
  bool waitForBytes();
  bool waitForMore();

  int file_;
  int error_;  // of the first failure; 0 for none
  std::string head_;
  std::size_t position_;
  std::size_t fileRead_;
  std::unique_ptr<GzipReader> gzip_;
  bool pipe_;    // or a terminal: not a regular file
  bool follow_;  // a regular file
  bool shorter_;
  std::function<void()> quiet_;
  bool quietKnown_;  // since the last byte
};

#endif  // TOOL_INPUT_H
