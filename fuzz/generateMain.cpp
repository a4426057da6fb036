// generateMain.cpp - feeds a fuzz target generated inputs, the same ones at every run.
//
// Usage: PROGRAM COUNT
// The last line tells that all inputs were fed: a run that ends early has none.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size);

namespace {

// What the targets split at, and what they must not stumble over; line ends part the arguments.
constexpr std::string_view kPieces[] = {"\n",     "\n",       "\n",        "\n",
                                        "sip:",   "sip:",     "@",         "@",
                                        ":",      ":",        ";",         ";",
                                        ",",      "\"",       "\"",        "[",
                                        "]",      "::",       "1.2.3.4",   "[::1]",
                                        "UDP",    "TCP",      " ",         "%41",
                                        "%3A",    "%2C",      "%22",       "%00",
                                        "%",      "0",        "0",         "1",
                                        "1",      ".",        ".",         "5060",
                                        "=",      "=\"",      "+",         "-",
                                        "\xff",   "a",        "B",         "g",
                                        "0.5",    "<",        ">",         "*",
                                        "?",      "tag",      "host.test", "SIP/2.0/UDP h",
                                        "sip:a@", "sip:a@[",  "sips:",     "ffff:",
                                        "255.",   "12345678", ";lr"};

std::string nextInput(std::mt19937_64& random) {
  std::string input;
  std::uint64_t bits = random();
  for (std::uint64_t pieces = 1 + bits % 16; pieces != 0; --pieces) {
    bits = random();
    input.append(kPieces[bits % std::size(kPieces)]);
  }
  if (bits >> 60U == 0) {  // now and then a line twice: the same text on both sides
    input.append("\n").append(std::string(input));
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
