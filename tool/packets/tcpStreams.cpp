// tcpStreams.cpp - puts the TCP segments of a capture in order and finds the SIP messages in them.
#include "packets/tcpStreams.h"

namespace {

// What a waiting segment costs besides its bytes.
constexpr std::size_t kNodeSize = 128;

// A sequence number farther from the expected one than any window belongs to another connection
// between the same ends.
constexpr std::int64_t kFarthest = std::int64_t{1} << 30;

// A SYN counts as one byte, before the first byte of the data.
std::uint32_t firstByte(const Packet& segment) { return segment.sequence + (segment.syn ? 1 : 0); }

}  // namespace

TcpStream::TcpStream(const Packet& segment, const FoundMessage& found, TcpCounts& counts)
    : passage_(segment.passage),
      counts_(counts),
      finder_([this, &found](std::string_view message) { found(passage_, message); }),
      first_(firstByte(segment)),
      next_(first_),
      missing_(0),
      ended_(false),
      waitingSize_(0) {}

void TcpStream::add(const Packet& segment) {
  const std::uint32_t first = firstByte(segment);
  // The difference of sequence numbers, modulo 2^32, as a signed one (RFC 9293 3.4).
  std::int64_t ahead = static_cast<std::int32_t>(first - static_cast<std::uint32_t>(next_));
  if (segment.reset && (ahead < 0 || ahead > std::int64_t{kMaxWaiting})) {
    return;  // outside of any window it ends nothing (RFC 9293 3.10.7.4)
  }
  if ((segment.syn && (first != first_ || ended_)) || ahead > kFarthest || ahead < -kFarthest) {
    finish();
    begin(first);
    ahead = 0;
  }
  passage_ = segment.passage;
  missing_ += std::exchange(passage_.missing, 0);
  place(next_ + ahead, segment.payload);
  while (waitingSize_ > kMaxWaiting) {
    skipGap();
  }
  if (segment.reset || (segment.fin && waiting_.empty())) {
    finish();
    ended_ = true;
  }
}

void TcpStream::finish() {
  while (!waiting_.empty()) {
    skipGap();
  }
  reportRest();
}

void TcpStream::begin(std::uint32_t sequence) {
  first_ = sequence;
  next_ = sequence;
  ended_ = false;
}

void TcpStream::place(std::int64_t position, std::string_view bytes) {
  if (position > next_ && !bytes.empty()) {
    keep(position, bytes);
  } else {
    deliver(position, bytes);
    deliverWaiting();
  }
}

void TcpStream::keep(std::int64_t position, std::string_view bytes) {
  std::string& kept = waiting_[position];
  if (kept.size() < bytes.size()) {
    waitingSize_ += kept.empty() ? kNodeSize : 0;
    waitingSize_ += bytes.size() - kept.size();
    kept.append(bytes.substr(kept.size()));
  }
}

void TcpStream::deliver(std::int64_t position, std::string_view bytes) {
  const auto known = static_cast<std::uint64_t>(next_ - position);
  if (position <= next_ && known < bytes.size()) {
    bytes.remove_prefix(static_cast<std::size_t>(known));
    next_ += static_cast<std::int64_t>(bytes.size());
    finder_.add(bytes);
  }
}

void TcpStream::deliverWaiting() {
  while (!waiting_.empty() && waiting_.begin()->first <= next_) {
    const auto node = waiting_.extract(waiting_.begin());
    waitingSize_ -= node.mapped().size() + kNodeSize;
    deliver(node.key(), node.mapped());
  }
}

void TcpStream::skipGap() {
  ++counts_.gaps;
  reportRest();
  next_ = waiting_.begin()->first;
  deliverWaiting();
}

// Reports a message that is not complete, with the bytes that may be missing from it.
void TcpStream::reportRest() {
  passage_.missing = std::exchange(missing_, 0);
  finder_.finish();
  passage_.missing = 0;
}

void TcpStreams::add(const Packet& segment) {
  const Ends ends(segment.passage.source, segment.passage.destination);
  const auto known = index_.find(ends);
  if (known != index_.end()) {
    entries_.splice(entries_.begin(), entries_, known->second);
  } else if (segment.syn || !segment.payload.empty()) {
    entries_.emplace_front(ends, segment, found_, counts_);
    index_.emplace(ends, entries_.begin());
  } else {
    return;
  }
  TcpStream& stream = entries_.front().stream;
  const std::size_t before = known == index_.end() ? 0 : stream.held();
  stream.add(segment);
  held_ = held_ - before + stream.held();
  while (entries_.size() > kMaxStreams || held_ > kMaxHeld) {
    counts_.closed += entries_.back().stream.held() == 0 ? 0U : 1U;
    closeOldest();
  }
}

void TcpStreams::finish() {
  while (!entries_.empty()) {
    closeOldest();
  }
}

void TcpStreams::closeOldest() {
  Entry& oldest = entries_.back();
  held_ -= oldest.stream.held();
  oldest.stream.finish();
  index_.erase(oldest.ends);
  entries_.pop_back();
}
