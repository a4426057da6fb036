// gzipReader.h - expands gzip data piece by piece.
#ifndef TOOL_GZIP_READER_H
#define TOOL_GZIP_READER_H

#include <zlib.h>

#include <cstddef>
#include <functional>
#include <string>

class GzipReader {
 public:
  // Fills a buffer and returns how many bytes; 0 at the end.
  using Source = std::function<std::size_t(char* buffer, std::size_t length)>;

  explicit GzipReader(Source source);
  ~GzipReader() { inflateEnd(&zlib_); }
  GzipReader(const GzipReader&) = delete;
  GzipReader& operator=(const GzipReader&) = delete;

  // Reads expanded bytes and returns how many; 0 at the end and after damage.
  std::size_t read(char* buffer, std::size_t length);

  // Returns whether the data is wrong, or ended early.
  bool damaged() const { return status_ != Z_OK && status_ != Z_STREAM_END; }

 private:
  bool refill();
  int restart();

  Source source_;
  std::string piece_;
  z_stream zlib_;
  int status_;
};

#endif  // TOOL_GZIP_READER_H
