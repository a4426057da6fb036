// wySipString.h - text: the counted string and the read cursors over it.
//
// Lengths, capacities and positions are 32-bit byte counts; a sum of them that wraps ends the
// process. A string holds any bytes, zero bytes among them, and owns its buffer alone; a stream
// owns a copy of its text. One thread at a time for each object.
#ifndef WY_SIP_STRING_H
#define WY_SIP_STRING_H

#include "wySipExport.h"

// Internals of the library, no part of its interface.
namespace siputility {
class BorrowedLWSStream;
class BorrowedStream;
struct SipStringAccess;
}  // namespace siputility

// The result codes of the library. Operations return them; objects with a last-error field
// store them there as well.
enum VARN_EXCEPTION_CODES : unsigned int {
  VARN_OK = 0,
  VARN_RESOURCE_FAILURE = 1,  // an allocation failed: a string, stream or node is missing
  VARN_INVALID_INPUT = 3,     // empty where text is required, outside the grammar, refused
  VARN_SHORT_INPUT = 4,       // more bytes asked for than the stream has left
  VARN_NULL_DESTINATION = 5,  // nowhere to copy to
};

// A counted, growable byte string. Its buffer has capacity + 1 bytes; it grows to exactly the
// length asked for and never shrinks. Every change but reserve() ends with a zero byte behind
// the content.
//
// Every operation that returns a code leaves the string as it was when it fails.
class SIPUTILITY_EXPORT SipString {
 public:
  // Makes an empty string; nothing is allocated.
  SipString();

  // Makes a copy of a zero-terminated text; null gives an empty string. Out of memory leaves the
  // string empty, here and in the two constructors below.
  SipString(const char* cstr);  // NOLINT(google-explicit-constructor): literals stand for strings

  // Makes a copy of text[0, length), zero bytes included.
  SipString(const char* text, unsigned int length);

  // Makes a copy with a buffer of its own.
  SipString(const SipString& other);

  virtual ~SipString();

  // Replaces the content with a copy of the other's. Logs "SipString::operator= | append failed"
  // (level 4) when memory runs out: the string is then empty and without a buffer, but keeps its
  // old capacity figure, so that later appends which fit that figure return success and store
  // nothing.
  SipString& operator=(const SipString& other);

  // Returns the number of content bytes, the terminator not counted.
  unsigned int length() const;

  // Returns the content, never null: an empty string gives a static "", with or without a buffer.
  // The pointer lives until the string next changes. After reserve() the content is not
  // terminated before the next append.
  const char* c_str() const;

  // Returns true for every string there is; it does not look at the buffer.
  bool valid() const;

  // Makes room for length bytes of content. Writes a zero byte at index length when the buffer
  // grows and leaves the bytes between the content and it as they come.
  // Fails: VARN_RESOURCE_FAILURE.
  VARN_EXCEPTION_CODES reserve(unsigned int length);

  // Appends text[0, length). The text may lie in this string's own buffer; the result is as if
  // it had been copied first.
  // Fails: VARN_INVALID_INPUT for null with a length, VARN_RESOURCE_FAILURE.
  VARN_EXCEPTION_CODES append(const char* text, unsigned int length);

  // Appends a zero-terminated text; null appends nothing.
  // Fails: VARN_RESOURCE_FAILURE.
  VARN_EXCEPTION_CODES append(const char* cstr);

  // Appends another string or this one.
  // Fails: VARN_RESOURCE_FAILURE.
  VARN_EXCEPTION_CODES append(const SipString& other);

  // Appends one byte, zero included.
  // Fails: VARN_RESOURCE_FAILURE.
  VARN_EXCEPTION_CODES append(char byte);

  // Empties the string; buffer and capacity stay.
  void clear();

  // Copies up to length bytes from the position into text, without a terminator. Returns the
  // number of bytes copied; 0 for null and for a position at or behind the end.
  unsigned int copy(char* text, unsigned int length, unsigned int position) const;

  // Replaces the content of out, which may be this string, with up to length bytes from the
  // position; a position at the end gives an empty string.
  // Fails: VARN_INVALID_INPUT for a position behind the end, out is untouched;
  // VARN_RESOURCE_FAILURE, out is then empty.
  VARN_EXCEPTION_CODES copy(SipString& out, unsigned int length, unsigned int position) const;

  // Each compares byte by byte, as unsigned bytes, and returns the difference of the first two
  // that differ (compare: any number of that sign), else own length - other length. Where this
  // string is shorter and begins the other, that difference goes below zero, which ends the
  // process: to be used where that cannot be. Null counts as an empty text.
  int compare(const SipString& other) const;
  int compare(const char* text, unsigned int length) const;
  int compare(const char* cstr) const;

  // As compare(), ASCII letters without regard to case.
  int caseCompare(const SipString& other) const;
  int caseCompare(const char* text, unsigned int length) const;
  int caseCompare(const char* cstr) const;

 private:
  friend struct siputility::SipStringAccess;

  SIPUTILITY_HIDDEN void replace(const char* text, unsigned int length);
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES assign(const char* text, unsigned int length);
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES appendGrowing(const char* text, unsigned int length,
                                                       unsigned int newLength);
  SIPUTILITY_HIDDEN int lengthDifference(unsigned int otherLength) const;

  char* buffer_;
  unsigned int length_;
  unsigned int capacity_;
};

// A read cursor over its own copy of a text. It looks ahead without moving and moves only
// forward; the text never changes.
class SIPUTILITY_EXPORT SipStrStream {
 public:
  // Starts at the first byte of a copy of the text; see valid() for out of memory.
  SipStrStream(const SipString& text);  // NOLINT(google-explicit-constructor): texts are read so

  // Makes an independent cursor over a copy of the text, at the same position.
  SipStrStream(const SipStrStream& other);

  SipStrStream& operator=(const SipStrStream&) = delete;

  virtual ~SipStrStream();

  // Returns whether nothing is left to read.
  virtual bool done() const;

  // Returns the length of the whole text, whatever the position.
  unsigned int length() const;

  // Returns the index of the next unread byte, at most length().
  unsigned int pos() const;

  // Returns false when there was no memory for the copy of the text; the stream is then empty.
  bool valid() const;

  // Returns the byte at the offset from the position as 0 to 255, -1 at and behind the end.
  int peek(unsigned int offset) const;

  // Copies the next length bytes to text, without a terminator, and moves behind them; 0 bytes
  // always succeed. On failure the position stays, but text may hold the bytes there were.
  // Fails: VARN_NULL_DESTINATION, VARN_SHORT_INPUT.
  VARN_EXCEPTION_CODES get(char* text, unsigned int length);

  // Replaces the content of out with the next length bytes, or as many as are left, and moves
  // behind them; short input is no failure.
  // Fails: VARN_RESOURCE_FAILURE, the position stays.
  VARN_EXCEPTION_CODES get(unsigned int length, SipString& out);

  // Moves length bytes on.
  // Fails: VARN_SHORT_INPUT, the position stays.
  VARN_EXCEPTION_CODES discard(unsigned int length);

 private:
  friend struct siputility::SipStringAccess;
  friend class SipLWSStrStream;
  friend class siputility::BorrowedStream;

  SIPUTILITY_HIDDEN SipStrStream();

  SipString text_;
  unsigned int position_;
  bool copied_;
};

// A cursor over text with linear white space around it: it starts behind one leading LWS and
// counts a trailing LWS as the end. LWS is matched all or nothing, see SipMatchLWS.
class SIPUTILITY_EXPORT SipLWSStrStream : public SipStrStream {
 public:
  // Starts behind the LWS that the text begins with, if any.
  explicit SipLWSStrStream(const SipString& text);

  ~SipLWSStrStream() override;

  // Returns whether nothing or exactly one LWS is left.
  bool done() const override;

 private:
  friend class siputility::BorrowedLWSStream;

  SIPUTILITY_HIDDEN SipLWSStrStream();
};

#endif  // WY_SIP_STRING_H
