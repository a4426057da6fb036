// address.cpp - schemes, user-info, display names and URI headers.
#include "grammar/grammar.h"

namespace {

// One header of a URI, after its "?" or "&": 1*hnv-char "=" *hnv-char
unsigned int uriHeaderLength(Unread text, unsigned int offset) {
  const unsigned int name = matchOf<grammar::headerChars>(text, offset);
  if (name == 0 || !text.has(checkedSum(offset, name), '=')) {
    return 0;
  }
  return checkedSum(name, 1, matchOf<grammar::headerChars>(text, checkedSum(offset, name, 1)));
}

}  // namespace

// scheme = ALPHA *( ALPHA / DIGIT / "+" / "-" / "." )
unsigned int grammar::scheme(Unread text, unsigned int offset) {
  if (!text.has(offset, kAlpha)) {
    return 0;
  }
  return checkedSum(1, matchOf<charSet<kSchemeTrailing>>(text, checkedSum(offset, 1)));
}

// user [ ":" password ]: the password may be empty
unsigned int grammar::userInfo(Unread text, unsigned int offset) {
  const unsigned int userCount = matchOf<user>(text, offset);
  if (userCount == 0 || !text.has(checkedSum(offset, userCount), ':')) {
    return userCount;
  }
  return checkedSum(userCount, 1, matchOf<password>(text, checkedSum(offset, userCount, 1)));
}

// token *( LWS token ) / quoted-string: stops before LWS that no token follows
unsigned int grammar::displayName(Unread text, unsigned int offset) {
  unsigned int count = matchOf<token>(text, offset);
  if (count == 0) {
    return matchOf<quotedString>(text, offset);
  }
  for (;;) {
    const unsigned int space = matchOf<lws>(text, checkedSum(offset, count));
    if (space == 0) {
      return count;
    }
    const unsigned int next = matchOf<token>(text, checkedSum(offset, count, space));
    if (next == 0) {
      return count;
    }
    count = checkedSum(count, space, next);
  }
}

// "?" header *( "&" header ): a fault in one header refuses them all
unsigned int grammar::uriHeaders(Unread text, unsigned int offset) {
  if (!text.has(offset, '?')) {
    return 0;
  }
  unsigned int count = 0;
  do {
    const unsigned int header = uriHeaderLength(text, checkedSum(offset, count, 1));
    if (header == 0) {
      return 0;
    }
    count = checkedSum(count, 1, header);
  } while (text.has(checkedSum(offset, count), '&'));
  return count;
}
