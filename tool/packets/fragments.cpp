// fragments.cpp - puts the fragments of IP packets together.
#include "packets/fragments.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

constexpr std::size_t kLongest = 65535;

// What a piece costs besides its bytes.
constexpr std::size_t kNodeSize = 128;

// How long a copy of a fragment of a complete packet is expected, in seconds. Captures on several
// interfaces have copies; the same identification comes again later.
constexpr std::int64_t kCopyTime = 1;

}  // namespace

std::optional<std::string> Fragments::add(const timeval& time, const Fragment& fragment) {
  Waiting& packet = find(time.tv_sec, fragment);
  if (packet.done) {
    return std::nullopt;
  }
  ++packet.count;
  keep(packet, fragment);
  std::optional<std::string> whole;
  if (packet.held == packet.end) {
    whole.emplace();
    whole->reserve(packet.end);
    for (const auto& [offset, bytes] : packet.pieces) {
      whole->append(bytes);
    }
    held_ -= packet.held + packet.pieces.size() * kNodeSize;
    packet.pieces.clear();
    packet.held = 0;
    packet.done = true;
  }
  while (packets_.size() > kMaxPackets || held_ > kMaxHeld) {
    giveUp(std::prev(packets_.end()));
  }
  return whole;
}

void Fragments::finish() {
  while (!packets_.empty()) {
    giveUp(packets_.begin());
  }
}

// Returns the packet of a fragment, a new one where there is none of about this time.
Fragments::Waiting& Fragments::find(std::int64_t time, const Fragment& fragment) {
  const Key key(fragment.source, fragment.destination, fragment.identification, fragment.protocol);
  const auto known = index_.find(key);
  if (known != index_.end()) {
    const Waiting& packet = *known->second;
    const std::int64_t most = packet.done ? kCopyTime : kLifetime;
    // A capture may have any times: unsigned, the difference and the sum wrap.
    const auto age = static_cast<std::uint64_t>(time) - static_cast<std::uint64_t>(packet.time);
    if (age + static_cast<std::uint64_t>(most) <= static_cast<std::uint64_t>(2 * most)) {
      return *known->second;
    }
    giveUp(known->second);
  }
  packets_.push_front({key, time});
  index_[key] = packets_.begin();
  return packets_.front();
}

// Keeps the bytes of a fragment unless they contradict what is there.
void Fragments::keep(Waiting& packet, const Fragment& fragment) {
  const std::size_t end = fragment.offset + fragment.bytes.size();
  const auto after = packet.pieces.lower_bound(fragment.offset);
  const auto last = packet.pieces.empty() ? after : std::prev(packet.pieces.end());
  const bool overlaps =
      (after != packet.pieces.end() && after->first < end) ||
      (after != packet.pieces.begin() &&
       std::prev(after)->first + std::prev(after)->second.size() > fragment.offset);
  const bool endContradicts =
      fragment.last && ((packet.end != SIZE_MAX && packet.end != end) ||
                        (last != packet.pieces.end() && last->first + last->second.size() > end));
  if (overlaps || endContradicts || end > std::min(packet.end, kLongest) ||
      fragment.bytes.empty()) {
    return;
  }
  packet.pieces.emplace_hint(after, fragment.offset, fragment.bytes);
  packet.held += fragment.bytes.size();
  held_ += fragment.bytes.size() + kNodeSize;
  if (fragment.last) {
    packet.end = end;
  }
}

void Fragments::giveUp(std::list<Waiting>::iterator packet) {
  leftOut_ += packet->done ? 0 : packet->count;
  held_ -= packet->held + packet->pieces.size() * kNodeSize;
  index_.erase(packet->key);
  packets_.erase(packet);
}
