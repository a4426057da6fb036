// textWriter.h - writes a text piece by piece and remembers the first failure.
#ifndef SIPUTILITY_BASE_TEXT_WRITER_H
#define SIPUTILITY_BASE_TEXT_WRITER_H

#include <string_view>

#include "base/checkedMath.h"
#include "base/equality.h"
#include "base/stringAccess.h"
#include "wySipString.h"

// Appends pieces to a string. It reserves the room once, since a string grows to exactly what each
// append needs. After a failed step it does nothing more.
class TextWriter {
 public:
  // Reserves room for a text of this total length, the present content included.
  TextWriter(SipString& text, unsigned int length) : text_(text), code_(text.reserve(length)) {}

  // Each appends a piece from outside the string.
  TextWriter& write(std::string_view piece) {
    if (code_ == VARN_OK && !piece.empty()) {
      code_ = SipStringAccess::append(text_, piece.data(), checkedLength(piece.size()));
    }
    return *this;
  }
  TextWriter& write(const char* piece) { return write(std::string_view(piece)); }
  TextWriter& write(const SipString& piece) { return write(view(piece)); }
  TextWriter& write(char piece) { return write(std::string_view(&piece, 1)); }

  // Appends name, "=" and value; only the name if the value is empty.
  TextWriter& writePair(const SipString& name, const SipString& value) {
    write(name);
    return value.length() == 0 ? *this : write('=').write(value);
  }

  // Lets a part of an object append its own text.
  template <typename Part>
  TextWriter& writeOf(const Part& part) {
    if (code_ == VARN_OK) {
      code_ = part.appendToString(text_);
    }
    return *this;
  }

  // Returns the code of the first step that failed, VARN_OK if none did.
  VARN_EXCEPTION_CODES code() const { return code_; }

 private:
  SipString& text_;
  VARN_EXCEPTION_CODES code_;
};

#endif  // SIPUTILITY_BASE_TEXT_WRITER_H
