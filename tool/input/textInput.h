// textInput.h - the text of an input, whatever its encoding.
#ifndef TOOL_TEXT_INPUT_H
#define TOOL_TEXT_INPUT_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "input/input.h"

// Reads an input as text: UTF-8 as it is, without a byte order mark, and UTF-16 as UTF-8. Without a
// mark, a text is UTF-16 if every other one of its first bytes is zero.
class TextInput {
 public:
  explicit TextInput(Input& input);

  // Appends the next bytes to a text. Returns false at the end.
  bool read(std::string& text);

 private:
  enum class Encoding { kUtf8, kUtf16Little, kUtf16Big };

  void convert(std::string_view bytes, std::string& text);
  void append(std::uint16_t unit, std::string& text);

  Input& input_;
  Encoding encoding_;
  std::size_t mark_;    // bytes of the byte order mark that are still to come
  std::string left_;    // half a unit of UTF-16
  std::uint16_t lead_;  // the first half of a surrogate pair; 0 for none
};

#endif  // TOOL_TEXT_INPUT_H
