// stringAccess.h - what the library does with strings and cursors beyond their public operations.
#ifndef SIPUTILITY_BASE_STRING_ACCESS_H
#define SIPUTILITY_BASE_STRING_ACCESS_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

#include "base/log.h"
#include "base/sharedBlock.h"
#include "wySipString.h"

namespace siputility {

struct SipStringAccess {
  // Returns whether the string has a buffer. It has none before its first content and after a
  // failed assignment.
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

  // Moves a cursor forward.
  // Requires: a length of at most that of rest().
  static void advance(SipStrStream& stream, unsigned int length) { stream.position_ += length; }

  // Each replaces the content of a string with bytes from outside it. replace() does what the
  // assignment operator does, its log line included.
  // Fails: VARN_RESOURCE_FAILURE. The string is then empty; after assign() one in a shared block
  // has not changed.
  static VARN_EXCEPTION_CODES assign(SipString& text, std::string_view bytes) {
    return text.assign(bytes.data(), static_cast<unsigned int>(bytes.size()));
  }
  static VARN_EXCEPTION_CODES replace(SipString& text, std::string_view bytes) {
    text.replace(bytes.data(), static_cast<unsigned int>(bytes.size()));
    return hasBuffer(text) ? VARN_OK : VARN_RESOURCE_FAILURE;
  }

  // Logs that a string could not be assigned to.
  static void logNoMemory();

  // Returns whether the string has never had content. Only then may it share().
  static bool isFresh(const SipString& text) {
    return text.buffer_ == nullptr && text.capacity_ == 0;
  }

  // Returns the room in a block for the buffer of a text; none for an empty one.
  static std::size_t roomFor(std::string_view bytes) {
    return bytes.empty() ? 0 : SharedBlock::roomFor(bytes.size() + 1);
  }

  // Makes a fresh string a copy of the bytes, of which there are some, with its buffer in a shared
  // block. It then has a buffer and the capacity 0, which no other string has; its first change
  // takes a buffer of its own.
  // Fails: VARN_RESOURCE_FAILURE.
  static VARN_EXCEPTION_CODES share(SipString& text, std::string_view bytes, SharedBlock& block) {
    auto* const buffer = static_cast<char*>(block.add(bytes.size() + 1));
    if (buffer == nullptr) {
      return VARN_RESOURCE_FAILURE;
    }
    std::memcpy(buffer, bytes.data(), bytes.size());
    buffer[bytes.size()] = '\0';
    text.buffer_ = buffer;
    text.length_ = static_cast<unsigned int>(bytes.size());
    recordBlock("sip_utility/src/wySipString", buffer, bytes.size() + 1);
    return VARN_OK;
  }

  // Appends bytes from outside the string. Inline while the buffer has room, which it mostly has.
  // A string that lost its buffer still has a capacity: hence the test of both.
  // Fails: VARN_RESOURCE_FAILURE.
  static VARN_EXCEPTION_CODES append(SipString& text, const char* bytes, unsigned int length) {
    if (std::uint64_t{text.length_} + length > text.capacity_ || text.buffer_ == nullptr) {
      return text.append(bytes, length);
    }
    std::memcpy(text.buffer_ + text.length_, bytes, length);
    text.length_ += length;
    text.buffer_[text.length_] = '\0';
    return VARN_OK;
  }

 private:
  friend class BorrowedString;
  friend class BorrowedLWSStream;

  // Makes an empty string without a buffer show bytes of another owner, without a copy. A lent
  // string is not a sound SipString: no zero byte ends its content, and its buffer is neither its
  // own nor in the memory log. It may be read by its length and copied from. Nobody may change or
  // destroy it: an assignment writes into the owner's bytes; an append and the destructor free
  // them. So only the borrowers of grammar/borrowed.h lend. They show the string as const, and take
  // it back before its destructor runs.
  static void lend(SipString& text, std::string_view bytes) {
    text.buffer_ = const_cast<char*>(bytes.data());
    text.length_ = static_cast<unsigned int>(bytes.size());
    text.capacity_ = text.length_;
  }

  // Makes a lent string empty and without a buffer again, so that its destructor frees nothing.
  static void takeBack(SipString& text) { lend(text, {}); }

  static void lend(SipStrStream& stream, std::string_view bytes) { lend(stream.text_, bytes); }
  static void takeBack(SipStrStream& stream) { takeBack(stream.text_); }
};

}  // namespace siputility

using siputility::SipStringAccess;

#endif  // SIPUTILITY_BASE_STRING_ACCESS_H
