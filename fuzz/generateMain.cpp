// generateMain.cpp - feeds a fuzz target generated inputs, the same ones at every run.
//
// Usage: PROGRAM COUNT
// The last line tells that all inputs were fed: a run that ends early has none.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size);

namespace {

// What the targets split at, and what they must not stumble over; line ends part the arguments.
// Neighbours belong together.
constexpr std::string_view kPieces[] = {
    // users
    "\n", "sip:", "@", ":", "a", "%41", "%3A", "%2C", "%22", "%00", "%", "\n", ",", "\"",
    "sip:", "@", "sips:", "B", "<", ">", "*", "?",
    // hosts
    "\n", "sip:a@", "host.test", "1.2.3.4", "[::1]", ":", "5060", "\n", "sip:a@[", "::", "]",
    "ffff:", "255.", "[", "g",
    // numbers
    "\n", "0", "1", ".", "0.5", "\n", "0", "00", "+", "-", "12345678",
    // lists and Via values
    "\n", ";", "a", "tag", "=\"", "=", "\"", " ", ";lr", "\xff", "\n", "UDP", " ", "TCP",
    "SIP/2.0/UDP h", ":", ";"};

// Half of the inputs are made of a few neighbours, so that well-formed ones come up.
std::string nextInput(std::mt19937_64& random) {
  std::string input;
  const std::uint64_t bits = random();
  const std::uint64_t first = bits % std::size(kPieces);
  const std::uint64_t width = (bits >> 32U) % 2 == 0 ? 7 : std::size(kPieces);
  for (std::uint64_t pieces = 1 + (bits >> 40U) % 16; pieces != 0; --pieces) {
    input.append(kPieces[(first + random() % width) % std::size(kPieces)]);
  }
  return input;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    static_cast<void>(std::fprintf(stderr, "usage: %s COUNT\n", argv[0]));
    return 2;
  }
  const std::string_view path(argv[0]);
  const std::string name(path.substr(path.rfind('/') + 1));
  const unsigned long count = std::strtoul(argv[1], nullptr, 10);
  std::mt19937_64 random;  // its default seed, so that a finding can be found again
  for (unsigned long i = 0; i < count; ++i) {
    const std::string input = nextInput(random);
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(input.data()), input.size());
  }
  std::printf("%s: %lu inputs, 0 findings\n", name.c_str(), count);
  return 0;
}
