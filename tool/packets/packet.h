// packet.h - what captured frames hold: datagrams and TCP segments, when and between whom.
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

// Returns the address and the port, `192.0.2.1:5060` or `[2001:db8::1]:5060`.
std::string endpointText(const Endpoint& endpoint);

// When a message passed, and between whom.
struct Passage {
  timeval time;
  std::uint64_t frame;  // its number in the capture, the first is 1
  Endpoint source;
  Endpoint destination;
  const char* transport;  // "UDP", "TCP" or "SCTP"
  std::size_t missing;    // how many bytes of the packet the snap length cut off
};

// Returns the time in UTC, `2024-02-29T23:59:59.000001Z`; "" for an impossible one.
std::string timeText(const timeval& time);

// Returns `TIME 192.0.2.1:5060 -> 192.0.2.2:5060 UDP frame 1`, addresses of IPv6 in brackets, "?"
// for an impossible time.
std::string passageText(const Passage& passage);

// Returns what is wrong with a message because the snap length cut its packet; "" for nothing.
std::string cutText(const Passage& passage);

// A UDP datagram, an SCTP message or a TCP segment.
struct Packet {
  Passage passage;
  std::string_view payload;    // short where the capture cut the frame
  bool segment = false;        // of TCP
  std::uint32_t sequence = 0;  // this one and what follows: of a segment
  bool syn = false;
  bool fin = false;
  bool reset = false;
};

// Returns whether a file of which these are the first 12 bytes is a pcap or pcapng file.
bool isCapture(std::string_view head);

#endif  // TOOL_PACKET_H
