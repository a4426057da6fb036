// fragments.h - puts the fragments of IP packets together.
#ifndef TOOL_FRAGMENTS_H
#define TOOL_FRAGMENTS_H

#include <sys/time.h>

#include <cstdint>
#include <list>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

#include "packets/packet.h"

// A fragment of the packet that these ends, the identification and the protocol name.
struct Fragment {
  Endpoint source;
  Endpoint destination;
  std::uint32_t identification;
  unsigned int protocol;
  std::size_t offset;
  bool last;
  std::string_view bytes;
};

// The packets of which fragments are there. A fragment that overlaps another is left out: the one
// that came first counts. Fragments of one packet are at most kLifetime seconds apart. At most
// kMaxPackets packets with kMaxHeld bytes together wait; beyond that, the oldest one is given up.
class Fragments {
 public:
  static constexpr std::size_t kMaxPackets = 1024;
  static constexpr std::size_t kMaxHeld = std::size_t{1} << 24;
  static constexpr std::int64_t kLifetime = 60;  // RFC 8200 4.5

  // Returns the payload of the packet when this fragment completes it.
  std::optional<std::string> add(const timeval& time, const Fragment& fragment);

  // Gives up the packets that wait.
  void finish();

  // Returns how many fragments were of packets that were given up.
  unsigned long leftOut() const { return leftOut_; }

 private:
  using Key = std::tuple<Endpoint, Endpoint, std::uint32_t, unsigned int>;
  struct Waiting {
    Key key;
    std::int64_t time;                            // of the first one that came, in seconds
    unsigned long count = 0;                      // of the fragments
    std::size_t end = SIZE_MAX;                   // of the packet; known from its last fragment
    std::size_t held = 0;                         // bytes in the pieces
    std::map<std::size_t, std::string> pieces{};  // by offset, without overlaps
    bool done = false;                            // complete; a copy of a fragment is not news
  };

  Waiting& find(std::int64_t time, const Fragment& fragment);
  void keep(Waiting& packet, const Fragment& fragment);
  void giveUp(std::list<Waiting>::iterator packet);

  std::list<Waiting> packets_;  // the newest one is the first
  std::map<Key, std::list<Waiting>::iterator> index_;
  std::size_t held_ = 0;
  unsigned long leftOut_ = 0;
};

#endif  // TOOL_FRAGMENTS_H
