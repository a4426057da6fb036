// host.cpp - hosts: names, IPv4 and IPv6 addresses.
#include "grammar/grammar.h"

#include "base/log.h"

namespace {

// The rules log as the family of their matchers.
constexpr const char* kSourceFile = "sip_utility/src/wySipMatch";

constexpr unsigned int kIpv6Groups = 8;
constexpr unsigned int kIpv4TailGroups = 2;

// Returns whether three digits are a number from 100 to 255.
bool octetOfThree(int first, int second, int third) {
  if (first == '1') {
    return true;
  }
  return first == '2' && (second <= '4' || (second == '5' && third <= '5'));
}

// The walk over the groups of an IPv6 address. An address has room for eight groups; "::" takes one
// of them, so seven at most can be written beside it.
class Ipv6Walk {
 public:
  Ipv6Walk(Unread text, unsigned int offset)
      : text_(text),
        offset_(offset),
        count_(matchOf<grammar::h16>(text, offset)),
        groupsLeft_(count_ == 0 ? kIpv6Groups : kIpv6Groups - 1),
        compressed_(false),
        ended_(false) {}

  unsigned int length() {
    while (!ended_) {
      step();
    }
    return count_;
  }

 private:
  void end(unsigned int count) {
    count_ = count;
    ended_ = true;
  }

  // Takes ":" or "::" and the group or IPv4 tail after it. Once there was a "::", the address may
  // end anywhere; before, it is refused unless all its groups are there.
  void step() {
    if (groupsLeft_ == 0) {
      end(count_);
    } else if (!text_.has(checkedSum(offset_, count_), ':')) {
      end(compressed_ ? count_ : 0);
    } else if (const unsigned int start = passColons(); start == 0 || groupsLeft_ == 0) {
      end(start);
    } else if (!takeTail(start)) {
      takeGroup(start);
    }
  }

  // Returns the count up to the next group: past the colon, or past both of the first "::". 0 for
  // an address that begins with one colon. A second "::" is not looked for: the match then ends
  // after the first of its colons, on purpose.
  unsigned int passColons() {
    const unsigned int start = checkedSum(count_, 1);
    if (compressed_) {
      return start;
    }
    if (text_.has(checkedSum(offset_, start), ':')) {
      compressed_ = true;
      groupsLeft_ = checkedDifference(groupsLeft_, 1);
      return checkedSum(start, 1);
    }
    return count_ == 0 ? 0 : start;
  }

  // Takes an IPv4 address in place of the last two groups. It is tried before a group, since the
  // digits of its first octet would pass for one. Returns whether there is one, and ends the walk.
  bool takeTail(unsigned int start) {
    if (groupsLeft_ < kIpv4TailGroups) {
      return false;
    }
    const unsigned int count = matchOf<grammar::ipv4Address>(text_, checkedSum(offset_, start));
    if (count == 0) {
      return false;
    }
    end(compressed_ || groupsLeft_ == kIpv4TailGroups ? checkedSum(start, count) : 0);
    return true;
  }

  void takeGroup(unsigned int start) {
    const unsigned int count = matchOf<grammar::h16>(text_, checkedSum(offset_, start));
    if (count == 0) {
      end(compressed_ ? start : 0);
      return;
    }
    groupsLeft_ = checkedDifference(groupsLeft_, 1);
    count_ = checkedSum(start, count);
  }

  Unread text_;
  unsigned int offset_;
  unsigned int count_;
  unsigned int groupsLeft_;
  bool compressed_;
  bool ended_;
};

}  // namespace

// A run of label characters that begins or ends with "-" is no label, nor is a part of it.
unsigned int grammar::labelOf(Unread text, unsigned int offset, unsigned int run) {
  if (run == 0 || text.bytes[offset] == '-' || text.bytes[offset + run - 1] == '-') {
    return 0;
  }
  return run;
}

unsigned int grammar::label(Unread text, unsigned int offset) {
  return labelOf(text, offset, text.run(offset, kLabel));
}

// *( label "." ) toplabel [ "." ]: the last label begins with a letter, unlike an IPv4 octet
unsigned int grammar::hostname(Unread text, unsigned int offset) {
  unsigned int end = offset;
  bool lastBeginsWithLetter = false;
  for (;;) {
    const unsigned int count = matchOf<label>(text, end);
    if (count == 0) {
      break;
    }
    lastBeginsWithLetter = isIn(kAlpha, text.bytes[end]);
    end = checkedSum(end, count);
    if (!text.has(end, '.')) {
      break;
    }
    ++end;
  }
  return lastBeginsWithLetter ? end - offset : 0;
}

// 0 to 255 without leading zeros; more digits are refused, not cut
unsigned int grammar::decOctet(Unread text, unsigned int offset) {
  const unsigned int count = matchOf<digits>(text, offset);
  const int first = text.peek(offset);
  switch (count) {
    case 1:
      return 1;
    case 2:
      return first != '0' ? 2 : 0;
    case 3:
      return octetOfThree(first, text.peek(checkedSum(offset, 1)), text.peek(checkedSum(offset, 2)))
                 ? 3
                 : 0;
    default:
      return 0;
  }
}

// dec-octet 3( "." dec-octet )
unsigned int grammar::ipv4Address(Unread text, unsigned int offset) {
  unsigned int count = matchOf<decOctet>(text, offset);
  if (count == 0) {
    return 0;
  }
  for (int dots = 0; dots < 3; ++dots) {
    if (!text.has(checkedSum(offset, count), '.')) {
      return 0;
    }
    const unsigned int tried = checkedSum(offset, count, 1);
    const unsigned int octet = matchOf<decOctet>(text, tried);
    if (octet == 0) {
      logTrace(kSourceFile, "MatchIPV4Address pos %lu did not match dec-octet", tried);
      return 0;
    }
    count = checkedSum(count, 1, octet);
  }
  return count;
}

// 1*4HEXDIG; more digits are refused, not cut
unsigned int grammar::h16(Unread text, unsigned int offset) {
  const unsigned int count = matchOf<hexDigits>(text, offset);
  return count <= 4 ? count : 0;
}

unsigned int grammar::ipv6Address(Unread text, unsigned int offset) {
  return Ipv6Walk(text, offset).length();
}

// hostname / IPv4address / "[" IPv6address "]"
unsigned int grammar::host(Unread text, unsigned int offset) {
  const int c = text.peek(offset);
  if (c == '[') {
    const unsigned int address = matchOf<ipv6Address>(text, checkedSum(offset, 1));
    if (address == 0) {
      return 1;  // the bracket alone, as meant: the caller fails on what follows
    }
    if (!text.has(checkedSum(offset, 1, address), ']')) {
      logTrace(kSourceFile, "SipMatchHost ']' missing");
      return 0;
    }
    return checkedSum(address, 2);
  }
  if (isIn(kAlnum, c)) {
    const unsigned int name = matchOf<hostname>(text, offset);
    return name != 0 ? name : matchOf<ipv4Address>(text, offset);
  }
  logTrace(kSourceFile, "SipMatchHost invalid character 0x%02x", static_cast<unsigned char>(c));
  return 0;
}
