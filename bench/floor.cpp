// floor.cpp - the hand-written scanner: a class table, a cursor, and a block for each piece.
#include "floor.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace {

enum CharClass : unsigned char {
  kSpace = 1,
  kTokenChar = 2,
  kSchemeChar = 4,
  kUserChar = 8,   // with its password
  kHostChar = 16,  // of a name or an IPv4 address
  kParamChar = 32,
  kDigit = 64,
};

constexpr std::array<unsigned char, 256> makeClasses() {
  std::array<unsigned char, 256> classes{};
  const auto add = [&classes](std::string_view members, unsigned bits) {
    for (const char c : members) {
      auto& entry = classes[static_cast<unsigned char>(c)];
      entry = static_cast<unsigned char>(entry | bits);
    }
  };
  constexpr unsigned kAll = kTokenChar | kSchemeChar | kUserChar | kHostChar | kParamChar;
  add(" \t", kSpace);
  add("0123456789", kAll | kDigit);
  add("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz-.", kAll);
  add("_!~*'%+", kTokenChar | kUserChar | kParamChar);
  add("`", kTokenChar);
  add("+", kSchemeChar);
  add("()&$/:[]", kUserChar | kParamChar);
  add("=,;?", kUserChar);
  return classes;
}

constexpr std::array<unsigned char, 256> kClasses = makeClasses();

class Scanner {
 public:
  Scanner(FloorPieces& out, const char* text, std::size_t length)
      : out_(out), at_(text), end_(text + length) {}

  bool address() {
    skip(kSpace);
    if (next() == '"' || next() == '<') {
      return nameAddr();
    }
    const char* const start = at_;
    skip(kTokenChar);
    if (next() == ':') {
      at_ = start;
      return uri();
    }
    at_ = start;
    return nameAddr();
  }

  bool nameAddr() { return displayName() && take('<') && uri() && take('>'); }

  bool params(FloorPart part, unsigned char valueClass) {
    while (take(';')) {
      skip(kSpace);
      const char* const start = at_;
      skip(kTokenChar);
      if (at_ == start || (take('=') && !value(valueClass)) || !store(part, start)) {
        return false;
      }
    }
    return true;
  }

  bool route() {
    do {
      skip(kSpace);
      if (!nameAddr()) {
        return false;
      }
      skip(kSpace);
    } while (take(','));
    return done();
  }

  bool done() {
    skip(kSpace);
    return at_ == end_;
  }

 private:
  char next() const { return at_ == end_ ? '\0' : *at_; }

  bool take(char c) {
    if (next() != c) {
      return false;
    }
    ++at_;
    return true;
  }

  void skip(unsigned char wanted) {
    while (at_ != end_ && (kClasses[static_cast<unsigned char>(*at_)] & wanted) != 0) {
      ++at_;
    }
  }

  bool store(FloorPart part, const char* start) {
    return floorSetParam(out_, part, start, static_cast<std::size_t>(at_ - start));
  }

  bool quoted() {
    for (++at_; at_ != end_ && *at_ != '"'; ++at_) {
      at_ += *at_ == '\\' && at_ + 1 != end_ ? 1 : 0;
    }
    return take('"');
  }

  bool displayName() {
    const char* const start = at_;
    if (next() == '"') {
      if (!quoted()) {
        return false;
      }
    } else {
      skip(kTokenChar | kSpace);
    }
    const bool stored = at_ == start || store(FloorPart::kDisplayName, start);
    skip(kSpace);
    return stored;
  }

  bool uri() {
    const char* start = at_;
    skip(kSchemeChar);
    if (at_ == start || next() != ':' || !store(FloorPart::kScheme, start)) {
      return false;
    }
    start = ++at_;
    skip(kUserChar);
    if (next() == '@') {
      if (at_ == start || !store(FloorPart::kUser, start)) {
        return false;
      }
      ++at_;
    } else {
      at_ = start;
    }
    return hostPort() && params(FloorPart::kUriParam, kParamChar);
  }

  bool hostPort() {
    const char* start = at_;
    if (take('[')) {
      while (at_ != end_ && *at_ != ']') {
        ++at_;
      }
      if (!take(']')) {
        return false;
      }
    } else {
      skip(kHostChar);
    }
    if (at_ == start || !store(FloorPart::kHost, start)) {
      return false;
    }
    if (!take(':')) {
      return true;
    }
    start = at_;
    skip(kDigit);
    return at_ != start && store(FloorPart::kPort, start);
  }

  bool value(unsigned char valueClass) {
    if (next() == '"') {
      return quoted();
    }
    const char* const start = at_;
    skip(valueClass);
    return at_ != start;
  }

  FloorPieces& out_;
  const char* at_;
  const char* end_;
};

char* append(char* to, const char* text, std::size_t length) {
  std::memcpy(to, text, length);
  return to + length;
}

char* appendPiece(char* to, const FloorPiece& piece) {
  switch (piece.part) {
    case FloorPart::kDisplayName:
      return append(append(to, piece.text, piece.length), " ", 1);
    case FloorPart::kScheme:
      to = append(append(to, "<", 1), piece.text, piece.length);
      return append(to, ":", 1);
    case FloorPart::kUser:
      return append(append(to, piece.text, piece.length), "@", 1);
    case FloorPart::kPort:
      return append(append(to, ":", 1), piece.text, piece.length);
    case FloorPart::kUriParam:
    case FloorPart::kParam:
      return append(append(to, ";", 1), piece.text, piece.length);
    default:
      return append(to, piece.text, piece.length);
  }
}

}  // namespace

bool floorReadAddress(FloorPieces& out, const char* text, std::size_t length) {
  Scanner scanner(out, text, length);
  return scanner.address() && scanner.done();
}

bool floorReadContact(FloorPieces& out, const char* text, std::size_t length) {
  Scanner scanner(out, text, length);
  return scanner.address() && scanner.params(FloorPart::kParam, kTokenChar) && scanner.done();
}

bool floorReadRoute(FloorPieces& out, const char* text, std::size_t length) {
  return Scanner(out, text, length).route();
}

bool floorSetParam(FloorPieces& out, FloorPart part, const char* param, std::size_t length) {
  auto* block =
      out.count == FloorPieces::kMax ? nullptr : static_cast<char*>(std::malloc(length + 1));
  if (block == nullptr) {
    return false;
  }
  std::memcpy(block, param, length);
  block[length] = '\0';
  out.pieces[out.count++] = {part, block, length};
  return true;
}

char* floorWrite(const FloorPieces& pieces, std::size_t& length) {
  std::size_t size = 4;  // the brackets, the blank or colon that a piece adds twice, the zero
  for (std::size_t i = 0; i < pieces.count; ++i) {
    size += pieces.pieces[i].length + 1;
  }
  auto* const text = static_cast<char*>(std::malloc(size));
  if (text == nullptr) {
    return nullptr;
  }
  char* to = text;
  bool open = false;
  for (std::size_t i = 0; i < pieces.count; ++i) {
    const FloorPart part = pieces.pieces[i].part;
    if (open && part == FloorPart::kParam) {
      to = append(to, ">", 1);
    }
    open = part != FloorPart::kParam;
    to = appendPiece(to, pieces.pieces[i]);
  }
  if (open) {
    to = append(to, ">", 1);
  }
  *to = '\0';
  length = static_cast<std::size_t>(to - text);
  return text;
}

void floorFree(FloorPieces& pieces) {
  for (std::size_t i = 0; i < pieces.count; ++i) {
    std::free(pieces.pieces[i].text);
  }
  pieces.count = 0;
}
