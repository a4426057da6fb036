// layers.h - walks through the layers of a captured frame, tunnels among them, to its datagrams and
// segments.
#ifndef TOOL_LAYERS_H
#define TOOL_LAYERS_H

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "packets/fragments.h"
#include "packets/packet.h"

// What the walk does not report.
struct LeftOut {
  unsigned long fragments = 0;   // of IP packets that are not complete
  unsigned long sctpPieces = 0;  // pieces of SCTP messages
  unsigned long damaged = 0;     // packets shorter than their headers, or nested too deep
  std::map<std::string, unsigned long> protocols;  // not understood, by number
};

class LayerWalk {
 public:
  using Found = std::function<void(const Packet& packet)>;

  // A frame of more layers is damaged.
  static constexpr int kMaxLayers = 32;

  explicit LayerWalk(Found found) : found_(std::move(found)) {}

  // Walks through a frame, whatever its bytes are. The link type is one of libpcap's DLT_ values;
  // of the passage, the time, the frame and the missing bytes are known.
  void read(int linkType, std::string_view frame, const Passage& passage);

  // Gives up the IP packets that are not complete.
  void finish();

  const LeftOut& leftOut() const { return leftOut_; }

  // What the bytes of a layer are, or what their number is a number of.
  enum class Kind {
    kLinkType,  // of these and those below, rows of a table know the numbers
    kEtherType,
    kPppProtocol,
    kIpProtocol,
    kUdpPort,
    kEthernet,
    kIp,
    kFragment,
    kEsp,
    kUdp,
    kTcp,
    kSctp,
    kDone,  // nothing follows
    kDamaged
  };

  struct Layer {
    Kind kind;
    unsigned int number;
    std::string_view bytes;
  };

 private:
  Layer next(const Layer& layer);
  Layer unknown(const Layer& layer);
  Layer readIp(std::string_view ip);
  Layer readIpv4(std::string_view ip);
  Layer readIpv6(std::string_view ip);
  Layer readFragmentHeader(std::string_view bytes);
  Layer putTogether(const Fragment& fragment);
  Layer readEsp(std::string_view esp);
  Layer readUdp(std::string_view datagram);
  Layer readTcp(std::string_view segment);
  Layer readSctp(std::string_view packet);
  void setAddresses(std::string_view both, bool ipv6);
  void setPorts(std::string_view header);
  Layer report(const char* transport, std::string_view payload);

  Found found_;
  Packet packet_;
  Fragments fragments_;
  std::string whole_;  // the IP packet put together last; later layers point into it
  LeftOut leftOut_;
};

#endif  // TOOL_LAYERS_H
