// generateMain.cpp - feeds a fuzz target generated inputs, the same ones at every run.
//
// Usage: PROGRAM COUNT DICTIONARY
// The inputs are put together from the pieces of a dictionary in the format of libFuzzer.
// The last line tells that all inputs were fed: a run that ends early has none.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size);

namespace {

// Returns a dictionary's text, its escapes `\\`, `\"` and `\xHH` resolved.
std::string unescaped(std::string_view text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\') {
      bytes += text[i];
    } else if (text[++i] == 'x') {
      bytes += static_cast<char>(std::stoi(std::string(text.substr(i + 1, 2)), nullptr, 16));
      i += 2;
    } else {
      bytes += text[i];
    }
  }
  return bytes;
}

// Returns the pieces of a dictionary, one a line between double quotes.
std::vector<std::string> readDictionary(const char* file) {
  std::vector<std::string> pieces;
  std::ifstream in(file);
  for (std::string line; std::getline(in, line);) {
    if (line.size() > 1 && line[0] == '"') {
      pieces.push_back(unescaped(std::string_view(line).substr(1, line.size() - 2)));
    }
  }
  return pieces;
}

// Neighbours in the dictionary belong together: half of the inputs are made of a few, so that
// well-formed ones come up.
std::string nextInput(std::mt19937_64& random, const std::vector<std::string>& pieces) {
  std::string input;
  const std::uint64_t bits = random();
  const std::uint64_t first = bits % pieces.size();
  const std::uint64_t width = (bits >> 32U) % 2 == 0 ? 7 : pieces.size();
  for (std::uint64_t count = 1 + (bits >> 40U) % 16; count != 0; --count) {
    input.append(pieces[(first + random() % width) % pieces.size()]);
  }
  return input;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> pieces =
      argc == 3 ? readDictionary(argv[2]) : std::vector<std::string>();
  if (pieces.empty()) {
    static_cast<void>(std::fprintf(stderr, "usage: %s COUNT DICTIONARY\n", argv[0]));
    return 2;
  }
  const std::string_view path(argv[0]);
  const std::string name(path.substr(path.rfind('/') + 1));
  const unsigned long count = std::strtoul(argv[1], nullptr, 10);
  std::mt19937_64 random;  // its default seed, so that a finding can be found again
  for (unsigned long i = 0; i < count; ++i) {
    const std::string input = nextInput(random, pieces);
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(input.data()), input.size());
  }
  std::printf("%s: %lu inputs, 0 findings\n", name.c_str(), count);
  return 0;
}
