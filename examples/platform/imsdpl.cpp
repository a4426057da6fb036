// imsdpl.cpp - a minimal platform layer: the C library, the log on standard error, no memory log.
#include "imsdpl.h"

#include <arpa/inet.h>
#include <pthread.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "registry.h"

namespace {

constexpr unsigned int kAddressRecordSize = 20;
constexpr unsigned int kEscapeLength = 3;

pthread_key_t registryKey;

void deleteRegistry(void* value) {
  auto* const registry = static_cast<Registry*>(static_cast<Globals*>(value));
  for (WySingletonBaseClass* object : registry->objects) {
    delete object;
  }
  delete registry;
}

bool isUserPartByte(unsigned char byte) {
  const unsigned char lower = byte | 0x20U;
  return ('0' <= byte && byte <= '9') || ('a' <= lower && lower <= 'z') ||
         (byte != 0 && std::strchr("-_.!~*'()&=+$,;?/:", byte) != nullptr);
}

// Returns a byte as 0 to 255, an upper-case ASCII letter in lower case.
int lowerCase(char c) {
  return static_cast<unsigned char>('A' <= c && c <= 'Z' ? c + ('a' - 'A') : c);
}

// Returns the value of a hexadecimal digit, -1 for another byte.
int hexDigitValue(char c) {
  if ('0' <= c && c <= '9') {
    return c - '0';
  }
  const int lower = static_cast<unsigned char>(c) | 0x20;
  return 'a' <= lower && lower <= 'f' ? lower - 'a' + 10 : -1;
}

}  // namespace

void* __malloc(size_t size) { return std::malloc(size == 0 ? 1 : size); }

void* __calloc(size_t count, size_t size) {
  return count == 0 || size == 0 ? std::calloc(1, 1) : std::calloc(count, size);
}

void __free(void* block) { std::free(block); }

char* __strdup(const char* cstr) {
  const size_t size = cstr == nullptr ? 0 : std::strlen(cstr) + 1;
  void* const copy = size == 0 ? nullptr : std::malloc(size);
  return copy == nullptr ? nullptr : static_cast<char*>(std::memcpy(copy, cstr, size));
}

void* __memset(void* bytes, int byte, size_t size) { return std::memset(bytes, byte, size); }

void* __memcpy(void* to, const void* from, size_t size) { return std::memcpy(to, from, size); }

int __memcmp(const void* a, const void* b, size_t size) { return std::memcmp(a, b, size); }

size_t __strlen(const char* cstr) { return std::strlen(cstr); }

char* __strstr(const char* cstr, const char* part) {
  return const_cast<char*>(std::strstr(cstr, part));
}

char* __strchr(const char* cstr, int byte) { return const_cast<char*>(std::strchr(cstr, byte)); }

int __strcmp(const char* a, const char* b) { return std::strcmp(a, b); }

int __stricmp(const char* a, const char* b) {
  while (*a != '\0' && lowerCase(*a) == lowerCase(*b)) {
    ++a;
    ++b;
  }
  return lowerCase(*a) - lowerCase(*b);
}

size_t __strlcpy(char* out, const char* cstr, size_t size) {
  const size_t length = std::strlen(cstr);
  if (size != 0) {
    const size_t count = length < size ? length : size - 1;
    std::memcpy(out, cstr, count);
    out[count] = '\0';
  }
  return length;
}

size_t __strlcat(char* out, const char* cstr, size_t size) {
  const size_t length = strnlen(out, size);
  return length + __strlcpy(out + length, cstr, size - length);
}

int __atoi(const char* cstr) {
  const long long value = cstr == nullptr ? 0 : std::strtoll(cstr, nullptr, 10);
  return value > INT_MAX ? INT_MAX : value < INT_MIN ? INT_MIN : static_cast<int>(value);
}

char* __itoaL(long value, char* text, int base) {
  char digits[sizeof(value) * CHAR_BIT];
  unsigned int count = 0;
  const auto divisor = static_cast<unsigned long>(base);
  // The least value has no positive counterpart, so the sign is removed in unsigned arithmetic.
  unsigned long rest = value < 0 ? 0UL - static_cast<unsigned long>(value) : value;
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
  if (cstr == nullptr) {
    return 0;
  }
  unsigned char bytes[kAddressRecordSize] = {};  // the family, the address, zeros
  bytes[0] = std::strchr(cstr, ':') == nullptr ? AF_INET : AF_INET6;
  if (inet_pton(bytes[0], cstr, bytes + 1) != 1) {
    return 0;
  }
  std::memcpy(record, bytes, sizeof(bytes));
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
      *out++ = static_cast<char>(*in);
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
    *out++ = escape ? static_cast<char>(high << 4 | low) : *text;
    text += escape ? kEscapeLength : 1;
  }
  *out = '\0';
}

void* wyDplTlsGet() {
  static const bool usable = pthread_key_create(&registryKey, deleteRegistry) == 0;
  if (!usable) {
    return nullptr;
  }
  void* registry = pthread_getspecific(registryKey);
  if (registry == nullptr) {
    auto* const made = new (std::nothrow) Registry;
    if (made == nullptr || pthread_setspecific(registryKey, static_cast<Globals*>(made)) != 0) {
      delete made;
      return nullptr;
    }
    registry = static_cast<Globals*>(made);
  }
  return registry;
}

void wyLogModuleEventSimple(int level, int moduleId, const char* sourceFile, int line,
                            const char* format, uintptr_t a1, uintptr_t a2, uintptr_t a3) {
  char text[1024];
  // The formats are the library's constants; each argument is a machine word.
  std::snprintf(text, sizeof(text), format, a1, a2, a3);
  std::fprintf(stderr, "%d %d %s:%d %s\n", level, moduleId, sourceFile, line, text);
}

void pzmemlog_add(int /*category*/, const char* /*sourceFile*/, int /*line*/,
                  const void* /*pointer*/, size_t /*size*/) {}

void pzmemlog_remove(int /*category*/, const void* /*pointer*/) {}
