// floor.h - a hand-written scanner that does the least work to copy a SIP text into pieces.
//
// One pass over the bytes checks each against its character class and copies each piece into a
// block of its size plus a terminating zero. A parameter is one piece `name=value`. The grammar is
// the part of RFC 3261 that the inputs need. A caller frees the pieces with floorFree(), also after
// a failure.
#ifndef BENCH_FLOOR_H
#define BENCH_FLOOR_H

#include <cstddef>

enum class FloorPart { kDisplayName, kScheme, kUser, kHost, kPort, kUriParam, kParam };

struct FloorPiece {
  FloorPart part;
  char* text;
  std::size_t length;
};

struct FloorPieces {
  static constexpr std::size_t kMax = 128;

  std::size_t count = 0;
  FloorPiece pieces[kMax];
};

// Reads an address, a name-addr or an addr-spec.
bool floorReadAddress(FloorPieces& out, const char* text, std::size_t length);

// Reads the value of a Contact: an address and the parameters of the header field.
bool floorReadContact(FloorPieces& out, const char* text, std::size_t length);

// Reads the value of a Route: name-addrs between commas.
bool floorReadRoute(FloorPieces& out, const char* text, std::size_t length);

// Adds one parameter at the end.
bool floorSetParam(FloorPieces& out, FloorPart part, const char* param, std::size_t length);

// Writes a name-addr and its parameters into one block, to be freed with free(). Returns null when
// out of memory.
char* floorWrite(const FloorPieces& pieces, std::size_t& length);

void floorFree(FloorPieces& pieces);

#endif  // BENCH_FLOOR_H
