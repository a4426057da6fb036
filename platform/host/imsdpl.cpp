// imsdpl.cpp - the platform layer for desktop hosts, over the C library.
#include "imsdpl.h"

#include <arpa/inet.h>

#include <algorithm>
#include <atomic>
#include <charconv>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "hostControl.h"
#include "hostRegistry.h"

namespace {

constexpr std::size_t kLogTextSize = 1024;

void (*logHandler)(void*, const HostLogLine&) = nullptr;
void* logContext = nullptr;
void (*memoryHandler)(void*, const HostMemoryEvent&) = nullptr;
void* memoryContext = nullptr;

void* (*registryOfThread)() = nullptr;

std::atomic<std::size_t> liveBlocks{0};
std::atomic<unsigned long> allocationsUntilFailure{0};

void* counted(void* block) {
  if (block != nullptr) {
    ++liveBlocks;
  }
  return block;
}

constexpr std::size_t kAddressRecordSize = 20;
constexpr std::size_t kEscapeLength = 3;

// Returns whether a byte is allowed in a user part without an escape; ":" is.
bool isUserPartByte(unsigned char byte) {
  const auto within = [byte](char first, char last) { return first <= byte && byte <= last; };
  return within('0', '9') || within('A', 'Z') || within('a', 'z') ||
         (byte != 0 && std::strchr("-_.!~*'()&=+$,;?/:", byte) != nullptr);
}

// Returns a byte as 0 to 255, an upper-case ASCII letter in lower case.
int lowerCase(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return 'A' <= byte && byte <= 'Z' ? byte + ('a' - 'A') : byte;
}

// Returns the value of a hexadecimal digit, -1 for another byte.
int hexDigitValue(char c) {
  const char* const digits = "00112233445566778899AaBbCcDdEeFf";
  const char* digit = c == '\0' ? nullptr : std::strchr(digits, c);
  return digit == nullptr ? -1 : static_cast<int>(digit - digits) / 2;
}

// Returns the byte that an escape encodes; 0 if there is no escape to decode.
char decodedEscape(const char* text) {
  const int high = text[0] == '%' ? hexDigitValue(text[1]) : -1;
  const int low = high == -1 ? -1 : hexDigitValue(text[2]);
  return low == -1 ? '\0' : static_cast<char>(high << 4 | low);
}

}  // namespace

void hostSetLogHandler(void (*handler)(void*, const HostLogLine&), void* context) {
  logHandler = handler;
  logContext = context;
}

void hostSetMemoryHandler(void (*handler)(void*, const HostMemoryEvent&), void* context) {
  memoryHandler = handler;
  memoryContext = context;
}

void hostInstallRegistry(void* (*function)()) { registryOfThread = function; }

std::size_t hostLiveBlocks() { return liveBlocks; }

unsigned long hostFailAllocation(unsigned long n) { return allocationsUntilFailure.exchange(n); }

bool hostMayAllocate() {
  unsigned long left = allocationsUntilFailure;
  while (left != 0 && !allocationsUntilFailure.compare_exchange_weak(left, left - 1)) {
  }
  return left != 1;
}

// NOLINTBEGIN(bugprone-reserved-identifier): the handset's names.

void* __malloc(size_t size) { return hostMayAllocate() ? counted(std::malloc(size)) : nullptr; }

void* __calloc(size_t count, size_t size) {
  size_t total = 0;
  if (__builtin_mul_overflow(count, size, &total) || !hostMayAllocate()) {
    return nullptr;
  }
  return counted(std::calloc(1, total));
}

void __free(void* block) {
  if (block != nullptr) {
    --liveBlocks;
  }
  std::free(block);
}

char* __strdup(const char* cstr) {
  if (cstr == nullptr) {
    return nullptr;
  }
  const size_t size = std::strlen(cstr) + 1;
  void* copy = __malloc(size);
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
    const size_t count = std::min(length, size - 1);
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
  if (cstr == nullptr) {
    return 0;
  }
  const long long value = std::strtoll(cstr, nullptr, 10);
  if (value > INT_MAX) {
    return INT_MAX;
  }
  return value < INT_MIN ? INT_MIN : static_cast<int>(value);
}

char* __itoaL(long value, char* text, int base) {
  char digits[sizeof(value) * CHAR_BIT + 1];
  const std::to_chars_result result = std::to_chars(digits, digits + sizeof(digits), value, base);
  const auto length = static_cast<std::size_t>(result.ptr - digits);
  std::memcpy(text, digits, length);
  text[length] = '\0';
  return text;
}

int wyDplInetPton(void* record, const char* cstr) {
  if (cstr == nullptr) {
    return 0;
  }
  unsigned char bytes[kAddressRecordSize] = {};
  const int family = std::strchr(cstr, ':') == nullptr ? AF_INET : AF_INET6;
  bytes[0] = static_cast<unsigned char>(family);
  if (inet_pton(family, cstr, bytes + 1) != 1) {
    return 0;
  }
  std::memcpy(record, bytes, sizeof(bytes));
  return 1;
}

void wyDplStrURIQuote(char* out, unsigned char* in, unsigned int outSize) {
  if (outSize == 0) {
    return;
  }
  const char* const digits = "0123456789ABCDEF";
  std::size_t room = outSize - 1;
  for (; *in != 0; ++in) {
    const std::size_t needed = isUserPartByte(*in) ? 1 : kEscapeLength;
    if (needed > room) {
      break;
    }
    room -= needed;
    if (needed == 1) {
      *out++ = static_cast<char>(*in);
    } else {
      *out++ = '%';
      *out++ = digits[*in >> 4U];
      *out++ = digits[*in & 0xFU];
    }
  }
  *out = '\0';
}

void wyDplStrURIDequote(char* text) {
  char* out = text;
  while (*text != '\0') {
    const char decoded = decodedEscape(text);
    *out++ = decoded == '\0' ? *text : decoded;
    text += decoded == '\0' ? 1 : kEscapeLength;
  }
  *out = '\0';
}

void* wyDplTlsGet() { return registryOfThread == nullptr ? nullptr : registryOfThread(); }

void wyLogModuleEventSimple(int level, int moduleId, const char* sourceFile, int line,
                            const char* format, uintptr_t a1, uintptr_t a2, uintptr_t a3) {
  if (logHandler == nullptr) {
    return;
  }
  char text[kLogTextSize];
  // The formats are the callers' constants; each argument is a machine word.
  if (std::snprintf(text, sizeof(text), format, a1, a2, a3) >= 0) {
    logHandler(logContext, {level, moduleId, sourceFile, line, text});
  }
}

void pzmemlog_add(int category, const char* sourceFile, int line, const void* pointer,
                  size_t size) {
  if (memoryHandler != nullptr) {
    memoryHandler(memoryContext, {true, category, sourceFile, line, pointer, size});
  }
}

void pzmemlog_remove(int category, const void* pointer) {
  if (memoryHandler != nullptr) {
    memoryHandler(memoryContext, {false, category, nullptr, 0, pointer, 0});
  }
}

// NOLINTEND(bugprone-reserved-identifier)
