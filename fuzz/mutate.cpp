// mutate.cpp - makes damaged copies of samples, the same ones at every run.
//
// Usage: mutate COUNT lines FILE                 prints copies of the lines of a file
//        mutate COUNT files DIRECTORY FILE...    writes copies of files to a directory
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

// Bytes at which the grammar splits, and bytes that must not confuse it; a zero byte is the last.
constexpr std::string_view kPieces[] = {
    "<",     ">",     "\"",       "\\",      ";",     "=",    ":",      "@",        "?",
    "&",     "%",     ",",        "*",       "[",     "]",    "::",     " ",        "\t",
    "\r",    "%41",   ";lr",      "=\"",     "a=b&",  "sip:", "\xff",   "\xc3\xa9", "65536",
    ";tag=", "\r\n ", "\r\n\r\n", "1.2.3.4", "[::1]", "tel:", ";isub=", "<tel:+1>"};

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
    const std::size_t kind = below(6);
    if (kind == 0) {
      line.insert(at, kPieces[below(std::size(kPieces))]);
    } else if (kind == 1) {
      line.erase(at, length);
    } else if (kind == 2) {
      line.insert(at, line.substr(at, length));
    } else if (kind == 3) {
      line.resize(at);
    } else if (kind == 4) {
      const std::string& other = samples_[below(samples_.size())];
      line.replace(at, length, other.substr(below(other.size())));
    } else if (at < line.size()) {
      line[at] = static_cast<char>(below(256));
    }
  }

  const std::vector<std::string>& samples_;
  std::mt19937 random_;  // its default seed, so that a finding can be found again
};

int mutateLines(std::size_t count, const std::string& name) {
  std::vector<std::string> samples;
  std::ifstream file(name);
  for (std::string line; std::getline(file, line);) {
    samples.push_back(line);
  }
  Mutator mutator(samples);
  for (; count != 0 && !samples.empty(); --count) {
    std::string line = mutator.next();
    std::replace(line.begin(), line.end(), '\n', ' ');
    std::cout << line << '\n';
  }
  return samples.empty() ? 2 : 0;
}

int mutateFiles(std::size_t count, const std::string& directory,
                const std::vector<std::string>& names) {
  std::vector<std::string> samples;
  for (const std::string& name : names) {
    std::ifstream file(name, std::ios::binary);
    samples.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  Mutator mutator(samples);
  for (; count != 0; --count) {
    std::ofstream(directory + "/" + std::to_string(count), std::ios::binary) << mutator.next();
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv, argv + argc);
  if (argc == 4 && arguments[2] == "lines") {
    return mutateLines(std::stoul(arguments[1]), arguments[3]);
  }
  if (argc > 4 && arguments[2] == "files") {
    return mutateFiles(std::stoul(arguments[1]), arguments[3],
                       {arguments.begin() + 4, arguments.end()});
  }
  std::cerr << "usage: mutate COUNT lines FILE | mutate COUNT files DIRECTORY FILE...\n";
  return 2;
}
