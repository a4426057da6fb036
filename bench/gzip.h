// gzip.h - messages compressed and expanded by the library.
#ifndef BENCH_GZIP_H
#define BENCH_GZIP_H

#include "harness.h"
#include "imsdpl.h"
#include "wySipUtils.h"

// Hands over a text compressed.
template <typename Sink>
void touchCompressed(Sink& sink, const std::string& text) {
  unsigned char* output = nullptr;
  const unsigned int length = compMessageWithDeflate(const_cast<char*>(text.data()), &output,
                                                     static_cast<unsigned int>(text.size()));
  sink.text(reinterpret_cast<char*>(output), length);
  __free(output);
}

// Hands over what a compressed text expands to.
template <typename Sink>
void touchExpanded(Sink& sink, const std::string& zipped) {
  unsigned char* output = nullptr;
  const unsigned int length =
      DeCompressGzipData(bytesOf(zipped), static_cast<unsigned short>(zipped.size()), &output);
  sink.text(reinterpret_cast<char*>(output), length);
  __free(output);
}

inline std::string compressed(const std::string& text) {
  Record sink;
  touchCompressed(sink, text);
  return sink.value().substr(0, sink.value().size() - 1);
}

#endif  // BENCH_GZIP_H
