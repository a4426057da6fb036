// wySipUtilsGzip.cpp - gzip streams of message texts.
#include "wySipUtils.h"

#include <cstring>
#include <new>

#include "base/log.h"
#include "base/platformBlock.h"
#include "imsvarnZlib.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wySipUtils";

constexpr const char* kZlibVersion = "1.2.3";
constexpr int kWindowBits = 15;
constexpr int kGzipWindowBits = 16;  // added to the window bits: a gzip header and trailer
constexpr int kMemoryLevel = 4;
constexpr unsigned int kExpansionLimit = 60;

// The state of one zlib run; all bytes are zero at first.
class ZlibStream {
 public:
  // The destructor calls end if a set-up has begun a run.
  ZlibStream(int category, int (*end)(z_streamp))
      : category_(category), end_(end), stream_(new (std::nothrow) z_stream()) {
    if (stream_ != nullptr) {
      pzmemlog_add(category_, kSourceFile, __builtin_LINE(), stream_, sizeof(z_stream));
    }
  }
  ~ZlibStream() {
    if (stream_ == nullptr) {
      return;
    }
    if (stream_->state != nullptr) {
      end_(stream_);
    }
    pzmemlog_remove(category_, stream_);
    delete stream_;
  }
  ZlibStream(const ZlibStream&) = delete;
  ZlibStream& operator=(const ZlibStream&) = delete;

  z_streamp get() const { return stream_; }
  z_streamp operator->() const { return stream_; }

 private:
  int category_;
  int (*end_)(z_streamp);
  z_streamp stream_;
};

// Compresses with one byte of input and one byte of room per call, until either is used up. The
// small steps are meant; the result is that of a single call.
bool deflateInput(const ZlibStream& stream, unsigned int length) {
  while (stream->total_in != length && stream->total_out < length) {
    stream->avail_in = 1;
    stream->avail_out = 1;
    if (varnDeflate(stream.get(), Z_NO_FLUSH) != Z_OK) {
      return false;
    }
  }
  return stream->total_in == length;
}

// Writes the rest of the stream, byte by byte. Returns whether the result fits the length. zlib
// reports the end only if there is room left, so the buffer needs one byte more than the length.
bool finishDeflate(const ZlibStream& stream, unsigned int length) {
  stream->avail_in = 0;
  int result = Z_OK;
  while (result == Z_OK && stream->total_out <= length) {
    stream->avail_out = 1;
    result = varnDeflate(stream.get(), Z_FINISH);
  }
  return result == Z_STREAM_END && stream->total_out <= length;
}

// Expands the input up to its end or the end of the stream. Returns false for faulty data.
bool inflateInput(const ZlibStream& stream, unsigned int length) {
  while (stream->total_in < length) {
    const int result = varnInflate(stream.get(), Z_NO_FLUSH);
    if (result != Z_OK) {
      return result == Z_STREAM_END;
    }
  }
  return true;
}

// Hands out a copy of the result and returns its length. Out of memory: null and 0, logged.
unsigned int handOut(const unsigned char* bytes, uLong length, unsigned char** output,
                     const char* noMemory) {
  *output = newZeroed<unsigned char>(length).release();
  if (*output == nullptr) {
    logEvent(kTrace, kModuleDeflate, kSourceFile, __builtin_LINE(), noMemory);
    return 0;
  }
  std::memcpy(*output, bytes, length);
  return static_cast<unsigned int>(length);
}

}  // namespace

unsigned int DeCompressGzipData(unsigned char* input, unsigned short length,
                                unsigned char** output) {
  if (input == nullptr || output == nullptr) {
    logEvent(kFailure, kModuleInflate, kSourceFile, __builtin_LINE(),
             "DeCompressGzipData | input param is NULL");
    return 0;
  }
  constexpr int kStreamCategory = 3;
  const ZlibStream stream(kStreamCategory, varnInflateEnd);
  const unsigned int room = kExpansionLimit * length;
  const PlatformBlock<unsigned char> work = newZeroed<unsigned char>(room);
  if (stream.get() == nullptr || work == nullptr) {
    logEvent(kTrace, kModuleInflate, kSourceFile, __builtin_LINE(),
             "DeCompressGzipData | calloc failed");
    return 0;
  }
  if (varnInflateInit2_(stream.get(), kGzipWindowBits, kZlibVersion, sizeof(z_stream)) != Z_OK) {
    logEvent(kFailure, kModuleInflate, kSourceFile, __builtin_LINE(),
             "DeCompressGzipData | varnDeflateInit2 Failed");  // "Deflate" is meant
    return 0;
  }
  stream->next_in = input;
  stream->avail_in = length;
  stream->next_out = work.get();
  stream->avail_out = room;
  if (!inflateInput(stream, length)) {
    logEvent(kFailure, kModuleInflate, kSourceFile, __builtin_LINE(), "DeCompressGzipData | ERROR");
    return 0;
  }
  if (stream->total_out == 0) {
    return 0;
  }
  return handOut(work.get(), stream->total_out, output, "DeCompressGzipData | calloc failed");
}

unsigned int compMessageWithDeflate(char* input, unsigned char** output, unsigned int length) {
  if (input == nullptr || output == nullptr || length == 0) {
    return 0;
  }
  const ZlibStream stream(kMemoryCategory, varnDeflateEnd);
  const PlatformBlock<unsigned char> work = newZeroed<unsigned char>(std::size_t{length} + 1);
  if (stream.get() == nullptr || work == nullptr) {
    logEvent(kTrace, kModuleDeflate, kSourceFile, __builtin_LINE(),
             "compMessageWithDeflate | calloc failed");
    return 0;
  }
  if (varnDeflateInit2_(stream.get(), Z_DEFAULT_COMPRESSION, Z_DEFLATED,
                        kWindowBits + kGzipWindowBits, kMemoryLevel, Z_DEFAULT_STRATEGY,
                        kZlibVersion, sizeof(z_stream)) != Z_OK) {
    logEvent(kFailure, kModuleDeflate, kSourceFile, __builtin_LINE(),
             "compMessageWithDeflate | varnDeflateInit2 Failed");
    return 0;
  }
  stream->next_in = reinterpret_cast<unsigned char*>(input);
  stream->next_out = work.get();
  if (!deflateInput(stream, length) || !finishDeflate(stream, length)) {
    return 0;
  }
  return handOut(work.get(), stream->total_out, output, "compMessageWithDeflate | calloc failed");
}
