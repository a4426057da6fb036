// layers.cpp - walks through the layers of a captured frame, tunnels among them, to its datagrams
// and segments.
#include "packets/layers.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <utility>

namespace {

using Kind = LayerWalk::Kind;
using Layer = LayerWalk::Layer;

constexpr unsigned int kProtocolIpv4 = 4;
constexpr unsigned int kProtocolTcp = 6;
constexpr unsigned int kProtocolUdp = 17;
constexpr unsigned int kProtocolIpv6 = 41;
constexpr unsigned int kProtocolEsp = 50;

// The names kept of protocols that are not understood.
constexpr std::size_t kMaxNames = 16;

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

// The lengths of headers. kNotThis: the bytes are not such a header.
constexpr std::size_t kNotThis = SIZE_MAX;

template <std::size_t kLength>
std::size_t bytes(std::string_view /*header*/) {
  return kLength;
}

// RFC 8200 4.2, RFC 4302 2.
std::size_t extension(std::string_view header) {
  return (std::size_t{number(header, 1, 1)} + 1) * 8;
}
std::size_t authentication(std::string_view header) {
  return (std::size_t{number(header, 1, 1)} + 2) * 4;
}

// Labels of 4 bytes; the last one has the bottom-of-stack bit (RFC 3032 2.1).
std::size_t mplsLabels(std::string_view labels) {
  std::size_t length = 4;
  while (length <= labels.size() && number(labels, length - 2, 1) % 2 == 0) {
    length += 4;
  }
  return length;
}

// The flags for checksum, key and sequence number each add 4 bytes (RFC 2784, RFC 2890). Version 1
// carries PPP.
std::size_t gre(std::string_view header) {
  const std::uint32_t flags = number(header, 0, 2);
  if (flags % 8 != 0) {
    return kNotThis;
  }
  return std::size_t{4} + ((flags & 0x8000U) != 0 ? 4 : 0) + ((flags & 0x2000U) != 0 ? 4 : 0) +
         ((flags & 0x1000U) != 0 ? 4 : 0);
}

// A G-PDU, with sequence number and extension headers (3GPP TS 29.281 5.1, 5.2). The last byte of
// an extension header is the type of the next one.
std::size_t gtp(std::string_view header) {
  const std::uint32_t flags = number(header, 0, 1);
  if (flags / 16 != 3 || number(header, 1, 1) != 255) {
    return kNotThis;
  }
  std::size_t length = flags % 8 == 0 ? 8 : 12;
  const bool extended = (flags & 4U) != 0;
  while (extended && length <= header.size() && number(header, length - 1, 1) != 0) {
    const std::size_t units = number(header, length, 1);
    if (units == 0) {
      return kNotThis;
    }
    length += units * 4;
  }
  return length;
}

// RFC 7348 5.
std::size_t vxlan(std::string_view header) { return number(header, 0, 1) == 8 ? 8 : kNotThis; }

// Where the content of an ESP packet is, as null encryption leaves it (RFC 4303 2, RFC 2410).
struct EspContent {
  unsigned int protocol;
  std::string_view bytes;
};

// Returns whether bytes look like all of a packet of this protocol.
bool isPacket(unsigned int protocol, std::string_view bytes) {
  switch (protocol) {
    case kProtocolUdp:
      return bytes.size() >= 8 && number(bytes, 4, 2) == bytes.size();
    case kProtocolTcp:
      return number(bytes, 12, 1) % 16 == 0 && number(bytes, 12, 1) / 16 >= 5 &&
             std::size_t{number(bytes, 12, 1)} / 4 <= bytes.size();
    case kProtocolIpv4:
      return number(bytes, 0, 1) / 16 == 4 && number(bytes, 2, 2) == bytes.size();
    case kProtocolIpv6:
      return number(bytes, 0, 1) / 16 == 6 && std::size_t{number(bytes, 4, 2)} + 40 == bytes.size();
    default:
      return false;
  }
}

// How long the header with the initialization vector, and the check value at the end, may be. The
// security association says it, which a capture does not have: 96 bits for MD5 and SHA-1, half of
// the hash for SHA-2, none; a vector for AES-GMAC (RFC 4543).
const struct EspForm {
  std::size_t header;
  std::size_t checkValue;
} kEspForms[] = {{8, 12}, {8, 16}, {8, 24}, {8, 32}, {8, 0}, {16, 16}};

// Returns what is in an ESP packet of this form; protocol 0 when that makes no sense. Padding is 1,
// 2, 3...
EspContent openEsp(std::string_view esp, const EspForm& form) {
  if (esp.size() < form.header + 2 + form.checkValue) {
    return {};
  }
  esp = esp.substr(form.header, esp.size() - form.header - form.checkValue);
  const unsigned int protocol = number(esp, esp.size() - 1, 1);
  const std::size_t padding = number(esp, esp.size() - 2, 1);
  esp.remove_suffix(2);
  for (std::size_t i = padding; i != 0; --i) {
    if (esp.empty() || number(esp, esp.size() - 1, 1) != i) {
      return {};
    }
    esp.remove_suffix(1);
  }
  return isPacket(protocol, esp) ? EspContent{protocol, esp} : EspContent{};
}

EspContent openEsp(std::string_view esp) {
  for (const EspForm& form : kEspForms) {
    const EspContent content = openEsp(esp, form);
    if (content.protocol != 0) {
      return content;
    }
  }
  return {};
}

// On port 4500 keys are exchanged as well, after four zeros (RFC 3948 2.2).
std::size_t espInUdp(std::string_view esp) { return openEsp(esp).protocol != 0 ? 0 : kNotThis; }

constexpr std::size_t kNone = SIZE_MAX;

const Layer kDone = {Kind::kDone, 0, {}};
const Layer kDamaged = {Kind::kDamaged, 0, {}};

// How a layer is recognised, how many bytes its header has, what is inside, and where in the header
// the number of that is: one byte for a protocol of IP, else two. The type of loopback is left
// alone: its byte order and its values are those of the machine that captured.
const struct Row {
  Kind kind;
  unsigned int number;
  std::size_t (*length)(std::string_view header);
  Kind inside;
  std::size_t numberAt;
} kRows[] = {
    {Kind::kLinkType, 0, bytes<4>, Kind::kIp, kNone},               // loopback, BSD
    {Kind::kLinkType, 1, bytes<0>, Kind::kEthernet, kNone},         //
    {Kind::kLinkType, 12, bytes<0>, Kind::kIp, kNone},              // raw IP
    {Kind::kLinkType, 14, bytes<0>, Kind::kIp, kNone},              // raw IP, OpenBSD
    {Kind::kLinkType, 101, bytes<0>, Kind::kIp, kNone},             // raw IP, as files have it
    {Kind::kLinkType, 108, bytes<4>, Kind::kIp, kNone},             // loopback, OpenBSD
    {Kind::kLinkType, 113, bytes<16>, Kind::kEtherType, 14},        // Linux cooked
    {Kind::kLinkType, 228, bytes<0>, Kind::kIp, kNone},             // raw IPv4
    {Kind::kLinkType, 229, bytes<0>, Kind::kIp, kNone},             // raw IPv6
    {Kind::kLinkType, 276, bytes<20>, Kind::kEtherType, 0},         // Linux cooked v2
    {Kind::kEthernet, 0, bytes<14>, Kind::kEtherType, 12},          //
    {Kind::kEtherType, 0x0800, bytes<0>, Kind::kIp, kNone},         // IPv4
    {Kind::kEtherType, 0x86DD, bytes<0>, Kind::kIp, kNone},         // IPv6
    {Kind::kEtherType, 0x8100, bytes<4>, Kind::kEtherType, 2},      // VLAN
    {Kind::kEtherType, 0x88A8, bytes<4>, Kind::kEtherType, 2},      // VLAN of a provider
    {Kind::kEtherType, 0x9100, bytes<4>, Kind::kEtherType, 2},      // VLAN, before the standard
    {Kind::kEtherType, 0x8847, mplsLabels, Kind::kIp, kNone},       // MPLS
    {Kind::kEtherType, 0x8848, mplsLabels, Kind::kIp, kNone},       // MPLS, multicast
    {Kind::kEtherType, 0x8864, bytes<8>, Kind::kPppProtocol, 6},    // PPPoE session
    {Kind::kEtherType, 0x6558, bytes<0>, Kind::kEthernet, kNone},   // Ethernet in GRE
    {Kind::kPppProtocol, 0x0021, bytes<0>, Kind::kIp, kNone},       // IPv4
    {Kind::kPppProtocol, 0x0057, bytes<0>, Kind::kIp, kNone},       // IPv6
    {Kind::kIpProtocol, 0, extension, Kind::kIpProtocol, 0},        // hop-by-hop options
    {Kind::kIpProtocol, 4, bytes<0>, Kind::kIp, kNone},             // IPv4 in IP
    {Kind::kIpProtocol, 6, bytes<0>, Kind::kTcp, kNone},            //
    {Kind::kIpProtocol, 17, bytes<0>, Kind::kUdp, kNone},           //
    {Kind::kIpProtocol, 41, bytes<0>, Kind::kIp, kNone},            // IPv6 in IP
    {Kind::kIpProtocol, 43, extension, Kind::kIpProtocol, 0},       // routing
    {Kind::kIpProtocol, 44, bytes<0>, Kind::kFragment, kNone},      // of IPv6
    {Kind::kIpProtocol, 47, gre, Kind::kEtherType, 2},              //
    {Kind::kIpProtocol, 50, bytes<0>, Kind::kEsp, kNone},           //
    {Kind::kIpProtocol, 51, authentication, Kind::kIpProtocol, 0},  //
    {Kind::kIpProtocol, 60, extension, Kind::kIpProtocol, 0},       // destination options
    {Kind::kIpProtocol, 132, bytes<0>, Kind::kSctp, kNone},         //
    {Kind::kIpProtocol, 135, extension, Kind::kIpProtocol, 0},      // mobility
    {Kind::kUdpPort, 2152, gtp, Kind::kIp, kNone},                  // GTP-U
    {Kind::kUdpPort, 4500, espInUdp, Kind::kEsp, kNone},            //
    {Kind::kUdpPort, 4789, vxlan, Kind::kEthernet, kNone},          //
};

// Returns the row that recognises a layer; null for none, also when its header is another one.
const Row* rowOf(const Layer& layer) {
  const auto* const found = std::find_if(
      std::begin(kRows), std::end(kRows),
      [&layer](const Row& row) { return row.kind == layer.kind && row.number == layer.number; });
  return found == std::end(kRows) || found->length(layer.bytes) == kNotThis ? nullptr : found;
}

std::string protocolName(const Layer& layer) {
  switch (layer.kind) {
    case Kind::kLinkType:
      return "link type " + std::to_string(layer.number);
    case Kind::kPppProtocol:
      return "PPP protocol " + std::to_string(layer.number);
    case Kind::kIpProtocol:
      return "IP protocol " + std::to_string(layer.number);
    default:
      break;
  }
  if (layer.number < 0x0600) {
    return "IEEE 802.3";  // the number is a length
  }
  char name[32] = "";
  static_cast<void>(std::snprintf(name, sizeof(name), "EtherType 0x%04X", layer.number));
  return name;
}

}  // namespace

void LayerWalk::read(int linkType, std::string_view frame, const Passage& passage) {
  packet_ = {passage, {}};
  Layer layer = {Kind::kLinkType, static_cast<unsigned int>(linkType), frame};
  for (int i = 0; i < kMaxLayers && layer.kind < Kind::kDone; ++i) {
    layer = next(layer);
  }
  // Of a packet that the capture cut, nothing else is known.
  leftOut_.damaged += layer.kind != Kind::kDone && passage.missing == 0 ? 1 : 0;
}

void LayerWalk::finish() {
  fragments_.finish();
  leftOut_.fragments = fragments_.leftOut();
}

Layer LayerWalk::next(const Layer& layer) {
  switch (layer.kind) {
    case Kind::kIp:
      return readIp(layer.bytes);
    case Kind::kFragment:
      return readFragmentHeader(layer.bytes);
    case Kind::kEsp:
      return readEsp(layer.bytes);
    case Kind::kUdp:
      return readUdp(layer.bytes);
    case Kind::kTcp:
      return readTcp(layer.bytes);
    case Kind::kSctp:
      return readSctp(layer.bytes);
    default:
      break;
  }
  const Row* row = rowOf(layer);
  if (row == nullptr) {
    return unknown(layer);
  }
  Layer inside = {row->inside, 0, layer.bytes};
  if (row->numberAt != kNone) {
    inside.number = number(layer.bytes, row->numberAt, row->inside == Kind::kIpProtocol ? 1 : 2);
  }
  return skip(inside.bytes, row->length(layer.bytes)) ? inside : kDamaged;
}

// Counts a layer that no row recognises.
Layer LayerWalk::unknown(const Layer& layer) {
  std::map<std::string, unsigned long>& names = leftOut_.protocols;
  const std::string name = protocolName(layer);
  ++names[names.size() < kMaxNames || names.count(name) != 0 ? name : "others"];
  return kDone;
}

Layer LayerWalk::readIp(std::string_view ip) {
  switch (number(ip, 0, 1) / 16) {
    case 4:
      return readIpv4(ip);
    case 6:
      return readIpv6(ip);
    default:
      return kDamaged;
  }
}

// Bytes past the length of the IP packet are padding. A length of 0 is left to the network card to
// fill in; the frame then ends with the packet.
Layer LayerWalk::readIpv4(std::string_view ip) {
  const std::size_t length = number(ip, 2, 2);
  ip = ip.substr(0, length == 0 ? ip.size() : length);
  const std::string_view header = ip;
  if (ip.size() < 20 ||
      !skip(ip, std::max<std::size_t>(std::size_t{number(ip, 0, 1)} % 16 * 4, 20))) {
    return kDamaged;
  }
  setAddresses(header.substr(12, 8), false);
  const unsigned int protocol = number(header, 9, 1);
  const std::uint32_t flags = number(header, 6, 2);
  if (flags % 0x4000 == 0) {  // no more of them follow, and no offset
    return {Kind::kIpProtocol, protocol, ip};
  }
  return putTogether({packet_.passage.source, packet_.passage.destination, number(header, 4, 2),
                      protocol, std::size_t{flags % 0x2000} * 8, (flags & 0x2000U) == 0, ip});
}

Layer LayerWalk::readIpv6(std::string_view ip) {
  const std::string_view header = ip;
  const std::size_t length = number(ip, 4, 2);
  if (!skip(ip, 40)) {
    return kDamaged;
  }
  setAddresses(header.substr(8, 32), true);
  return {Kind::kIpProtocol, number(header, 6, 1), ip.substr(0, length == 0 ? ip.size() : length)};
}

// A fragment header of a packet in one piece has neither an offset nor the flag for more.
Layer LayerWalk::readFragmentHeader(std::string_view bytes) {
  const std::string_view header = bytes;
  if (!skip(bytes, 8)) {
    return kDamaged;
  }
  const unsigned int protocol = number(header, 0, 1);
  const std::uint32_t offsetAndMore = number(header, 2, 2) & 0xFFF9U;
  if (offsetAndMore == 0) {
    return {Kind::kIpProtocol, protocol, bytes};
  }
  return putTogether({packet_.passage.source, packet_.passage.destination, number(header, 4, 4),
                      protocol, offsetAndMore & 0xFFF8U, offsetAndMore % 2 == 0, bytes});
}

Layer LayerWalk::putTogether(const Fragment& fragment) {
  std::optional<std::string> whole = fragments_.add(packet_.passage.time, fragment);
  if (!whole) {
    return kDone;
  }
  whole_ = std::move(*whole);
  return {Kind::kIpProtocol, fragment.protocol, whole_};
}

Layer LayerWalk::readEsp(std::string_view esp) {
  const EspContent content = openEsp(esp);
  return content.protocol == 0 ? unknown({Kind::kIpProtocol, kProtocolEsp, esp})
                               : Layer{Kind::kIpProtocol, content.protocol, content.bytes};
}

// The ports of a tunnel do not make one: SIP uses any port.
Layer LayerWalk::readUdp(std::string_view datagram) {
  const std::size_t length = number(datagram, 4, 2);
  setPorts(datagram);
  if (!skip(datagram, 8)) {
    return kDamaged;
  }
  datagram = datagram.substr(0, length < 8 ? datagram.size() : length - 8);
  for (const Endpoint& end : {packet_.passage.destination, packet_.passage.source}) {
    const Layer tunnel = {Kind::kUdpPort, end.port, datagram};
    if (rowOf(tunnel) != nullptr) {
      return tunnel;
    }
  }
  return report("UDP", datagram);
}

Layer LayerWalk::readTcp(std::string_view segment) {
  const std::size_t headerLength = std::size_t{number(segment, 12, 1)} / 16 * 4;
  const unsigned int flags = number(segment, 13, 1);
  setPorts(segment);
  packet_.segment = true;
  packet_.sequence = number(segment, 4, 4);
  packet_.fin = (flags & 1U) != 0;
  packet_.syn = (flags & 2U) != 0;
  packet_.reset = (flags & 4U) != 0;
  return headerLength >= 20 && skip(segment, headerLength) ? report("TCP", segment) : kDamaged;
}

// Reports the DATA chunks that are complete messages (RFC 9260 3.3.1).
Layer LayerWalk::readSctp(std::string_view packet) {
  setPorts(packet);
  if (!skip(packet, 12)) {
    return kDamaged;
  }
  while (!packet.empty()) {
    const std::size_t length = number(packet, 2, 2);
    std::string_view chunk = packet.substr(0, length);
    if (length < 4) {
      return kDamaged;
    }
    const bool data = number(chunk, 0, 1) == 0 && skip(chunk, 16);
    if (data && number(packet, 1, 1) % 4 == 3) {  // its first and its last piece
      report("SCTP", chunk);
    } else if (data) {
      ++leftOut_.sctpPieces;
    }
    packet.remove_prefix(std::min(packet.size(), (length + 3) / 4 * 4));
  }
  return kDone;
}

void LayerWalk::setAddresses(std::string_view both, bool ipv6) {
  const std::size_t length = both.size() / 2;
  Endpoint& source = packet_.passage.source = {{}, ipv6, 0};
  Endpoint& destination = packet_.passage.destination = {{}, ipv6, 0};
  both.copy(reinterpret_cast<char*>(source.address.data()), length);
  both.copy(reinterpret_cast<char*>(destination.address.data()), length, length);
}

void LayerWalk::setPorts(std::string_view header) {
  packet_.passage.source.port = static_cast<std::uint16_t>(number(header, 0, 2));
  packet_.passage.destination.port = static_cast<std::uint16_t>(number(header, 2, 2));
}

Layer LayerWalk::report(const char* transport, std::string_view payload) {
  packet_.passage.transport = transport;
  packet_.payload = payload;
  found_(packet_);
  return kDone;
}
