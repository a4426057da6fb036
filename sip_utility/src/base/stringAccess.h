// stringAccess.h - what the library may do with strings and cursors beyond their public
// operations.
#ifndef SIPUTILITY_BASE_STRING_ACCESS_H
#define SIPUTILITY_BASE_STRING_ACCESS_H

#include <cstring>
#include <string_view>
#include <utility>

#include "wySipString.h"

namespace siputility {

struct SipStringAccess {
  // Returns whether the string has ever got a buffer and still holds it; a failed assignment
  // takes it away.
  static bool hasBuffer(const SipString& text) { return text.buffer_ != nullptr; }

  // Exchanges two strings with their buffers; cannot fail.
  static void swap(SipString& a, SipString& b) {
    std::swap(a.buffer_, b.buffer_);
    std::swap(a.length_, b.length_);
    std::swap(a.capacity_, b.capacity_);
  }

  // Returns the bytes of a cursor's text that are not read yet.
  static std::string_view rest(const SipStrStream& stream) {
    return {stream.text_.buffer_ + stream.position_, stream.text_.length_ - stream.position_};
  }

  // Moves a cursor on, at most to its end.
  static void advance(SipStrStream& stream, unsigned int length) { stream.position_ += length; }

  // Each replaces the content of a string by bytes that lie elsewhere; replace() as an assignment
  // does, with its log line.
  // Fails: VARN_RESOURCE_FAILURE, the string is then empty.
  static VARN_EXCEPTION_CODES assign(SipString& text, std::string_view bytes) {
    return text.assign(bytes.data(), static_cast<unsigned int>(bytes.size()));
  }
  static VARN_EXCEPTION_CODES replace(SipString& text, std::string_view bytes) {
    text.replace(bytes.data(), static_cast<unsigned int>(bytes.size()));
    return hasBuffer(text) ? VARN_OK : VARN_RESOURCE_FAILURE;
  }

  // Appends bytes that lie elsewhere, at once where there is room.
  // Fails: VARN_RESOURCE_FAILURE.
  static VARN_EXCEPTION_CODES append(SipString& text, const char* bytes, unsigned int length) {
    if (text.capacity_ - text.length_ < length || text.buffer_ == nullptr) {
      return text.append(bytes, length);
    }
    std::memcpy(text.buffer_ + text.length_, bytes, length);
    text.length_ += length;
    text.buffer_[text.length_] = '\0';
    return VARN_OK;
  }

 private:
  friend class BorrowedString;
  friend class BorrowedStream;
  friend class BorrowedLWSStream;

  // Shows the bytes through a string without a buffer; not terminated, not to be changed.
  static void lend(SipString& text, std::string_view bytes) {
    text.buffer_ = const_cast<char*>(bytes.data());
    text.length_ = static_cast<unsigned int>(bytes.size());
    text.capacity_ = text.length_;
  }

  static void takeBack(SipString& text) { lend(text, {}); }

  static void lend(SipStrStream& stream, std::string_view bytes) { lend(stream.text_, bytes); }
  static void takeBack(SipStrStream& stream) { takeBack(stream.text_); }
};

}  // namespace siputility

using siputility::SipStringAccess;

#endif  // SIPUTILITY_BASE_STRING_ACCESS_H
