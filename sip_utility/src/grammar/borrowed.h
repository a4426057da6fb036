// borrowed.h - strings and cursors over bytes of another owner, for reading without a copy.
//
// The bytes must stay in place and unchanged for the lifetime of the borrower.
// SipStringAccess::lend() says what may be done with a lent string.
#ifndef SIPUTILITY_GRAMMAR_BORROWED_H
#define SIPUTILITY_GRAMMAR_BORROWED_H

#include <string_view>

#include "base/stringAccess.h"
#include "grammar/grammar.h"

namespace siputility {

// A string for an operation that reads it by its length; its c_str() is not terminated.
class BorrowedString {
 public:
  explicit BorrowedString(std::string_view bytes) { SipStringAccess::lend(text_, bytes); }
  ~BorrowedString() { SipStringAccess::takeBack(text_); }
  BorrowedString(const BorrowedString&) = delete;
  BorrowedString& operator=(const BorrowedString&) = delete;

  const SipString& operator*() const { return text_; }

 private:
  SipString text_;
};

// A cursor over text with linear white space around it; it starts after the leading one.
class BorrowedLWSStream : public SipLWSStrStream {
 public:
  explicit BorrowedLWSStream(std::string_view bytes) {
    SipStringAccess::lend(*this, bytes);
    SipStringAccess::advance(*this, matchOf<grammar::lws>(*this));
  }
  ~BorrowedLWSStream() override { SipStringAccess::takeBack(*this); }
};

}  // namespace siputility

using siputility::BorrowedLWSStream;
using siputility::BorrowedString;

#endif  // SIPUTILITY_GRAMMAR_BORROWED_H
