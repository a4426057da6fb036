// feedMain.cpp - feeds a fuzz target without libFuzzer: the inputs of its corpus, those that once
// failed, and generated ones, the same at every run.
//
// Usage: PROGRAM COUNT DICTIONARY [DIRECTORY...]
// The generated inputs are put together from the pieces of a dictionary in libFuzzer's format. The
// last line of the output shows that all inputs were fed: a run that ends early does not print it.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
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
    if (text[i] == '\\' && text[++i] == 'x') {
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

// Neighbours in the dictionary belong together. Half of the inputs are made of a few neighbours, so
// that well-formed ones occur.
std::string nextInput(std::mt19937_64& random, const std::vector<std::string>& pieces) {
  std::string input;
  const std::uint64_t bits = random();
  const std::uint64_t first = bits % pieces.size();
  const std::uint64_t width = (bits >> 32U) % 2 == 0 ? 7 : pieces.size();
  for (std::uint64_t count = 1 + (bits >> 40U) % 16; count != 0; --count) {
    input.append(pieces[static_cast<std::size_t>((first + random() % width) % pieces.size())]);
  }
  return input;
}

void feed(const std::string& input) {
  LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(input.data()), input.size());
}

// Feeds the files of a directory. Returns their number, 0 for a missing directory.
unsigned long feedFiles(const char* directory) {
  unsigned long count = 0;
  std::error_code none;
  for (const auto& entry : std::filesystem::directory_iterator(directory, none)) {
    std::ifstream file(entry.path(), std::ios::binary);
    feed(std::string(std::istreambuf_iterator<char>(file), {}));
    ++count;
  }
  return count;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> pieces =
      argc >= 3 ? readDictionary(argv[2]) : std::vector<std::string>();
  if (pieces.empty()) {
    static_cast<void>(std::fprintf(stderr, "usage: %s COUNT DICTIONARY [DIRECTORY...]\n", argv[0]));
    return 2;
  }
  unsigned long files = 0;
  for (int i = 3; i < argc; ++i) {
    files += feedFiles(argv[i]);
  }
  const unsigned long count = std::strtoul(argv[1], nullptr, 10);
  std::mt19937_64 random;  // its default seed, so that a finding can be found again
  for (unsigned long i = 0; i < count; ++i) {
    feed(nextInput(random, pieces));
  }
  const std::string name = std::filesystem::path(argv[0]).filename();
  std::printf("%s: %lu files, %lu inputs, 0 findings\n", name.c_str(), files, count);
  return 0;
}
