// capture.cpp - the SIP messages in a capture file, which libpcap reads.
#include "capture.h"

#include <pcap/pcap.h>

#include <algorithm>
#include <cstdio>
#include <memory>

#include "message.h"
#include "packet.h"

namespace {

struct CloseFile {
  void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
};

struct CloseCapture {
  void operator()(pcap_t* capture) const { pcap_close(capture); }
};

using Capture = std::unique_ptr<pcap_t, CloseCapture>;

// Returns the input as a file of the C library, for libpcap, which cannot look ahead in a pipe.
std::FILE* asFile(Input& input) {
  cookie_io_functions_t functions = {};
  functions.read = [](void* cookie, char* buffer, std::size_t length) {
    auto& from = *static_cast<Input*>(cookie);
    const std::size_t count = from.read(buffer, length);
    return from.readable() ? static_cast<ssize_t>(count) : -1;
  };
  return fopencookie(&input, "r", functions);
}

// Returns null, with the reason, for a file that libpcap refuses.
Capture openCapture(Input& input, std::string& error) {
  char reason[PCAP_ERRBUF_SIZE] = "";
  std::unique_ptr<std::FILE, CloseFile> file(asFile(input));
  if (file == nullptr) {
    error = "out of memory";
    return nullptr;
  }
  Capture capture(pcap_fopen_offline(file.get(), reason));
  if (capture == nullptr) {
    error = reason;
    return nullptr;
  }
  static_cast<void>(file.release());  // closed with the capture
  return capture;
}

void setFilter(pcap_t* capture, const std::string& filter) {
  bpf_program program = {};
  if (pcap_compile(capture, &program, filter.c_str(), 1, PCAP_NETMASK_UNKNOWN) != 0) {
    throw CaptureUsageError("--filter: " + std::string(pcap_geterr(capture)));
  }
  const int status = pcap_setfilter(capture, &program);
  pcap_freecode(&program);
  if (status != 0) {
    throw CaptureUsageError("--filter: " + std::string(pcap_geterr(capture)));
  }
}

// A datagram has one message; bytes after its body are not part of it (RFC 3261 18.3). Line ends
// alone keep a binding alive.
void readDatagram(const timeval& time, const Packet& packet, const FoundMessage& found,
                  CaptureCounts& counts) {
  std::string_view text = packet.payload;
  text.remove_prefix(std::min(text.find_first_not_of("\r\n"), text.size()));
  std::string_view line = text.substr(0, text.find('\n'));
  line.remove_suffix(!line.empty() && line.back() == '\r' ? 1 : 0);
  if (isStartLine(line)) {
    MessageReader reader(text);
    static_cast<void>(reader.next());
    found({time, packet.source, packet.destination, "UDP"}, text.substr(0, reader.position()));
  } else if (!text.empty() || packet.payload.empty()) {
    ++counts.notSip;
  }
}

}  // namespace

std::string readCapture(Input& input, const std::string& filter, const FoundMessage& found,
                        CaptureCounts& counts) {
  std::string error;
  const Capture capture = openCapture(input, error);
  if (capture == nullptr) {
    return error;
  }
  if (!filter.empty()) {
    setFilter(capture.get(), filter);
  }
  const int linkType = pcap_datalink(capture.get());
  if (!isLinkTypeKnown(linkType)) {
    return "frames of link type " + std::to_string(linkType) + " are not understood";
  }
  TcpStreams streams(found);
  pcap_pkthdr* header = nullptr;
  const unsigned char* frame = nullptr;
  int status = 0;
  while ((status = pcap_next_ex(capture.get(), &header, &frame)) == 1) {
    const Packet packet =
        readPacket(linkType, {reinterpret_cast<const char*>(frame), header->caplen});
    counts.fragments += packet.kind == Packet::Kind::kFragment ? 1 : 0;
    if (packet.kind == Packet::Kind::kUdp) {
      readDatagram(header->ts, packet, found, counts);
    } else if (packet.kind == Packet::Kind::kTcp) {
      streams.add(header->ts, packet);
    }
  }
  if (status == PCAP_ERROR) {
    error = pcap_geterr(capture.get());
  }
  streams.finish();
  counts.tcp = streams.counts();
  return error;
}
