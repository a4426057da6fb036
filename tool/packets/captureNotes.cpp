// captureNotes.cpp - what a capture has besides messages, in words.
#include "packets/capture.h"
#include "text/terminal.h"

namespace {

// Returns `7 packets of other protocols left out: EtherType 0x0806 (5), IP protocol 1 (2)`.
std::string protocolsNote(const std::map<std::string, unsigned long>& protocols) {
  unsigned long sum = 0;
  std::string names;
  for (const auto& [name, count] : protocols) {
    sum += count;
    names += (names.empty() ? "" : ", ") + name + " (" + std::to_string(count) + ")";
  }
  return std::to_string(sum) + " packets of other protocols left out: " + names;
}

}  // namespace

void printNotes(const std::string& name, const CaptureCounts& counts) {
  const auto print = [&name](const std::string& note) { complain(name + ": " + note, kAccepted); };
  const std::pair<std::size_t, const char*> known[] = {
      {counts.cut, " packets cut by the snap length of the capture"},
      {counts.leftOut.fragments, " IP fragments of incomplete packets left out"},
      {counts.leftOut.sctpPieces, " pieces of SCTP messages left out"},
      {counts.leftOut.damaged, " damaged packets left out"},
      {counts.notSip, " datagrams that are not SIP passed over"},
      {counts.tcp.passedOver, " bytes outside messages in TCP streams passed over"},
      {counts.tcp.gaps, " gaps in TCP streams"},
      {counts.tcp.closed, " TCP streams closed early because too many were open"},
  };
  for (const auto& [count, what] : known) {
    if (count != 0) {
      print(std::to_string(count) + what);
    }
  }
  if (!counts.leftOut.protocols.empty()) {
    print(protocolsNote(counts.leftOut.protocols));
  }
}
