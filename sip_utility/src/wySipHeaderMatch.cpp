// wySipHeaderMatch.cpp - grammar matchers of header values.
#include "wySipHeaderMatch.h"

#include <optional>

#include "internal/checkedMath.h"
#include "internal/log.h"
#include "internal/matchOf.h"
#include "internal/recorded.h"
#include "internal/stringAccess.h"
#include "wySipAddress.h"
#include "wyTelAddress.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wySipHeaderMatch";

constexpr int kFirstVisible = 0x20;
constexpr int kLastVisible = 0x7E;
constexpr unsigned int kTelFrame = 6;  // "<tel:" and ">"

// Reads the runs of one value. Its brackets are looked into through one copy of the stream, and
// the tel URI, which is the same text for every "<", is tried once.
class ValueReader {
 public:
  explicit ValueReader(const SipStrStream& stream) : stream_(stream) {}

  unsigned int runLength(unsigned int offset) {
    unsigned int count = 0;
    for (;;) {
      const unsigned int next = checkedSum(offset, count);
      const int c = stream_.peek(next);
      if (c == -1 || c == '\t' || c == '\n' || c == '\r' || c == ' ' || c == ';') {
        return count;
      }
      if (c == '>' || c < kFirstVisible || c > kLastVisible) {
        logTrace(kSourceFile, "SipHeaderMatchIHeaderChars::doMatch - bad character 0x%02x",
                 static_cast<unsigned int>(c));
        return 0;
      }
      const Piece piece = pieceAt(next, c);
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

  Piece pieceAt(unsigned int offset, int c) {
    if (c == '"') {
      const unsigned int quoted = matchOf<SipMatchQuotedString>(stream_, offset);
      return {quoted, quoted == 0};
    }
    return c == '<' ? bracketed(offset) : Piece{1, false};
  }

  Piece bracketed(unsigned int offset) {
    const unsigned int address = addressLength(offset);
    if (address != 0) {
      return {address, false};
    }
    const unsigned int uriOffset = checkedSum(offset, 1);
    if (literalIs(stream_, uriOffset, "tel:")) {
      const unsigned int tel = telLength();
      if (tel != 0) {
        return {tel, true};
      }
    }
    const unsigned int uri = matchOf<SipHeaderMatchAbsoluteURI>(stream_, uriOffset);
    if (uri == 0 || literalIs(stream_, uriOffset, "sip:") ||
        literalIs(stream_, uriOffset, "sips:") ||
        !byteIs(stream_, checkedSum(uriOffset, uri), '>')) {
      return {0, true};
    }
    return {checkedSum(uri, 2), false};
  }

  // Returns the copy of the stream, at the offset behind the stream's position.
  SipStrStream& lookAt(unsigned int offset) {
    if (!look_) {
      look_.emplace(stream_);
    }
    SipStringAccess::moveTo(*look_, checkedSum(stream_.pos(), offset));
    return *look_;
  }

  unsigned int addressLength(unsigned int offset) {
    SipStrStream& look = lookAt(offset);
    const unsigned int start = look.pos();
    const SipAddress address(look);
    return address.GetLastErrorCode() == VARN_OK ? checkedDifference(look.pos(), start) : 0;
  }

  // Returns what a tel URI at the stream's position counts. That is not worked out again for the
  // next "<", but what it logged is logged again.
  unsigned int telLength() {
    if (telLength_) {
      telLog_.replay();
    } else {
      telLog_.record();
      telLength_ = tryTel();
      telLog_.stop();
    }
    return *telLength_;
  }

  unsigned int tryTel() {
    SipStrStream& look = lookAt(0);
    const unsigned int length = checkedDifference(look.length(), look.pos());
    SipString text;
    Recorded<TelAddress> tel;
    if (length != 0 && look.get(length, text) == VARN_OK) {
      tel.reset(newRecorded<TelAddress>(kSourceFile, text));
    }
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

  const SipStrStream& stream_;
  std::optional<SipStrStream> look_;
  LogTape telLog_;
  std::optional<unsigned int> telLength_;
};

// One run of a value whose reader the runs share.
class ValueRun : public SipMatch {
 public:
  explicit ValueRun(ValueReader& reader) : reader_(reader) {}

  unsigned int doMatch(const SipStrStream& /*stream*/, unsigned int offset) override {
    return reader_.runLength(offset);
  }

 private:
  ValueReader& reader_;
};

}  // namespace

SipHeaderMatchValue::SipHeaderMatchValue(WY_SIP_SIPHEADER_TYPE headerType)
    : headerType_(headerType) {}

unsigned int SipHeaderMatchValue::doMatch(const SipStrStream& stream, unsigned int offset) {
  switch (headerType_) {
    case WY_SIP_HEADER_TYPE_NON_AUTH:
      return matchOf<SipNonAuthHeaderMatchValue>(stream, offset);
    case WY_SIP_HEADER_TYPE_AUTH:
      return matchOf<SipMatchToken>(stream, offset);
    default:
      return 0;
  }
}

unsigned int SipNonAuthHeaderMatchValue::doMatch(const SipStrStream& stream, unsigned int offset) {
  ValueReader reader(stream);
  ValueRun run(reader);
  unsigned int count = run.match(stream, offset);
  for (unsigned int more = count; more != 0;) {
    const unsigned int space = matchOf<SipMatchLWS>(stream, checkedSum(offset, count));
    if (space == 0) {
      return count;
    }
    more = run.match(stream, checkedSum(offset, count, space));
    count = more == 0 ? count : checkedSum(count, space, more);
  }
  return count;
}

unsigned int SipHeaderMatchIHeaderChars::doMatch(const SipStrStream& stream, unsigned int offset) {
  return ValueReader(stream).runLength(offset);
}

unsigned int SipHeaderMatchAbsoluteURI::doMatch(const SipStrStream& stream, unsigned int offset) {
  const unsigned int scheme = matchOf<SipAddressMatchScheme>(stream, offset);
  if (scheme == 0 || !byteIs(stream, checkedSum(offset, scheme), ':')) {
    return 0;
  }
  const unsigned int opaque = checkedSum(offset, scheme, 1);
  if (byteIs(stream, opaque, '/')) {
    return 0;
  }
  const unsigned int uric = matchOf<SipMatchUric>(stream, opaque);
  return uric == 0 ? 0 : checkedSum(scheme, 1, uric);
}
