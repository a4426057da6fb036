// makeCapture.cpp - writes a capture file. Standard input describes it, one instruction a line:
//
//   format pcap|swapped|nano|pcapng             the file's format; swapped is big-endian
//   link ethernet|vlan|mpls|pppoe|cooked|cooked2|raw|loopback|arp|other  of the packets that follow
//   udp SOURCE PORT DESTINATION PORT [TEXT]     a datagram, IPv4 or IPv6 as the addresses are
//   tcp SOURCE PORT DESTINATION PORT SEQUENCE FLAGS [TEXT]  a segment; FLAGS are S, F, R or -
//   sctp SOURCE PORT DESTINATION PORT [TEXT]    a message between two pieces of others
//   icmp SOURCE PORT DESTINATION PORT [TEXT]    a packet of another protocol
//   fragment LINE, extended LINE, short LINE    the first of two fragments; after an extension
//                                               header; the last byte not captured
//   wait MICROSECONDS                           before the next packet; may be negative
//   gtp|gre|vxlan|ip|esp|udpesp LINE            in a tunnel, between 198.51.100.1 and .2
//   pieces LINE                                 in fragments, the last one first, the first one
//   twice times N LINE                                N times, each from the next source port cut N
//   removes the last N bytes of the file
//
// TEXT has \r, \n, \\, \xHH, and \{N} for N times "x". Packets are a microsecond apart. Tunnels
// have their short header for IPv4 and a long one for IPv6.
#include <arpa/inet.h>

#include <cstdint>
#include <iostream>
#include <iterator>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

struct Wanted {
  bool fragment = false;
  bool extended = false;
  bool cut = false;
  std::vector<std::string> wraps;  // the outer one first
};

std::string number(std::uint64_t value, std::size_t width) {
  std::string bytes;
  while (width != 0) {
    bytes += static_cast<char>(value >> (8 * --width) & 0xFFU);
  }
  return bytes;
}

std::string unescaped(const std::string& text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char escape = text[i] == '\\' ? text.at(++i) : '\\';
    if (escape == 'x') {
      bytes += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
      i += 2;
    } else if (escape == '{') {
      bytes.append(std::stoul(text.substr(i + 1)), 'x');
      i = text.find('}', i);
    } else {
      bytes += escape == 'r' ? '\r' : escape == 'n' ? '\n' : text[i];
    }
  }
  return bytes;
}

std::string address(const std::string& text) {
  unsigned char bytes[16];
  const bool ipv6 = text.find(':') != std::string::npos;
  if (inet_pton(ipv6 ? AF_INET6 : AF_INET, text.c_str(), bytes) != 1) {
    throw std::runtime_error("no address: " + text);
  }
  return {std::begin(bytes), std::begin(bytes) + (ipv6 ? 16 : 4)};
}

constexpr unsigned int kFragmentHeader = 44;

std::string ipv4(unsigned int protocol, const std::string& ends, const std::string& data,
                 unsigned int identification = 1, unsigned int fragment = 0x4000,
                 const std::string& options = "") {
  return number(0x45 + options.size() / 4, 1) + number(0, 1) +
         number(20 + options.size() + data.size(), 2) + number(identification, 2) +
         number(fragment, 2) + number(64, 1) + number(protocol, 1) + number(0, 2) + ends + options +
         data;
}

std::string ipv6(unsigned int protocol, const std::string& ends, const std::string& data) {
  return number(0x60000000, 4) + number(data.size(), 2) + number(protocol, 1) + number(64, 1) +
         ends + data;
}

std::string fragmentHeader(unsigned int protocol, unsigned int fragment,
                           unsigned int identification) {
  return number(protocol, 1) + number(0, 1) + number(fragment, 2) + number(identification, 4);
}

std::string udp(unsigned int from, unsigned int to, const std::string& data) {
  return number(from, 2) + number(to, 2) + number(data.size() + 8, 2) + number(0, 2) + data;
}

std::string sctpData(unsigned int flags, const std::string& data) {
  return number(flags, 2) + number(16 + data.size(), 2) + std::string(12, 0) + data +
         std::string((4 - data.size() % 4) % 4, 0);
}

// An IP packet without options and extension headers, taken apart.
struct Ip {
  explicit Ip(const std::string& packet)
      : version6(packet[0] == 0x60),
        protocol(static_cast<unsigned char>(packet[version6 ? 6 : 9])),
        ends(version6 ? packet.substr(8, 32) : packet.substr(12, 8)),
        data(packet.substr(version6 ? 40 : 20)) {}

  std::string with(unsigned int other, const std::string& content) const {
    return version6 ? ipv6(other, ends, content) : ipv4(other, ends, content);
  }

  bool version6;
  unsigned int protocol;
  std::string ends;
  std::string data;
};

// Returns the packet with its content in ESP; the check value is short for IPv4.
std::string inEsp(const std::string& packet, bool overUdp) {
  const Ip ip(packet);
  std::string esp = number(0x1234567800000001, 8) + ip.data;
  for (unsigned int i = 1; esp.size() % 4 != 2; ++i) {
    esp += number(i, 1);
  }
  const std::size_t padding = esp.size() - 8 - ip.data.size();
  esp += number(padding, 1) + number(ip.protocol, 1) + std::string(ip.version6 ? 16 : 12, 'i');
  return overUdp ? ip.with(17, udp(4500, 4500, esp)) : ip.with(50, esp);
}

std::vector<std::string> inPieces(const std::string& packet) {
  static unsigned int identification = 100;
  constexpr std::size_t kLength = 24;
  const Ip ip(packet);
  ++identification;
  std::vector<std::string> pieces;
  for (std::size_t offset = 0; offset < ip.data.size(); offset += kLength) {
    const std::string piece = ip.data.substr(offset, kLength);
    const bool more = offset + kLength < ip.data.size();
    const auto units = static_cast<unsigned int>(offset / 8);
    pieces.insert(
        pieces.begin(),
        ip.version6
            ? ip.with(
                  kFragmentHeader,
                  fragmentHeader(ip.protocol, units * 8 + (more ? 1 : 0), identification) + piece)
            : ipv4(ip.protocol, ip.ends, piece, identification, units + (more ? 0x2000 : 0)));
  }
  pieces.push_back(pieces.back());
  return pieces;
}

std::vector<std::string> wrapped(const std::string& wrap, const std::string& packet) {
  const std::string ends = address("198.51.100.1") + address("198.51.100.2");
  const bool longer = packet[0] == 0x60;
  const std::string type = number(longer ? 0x86DD : 0x0800, 2);
  if (wrap == "gtp") {
    const std::string header = longer ? number(0x34FF, 2) + number(packet.size() + 8, 2) +
                                            number(1, 4) + number(0x00000085, 4) +
                                            number(0x01100900, 4)
                                      : number(0x30FF, 2) + number(packet.size(), 2) + number(1, 4);
    return {ipv4(17, ends, udp(2152, 2152, header + packet))};
  }
  if (wrap == "gre") {
    const std::string header =
        longer ? number(0x3000, 2) + type + number(1, 8) : number(0, 2) + type;
    return {ipv4(47, ends, header + packet)};
  }
  if (wrap == "vxlan") {
    const std::string frame = std::string(12, 'm') + type + packet;
    return {ipv4(17, ends, udp(40000, 4789, number(0x0800000000000100, 8) + frame))};
  }
  if (wrap == "ip") {
    return {longer ? ipv4(41, ends, packet)
                   : ipv6(4, address("2001:db8::a") + address("2001:db8::b"), packet)};
  }
  if (wrap == "pieces") {
    return inPieces(packet);
  }
  return {inEsp(packet, wrap == "udpesp")};
}

class CaptureMaker {
 public:
  void take(const std::string& line, const Wanted& wanted, unsigned int portStep) {
    std::istringstream words(line);
    std::string word;
    words >> word;
    if (word == "format" || word == "link") {
      words >> (word == "link" ? link_ : format_);
    } else if (word == "cut") {
      words >> cut_;
    } else if (word == "wait") {
      std::int64_t microseconds = 0;
      words >> microseconds;
      time_ += microseconds;
    } else if (word == "times") {
      unsigned int times = 0;
      words >> times;
      const std::string repeated = remainder(words);
      for (unsigned int i = 0; i < times; ++i) {
        take(repeated, wanted, i);
      }
    } else if (word == "udp" || word == "tcp" || word == "sctp" || word == "icmp") {
      addPacket(word, words, wanted, portStep);
    } else if (kWraps.find(' ' + word + ' ') != std::string::npos) {
      Wanted more = wanted;
      if (word == "fragment" || word == "extended" || word == "short") {
        (word == "fragment" ? more.fragment : word == "short" ? more.cut : more.extended) = true;
      } else {
        more.wraps.push_back(word);
      }
      take(remainder(words), more, portStep);
    } else {
      throw std::runtime_error("unknown line: " + line);
    }
  }

  std::string file() const {
    std::string bytes = fileHeader() + packets_;
    bytes.resize(bytes.size() - cut_);
    return bytes;
  }

 private:
  static std::string remainder(std::istringstream& words) {
    std::string text;
    std::getline(words >> std::ws, text);
    return text;
  }

  void addPacket(const std::string& kind, std::istringstream& words, const Wanted& wanted,
                 unsigned int portStep) {
    std::string source;
    std::string destination;
    std::string flags;
    std::uint16_t from = 0;
    std::uint16_t to = 0;
    std::uint32_t sequence = 0;
    words >> source >> from >> destination >> to;
    if (kind == "tcp") {
      words >> sequence >> flags;
    }
    const std::string text = unescaped(remainder(words));
    const std::string ports = number(from + portStep, 2) + number(to, 2);
    unsigned int protocol = 1;
    std::string data = text;
    if (kind == "tcp") {
      const unsigned int bits =
          (flags == "F" ? 1U : 0) | (flags == "S" ? 2U : 0) | (flags == "R" ? 4U : 0) | 16U;
      protocol = 6;
      data = ports + number(sequence, 4) + number(0, 4) + number(5 << 4, 1) + number(bits, 1) +
             number(0, 6) + text;
    } else if (kind == "sctp") {
      protocol = 132;
      data = ports + number(0, 8) + sctpData(1, "end") + sctpData(3, text) + sctpData(2, "start");
    } else if (kind == "udp") {
      protocol = 17;
      data = udp(from + portStep, to, text);
    }
    std::vector<std::string> packets = {
        ipPacket(protocol, address(source) + address(destination), data, wanted)};
    for (auto wrap = wanted.wraps.rbegin(); wrap != wanted.wraps.rend(); ++wrap) {
      std::vector<std::string> outer;
      for (const std::string& packet : packets) {
        for (const std::string& more : wrapped(*wrap, packet)) {
          outer.push_back(more);
        }
      }
      packets = outer;
    }
    for (const std::string& packet : packets) {
      addFrame(linkHeader(packet[0] == 0x60) + packet, wanted.cut);
    }
  }

  static std::string ipPacket(unsigned int protocol, const std::string& ends, std::string data,
                              const Wanted& wanted) {
    if (ends.size() == 8) {
      const std::string options = wanted.extended ? number(0x01010101, 4) : "";  // no operation
      return ipv4(protocol, ends, data, 1, wanted.fragment ? 0x2000 : 0x4000, options);
    }
    constexpr unsigned int kDestinationOptions = 60;
    unsigned int next = protocol;
    if (wanted.fragment) {
      data.insert(0, fragmentHeader(next, 1, 7));
      next = kFragmentHeader;
    }
    if (wanted.extended) {
      data.insert(0, number(next, 1) + number(0, 1) + number(0x0104, 2) + number(0, 4));
      next = kDestinationOptions;
    }
    return ipv6(next, ends, data);
  }

  std::string linkHeader(bool ipv6) const {
    const std::string type = number(ipv6 ? 0x86DD : 0x0800, 2);
    const std::map<std::string, std::string> headers = {
        {"ethernet", std::string(12, 'm') + type},
        {"vlan", std::string(12, 'm') + number(0x88A80001, 4) + number(0x81000002, 4) + type},
        {"mpls", std::string(12, 'm') + number(0x8847, 2) + number(0x0001004000020140, 8)},
        {"pppoe", std::string(12, 'm') + number(0x886411000001, 6) + number(0, 2) +
                      number(ipv6 ? 0x57 : 0x21, 2)},
        {"cooked", std::string(14, 'c') + type},
        {"cooked2", type + std::string(18, 'c')},
        {"raw", ""},
        {"loopback", number(ipv6 ? 24 : 2, 4)},
        {"arp", std::string(12, 'm') + number(0x0806, 2)},
        {"other", ""},
    };
    return headers.at(link_);
  }

  // Returns a number for the file's own headers, in the byte order of the format.
  std::string own(std::uint64_t value, std::size_t width) const {
    const std::string bytes = number(value, width);
    return format_ == "swapped" ? bytes : std::string(bytes.rbegin(), bytes.rend());
  }

  std::string fileHeader() const {
    const std::map<std::string, unsigned int> types = {
        {"ethernet", 1}, {"vlan", 1},      {"mpls", 1},  {"pppoe", 1},    {"arp", 1},
        {"cooked", 113}, {"cooked2", 276}, {"raw", 101}, {"loopback", 0}, {"other", 105}};
    const unsigned int type = types.at(link_);
    if (format_ == "pcapng") {
      return own(0x0A0D0D0A, 4) + own(28, 4) + own(0x1A2B3C4D, 4) + own(1, 2) + own(0, 2) +
             std::string(8, '\xFF') + own(28, 4) +  //
             own(1, 4) + own(20, 4) + own(type, 2) + own(0, 2) + own(65535, 4) + own(20, 4);
    }
    return own(format_ == "nano" ? 0xA1B23C4D : 0xA1B2C3D4, 4) + own(2, 2) + own(4, 2) + own(0, 8) +
           own(65535, 4) + own(type, 4);
  }

  void addFrame(const std::string& frame, bool cut) {
    const auto time = static_cast<std::uint64_t>(time_++);
    const std::string held = frame.substr(0, frame.size() - (cut ? 1 : 0));
    const std::string sizes = own(held.size(), 4) + own(frame.size(), 4);
    if (format_ == "pcapng") {
      const std::string padding((4 - held.size() % 4) % 4, 0);
      const std::string length = own(32 + held.size() + padding.size(), 4);
      packets_ += own(6, 4) + length + own(0, 4) + own(time >> 32, 4) + own(time & 0xFFFFFFFF, 4) +
                  sizes + held + padding + length;
    } else {
      packets_ += own(time / 1000000, 4) + own(time % 1000000 * (format_ == "nano" ? 1000 : 1), 4) +
                  sizes + held;
    }
  }

  static const std::string kWraps;

  std::string format_ = "pcap";
  std::string link_ = "ethernet";
  std::string packets_;
  std::size_t cut_ = 0;
  std::int64_t time_ = 1709251199999999;
};

const std::string CaptureMaker::kWraps =
    " fragment extended short gtp gre vxlan ip esp udpesp pieces ";

}  // namespace

int main() {
  try {
    CaptureMaker maker;
    for (std::string line; std::getline(std::cin, line);) {
      maker.take(line, {}, 0);
    }
    std::cout << maker.file();
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "makeCapture: " << error.what() << '\n';
    return 2;
  }
}
