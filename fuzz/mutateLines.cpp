// mutateLines.cpp - prints damaged copies of sample lines, the same ones at every run.
//
// Usage: mutateLines SAMPLES COUNT
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <random>
#include <string>
#include <vector>

namespace {

// What the grammar splits at, and what it must not stumble over.
const std::vector<std::string> kPieces = {"<",
                                          ">",
                                          "\"",
                                          "\\",
                                          ";",
                                          "=",
                                          ":",
                                          "@",
                                          "?",
                                          "&",
                                          "%",
                                          ",",
                                          "*",
                                          "[",
                                          "]",
                                          "::",
                                          " ",
                                          "\t",
                                          "\r",
                                          "%41",
                                          ";lr",
                                          "=\"",
                                          "\xff",
                                          "\xc3\xa9",
                                          "65536",
                                          ";tag=",
                                          "sip:",
                                          "1.2.3.4",
                                          "[::1]",
                                          "a=b&",
                                          std::string(1, '\0')};

class Mutator {
 public:
  explicit Mutator(const std::vector<std::string>& samples) : samples_(samples) {}

  std::string next() {
    std::string line = samples_[below(samples_.size())];
    for (std::size_t steps = 1 + below(4); steps != 0; --steps) {
      damage(line);
    }
    return line;
  }

 private:
  std::size_t below(std::size_t bound) { return bound == 0 ? 0 : random_() % bound; }

  void damage(std::string& line) {
    const std::size_t at = below(line.size() + 1);
    const std::size_t length = below(line.size() - at + 1);
    switch (below(6)) {
      case 0:
        line.insert(at, kPieces[below(kPieces.size())]);
        break;
      case 1:
        line.erase(at, length);
        break;
      case 2:
        line.insert(at, line.substr(at, length));
        break;
      case 3:
        line.resize(at);
        break;
      case 4: {
        const std::string& other = samples_[below(samples_.size())];
        line.replace(at, length, other.substr(below(other.size())));
        break;
      }
      default:
        if (at < line.size()) {
          line[at] = static_cast<char>(below(256));
        }
    }
  }

  const std::vector<std::string>& samples_;
  std::mt19937 random_;  // its default seed, so that a finding can be found again
};

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> samples;
  if (argc == 3) {
    std::ifstream file(argv[1]);
    for (std::string line; std::getline(file, line);) {
      samples.push_back(line);
    }
  }
  if (samples.empty()) {
    std::cerr << "usage: mutateLines SAMPLES COUNT\n";
    return 2;
  }
  Mutator mutator(samples);
  for (unsigned long left = std::strtoul(argv[2], nullptr, 10); left != 0; --left) {
    std::string line = mutator.next();
    for (char& c : line) {
      c = c == '\n' ? ' ' : c;
    }
    std::cout << line << '\n';
  }
  return 0;
}
