// imsvarnZlib.h - zlib as the handset's framework library exports it.
//
// This is a part of the contract of lib-imsvarn, for C and C++. Each function is the zlib function
// whose name follows "varn", with the same arguments and results. A stream is used by one thread at
// a time.
#ifndef IMSVARN_ZLIB_H
#define IMSVARN_ZLIB_H

#include <zlib.h>

#ifdef __cplusplus
extern "C" {
#endif

int varnDeflateInit2_(z_streamp stream, int level, int method, int windowBits, int memLevel,
                      int strategy, const char* version, int streamSize);
int varnDeflate(z_streamp stream, int flush);
int varnDeflateEnd(z_streamp stream);

int varnInflateInit2_(z_streamp stream, int windowBits, const char* version, int streamSize);
int varnInflate(z_streamp stream, int flush);
int varnInflateEnd(z_streamp stream);

#ifdef __cplusplus
}  // extern "C"
#endif

#endif  // IMSVARN_ZLIB_H
