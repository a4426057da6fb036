// imsdpl.c - a minimal platform layer: the C library, the log on standard error, no memory log.
#include "imsdpl.h"

#include <arpa/inet.h>
#include <limits.h>
#include <pthread.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "registry.h"

enum { kAddressRecordSize = 20, kEscapeLength = 3 };

static bool isUserPartByte(unsigned char byte) {
  const unsigned char lower = byte | 0x20U;
  return ('0' <= byte && byte <= '9') || ('a' <= lower && lower <= 'z') ||
         (byte != 0 && strchr("-_.!~*'()&=+$,;?/:", byte) != NULL);
}

// Returns a byte as 0 to 255, an upper-case ASCII letter in lower case.
static int lowerCase(char c) { return (unsigned char)('A' <= c && c <= 'Z' ? c + ('a' - 'A') : c); }

// Returns the value of a hexadecimal digit, -1 for another byte.
static int hexDigitValue(char c) {
  if ('0' <= c && c <= '9') {
    return c - '0';
  }
  const int lower = (unsigned char)c | 0x20;
  return 'a' <= lower && lower <= 'f' ? lower - 'a' + 10 : -1;
}

void* __malloc(size_t size) { return malloc(size == 0 ? 1 : size); }

void* __calloc(size_t count, size_t size) {
  return count == 0 || size == 0 ? calloc(1, 1) : calloc(count, size);
}

void __free(void* block) { free(block); }

char* __strdup(const char* cstr) {
  const size_t size = cstr == NULL ? 0 : strlen(cstr) + 1;
  char* const copy = size == 0 ? NULL : malloc(size);
  return copy == NULL ? NULL : memcpy(copy, cstr, size);
}

void* __memset(void* bytes, int byte, size_t size) { return memset(bytes, byte, size); }

void* __memcpy(void* to, const void* from, size_t size) { return memcpy(to, from, size); }

int __memcmp(const void* a, const void* b, size_t size) { return memcmp(a, b, size); }

size_t __strlen(const char* cstr) { return strlen(cstr); }

char* __strstr(const char* cstr, const char* part) { return strstr(cstr, part); }

char* __strchr(const char* cstr, int byte) { return strchr(cstr, byte); }

int __strcmp(const char* a, const char* b) { return strcmp(a, b); }

int __stricmp(const char* a, const char* b) {
  while (*a != '\0' && lowerCase(*a) == lowerCase(*b)) {
    ++a;
    ++b;
  }
  return lowerCase(*a) - lowerCase(*b);
}

size_t __strlcpy(char* out, const char* cstr, size_t size) {
  const size_t length = strlen(cstr);
  if (size != 0) {
    const size_t count = length < size ? length : size - 1;
    memcpy(out, cstr, count);
    out[count] = '\0';
  }
  return length;
}

size_t __strlcat(char* out, const char* cstr, size_t size) {
  const char* const end = memchr(out, '\0', size);
  const size_t length = end == NULL ? size : (size_t)(end - out);
  return length + __strlcpy(out + length, cstr, size - length);
}

int __atoi(const char* cstr) {
  const long long value = cstr == NULL ? 0 : strtoll(cstr, NULL, 10);
  return value > INT_MAX ? INT_MAX : value < INT_MIN ? INT_MIN : (int)value;
}

char* __itoaL(long value, char* text, int base) {
  char digits[sizeof(value) * CHAR_BIT];
  unsigned int count = 0;
  const unsigned long divisor = (unsigned long)base;
  // The least value has no positive counterpart, so the sign is removed in unsigned arithmetic.
  unsigned long rest = value < 0 ? 0UL - (unsigned long)value : (unsigned long)value;
  do {
    digits[count++] = "0123456789abcdefghijklmnopqrstuvwxyz"[rest % divisor];
    rest /= divisor;
  } while (rest != 0);
  char* out = text;
  if (value < 0) {
    *out++ = '-';
  }
  while (count > 0) {
    *out++ = digits[--count];
  }
  *out = '\0';
  return text;
}

int wyDplInetPton(void* record, const char* cstr) {
  if (cstr == NULL) {
    return 0;
  }
  unsigned char bytes[kAddressRecordSize] = {0};  // the family, the address, zeros
  bytes[0] = strchr(cstr, ':') == NULL ? AF_INET : AF_INET6;
  if (inet_pton(bytes[0], cstr, bytes + 1) != 1) {
    return 0;
  }
  memcpy(record, bytes, sizeof(bytes));
  return 1;
}

void wyDplStrURIQuote(char* out, unsigned char* in, unsigned int outSize) {
  if (outSize == 0) {
    return;
  }
  for (unsigned int room = outSize - 1; *in != 0; ++in) {
    const unsigned int needed = isUserPartByte(*in) ? 1 : kEscapeLength;
    if (needed > room) {
      break;
    }
    room -= needed;
    if (needed == 1) {
      *out++ = (char)*in;
    } else {
      *out++ = '%';
      *out++ = "0123456789ABCDEF"[*in >> 4U];
      *out++ = "0123456789ABCDEF"[*in & 0xFU];
    }
  }
  *out = '\0';
}

void wyDplStrURIDequote(char* text) {
  char* out = text;
  while (*text != '\0') {
    const int high = *text == '%' ? hexDigitValue(text[1]) : -1;
    const int low = high == -1 ? -1 : hexDigitValue(text[2]);
    const bool escape = low != -1 && (high != 0 || low != 0);
    *out++ = escape ? (char)(high << 4 | low) : *text;
    text += escape ? kEscapeLength : 1;
  }
  *out = '\0';
}

static pthread_key_t registryKey;
static bool registryUsable;

static void deleteRegistry(void* value) {
  struct Registry* const registry = value;
  for (int id = 0; id <= UCHAR_MAX; ++id) {
    if (registry->objects[id] != NULL) {
      registry->deleteObject(registry->objects[id]);
    }
  }
  free(registry);
}

static void makeRegistryKey(void) {
  registryUsable = pthread_key_create(&registryKey, deleteRegistry) == 0;
}

void* wyDplTlsGet(void) {
  static pthread_once_t once = PTHREAD_ONCE_INIT;
  if (pthread_once(&once, makeRegistryKey) != 0 || !registryUsable) {
    return NULL;
  }
  struct Registry* registry = pthread_getspecific(registryKey);
  if (registry == NULL) {
    registry = calloc(1, sizeof(*registry));
    if (registry != NULL && pthread_setspecific(registryKey, registry) != 0) {
      free(registry);
      registry = NULL;
    }
  }
  return registry;
}

void wyLogModuleEventSimple(int level, int moduleId, const char* sourceFile, int line,
                            const char* format, uintptr_t a1, uintptr_t a2, uintptr_t a3) {
  char text[1024];
  // The formats are the library's constants; each argument is a machine word.
  snprintf(text, sizeof(text), format, a1, a2, a3);
  fprintf(stderr, "%d %d %s:%d %s\n", level, moduleId, sourceFile, line, text);
}

void pzmemlog_add(int category, const char* sourceFile, int line, const void* pointer,
                  size_t size) {
  (void)category, (void)sourceFile, (void)line, (void)pointer, (void)size;
}

void pzmemlog_remove(int category, const void* pointer) { (void)category, (void)pointer; }
