/// \file
/// The counted string, and the read cursors over a text.
///
/// Lengths, capacities and positions are 32-bit byte counts. A sum of them that overflows ends the
/// process. A string holds any bytes, also zero bytes, and does not share its buffer. A stream owns
/// a copy of its text. An object is used by one thread at a time.
#ifndef WY_SIP_STRING_H
#define WY_SIP_STRING_H

#include "wySipExport.h"

// Internals of the library, no part of its interface.
namespace siputility {
class BorrowedLWSStream;
struct SipStringAccess;
}  // namespace siputility

/// The result codes of the library.
///
/// Operations return them; objects with a last-error field also store them.
enum VARN_EXCEPTION_CODES : unsigned int {
  VARN_OK = 0,
  VARN_RESOURCE_FAILURE = 1,  ///< an allocation failed: a string, stream or node is missing
  VARN_INVALID_INPUT = 3,     ///< empty where text is required, outside the grammar, refused
  VARN_SHORT_INPUT = 4,       ///< more bytes requested than the stream has left
  VARN_NULL_DESTINATION = 5,  ///< no memory to copy to was passed
};

/// A counted, growable byte string.
///
/// The buffer has capacity + 1 bytes. It grows to exactly the requested length and never shrinks.
/// Every change except reserve() writes a zero byte after the content. An operation that returns a
/// failure code has not changed the string.
class SIPUTILITY_EXPORT SipString {
 public:
  /// Makes an empty string; nothing is allocated.
  SipString();

  /// Makes a copy of a zero-terminated text; null makes an empty string. Out of memory the string
  /// is empty, here and in the two constructors below.
  SipString(const char* cstr);  // NOLINT(google-explicit-constructor): literals stand for strings

  /// Makes a copy of `text[0, length)`, zero bytes included.
  SipString(const char* text, unsigned int length);

  /// Makes a copy with a buffer of its own.
  SipString(const SipString& other);

  virtual ~SipString();

  /// Replaces the content with a copy of the other's.
  ///
  /// Out of memory, "SipString::operator= | append failed" is logged (level 4), and the string is
  /// empty and has no buffer. Its capacity keeps the old value, so a later append that fits into it
  /// returns success and stores nothing.
  SipString& operator=(const SipString& other);

  /// Returns the number of content bytes, without the terminator.
  SIPUTILITY_EXPORT unsigned int length() const { return length_; }

  /// Returns the content; never null. For an empty string it returns a static empty text, also if
  /// the string has a buffer. The pointer lives until the string next changes. After reserve() the
  /// content is not terminated until the next append.
  SIPUTILITY_EXPORT const char* c_str() const { return length_ == 0 ? "" : buffer_; }

  /// Returns true for every string, whether it has a buffer or not.
  bool valid() const;

  /// Makes room for length bytes of content. If the buffer grows, writes a zero byte at index
  /// length and leaves the bytes between the content and that index undefined.
  ///
  /// Fails: VARN_RESOURCE_FAILURE.
  VARN_EXCEPTION_CODES reserve(unsigned int length);

  /// Appends `text[0, length)`. The text may be in this string's own buffer; the result is the same
  /// as for a copy of the text.
  ///
  /// Fails: VARN_INVALID_INPUT for null with a length above 0, VARN_RESOURCE_FAILURE.
  VARN_EXCEPTION_CODES append(const char* text, unsigned int length);

  /// Appends a zero-terminated text; null appends nothing.
  ///
  /// Fails: VARN_RESOURCE_FAILURE.
  VARN_EXCEPTION_CODES append(const char* cstr);

  /// Appends another string or this one.
  ///
  /// Fails: VARN_RESOURCE_FAILURE.
  VARN_EXCEPTION_CODES append(const SipString& other);

  /// Appends one byte, which may be zero.
  ///
  /// Fails: VARN_RESOURCE_FAILURE.
  VARN_EXCEPTION_CODES append(char byte);

  /// Empties the string; buffer and capacity stay.
  void clear();

  /// Copies up to length bytes from the position into text, without a terminator. Returns the
  /// number of bytes copied; 0 for null and for a position at or past the end.
  unsigned int copy(char* text, unsigned int length, unsigned int position) const;

  /// Replaces the content of out with up to length bytes from the position. out may be this string.
  /// A position at the end makes out empty.
  ///
  /// Fails: VARN_INVALID_INPUT for a position past the end, and out is untouched;
  /// VARN_RESOURCE_FAILURE, and out is empty.
  VARN_EXCEPTION_CODES copy(SipString& out, unsigned int length, unsigned int position) const;

  /// Compares byte by byte, as unsigned bytes. If two bytes differ, returns a number with the sign
  /// of the difference of the first two that do; else the length of this string minus the length of
  /// the other text. Null counts as an empty text.
  ///
  /// If this string is shorter than the other text and equals its beginning, the process ends.
  ///
  /// Requires: this cannot happen; equal() of wySipCxx.h has no such condition.
  /// @{
  int compare(const SipString& other) const;
  int compare(const char* text, unsigned int length) const;
  int compare(const char* cstr) const;
  /// @}

  /// Compares as compare() does, but ignores the case of ASCII letters and returns the difference
  /// of the first two bytes that differ, in lower case.
  /// @{
  int caseCompare(const SipString& other) const;
  int caseCompare(const char* text, unsigned int length) const;
  int caseCompare(const char* cstr) const;
  /// @}

 private:
  friend struct siputility::SipStringAccess;

  SIPUTILITY_HIDDEN void replace(const char* text, unsigned int length);
  SIPUTILITY_HIDDEN void releaseBuffer();
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES assign(const char* text, unsigned int length);
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES appendGrowing(const char* text, unsigned int length,
                                                       unsigned int newLength);
  SIPUTILITY_HIDDEN int lengthDifference(unsigned int otherLength) const;

  char* buffer_;
  unsigned int length_;
  unsigned int capacity_;
};

/// A read cursor over its own copy of a text.
///
/// It can look ahead without moving, and moves only forward. The text never changes.
class SIPUTILITY_EXPORT SipStrStream {
 public:
  /// Starts at the first byte of a copy of the text; see valid() for out of memory.
  SipStrStream(const SipString& text);  // NOLINT(google-explicit-constructor): texts are read so

  /// Makes an independent cursor over a copy of the text, at the same position.
  SipStrStream(const SipStrStream& other);

  SipStrStream& operator=(const SipStrStream&) = delete;

  virtual ~SipStrStream();

  /// Returns whether nothing is left to read.
  virtual bool done() const;

  /// Returns the length of the complete text, whatever the position.
  unsigned int length() const;

  /// Returns the index of the next unread byte, at most length().
  unsigned int pos() const;

  /// Returns false if there was no memory for the copy of the text; the stream is then empty.
  bool valid() const;

  /// Returns the byte at the offset from the position as 0 to 255; -1 at and past the end.
  int peek(unsigned int offset) const;

  /// Copies the next length bytes to text, without a terminator, and moves past them. A length of 0
  /// always succeeds. After a failure the position has not changed, but text may hold the bytes
  /// that were left.
  ///
  /// Fails: VARN_NULL_DESTINATION, VARN_SHORT_INPUT.
  VARN_EXCEPTION_CODES get(char* text, unsigned int length);

  /// Replaces the content of out with the next length bytes, or as many as are left, and moves past
  /// them. Short input is no failure.
  ///
  /// Fails: VARN_RESOURCE_FAILURE, and the position has not changed.
  VARN_EXCEPTION_CODES get(unsigned int length, SipString& out);

  /// Moves past the next length bytes.
  ///
  /// Fails: VARN_SHORT_INPUT, and the position has not changed.
  VARN_EXCEPTION_CODES discard(unsigned int length);

 private:
  friend struct siputility::SipStringAccess;
  friend class SipLWSStrStream;

  SIPUTILITY_HIDDEN SipStrStream();

  SipString text_;
  unsigned int position_;
  bool copied_;
};

/// A cursor over a text with optional linear white space around it.
///
/// It starts after one leading LWS and treats one trailing LWS as the end. SipMatchLWS describes
/// what counts as one LWS.
class SIPUTILITY_EXPORT SipLWSStrStream : public SipStrStream {
 public:
  /// Starts after the LWS at the beginning of the text, if there is one.
  explicit SipLWSStrStream(const SipString& text);

  ~SipLWSStrStream() override;

  /// Returns whether nothing or exactly one LWS is left.
  bool done() const override;

 private:
  friend class siputility::BorrowedLWSStream;

  SIPUTILITY_HIDDEN SipLWSStrStream();
};

#endif  // WY_SIP_STRING_H
