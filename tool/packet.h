// packet.h - what a captured frame holds: a UDP datagram or a TCP segment, over IPv4 or IPv6.
#ifndef TOOL_PACKET_H
#define TOOL_PACKET_H

#include <sys/time.h>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

struct Endpoint {
  std::array<unsigned char, 16> address;  // the first 4 bytes of it, then zeros, for IPv4
  bool ipv6;
  std::uint16_t port;
};

bool operator<(const Endpoint& a, const Endpoint& b);

// Returns the address alone, `192.0.2.1` or `2001:db8::1`.
std::string addressText(const Endpoint& endpoint);

// When a message passed, and between whom.
struct Passage {
  timeval time;
  Endpoint source;
  Endpoint destination;
  const char* transport;  // "UDP" or "TCP"
};

// Returns the time in UTC, `2024-02-29T23:59:59.000001Z`; "" for an impossible one.
std::string timeText(const timeval& time);

// Returns `TIME 192.0.2.1:5060 -> 192.0.2.2:5060 UDP`, addresses of IPv6 in brackets, "?" for "".
std::string passageText(const Passage& passage);

struct Packet {
  enum class Kind { kOther, kFragment, kUdp, kTcp };
  Kind kind = Kind::kOther;
  Endpoint source = {};  // this one and what follows: of kUdp and kTcp
  Endpoint destination = {};
  std::string_view payload;    // into the frame; short where the capture cut the frame
  std::uint32_t sequence = 0;  // this one and what follows: of kTcp
  bool syn = false;
  bool fin = false;
  bool reset = false;
};

// Returns whether a file of which these are the first 12 bytes is a pcap or pcapng file.
bool isCapture(std::string_view head);

// Returns whether frames of this link type, one of libpcap's DLT_ values, are understood:
// Ethernet, Linux cooked v1 and v2, raw IP, loopback.
bool isLinkTypeKnown(int linkType);

// Splits a frame, whatever its bytes are.
Packet readPacket(int linkType, std::string_view frame);

#endif  // TOOL_PACKET_H
