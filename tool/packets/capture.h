// capture.h - the SIP messages in a capture file.
#ifndef TOOL_CAPTURE_H
#define TOOL_CAPTURE_H

#include <stdexcept>
#include <string>

#include "input/input.h"
#include "packets/layers.h"
#include "packets/tcpStreams.h"

// What in a capture is not shown as a message.
struct CaptureCounts {
  LeftOut leftOut;
  unsigned long cut = 0;     // frames that the snap length cut
  unsigned long notSip = 0;  // datagrams that do not begin with a start line
  TcpCounts tcp;
};

// Prints the counts that are not 0 on standard error, a line each: `2 gaps in TCP streams`.
void printNotes(const std::string& name, const CaptureCounts& counts);

// Not a pcap filter, or a program that was built without libpcap.
struct CaptureUsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Reads the packets of a capture that pass the filter ("" for all) and reports the messages in the
// order in which they are complete. Returns what is wrong with the capture after those messages, or
// "". Throws CaptureUsageError before the first message.
std::string readCapture(Input& input, const std::string& filter, const FoundMessage& found,
                        CaptureCounts& counts);

#endif  // TOOL_CAPTURE_H
