// headerValue.cpp - the part of a header's text that is its value: runs, brackets, absolute URIs.
#include "base/log.h"
#include "grammar/grammar.h"

namespace {

// The rules log as the family of their matchers.
constexpr const char* kSourceFile = "sip_utility/src/wySipHeaderMatch";

// A quoted string or a bracket, and whether the run ends with it. A refused piece ends the run too
// early: the run then stops before it, and the caller fails on what follows.
struct Piece {
  unsigned int length;
  bool last;
};

Piece quotedPiece(Unread text, unsigned int offset) {
  const unsigned int length = matchOf<grammar::quotedString>(text, offset);
  return {length, length == 0};
}

// "<" addr-spec ">" / "<tel:" ... / "<" absoluteURI ">"
//
// A SIP URI that is no addr-spec is faulty and is not tried as an absolute URI; a faulty tel URI
// is. A sound tel URI ends the run: its length is that of its written form, not of the bytes here.
Piece bracketedPiece(Unread text, unsigned int offset, grammar::BracketReader& brackets) {
  const unsigned int address = brackets.sip(offset);
  if (address != 0) {
    return {address, false};
  }
  const unsigned int uriOffset = checkedSum(offset, 1);
  if (text.has(uriOffset, "tel:")) {
    const unsigned int tel = brackets.tel();
    if (tel != 0) {
      return {tel, true};
    }
  }
  const unsigned int uri = matchOf<grammar::absoluteUri>(text, uriOffset);
  if (uri == 0 || text.has(uriOffset, "sip:") || text.has(uriOffset, "sips:") ||
      !text.has(checkedSum(uriOffset, uri), '>')) {
    return {0, true};
  }
  return {checkedSum(uri, 2), false};
}

// As headerValueRun(), with the reports of matchOf(), which takes no rule with a reader.
unsigned int runOf(Unread text, unsigned int offset, grammar::BracketReader& brackets) {
  assertWithin(offset, text);
  const unsigned int count = grammar::headerValueRun(text, offset, brackets);
  assertWithin(checkedSum(offset, count), text);
  return count;
}

}  // namespace

// scheme ":" 1*uric, without "/" after the colon: only opaque URIs
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

// *( visible character but " < > ; / quoted-string / bracket )
//
// A run ends before white space, ";" and the end of the text. Any other byte that no piece begins
// with, such as ">" or 0x80, refuses the complete run.
unsigned int grammar::headerValueRun(Unread text, unsigned int offset, BracketReader& brackets) {
  unsigned int count = 0;
  for (;;) {
    count = checkedSum(count, text.run(checkedSum(offset, count), kValuePlain));
    const unsigned int next = checkedSum(offset, count);
    const int c = text.peek(next);
    if (c == -1 || c == '\t' || c == '\n' || c == '\r' || c == ' ' || c == ';') {
      return count;
    }
    if (c != '"' && c != '<') {
      logTrace(kSourceFile, "SipHeaderMatchIHeaderChars::doMatch - bad character 0x%02x",
               static_cast<unsigned int>(c));
      return 0;
    }
    const Piece piece = c == '"' ? quotedPiece(text, next) : bracketedPiece(text, next, brackets);
    count = checkedSum(count, piece.length);
    if (piece.last) {
      return count;
    }
  }
}

// run *( LWS run ): stops before LWS that no run follows
unsigned int grammar::headerValue(Unread text, unsigned int offset, BracketReader& brackets) {
  unsigned int count = runOf(text, offset, brackets);
  for (unsigned int more = count; more != 0;) {
    const unsigned int space = matchOf<lws>(text, checkedSum(offset, count));
    if (space == 0) {
      return count;
    }
    more = runOf(text, checkedSum(offset, count, space), brackets);
    count = more == 0 ? count : checkedSum(count, space, more);
  }
  return count;
}
