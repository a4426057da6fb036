// wySipString.cpp - the counted string and the read cursors over it.
#include "wySipString.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "base/allocationWatch.h"
#include "base/charClass.h"
#include "base/checkedMath.h"
#include "base/log.h"
#include "base/recorded.h"
#include "base/sharedBlock.h"
#include "base/stringAccess.h"
#include "grammar/grammar.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wySipString";

// Returns a recorded buffer for length bytes and a terminator; null if out of memory.
char* newBuffer(unsigned int length) {
  auto* const buffer = newRecordedArray<char>(kSourceFile, checkedSum(length, 1));
  if (buffer == nullptr) {
    AllocationWatch::noteFailure();
  }
  return buffer;
}

// Copies count bytes to a place with room bytes; the two may overlap. Ends the process if they do
// not fit.
void copyGuarded(char* to, unsigned int room, const char* from, unsigned int count) {
  if (room < count) {
    failStopCopy(kSourceFile);
  }
  if (count != 0) {
    std::memmove(to, from, count);
  }
}

unsigned int cstrLength(const char* cstr) {
  return cstr == nullptr ? 0 : checkedLength(std::strlen(cstr));
}

// These two are inline. The library exports them for callers that were built before they were.
[[gnu::used]] unsigned int (SipString::*const kLength)() const = &SipString::length;
[[gnu::used]] const char* (SipString::*const kCstr)() const = &SipString::c_str;

}  // namespace

SipString::SipString() : buffer_(nullptr), length_(0), capacity_(0) {}

SipString::SipString(const char* cstr) : SipString(cstr, cstrLength(cstr)) {}

SipString::SipString(const char* text, unsigned int length) : SipString() {
  if (text != nullptr) {
    assign(text, length);
  }
}

SipString::SipString(const SipString& other) : SipString(other.buffer_, other.length_) {}

SipString::~SipString() { releaseBuffer(); }

SipString& SipString::operator=(const SipString& other) {
  if (this != &other) {
    replace(other.buffer_, other.length_);
  }
  return *this;
}

// Always true, and meant to be: it only shows that the object exists.
bool SipString::valid() const { return true; }

VARN_EXCEPTION_CODES SipString::reserve(unsigned int length) {
  if (capacity_ >= length) {
    return VARN_OK;
  }
  if (capacity_ != 0 || buffer_ == nullptr) {
    return appendGrowing(nullptr, 0, length);
  }
  // A string in a shared block stays terminated: it may have room for the length already.
  const VARN_EXCEPTION_CODES code = appendGrowing(nullptr, 0, std::max(length, length_));
  buffer_[length_] = '\0';
  return code;
}

VARN_EXCEPTION_CODES SipString::append(const char* text, unsigned int length) {
  if (length == 0) {
    return VARN_OK;
  }
  if (text == nullptr) {
    return VARN_INVALID_INPUT;
  }
  const unsigned int newLength = checkedSum(length_, length);
  if (capacity_ < newLength) {
    return appendGrowing(text, length, newLength);
  }
  if (buffer_ == nullptr) {
    return VARN_OK;  // a failed assignment took the buffer: stores nothing, on purpose
  }
  copyGuarded(buffer_ + length_, checkedDifference(capacity_, length_), text, length);
  length_ = newLength;
  buffer_[length_] = '\0';
  return VARN_OK;
}

VARN_EXCEPTION_CODES SipString::append(const char* cstr) { return append(cstr, cstrLength(cstr)); }

VARN_EXCEPTION_CODES SipString::append(const SipString& other) {
  return append(other.buffer_, other.length_);
}

VARN_EXCEPTION_CODES SipString::append(char byte) {
  return SipStringAccess::append(*this, &byte, 1);
}

void SipString::clear() {
  if (buffer_ != nullptr) {
    buffer_[0] = '\0';
  }
  length_ = 0;
}

unsigned int SipString::copy(char* text, unsigned int length, unsigned int position) const {
  if (text == nullptr || position >= length_) {
    return 0;
  }
  const unsigned int count = std::min(checkedDifference(length_, position), length);
  copyGuarded(text, length, buffer_ + position, count);
  return count;
}

VARN_EXCEPTION_CODES SipString::copy(SipString& out, unsigned int length,
                                     unsigned int position) const {
  if (position > length_) {
    return VARN_INVALID_INPUT;
  }
  const unsigned int end = std::min(checkedSum(position, length), length_);
  const unsigned int count = checkedDifference(end, position);
  if (count == 0) {
    out.clear();
    return VARN_OK;
  }
  const char* from = buffer_ + position;
  if (&out == this) {
    copyGuarded(out.buffer_, length_, from, count);
    out.length_ = count;
    out.buffer_[count] = '\0';
    return VARN_OK;
  }
  out.clear();
  return out.append(from, count);
}

int SipString::compare(const SipString& other) const {
  return compare(other.buffer_, other.length_);
}

int SipString::compare(const char* text, unsigned int length) const {
  const unsigned int otherLength = text == nullptr ? 0 : length;
  const unsigned int common = std::min(length_, otherLength);
  const int difference = common == 0 ? 0 : std::memcmp(buffer_, text, common);
  return difference != 0 ? difference : lengthDifference(otherLength);
}

int SipString::compare(const char* cstr) const { return compare(cstr, cstrLength(cstr)); }

int SipString::caseCompare(const SipString& other) const {
  return caseCompare(other.buffer_, other.length_);
}

int SipString::caseCompare(const char* text, unsigned int length) const {
  const unsigned int otherLength = text == nullptr ? 0 : length;
  const unsigned int common = std::min(length_, otherLength);
  for (unsigned int i = 0; i < common; ++i) {
    const int difference = foldCase(buffer_[i]) - foldCase(text[i]);
    if (difference != 0) {
      return difference;
    }
  }
  return lengthDifference(otherLength);
}

int SipString::caseCompare(const char* cstr) const { return caseCompare(cstr, cstrLength(cstr)); }

// Assigns a text from outside this string.
void SipString::replace(const char* text, unsigned int length) {
  if (assign(text, length) != VARN_OK) {
    SipStringAccess::logNoMemory();
    releaseBuffer();
    // The capacity stays, on purpose: a later append that fits it succeeds and stores nothing. That
    // of a string in a shared block is its present length.
    buffer_ = nullptr;
    capacity_ = std::max(capacity_, length_);
    length_ = 0;
  }
}

void SipStringAccess::logNoMemory() {
  logFailure(kSourceFile, "SipString::operator= | append failed");
}

// Replaces the content with a text from outside this string. A string without capacity gets its
// buffer here, without the copies of appendGrowing().
VARN_EXCEPTION_CODES SipString::assign(const char* text, unsigned int length) {
  if (capacity_ != 0 || length == 0) {
    clear();
    return append(text, length);
  }
  char* buffer = newBuffer(length);
  if (buffer == nullptr) {
    return VARN_RESOURCE_FAILURE;
  }
  std::memcpy(buffer, text, length);
  buffer[length] = '\0';
  releaseBuffer();
  buffer_ = buffer;
  length_ = length;
  capacity_ = length;
  return VARN_OK;
}

// Removes the buffer from the memory log and frees it. A buffer without capacity is in a shared
// block: see SipStringAccess::share().
void SipString::releaseBuffer() {
  if (buffer_ == nullptr) {
    return;
  }
  forgetBlock(buffer_);
  if (capacity_ == 0) {
    SharedBlock::release(buffer_);
  } else {
    delete[] buffer_;
  }
}

// Moves the content to a buffer for newLength bytes and appends the text. The text may be in the
// old buffer, which is therefore freed last.
VARN_EXCEPTION_CODES SipString::appendGrowing(const char* text, unsigned int length,
                                              unsigned int newLength) {
  char* grown = newBuffer(newLength);
  if (grown == nullptr) {
    return VARN_RESOURCE_FAILURE;
  }
  if (buffer_ != nullptr) {
    copyGuarded(grown, newLength, buffer_, length_);
  }
  copyGuarded(grown + length_, checkedDifference(newLength, length_), text, length);
  grown[newLength] = '\0';
  releaseBuffer();
  buffer_ = grown;
  length_ = checkedSum(length_, length);
  capacity_ = newLength;
  return VARN_OK;
}

// Ends the process if this string is the beginning of a longer one. Look-ups compare with
// base/equality.h instead.
int SipString::lengthDifference(unsigned int otherLength) const {
  return static_cast<int>(checkedDifference(length_, otherLength));
}

SipStrStream::SipStrStream() : position_(0), copied_(true) {}

SipStrStream::SipStrStream(const SipString& text)
    : text_(text), position_(0), copied_(text_.length() == text.length()) {}

SipStrStream::SipStrStream(const SipStrStream& other)
    : text_(other.text_),
      position_(0),
      copied_(other.copied_ && text_.length() == other.text_.length()) {
  if (copied_) {
    position_ = other.position_;
  }
}

SipStrStream::~SipStrStream() = default;

bool SipStrStream::done() const { return position_ == text_.length(); }

unsigned int SipStrStream::length() const { return text_.length(); }

unsigned int SipStrStream::pos() const { return position_; }

bool SipStrStream::valid() const { return copied_; }

int SipStrStream::peek(unsigned int offset) const {
  const unsigned int index = checkedSum(position_, offset);
  return index < text_.length() ? static_cast<unsigned char>(text_.c_str()[index]) : -1;
}

VARN_EXCEPTION_CODES SipStrStream::get(char* text, unsigned int length) {
  if (text == nullptr) {
    return VARN_NULL_DESTINATION;
  }
  if (text_.copy(text, length, position_) < length) {
    return VARN_SHORT_INPUT;
  }
  position_ = checkedSum(position_, length);
  return VARN_OK;
}

// Takes what is left if that is less, unlike the other get(). Moves by what the string stored,
// which is nothing if a failed assignment took its buffer.
VARN_EXCEPTION_CODES SipStrStream::get(unsigned int length, SipString& out) {
  const unsigned int end = std::min(checkedSum(position_, length), text_.length());
  const std::string_view piece = {text_.c_str() + position_, checkedDifference(end, position_)};
  const VARN_EXCEPTION_CODES code = SipStringAccess::assign(out, piece);
  if (code == VARN_OK) {
    position_ = checkedSum(position_, out.length());
  }
  return code;
}

VARN_EXCEPTION_CODES SipStrStream::discard(unsigned int length) {
  if (checkedDifference(text_.length(), position_) < length) {
    return VARN_SHORT_INPUT;
  }
  position_ = checkedSum(position_, length);
  return VARN_OK;
}

SipLWSStrStream::SipLWSStrStream() = default;

SipLWSStrStream::SipLWSStrStream(const SipString& text) : SipStrStream(text) {
  discard(matchOf<grammar::lws>(*this));
}

SipLWSStrStream::~SipLWSStrStream() = default;

bool SipLWSStrStream::done() const {
  return matchOf<grammar::lws>(*this) == checkedDifference(length(), pos());
}
