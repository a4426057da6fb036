// wySipHeaderMatch.cpp - grammar matchers of header values.
#include "wySipHeaderMatch.h"

#include <algorithm>
#include <cstddef>
#include <optional>

#include "internal/borrowed.h"
#include "internal/charClass.h"
#include "internal/checkedMath.h"
#include "internal/grammar.h"
#include "internal/log.h"
#include "internal/matchOf.h"
#include "internal/recorded.h"
#include "internal/unread.h"
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

// Reads the runs of one value. The tel URI, which is the same text for every "<", is tried once.
class ValueReader {
 public:
  explicit ValueReader(Unread text) : text_(text) {}

  // *( run LWS ) run: stops in front of white space that no run follows.
  unsigned int valueLength(unsigned int offset) {
    unsigned int count = run(offset);
    for (unsigned int more = count; more != 0;) {
      const unsigned int space = matchOf<grammar::lws>(text_, checkedSum(offset, count));
      if (space == 0) {
        return count;
      }
      more = run(checkedSum(offset, count, space));
      count = more == 0 ? count : checkedSum(count, space, more);
    }
    return count;
  }

  unsigned int runLength(unsigned int offset) {
    unsigned int count = 0;
    for (;;) {
      count = checkedSum(count, text_.run(checkedSum(offset, count), kValuePlain));
      const unsigned int next = checkedSum(offset, count);
      const int c = text_.peek(next);
      if (c == -1 || c == '\t' || c == '\n' || c == '\r' || c == ' ' || c == ';') {
        return count;
      }
      if (c != '"' && c != '<') {
        logTrace(kSourceFile, "SipHeaderMatchIHeaderChars::doMatch - bad character 0x%02x",
                 static_cast<unsigned int>(c));
        return 0;
      }
      const Piece piece = c == '"' ? quoted(next) : bracketed(next);
      count = checkedSum(count, piece.length);
      if (piece.last) {
        return count;
      }
    }
  }

 private:
  struct Piece {
    unsigned int length;
    bool last;  // the run ends with it
  };

  unsigned int run(unsigned int offset) {
    assertWithin(offset, text_);
    const unsigned int count = runLength(offset);
    assertWithin(checkedSum(offset, count), text_);
    return count;
  }

  Piece quoted(unsigned int offset) {
    const unsigned int length = matchOf<grammar::quotedString>(text_, offset);
    return {length, length == 0};
  }

  Piece bracketed(unsigned int offset) {
    const unsigned int address = grammar::bracketedAddrSpec(text_, offset);
    if (address != 0) {
      return {address, false};
    }
    const unsigned int uriOffset = checkedSum(offset, 1);
    if (text_.has(uriOffset, "tel:")) {
      const unsigned int tel = telLength();
      if (tel != 0) {
        return {tel, true};
      }
    }
    const unsigned int uri = matchOf<grammar::absoluteUri>(text_, uriOffset);
    if (uri == 0 || text_.has(uriOffset, "sip:") || text_.has(uriOffset, "sips:") ||
        !text_.has(checkedSum(uriOffset, uri), '>')) {
      return {0, true};
    }
    return {checkedSum(uri, 2), false};
  }

  // Returns what a tel URI at the stream's position counts. That is not worked out again for the
  // next "<", but what it logged is logged again.
  unsigned int telLength() {
    if (telLength_) {
      telLog_.replay();
    } else {
      const TapeRecorder recorder(telLog_);
      telLength_ = tryTel();
    }
    return *telLength_;
  }

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

}  // namespace

SipHeaderMatchValue::SipHeaderMatchValue(WY_SIP_SIPHEADER_TYPE headerType)
    : headerType_(headerType) {}

unsigned int SipHeaderMatchValue::doMatch(const SipStrStream& stream, unsigned int offset) {
  switch (headerType_) {
    case WY_SIP_HEADER_TYPE_NON_AUTH:
      return matchOf<grammar::nonAuthHeaderValue>(unreadFor(stream, offset), offset);
    case WY_SIP_HEADER_TYPE_AUTH:
      return matchOf<grammar::token>(unreadFor(stream, offset), offset);
    default:
      return 0;
  }
}

unsigned int grammar::nonAuthHeaderValue(Unread text, unsigned int offset) {
  return ValueReader(text).valueLength(offset);
}

unsigned int SipNonAuthHeaderMatchValue::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::nonAuthHeaderValue(unreadFor(stream, offset), offset);
}

unsigned int SipHeaderMatchIHeaderChars::doMatch(const SipStrStream& stream, unsigned int offset) {
  return ValueReader(unreadFor(stream, offset)).runLength(offset);
}

unsigned int grammar::absoluteUri(Unread text, unsigned int offset) {
  const unsigned int schemeCount = matchOf<scheme>(text, offset);
  if (schemeCount == 0 || !text.has(checkedSum(offset, schemeCount), ':')) {
    return 0;
  }
  const unsigned int opaque = checkedSum(offset, schemeCount, 1);
  if (text.has(opaque, '/')) {
    return 0;
  }
  const unsigned int uricCount = matchOf<uric>(text, opaque);
  return uricCount == 0 ? 0 : checkedSum(schemeCount, 1, uricCount);
}

unsigned int SipHeaderMatchAbsoluteURI::doMatch(const SipStrStream& stream, unsigned int offset) {
  return grammar::absoluteUri(unreadFor(stream, offset), offset);
}
