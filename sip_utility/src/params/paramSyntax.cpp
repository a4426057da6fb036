// paramSyntax.cpp - the value of a header parameter.
#include "params/paramSyntax.h"

#include <algorithm>

// A token covers all that a host covers that begins with a letter or a digit. Such a value can only
// be longer as an IPv6 address: then a ":" follows the token. The host rule is asked for the line
// that it logs about digits and a "." that are no IPv4 address.
unsigned int headerParamValue(Unread text, unsigned int offset) {
  const unsigned int token = matchOf<grammar::token>(text, offset);
  if (text.has(offset, kAlnum) && !text.has(offset + token, ':')) {
    if (text.has(offset + text.run(offset, kDigit), '.')) {
      matchOf<grammar::host>(text, offset);
    }
    return token;
  }
  unsigned int length = matchOf<grammar::quotedString>(text, offset);
  if (length == 0) {
    length = matchOf<grammar::ipv6Address>(text, offset);
  }
  if (length == 0) {
    length = matchOf<grammar::host>(text, offset);
  }
  return std::max(length, token);
}
