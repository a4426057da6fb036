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

// Keeps the log lines of an attempt to read a text. A second attempt at the same text would end the
// same way and log the same lines, so the tape replays them instead. It has room for a fixed number
// of lines, so a replay costs constant time. Of a longer attempt it keeps the first lines and the
// last two, which include the failure. No line of a tel URI has an argument that points to a text,
// which could be gone by then.
class LogTape {
 public:
  void add(const LogLine& line) {
    if (count_ == kCapacity) {  // full: the last two slots hold the last two lines
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

// Puts the lines that its thread logs onto a tape.
class TapeRecorder final : public LogListener {
 public:
  explicit TapeRecorder(LogTape& tape) : tape_(tape) {}

 private:
  void hear(const LogLine& line) override { tape_.add(line); }

  LogTape& tape_;
};

// Reads the brackets of one value. A tel URI is read from the start of the value, wherever the "<"
// is, so every "<tel:" means the same text. The text is read once; for each further "<tel:" only
// its log lines are repeated. To read it again for each would cost quadratic time.
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
    const BorrowedString uri({text_.bytes, text_.length});  // the constructor only reads it
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

  // Returns the length of "<tel:", the URI as the library writes it and ">"; 0 for a faulty URI.
  // Callers rely on this length. The text may be shorter or longer, so a match may count past its
  // end.
  static unsigned int uriLength(const TelAddress& tel) {
    SipString uri;
    const bool written = tel.getURIString(uri) == VARN_OK && tel.GetLastErrorCode() == VARN_OK;
    return written ? checkedSum(uri.length(), kTelFrame) : 0;
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
      return matchPastEnd<ordinaryValue>(text, offset);
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
