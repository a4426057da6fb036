// imsdpl.h - the handset's platform layer: memory, text, the module log and the memory log.
//
// This is the contract of lib-imsdpl, for C and C++. Every function may be called on any thread at
// any time; none throws, and none ends the process. A block of this layer is freed by this layer.
#ifndef IMSDPL_H
#define IMSDPL_H

#include <stddef.h>  // NOLINT(modernize-deprecated-headers): C has no other
#include <stdint.h>  // NOLINT(modernize-deprecated-headers)

// glibc exports a __strdup of its own, which the dynamic linker may find before the platform's. So
// the platform's __strdup has another link name on glibc hosts. glibc exports no other name of this
// header, and AddressSanitizer intercepts no other.
#if defined(__GLIBC__)
#define IMSDPL_STRDUP_LINK_NAME __asm__("imsdpl_strdup")
#else
#define IMSDPL_STRDUP_LINK_NAME
#endif

// NOLINTBEGIN(bugprone-reserved-identifier): the handset's names.
#ifdef __cplusplus
extern "C" {
#endif

// Allocates size bytes, uninitialised; for 0 bytes a block as well. Returns null on failure.
// Owns: the caller frees the block with __free.
void* __malloc(size_t size);

// Allocates count elements of size bytes each, all zero; for 0 bytes a block as well. Returns null
// on failure, and if count * size does not fit a size_t.
// Owns: the caller frees the block with __free.
void* __calloc(size_t count, size_t size);

// Frees a block of this layer; does nothing for null.
void __free(void* block);

// Returns a copy of a zero-terminated text, terminator included; null for null and on failure.
// Owns: the caller frees the block with __free.
char* __strdup(const char* cstr) IMSDPL_STRDUP_LINK_NAME;

// Does what the C library's function of the name without underscores does. Null is not allowed,
// whatever the size. __stricmp is strcmp, but ignores the case of ASCII letters.
void* __memset(void* bytes, int byte, size_t size);
void* __memcpy(void* to, const void* from, size_t size);
int __memcmp(const void* a, const void* b, size_t size);
size_t __strlen(const char* cstr);
char* __strstr(const char* cstr, const char* part);
char* __strchr(const char* cstr, int byte);
int __strcmp(const char* a, const char* b);
int __stricmp(const char* a, const char* b);

// __strlcpy writes cstr to out, __strlcat appends it to the text in out. Both write as much as fits
// into the size bytes of out, and a terminating zero. __strlcpy writes nothing if size is 0,
// __strlcat if out has no zero in its size bytes. Null is not allowed.
// Returns the length that the text in out would have if all of it fitted: __strlcpy the length of
// cstr, __strlcat that length plus the earlier length of the text in out, which counts as at most
// size.
size_t __strlcpy(char* out, const char* cstr, size_t size);
size_t __strlcat(char* out, const char* cstr, size_t size);

// Returns the value of the decimal number that the text begins with, after white space and one
// sign; 0 for null and for no digit. For a value outside the range of int, returns the nearest int.
int __atoi(const char* cstr);

// Writes value as digits of the base (2 to 36, lower-case letters), after "-" if it is negative,
// and a terminating zero. Returns text.
// Requires: text has room for all digits, the sign and the zero.
char* __itoaL(long value, char* text, int base);

// Writes an IPv4 or IPv6 address text (RFC 3986: no brackets, no zone) as a record of 20 bytes. All
// 20 bytes are defined. Two records have equal bytes if family and address are equal.
// Returns 1, or 0 for any other text; the record is then undefined.
int wyDplInetPton(void* record, const char* cstr);

// Writes the zero-terminated bytes of in to out. A byte that is not allowed in the user part of a
// URI becomes "%" and two upper-case hexadecimal digits. Letters, digits and ":" stay as they are.
// Writes at most outSize bytes, including the terminating zero, and stops before the first byte or
// escape that does not fit.
void wyDplStrURIQuote(char* out, unsigned char* in, unsigned int outSize);

// Decodes each "%" with two hexadecimal digits in a zero-terminated text, in place. The text never
// grows, and a "%00" stays as it is.
void wyDplStrURIDequote(char* text);

// Returns the framework registry, a Globals, of the calling thread; null for a thread without one.
void* wyDplTlsGet(void);  // NOLINT(modernize-redundant-void-arg): in C () says nothing

// Writes one line to the module log. The format is a printf format with at most three arguments.
// Each argument is passed as a machine word; missing ones are 0. The texts are read before the call
// returns.
void wyLogModuleEventSimple(int level, int moduleId, const char* sourceFile, int line,
                            const char* format, uintptr_t a1, uintptr_t a2, uintptr_t a3);

// Records that a block of size bytes was allocated. The block does not change.
void pzmemlog_add(int category, const char* sourceFile, int line, const void* pointer, size_t size);

// Records that a recorded block is about to be freed. The block does not change.
void pzmemlog_remove(int category, const void* pointer);

#ifdef __cplusplus
}  // extern "C"
#endif
// NOLINTEND(bugprone-reserved-identifier)

#endif  // IMSDPL_H
