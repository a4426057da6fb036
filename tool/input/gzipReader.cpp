// gzipReader.cpp - expands gzip data piece by piece.
#include "input/gzipReader.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::size_t kPieceSize = std::size_t{1} << 16;
constexpr int kGzipOnly = 15 + 16;  // the largest window, with a gzip header

}  // namespace

GzipReader::GzipReader(Source source)
    : source_(std::move(source)),
      piece_(kPieceSize, 0),
      zlib_{},
      status_(inflateInit2(&zlib_, kGzipOnly)) {}

std::size_t GzipReader::read(char* buffer, std::size_t length) {
  zlib_.next_out = reinterpret_cast<Bytef*>(buffer);
  zlib_.avail_out = static_cast<uInt>(std::min(length, kPieceSize));
  const std::size_t wanted = zlib_.avail_out;
  while (wanted != 0 && zlib_.avail_out == wanted && !damaged() && refill()) {
    status_ = status_ == Z_STREAM_END ? restart() : inflate(&zlib_, Z_NO_FLUSH);
  }
  return wanted - zlib_.avail_out;
}

// Gzip data may follow gzip data, and zeros fill the last block of a tape.
int GzipReader::restart() {
  Bytef* const end = zlib_.next_in + zlib_.avail_in;
  zlib_.next_in = std::find_if(zlib_.next_in, end, [](Bytef byte) { return byte != 0; });
  zlib_.avail_in = static_cast<uInt>(end - zlib_.next_in);
  return zlib_.avail_in == 0 ? Z_STREAM_END : inflateReset(&zlib_);
}

// Returns whether there are bytes to expand. Only the end of the data may be the end of the file.
bool GzipReader::refill() {
  if (zlib_.avail_in == 0) {
    zlib_.next_in = reinterpret_cast<Bytef*>(piece_.data());
    zlib_.avail_in = static_cast<uInt>(source_(piece_.data(), piece_.size()));
  }
  if (zlib_.avail_in == 0 && status_ == Z_OK) {
    status_ = Z_BUF_ERROR;
  }
  return zlib_.avail_in != 0;
}
