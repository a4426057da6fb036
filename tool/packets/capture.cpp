// capture.cpp - the SIP messages in a capture file, which libpcap reads.
#include "packets/capture.h"

#include <pcap/pcap.h>

#include <algorithm>
#include <cstdio>
#include <memory>

#include "packets/packet.h"
#include "text/sip.h"

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

// A pcap filter; without a program, all frames pass. libpcap itself would not count the frames that
// do not pass.
class Filter {
 public:
  Filter(pcap_t* capture, const std::string& filter) : program_{} {
    if (!filter.empty() &&
        pcap_compile(capture, &program_, filter.c_str(), 1, PCAP_NETMASK_UNKNOWN) != 0) {
      throw CaptureUsageError("--filter: " + std::string(pcap_geterr(capture)));
    }
  }
  ~Filter() { pcap_freecode(&program_); }
  Filter(const Filter&) = delete;
  Filter& operator=(const Filter&) = delete;

  bool passes(const pcap_pkthdr& header, const unsigned char* frame) const {
    return program_.bf_insns == nullptr || pcap_offline_filter(&program_, &header, frame) != 0;
  }

 private:
  bpf_program program_;
};

// A datagram has one message; bytes after its body are not part of it (RFC 3261 18.3). Line ends
// alone keep a binding alive.
void readDatagram(const Packet& packet, const FoundMessage& found, CaptureCounts& counts) {
  std::string_view text = packet.payload;
  text.remove_prefix(std::min(text.find_first_not_of("\r\n"), text.size()));
  if (isStartLine(withoutLineEnd(text.substr(0, text.find('\n'))))) {
    MessageReader reader(text);
    static_cast<void>(reader.next());
    found(packet.passage, text.substr(0, reader.position()));
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
  const Filter passing(capture.get(), filter);
  TcpStreams streams(found);
  LayerWalk layers([&](const Packet& packet) {
    packet.segment ? streams.add(packet) : readDatagram(packet, found, counts);
  });
  pcap_pkthdr* header = nullptr;
  const unsigned char* frame = nullptr;
  int status = 0;
  for (std::uint64_t i = 1; (status = pcap_next_ex(capture.get(), &header, &frame)) == 1; ++i) {
    if (passing.passes(*header, frame)) {
      const std::size_t missing = header->len - std::min(header->caplen, header->len);
      counts.cut += missing != 0 ? 1 : 0;
      layers.read(pcap_datalink(capture.get()),
                  {reinterpret_cast<const char*>(frame), header->caplen},
                  {header->ts, i, {}, {}, "", missing});
    }
  }
  if (status == PCAP_ERROR) {
    error = pcap_geterr(capture.get());
  }
  layers.finish();
  streams.finish();
  counts.leftOut = layers.leftOut();
  counts.tcp = streams.counts();
  return error;
}
