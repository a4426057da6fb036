// textWriter.h - writes a text piece by piece and remembers the first failure.
#ifndef SIPUTILITY_BASE_TEXT_WRITER_H
#define SIPUTILITY_BASE_TEXT_WRITER_H

#include <string_view>

#include "base/checkedMath.h"
#include "base/equality.h"
#include "base/stringAccess.h"
#include "wySipString.h"

// Appends to a string that it reserves room in once; after a failed step it does nothing more.
class TextWriter {
 public:
  // Reserves room for a text of the given length in all, what the string holds included.
  TextWriter(SipString& text, unsigned int length) : text_(text), code_(text.reserve(length)) {}

  // Each appends a piece that does not lie in the string.
  TextWriter& write(std::string_view piece) {
    if (code_ == VARN_OK && !piece.empty()) {
      code_ = SipStringAccess::append(text_, piece.data(), checkedLength(piece.size()));
    }
    return *this;
  }
  TextWriter& write(const char* piece) { return write(std::string_view(piece)); }
  TextWriter& write(const SipString& piece) { return write(view(piece)); }
  TextWriter& write(char piece) { return write(std::string_view(&piece, 1)); }

  // Appends name, "=" and value; without a value only the name.
  TextWriter& writePair(const SipString& name, const SipString& value) {
    write(name);
    return value.length() == 0 ? *this : write('=').write(value);
  }

  // Has a part of an object append its own text.
  template <typename Part>
  TextWriter& writeOf(const Part& part) {
    if (code_ == VARN_OK) {
      code_ = part.appendToString(text_);
    }
    return *this;
  }

  // Returns the code of the first step that failed; success when none did.
  VARN_EXCEPTION_CODES code() const { return code_; }

 private:
  SipString& text_;
  VARN_EXCEPTION_CODES code_;
};

#endif  // SIPUTILITY_BASE_TEXT_WRITER_H
