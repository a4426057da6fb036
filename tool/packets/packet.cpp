// packet.cpp - what captured frames hold: datagrams and TCP segments, when and between whom.
#include "packets/packet.h"

#include <arpa/inet.h>

#include <algorithm>
#include <ctime>
#include <tuple>

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

std::string endpointText(const Endpoint& endpoint) {
  const std::string address = addressText(endpoint);
  return (endpoint.ipv6 ? '[' + address + ']' : address) + ':' + std::to_string(endpoint.port);
}

std::string passageText(const Passage& passage) {
  const std::string time = timeText(passage.time);
  return (time.empty() ? "?" : time) + ' ' + endpointText(passage.source) + " -> " +
         endpointText(passage.destination) + ' ' + passage.transport + " frame " +
         std::to_string(passage.frame);
}

std::string cutText(const Passage& passage) {
  return passage.missing == 0 ? ""
                              : "the snap length of the capture cut " +
                                    std::to_string(passage.missing) + " bytes off the packet";
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
