// makeCapture.cpp - writes a capture file. Standard input describes it, one instruction a line:
//
//   format pcap|swapped|nano|pcapng             the file's format; swapped is big-endian
//   link ethernet|vlan|cooked|cooked2|raw|loopback
//   udp SOURCE PORT DESTINATION PORT [TEXT]     a datagram, IPv4 or IPv6 as the addresses are
//   tcp SOURCE PORT DESTINATION PORT SEQUENCE FLAGS [TEXT]  a segment; FLAGS are S, F, R or -
//   fragment LINE, extended LINE, short LINE    the first of two fragments; after an extension
//                                               header; the last byte not captured
//   times N LINE                                N times, each from the next source port
//   cut N                                       removes the last N bytes of the file
//
// TEXT has \r, \n, \\, \xHH, and \{N} for N times "x". Packets are a microsecond apart.
#include <arpa/inet.h>

#include <cstdint>
#include <iostream>
#include <iterator>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

struct Wanted {
  bool fragment = false;
  bool extended = false;
  bool cut = false;
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
    } else if (word == "times") {
      unsigned int times = 0;
      words >> times;
      const std::string repeated = remainder(words);
      for (unsigned int i = 0; i < times; ++i) {
        take(repeated, wanted, i);
      }
    } else if (word == "udp" || word == "tcp") {
      addPacket(word == "tcp", words, wanted, portStep);
    } else if (word == "fragment" || word == "extended" || word == "short") {
      Wanted more = wanted;
      more.fragment |= word == "fragment";
      more.extended |= word == "extended";
      more.cut |= word == "short";
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

  void addPacket(bool tcp, std::istringstream& words, const Wanted& wanted, unsigned int portStep) {
    std::string source;
    std::string destination;
    std::string flags;
    std::uint16_t from = 0;
    std::uint16_t to = 0;
    std::uint32_t sequence = 0;
    words >> source >> from >> destination >> to;
    if (tcp) {
      words >> sequence >> flags;
    }
    const std::string text = unescaped(remainder(words));
    std::string data = number(from + portStep, 2) + number(to, 2);
    if (tcp) {
      const unsigned int bits =
          (flags == "F" ? 1U : 0) | (flags == "S" ? 2U : 0) | (flags == "R" ? 4U : 0) | 16U;
      data += number(sequence, 4) + number(0, 4) + number(5 << 4, 1) + number(bits, 1) +
              number(0, 6) + text;
    } else {
      data += number(text.size() + 8, 2) + number(0, 2) + text;
    }
    const std::string ends = address(source) + address(destination);
    const std::string packet = ends.size() == 8 ? ipv4(tcp ? 6 : 17, ends, data, wanted)
                                                : ipv6(tcp ? 6 : 17, ends, data, wanted);
    addFrame(linkHeader(ends.size() != 8) + packet, wanted.cut);
  }

  static std::string ipv4(unsigned int protocol, const std::string& ends, const std::string& data,
                          const Wanted& wanted) {
    const std::string options = wanted.extended ? number(0x01010101, 4) : "";  // no operation
    return number(0x45 + options.size() / 4, 1) + number(0, 1) +
           number(20 + options.size() + data.size(), 2) + number(1, 2) +
           number(wanted.fragment ? 0x2000 : 0x4000, 2) + number(64, 1) + number(protocol, 1) +
           number(0, 2) + ends + options + data;
  }

  static std::string ipv6(unsigned int protocol, const std::string& ends, std::string data,
                          const Wanted& wanted) {
    constexpr unsigned int kFragmentHeader = 44;
    constexpr unsigned int kDestinationOptions = 60;
    unsigned int next = protocol;
    if (wanted.fragment) {
      data.insert(0, number(next, 1) + number(0, 1) + number(1, 2) + number(7, 4));
      next = kFragmentHeader;
    }
    if (wanted.extended) {
      data.insert(0, number(next, 1) + number(0, 1) + number(0x0104, 2) + number(0, 4));
      next = kDestinationOptions;
    }
    return number(0x60000000, 4) + number(data.size(), 2) + number(next, 1) + number(64, 1) + ends +
           data;
  }

  std::string linkHeader(bool ipv6) const {
    const std::string type = number(ipv6 ? 0x86DD : 0x0800, 2);
    const std::map<std::string, std::string> headers = {
        {"ethernet", std::string(12, 'm') + type},
        {"vlan", std::string(12, 'm') + number(0x88A80001, 4) + number(0x81000002, 4) + type},
        {"cooked", std::string(14, 'c') + type},
        {"cooked2", type + std::string(18, 'c')},
        {"raw", ""},
        {"loopback", number(ipv6 ? 24 : 2, 4)},
    };
    return headers.at(link_);
  }

  // Returns a number for the file's own headers, in the byte order of the format.
  std::string own(std::uint64_t value, std::size_t width) const {
    const std::string bytes = number(value, width);
    return format_ == "swapped" ? bytes : std::string(bytes.rbegin(), bytes.rend());
  }

  std::string fileHeader() const {
    const std::map<std::string, unsigned int> types = {{"ethernet", 1}, {"vlan", 1},
                                                       {"cooked", 113}, {"cooked2", 276},
                                                       {"raw", 101},    {"loopback", 0}};
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
    const std::uint64_t time = 1709251199999999 + count_++;
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

  std::string format_ = "pcap";
  std::string link_ = "ethernet";
  std::string packets_;
  std::size_t cut_ = 0;
  std::uint64_t count_ = 0;
};

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
