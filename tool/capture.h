// capture.h - the SIP messages in a capture file.
#ifndef TOOL_CAPTURE_H
#define TOOL_CAPTURE_H

#include <stdexcept>
#include <string>
#include <string_view>

#include "input.h"
#include "tcpStreams.h"

// What in a capture is shown as no message.
struct CaptureCounts {
  unsigned long fragments = 0;
  unsigned long notSip = 0;  // datagrams without a start line in front
  TcpCounts tcp;
};

// A pcap filter that is none, or a program that was built without libpcap.
struct CaptureUsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Reads a capture, of it the packets that pass the filter ("" for all), and tells the messages in
// the order in which they are whole. Returns what is wrong with the capture behind those messages,
// or "". Throws CaptureUsageError before anything is told.
std::string readCapture(Input& input, const std::string& filter, const FoundMessage& found,
                        CaptureCounts& counts);

#endif  // TOOL_CAPTURE_H
