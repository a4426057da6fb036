// wySipHeaderMatch.cpp - grammar matchers of header values.
#include "wySipHeaderMatch.h"

#include <algorithm>
#include <cstddef>
#include <optional>

#include "address/addrSpec.h"
#include "base/charClass.h"
#include "base/checkedMath.h"
#include "base/log.h"
#include "base/recorded.h"
#include "grammar/borrowed.h"
#include "grammar/grammar.h"
#include "wyTelAddress.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wySipHeaderMatch";

constexpr unsigned int kTelFrame = 6;  // "<tel:" and ">"

// Keeps the lines of an attempt, to log them again: an attempt that would end the same way need not
// be made twice to be reported twice. Of an attempt with more lines than it holds the tape keeps
// the first ones and the last two, the failure among them, so that attempts that are repeated cost
// time in proportion to the text.
class LogTape {
 public:
  void add(const LogLine& line) {
    if (count_ == kCapacity) {
      lines_[kCapacity - 2] = lines_[kCapacity - 1];
      --count_;
    }
    lines_[count_++] = line;
  }

  void replay() const { std::for_each_n(lines_, count_, logLine); }

 private:
  static constexpr std::size_t kCapacity = 16;

  std::size_t count_ = 0;
  LogLine lines_[kCapacity];  // the first count_ of them
};

// Puts what an attempt logs onto a tape.
class TapeRecorder final : public LogListener {
 public:
  explicit TapeRecorder(LogTape& tape) : tape_(tape) {}

 private:
  void hear(const LogLine& line) override { tape_.add(line); }

  LogTape& tape_;
};

// Reads the brackets of one value. The tel URI, which is the same text for every "<", is tried
// once; what the attempt logged is logged again for each further "<".
class ValueBrackets final : public grammar::BracketReader {
 public:
  explicit ValueBrackets(Unread text) : text_(text) {}

  unsigned int sip(unsigned int offset) override { return bracketedAddrSpecLength(text_, offset); }

  unsigned int tel() override {
    if (telLength_) {
      telLog_.replay();
    } else {
      const TapeRecorder recorder(telLog_);
      telLength_ = tryTel();
    }
    return *telLength_;
  }

 private:
  unsigned int tryTel() const {
    const BorrowedString uri({text_.bytes, text_.length});
    const Recorded<TelAddress> tel(newRecorded<TelAddress>(kSourceFile, *uri));
    if (tel == nullptr) {
      logFailure(kSourceFile, "SipHeaderMatchIHeaderChars::doMatch | Malloc failed");
      return 0;
    }
    const unsigned int count = uriLength(*tel);
    if (count == 0) {
      logFailure(kSourceFile,
                 "SipHeaderMatchIHeaderChars::doMatch | Tel Match Failed , Match with Abs URI");
    }
    return count;
  }

  // The length of the URI as it is written, not as it was read.
  static unsigned int uriLength(const TelAddress& tel) {
    SipString uri;
    const bool whole = tel.getURIString(uri) == VARN_OK && tel.GetLastErrorCode() == VARN_OK;
    return whole ? checkedSum(uri.length(), kTelFrame) : 0;
  }

  Unread text_;
  LogTape telLog_;
  std::optional<unsigned int> telLength_;
};

// The value of an ordinary header.
unsigned int ordinaryValue(Unread text, unsigned int offset) {
  ValueBrackets brackets(text);
  return grammar::headerValue(text, offset, brackets);
}

}  // namespace

SipHeaderMatchValue::SipHeaderMatchValue(WY_SIP_SIPHEADER_TYPE headerType)
    : headerType_(headerType) {}

unsigned int SipHeaderMatchValue::doMatch(const SipStrStream& stream, unsigned int offset) {
  const Unread text = unreadFor(stream, offset);
  switch (headerType_) {
    case WY_SIP_HEADER_TYPE_NON_AUTH:
      return matchOf<ordinaryValue>(text, offset);
    case WY_SIP_HEADER_TYPE_AUTH:
      return matchOf<grammar::token>(text, offset);
    default:
      return 0;
  }
}

unsigned int SipNonAuthHeaderMatchValue::doMatch(const SipStrStream& stream, unsigned int offset) {
  return ordinaryValue(unreadFor(stream, offset), offset);
}

unsigned int SipHeaderMatchIHeaderChars::doMatch(const SipStrStream& stream, unsigned int offset) {
  const Unread text = unreadFor(stream, offset);
  ValueBrackets brackets(text);
  return grammar::headerValueRun(text, offset, brackets);
}

unsigned int SipHeaderMatchAbsoluteURI::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::absoluteUri(unreadFor(stream, offset), offset);
}
