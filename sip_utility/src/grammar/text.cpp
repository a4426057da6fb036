// text.cpp - white space, quoted strings and UTF-8.
#include "grammar/grammar.h"

#include "base/log.h"

namespace {

// The rules log as the family of their matchers.
constexpr const char* kSourceFile = "sip_utility/src/wySipMatch";

constexpr unsigned int kFirstNonAscii = 0x80;
constexpr int kDelete = 0x7F;

// LWS inside quotes. No LWS begins with LF, so a lone LF is logged as invalid LWS.
unsigned int quotedWhiteSpaceLength(Unread text, unsigned int offset) {
  const unsigned int count = matchOf<grammar::lws>(text, offset);
  if (count == 0) {
    logTrace(kSourceFile, "SipMatchQuotedString::doMatch - invalid LWS");
  }
  return count;
}

// quoted-pair = "\" any byte but CR and LF. A backslash at the end of the text counts 2 as well;
// the next piece then meets the end.
unsigned int quotedPairLength(Unread text, unsigned int offset) {
  const int escaped = text.peek(checkedSum(offset, 1));
  if (escaped == '\r' || escaped == '\n') {
    logTrace(kSourceFile, "SipMatchQuotedString::doMatch - cannot escape CR or LF");
    return 0;
  }
  return 2;
}

unsigned int quotedNonAsciiLength(Unread text, unsigned int offset) {
  const unsigned int count = matchOf<grammar::utf8NonAscii>(text, offset);
  if (count == 0) {
    logTrace(kSourceFile, "SipMatchQuotedString::doMatch - invalid UTF8 non-ascii");
  }
  return count;
}

// One piece between the quotes: LWS / quoted-pair / UTF8-NONASCII / a visible ASCII character
unsigned int quotedPieceLength(Unread text, unsigned int offset) {
  const int c = text.peek(offset);
  switch (c) {
    case ' ':
    case '\t':
    case '\r':
    case '\n':
      return quotedWhiteSpaceLength(text, offset);
    case -1:
      logTrace(kSourceFile, "SipMatchQuotedString::doMatch - end of string without end quote");
      return 0;
    case '\\':
      return quotedPairLength(text, offset);
    default:
      break;
  }
  const auto code = static_cast<unsigned int>(c);
  if (code >= kFirstNonAscii) {
    return quotedNonAsciiLength(text, offset);
  }
  if (c < ' ' || c == kDelete) {
    logTrace(kSourceFile, "SipMatchQuotedString::doMatch - bad character 0x%02x", code);
    return 0;
  }
  return 1;
}

// Returns how many continuation bytes follow a lead byte of UTF8-NONASCII; 0 for no lead byte. RFC
// 3261 allows characters of up to six bytes and does not exclude overlong forms.
unsigned int continuationCount(int lead) {
  if (lead < 0xC0 || lead > 0xFD) {
    return 0;
  }
  if (lead < 0xE0) {
    return 1;
  }
  if (lead < 0xF0) {
    return 2;
  }
  if (lead < 0xF8) {
    return 3;
  }
  return lead < 0xFC ? 4 : 5;
}

}  // namespace

// [ *WSP CRLF ] 1*WSP, all or nothing
//
// White space before a CR is no LWS of its own: the CR must begin a fold. LWS has at most one fold,
// so a fold before another CR is no LWS either.
unsigned int grammar::lwsFrom(Unread text, unsigned int offset) {
  const unsigned int leading = text.run(offset, kWhiteSpace);
  const unsigned int fold = checkedSum(offset, leading);
  if (!text.has(fold, '\r')) {
    return leading;
  }
  if (!text.has(checkedSum(fold, 1), '\n')) {
    return 0;
  }
  const unsigned int trailing = text.run(checkedSum(fold, 2), kWhiteSpace);
  if (trailing == 0 || text.has(checkedSum(fold, 2, trailing), '\r')) {
    return 0;
  }
  return checkedSum(leading, 2, trailing);
}

unsigned int grammar::separatorWithLws(char byte, Unread text, unsigned int offset) {
  const unsigned int leading = matchOf<lws>(text, offset);
  if (!text.has(checkedSum(offset, leading), byte)) {
    return 0;
  }
  return checkedSum(leading, 1, matchOf<lws>(text, checkedSum(offset, leading, 1)));
}

// quote *( piece ) quote
//
// Without a caller's rule, no plain character is a quote, so the loop skips runs of them.
unsigned int grammar::quotedStringBy(const QuoteRule* rule, Unread text, unsigned int offset) {
  const auto quoteAt = [rule, text](unsigned int at) {
    return rule == nullptr ? static_cast<unsigned int>(text.has(at, '"')) : rule->quoteAt(at);
  };
  unsigned int count = quoteAt(offset);
  while (count != 0) {
    if (rule == nullptr) {
      count = checkedSum(count, text.run(checkedSum(offset, count), kQuotedPlain));
    }
    const unsigned int next = checkedSum(offset, count);
    if (const unsigned int closing = quoteAt(next); closing != 0) {
      return checkedSum(count, closing);
    }
    const unsigned int piece = quotedPieceLength(text, next);
    count = piece == 0 ? 0 : checkedSum(count, piece);
  }
  return 0;
}

unsigned int grammar::quotedString(Unread text, unsigned int offset) {
  return quotedStringBy(nullptr, text, offset);
}

// One character of two to six bytes, continuation bytes 0x80 to 0xBF
unsigned int grammar::utf8NonAscii(Unread text, unsigned int offset) {
  const unsigned int continuations = continuationCount(text.peek(offset));
  for (unsigned int i = 1; i <= continuations; ++i) {
    const int c = text.peek(checkedSum(offset, i));
    if (c < 0x80 || c > 0xBF) {
      return 0;
    }
  }
  return continuations == 0 ? 0 : checkedSum(continuations, 1);
}
