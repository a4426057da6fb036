// tcpStreams.h - puts the TCP segments of a capture in order and finds the SIP messages in them.
#ifndef TOOL_TCP_STREAMS_H
#define TOOL_TCP_STREAMS_H

#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "finding/findMessages.h"
#include "packets/packet.h"

// Called with each message; a TCP message has the time and the frame of the segment that completed
// it.
using FoundMessage = std::function<void(const Passage& passage, std::string_view message)>;

// What was lost or left out.
struct TcpCounts {
  unsigned long gaps = 0;
  unsigned long closed = 0;    // streams with something held, to stay below the bounds
  std::size_t passedOver = 0;  // bytes outside messages
};

// One direction of a connection. Segments that come early wait for the missing bytes before them.
// When more than kMaxWaiting bytes wait, the missing ones are a gap: the message that the gap cuts
// is reported as far as it is there, and the stream continues after the gap. Of segments that
// overlap, delivered bytes are never replaced; of two that wait, all of the one that begins first
// is used.
class TcpStream {
 public:
  static constexpr std::size_t kMaxWaiting = std::size_t{1} << 18;

  TcpStream(const Packet& segment, const FoundMessage& found, TcpCounts& counts);
  ~TcpStream() { counts_.passedOver += finder_.passedOver(); }
  TcpStream(const TcpStream&) = delete;
  TcpStream& operator=(const TcpStream&) = delete;

  void add(const Packet& segment);

  // Reports what is left, gaps or not.
  void finish();

  // Returns the memory that is held.
  std::size_t held() const { return finder_.held() + waitingSize_; }

 private:
  void begin(std::uint32_t sequence);
  void place(std::int64_t position, std::string_view bytes);
  void keep(std::int64_t position, std::string_view bytes);
  void deliver(std::int64_t position, std::string_view bytes);
  void deliverWaiting();
  void skipGap();
  void reportRest();

  Passage passage_;
  TcpCounts& counts_;
  MessageFinder finder_;
  std::uint32_t first_;  // sequence number of the first byte
  std::int64_t next_;    // position of the next byte: a sequence number that does not wrap
  std::size_t missing_;  // bytes that the snap length cut off since the last gap
  bool ended_;           // by a FIN or RST; a SYN restarts it
  std::map<std::int64_t, std::string> waiting_;
  std::size_t waitingSize_;
};

// The streams of a capture. At most kMaxStreams of them, in at most kMaxHeld bytes, are open;
// beyond that, the one longest without a segment is closed.
class TcpStreams {
 public:
  static constexpr std::size_t kMaxStreams = 4096;
  static constexpr std::size_t kMaxHeld = std::size_t{1} << 26;

  explicit TcpStreams(FoundMessage found) : found_(std::move(found)), held_(0) {}

  void add(const Packet& segment);

  // Closes all streams, the one longest without a segment first.
  void finish();

  const TcpCounts& counts() const { return counts_; }

 private:
  using Ends = std::pair<Endpoint, Endpoint>;
  struct Entry {
    Entry(const Ends& itsEnds, const Packet& segment, const FoundMessage& found, TcpCounts& counts)
        : ends(itsEnds), stream(segment, found, counts) {}

    Ends ends;
    TcpStream stream;
  };

  void closeOldest();

  FoundMessage found_;
  TcpCounts counts_;
  std::list<Entry> entries_;  // the last one used is the first
  std::map<Ends, std::list<Entry>::iterator> index_;
  std::size_t held_;
};

#endif  // TOOL_TCP_STREAMS_H
