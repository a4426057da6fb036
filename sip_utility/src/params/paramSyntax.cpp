// paramSyntax.cpp - the value of a header parameter.
#include "params/paramSyntax.h"

#include <algorithm>

namespace {

// Returns whether hexadecimal digits, or none, stand before a ":", as in every IPv6 address.
bool mayBeIpv6(Unread text, unsigned int offset) {
  return text.has(offset + text.run(offset, kHexDigit), ':');
}

// Returns whether the host rule could log: only digits before a "." are tried as an IPv4 address.
bool mayBeIpv4(Unread text, unsigned int offset) {
  return text.has(offset + text.run(offset, kDigit), '.');
}

}  // namespace

unsigned int headerParamValue(Unread text, unsigned int offset) {
  if (text.has(offset, kAlnum) && !mayBeIpv6(text, offset)) {
    // A token covers all that a host begins with a letter or a digit. The host rule is asked only
    // for its log line.
    if (mayBeIpv4(text, offset)) {
      matchOf<grammar::host>(text, offset);
    }
    return matchOf<grammar::token>(text, offset);
  }
  unsigned int length = matchOf<grammar::quotedString>(text, offset);
  if (length == 0) {
    length = matchOf<grammar::ipv6Address>(text, offset);
  }
  if (length == 0) {
    length = matchOf<grammar::host>(text, offset);
  }
  return std::max(length, matchOf<grammar::token>(text, offset));
}
