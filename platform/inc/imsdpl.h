// imsdpl.h - the handset's platform layer: memory, text, the module log and the memory log.
//
// The contract that lib-imsdpl fulfils, for C and C++. Every function may be called on any thread
// at any time; none throws, none ends the process. Blocks come from and go back to this layer only.
#ifndef IMSDPL_H
#define IMSDPL_H

#include <stddef.h>  // NOLINT(modernize-deprecated-headers): C has no other
#include <stdint.h>  // NOLINT(modernize-deprecated-headers)

// glibc exports a __strdup of its own, which the dynamic linker may find before the platform's;
// on glibc hosts the platform's copy therefore goes by another link name. glibc exports no other
// name of this header, and AddressSanitizer intercepts no other.
#if defined(__GLIBC__)
#define IMSDPL_STRDUP_LINK_NAME __asm__("imsdpl_strdup")
#else
#define IMSDPL_STRDUP_LINK_NAME
#endif

// NOLINTBEGIN(bugprone-reserved-identifier): the handset's names.
#ifdef __cplusplus
extern "C" {
#endif

// Allocates size bytes, uninitialised; also 0 bytes give a block. Returns null on failure.
// Owns: the caller, until __free.
void* __malloc(size_t size);

// Allocates count elements of size bytes each, all zero; also 0 bytes give a block. Returns null
// on failure, also where count * size does not fit a size_t. Owns: the caller, until __free.
void* __calloc(size_t count, size_t size);

// Frees a block of this layer; does nothing for null.
void __free(void* block);

// Returns a copy of a zero-terminated text, terminator included; null for null or on failure.
// Owns: the caller, until __free.
char* __strdup(const char* cstr) IMSDPL_STRDUP_LINK_NAME;

// Each is the C library's operation of the name without the underscores; none takes null, whatever
// the size. __stricmp is strcmp without regard to the case of ASCII letters.
void* __memset(void* bytes, int byte, size_t size);
void* __memcpy(void* to, const void* from, size_t size);
int __memcmp(const void* a, const void* b, size_t size);
size_t __strlen(const char* cstr);
char* __strstr(const char* cstr, const char* part);
char* __strchr(const char* cstr, int byte);
int __strcmp(const char* a, const char* b);
int __stricmp(const char* a, const char* b);

// Each writes cstr, or appends it to the text in out, as far as it fits into the size bytes of out,
// and a terminating zero. __strlcpy writes nothing where size is 0, __strlcat nothing where out has
// no zero in its size bytes. None takes null.
// Returns the length that out would have with room for all: __strlcpy that of cstr, __strlcat that
// of the text before, at most size, and of cstr together.
size_t __strlcpy(char* out, const char* cstr, size_t size);
size_t __strlcat(char* out, const char* cstr, size_t size);

// Returns the value of the decimal number that the text begins with, after white space and one
// sign; 0 for null or no digit. A value beyond the range of int gives the nearest int.
int __atoi(const char* cstr);

// Writes value as digits of the base (2 to 36, lower-case letters), "-" in front when negative,
// and a terminating zero. Returns text.
// Requires: room in text for all digits of value, the sign and the zero.
char* __itoaL(long value, char* text, int base);

// Writes an IPv4 or IPv6 address text (RFC 3986: no brackets, no zone) as a record of 20 bytes,
// every one of them defined. Records are equal, byte for byte, when family and address are.
// Returns 1, or 0 for any other text; the record is then undefined.
int wyDplInetPton(void* record, const char* cstr);

// Writes the zero-terminated bytes of in to out, those that may not stand in the user part of a
// URI as "%" and two upper-case hexadecimal digits. Letters, digits and ":" stay as they are.
// Writes at most outSize bytes, the terminating zero included, and stops in front of the first
// byte or escape that does not fit.
void wyDplStrURIQuote(char* out, unsigned char* in, unsigned int outSize);

// Decodes each "%" with two hexadecimal digits of a zero-terminated text, in place. The text
// never grows, and a "%00" stays as it is.
void wyDplStrURIDequote(char* text);

// Returns the framework registry of the calling thread, a Globals; null for a thread without one.
void* wyDplTlsGet(void);  // NOLINT(modernize-redundant-void-arg): in C () says nothing

// Writes one line to the module log. The format is printf's with at most three arguments, each
// handed over as a machine word; missing ones are 0. The texts are read before the call returns.
void wyLogModuleEventSimple(int level, int moduleId, const char* sourceFile, int line,
                            const char* format, uintptr_t a1, uintptr_t a2, uintptr_t a3);

// Records that a block of size bytes was allocated. Has no effect on the block.
void pzmemlog_add(int category, const char* sourceFile, int line, const void* pointer, size_t size);

// Records that a recorded block is about to be freed. Has no effect on the block.
void pzmemlog_remove(int category, const void* pointer);

#ifdef __cplusplus
}  // extern "C"
#endif
// NOLINTEND(bugprone-reserved-identifier)

#endif  // IMSDPL_H
