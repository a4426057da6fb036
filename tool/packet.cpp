// packet.cpp - what a captured frame holds: a UDP datagram or a TCP segment, over IPv4 or IPv6.
#include "packet.h"

#include <arpa/inet.h>

#include <algorithm>
#include <ctime>
#include <iterator>
#include <tuple>

namespace {

// Where a link layer's header has the type of what it carries, and how long it is. The type of
// loopback is left alone: its byte order and its values are those of the machine that captured.
constexpr std::size_t kNoType = SIZE_MAX;
const struct LinkLayer {
  int linkType;
  std::size_t typeOffset;
  std::size_t length;
} kLinkLayers[] = {
    {0, kNoType, 4},    // loopback, BSD
    {1, 12, 14},        // Ethernet
    {12, kNoType, 0},   // raw IP
    {14, kNoType, 0},   // raw IP, OpenBSD
    {101, kNoType, 0},  // raw IP, as files have it
    {108, kNoType, 4},  // loopback, OpenBSD
    {113, 14, 16},      // Linux cooked
    {228, kNoType, 0},  // raw IPv4
    {229, kNoType, 0},  // raw IPv6
    {276, 0, 20},       // Linux cooked v2
};

constexpr unsigned int kTypeIpv4 = 0x0800;
constexpr unsigned int kTypeIpv6 = 0x86DD;
constexpr unsigned int kVlanTags[] = {0x8100, 0x88A8, 0x9100};

constexpr unsigned int kProtocolTcp = 6;
constexpr unsigned int kProtocolUdp = 17;
constexpr unsigned int kHopByHop = 0;
constexpr unsigned int kRouting = 43;
constexpr unsigned int kFragmentHeader = 44;
constexpr unsigned int kAuthentication = 51;
constexpr unsigned int kDestination = 60;
constexpr unsigned int kMobility = 135;

const LinkLayer* findLinkLayer(int linkType) {
  const auto* const found =
      std::find_if(std::begin(kLinkLayers), std::end(kLinkLayers),
                   [linkType](const LinkLayer& layer) { return layer.linkType == linkType; });
  return found == std::end(kLinkLayers) ? nullptr : found;
}

// Returns the big-endian number of this width; bytes past the end count as zeros.
std::uint32_t number(std::string_view bytes, std::size_t offset, std::size_t width) {
  std::uint32_t value = 0;
  for (std::size_t i = offset; i < offset + width; ++i) {
    value = value << 8 | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U);
  }
  return value;
}

// Removes bytes at the start; returns false, and removes nothing, when there are fewer.
bool skip(std::string_view& bytes, std::size_t length) {
  if (bytes.size() < length) {
    return false;
  }
  bytes.remove_prefix(length);
  return true;
}

void setAddresses(Packet& packet, std::string_view both, bool ipv6) {
  const std::size_t length = both.size() / 2;
  std::copy_n(both.begin(), length, packet.source.address.begin());
  std::copy_n(both.begin() + static_cast<std::ptrdiff_t>(length), length,
              packet.destination.address.begin());
  packet.source.ipv6 = packet.destination.ipv6 = ipv6;
}

void setPorts(Packet& packet, std::string_view header) {
  packet.source.port = static_cast<std::uint16_t>(number(header, 0, 2));
  packet.destination.port = static_cast<std::uint16_t>(number(header, 2, 2));
}

void readUdp(Packet& packet, std::string_view datagram) {
  const std::size_t length = number(datagram, 4, 2);
  setPorts(packet, datagram);
  if (skip(datagram, 8)) {
    packet.kind = Packet::Kind::kUdp;
    packet.payload = datagram.substr(0, length < 8 ? datagram.size() : length - 8);
  }
}

void readTcp(Packet& packet, std::string_view segment) {
  const std::size_t headerLength = std::size_t{number(segment, 12, 1)} / 16 * 4;
  const unsigned int flags = number(segment, 13, 1);
  setPorts(packet, segment);
  packet.sequence = number(segment, 4, 4);
  packet.fin = (flags & 1U) != 0;
  packet.syn = (flags & 2U) != 0;
  packet.reset = (flags & 4U) != 0;
  if (headerLength >= 20 && skip(segment, headerLength)) {
    packet.kind = Packet::Kind::kTcp;
    packet.payload = segment;
  }
}

void readTransport(Packet& packet, unsigned int protocol, std::string_view bytes) {
  if (protocol == kProtocolUdp) {
    readUdp(packet, bytes);
  } else if (protocol == kProtocolTcp) {
    readTcp(packet, bytes);
  }
}

// Bytes past the length of the IP packet are padding. A length of 0 is left to the network card to
// fill in; the frame then ends with the packet.
void readIpv4(Packet& packet, std::string_view ip) {
  const std::size_t length = number(ip, 2, 2);
  ip = ip.substr(0, length == 0 ? ip.size() : length);
  const std::string_view header = ip;
  if (ip.size() < 20 ||
      !skip(ip, std::max<std::size_t>(std::size_t{number(ip, 0, 1)} % 16 * 4, 20))) {
    return;
  }
  if (number(header, 6, 2) % 0x4000 != 0) {  // more of them follow, or an offset
    packet.kind = Packet::Kind::kFragment;
    return;
  }
  setAddresses(packet, header.substr(12, 8), false);
  readTransport(packet, number(header, 9, 1), ip);
}

// Returns the length of an IPv6 extension header; 0 for a header of another kind.
std::size_t extensionLength(unsigned int kind, std::string_view header) {
  const std::size_t words = number(header, 1, 1);
  switch (kind) {
    case kHopByHop:
    case kRouting:
    case kDestination:
    case kMobility:
      return (words + 1) * 8;
    case kAuthentication:
      return (words + 2) * 4;
    case kFragmentHeader:
      return 8;
    default:
      return 0;
  }
}

void readIpv6(Packet& packet, std::string_view ip) {
  const std::string_view header = ip;
  const std::size_t length = number(ip, 4, 2);
  if (!skip(ip, 40)) {
    return;
  }
  ip = ip.substr(0, length == 0 ? ip.size() : length);
  unsigned int kind = number(header, 6, 1);
  while (const std::size_t extension = extensionLength(kind, ip)) {
    // A fragment header of a packet in one piece has neither an offset nor the flag for more.
    if (kind == kFragmentHeader && (number(ip, 2, 2) & 0xFFF9U) != 0) {
      packet.kind = Packet::Kind::kFragment;
      return;
    }
    kind = number(ip, 0, 1);
    if (!skip(ip, extension)) {
      return;
    }
  }
  setAddresses(packet, header.substr(8, 32), true);
  readTransport(packet, kind, ip);
}

}  // namespace

bool operator<(const Endpoint& a, const Endpoint& b) {
  return std::tie(a.address, a.ipv6, a.port) < std::tie(b.address, b.ipv6, b.port);
}

std::string addressText(const Endpoint& endpoint) {
  char text[INET6_ADDRSTRLEN] = "";
  inet_ntop(endpoint.ipv6 ? AF_INET6 : AF_INET, endpoint.address.data(), text, sizeof(text));
  return text;
}

std::string timeText(const timeval& time) {
  tm parts = {};
  if (time.tv_usec < 0 || time.tv_usec > 999999 || gmtime_r(&time.tv_sec, &parts) == nullptr) {
    return "";
  }
  char text[64] = "";
  if (std::strftime(text, sizeof(text), "%Y-%m-%dT%H:%M:%S.", &parts) == 0) {
    return "";
  }
  const std::string micros = std::to_string(time.tv_usec);
  return text + std::string(6 - micros.size(), '0') + micros + 'Z';
}

std::string passageText(const Passage& passage) {
  const auto withPort = [](const Endpoint& endpoint) {
    const std::string address = addressText(endpoint);
    return (endpoint.ipv6 ? '[' + address + ']' : address) + ':' + std::to_string(endpoint.port);
  };
  const std::string time = timeText(passage.time);
  return (time.empty() ? "?" : time) + ' ' + withPort(passage.source) + " -> " +
         withPort(passage.destination) + ' ' + passage.transport;
}

bool isCapture(std::string_view head) {
  using namespace std::string_view_literals;
  const auto reversed = [](std::string_view magic) {
    return std::string(magic.rbegin(), magic.rend());
  };
  const std::string_view magic = head.substr(0, 4);
  for (const std::string_view known :
       {"\xA1\xB2\xC3\xD4"sv, "\xA1\xB2\x3C\x4D"sv, "\xA1\xB2\xCD\x34"sv}) {
    if (magic == known || magic == reversed(known)) {
      return true;
    }
  }
  // The first four bytes of a pcapng file may also begin a text.
  const std::string_view order = head.substr(std::min<std::size_t>(head.size(), 8), 4);
  return magic == "\n\r\r\n" &&
         (order == "\x1A\x2B\x3C\x4D" || order == reversed("\x1A\x2B\x3C\x4D"));
}

bool isLinkTypeKnown(int linkType) { return findLinkLayer(linkType) != nullptr; }

Packet readPacket(int linkType, std::string_view frame) {
  Packet packet;
  const LinkLayer* layer = findLinkLayer(linkType);
  if (layer == nullptr || frame.size() < layer->length) {
    return packet;
  }
  unsigned int type =
      layer->typeOffset == kNoType ? kTypeIpv4 : number(frame, layer->typeOffset, 2);
  skip(frame, layer->length);
  while (std::find(std::begin(kVlanTags), std::end(kVlanTags), type) != std::end(kVlanTags)) {
    type = number(frame, 2, 2);
    if (!skip(frame, 4)) {
      return packet;
    }
  }
  const unsigned int version = number(frame, 0, 1) / 16;
  if (type != kTypeIpv4 && type != kTypeIpv6) {
    return packet;
  }
  if (version == 4) {
    readIpv4(packet, frame);
  } else if (version == 6) {
    readIpv6(packet, frame);
  }
  return packet;
}
