// wySipCommon.cpp - rewriting of plain text: quoting, sorting, IMEI and hexadecimal forms.
#include "wySipCommon.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <string_view>
#include <utility>

#include "base/charClass.h"
#include "base/log.h"
#include "base/platformBlock.h"
#include "base/textWriter.h"
#include "wySipString.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wySipCommon";

constexpr std::string_view kScheme = "sip:";
constexpr std::string_view kEscapedColon = "%3A";
constexpr std::size_t kEscapeLength = 3;

constexpr std::size_t kImeiLength = 15;
constexpr std::size_t kImeiBlockSize = 20;

constexpr const char* kListSeparator = ";";

// Returns the three texts one after the other, each ":" of the middle one escaped; null if out of
// memory.
PlatformText joinedEscapingColons(std::string_view head, std::string_view middle,
                                  std::string_view tail) {
  const auto colons = static_cast<std::size_t>(std::count(middle.begin(), middle.end(), ':'));
  PlatformText text =
      newText(head.size() + middle.size() + tail.size() + colons * (kEscapedColon.size() - 1));
  if (text == nullptr) {
    return text;
  }
  char* end = std::copy(head.begin(), head.end(), text.get());
  for (const char byte : middle) {
    if (byte == ':') {
      end = std::copy(kEscapedColon.begin(), kEscapedColon.end(), end);
    } else {
      *end++ = byte;
    }
  }
  end = std::copy(tail.begin(), tail.end(), end);
  *end = '\0';
  return text;
}

// Returns the user-info, decoded and encoded again; null if out of memory.
PlatformText encodedUserInfo(std::string_view userInfo) {
  if (userInfo.size() > (UINT_MAX - 1) / kEscapeLength) {
    return nullptr;
  }
  const PlatformText decoded = copyOf(userInfo);
  if (decoded == nullptr) {
    return nullptr;
  }
  wyDplStrURIDequote(decoded.get());
  const std::size_t size = kEscapeLength * userInfo.size() + 1;
  PlatformText encoded = newZeroed<char>(size);
  if (encoded != nullptr) {
    wyDplStrURIQuote(encoded.get(), reinterpret_cast<unsigned char*>(decoded.get()),
                     static_cast<unsigned int>(size));
  }
  return encoded;
}

// Returns the position of the user-info, after "sip:". A "sip:" in a quoted display name does not
// count. npos, logged, if there is none.
std::size_t userInfoPosition(std::string_view uri) {
  std::size_t scheme = uri.find(kScheme);
  if (scheme != std::string_view::npos && uri.front() == '"') {
    const std::size_t closing = uri.find('"', 1);
    if (closing == std::string_view::npos) {
      logFailure(kSourceFile, "wyQuoteUserInfo | Uri is malformed");
      return closing;
    }
    scheme = uri.find(kScheme, closing);
  }
  if (scheme == std::string_view::npos) {
    logFailure(kSourceFile, "wyQuoteUserInfo | scheme is not present");
    return scheme;
  }
  return scheme + kScheme.size();
}

// Returns the position of the last "@" at or after begin; npos for none.
std::size_t lastAtSign(std::string_view uri, std::size_t begin) {
  for (std::size_t i = uri.size(); i > begin; --i) {
    if (uri[i - 1] == '@') {
      return i - 1;
    }
  }
  return std::string_view::npos;
}

// wyQuoteUserInfo() on a text that need not be terminated.
int quoteUserInfo(std::string_view uri, char** out) {
  const std::size_t begin = userInfoPosition(uri);
  if (begin == std::string_view::npos) {
    return 0;
  }
  const std::size_t end = lastAtSign(uri, begin);
  if (end == std::string_view::npos) {
    return 0;
  }
  if (end == begin) {
    logFailure(kSourceFile, "wyQuoteUserInfo | user-info is not present");
    return 0;
  }
  const PlatformText encoded = encodedUserInfo(uri.substr(begin, end - begin));
  if (encoded == nullptr) {
    logSevere(kSourceFile, "wyQuoteUserInfo | Malloc Failed");
    return 0;
  }
  const std::string_view userInfo(encoded.get());
  if (!userInfo.empty() && userInfo.back() == ':') {
    logFailure(kSourceFile, "wyQuoteUserInfo | user-info part is not proper");
    return 0;
  }
  PlatformText result = joinedEscapingColons(uri.substr(0, begin), userInfo, uri.substr(end));
  if (result == nullptr) {
    logSevere(kSourceFile, "wyQuoteUserInfo | Malloc Failed");
    return 0;
  }
  *out = result.release();
  return 1;
}

// Returns the length of the first element: up to a comma outside double quotes.
std::size_t elementLength(std::string_view list) {
  bool quoted = false;
  std::size_t length = 0;
  for (; length < list.size() && (quoted || list[length] != ','); ++length) {
    quoted = quoted != (list[length] == '"');
  }
  return length;
}

// Writes an element, rewritten if that is possible.
void writeQuoted(TextWriter& writer, std::string_view element) {
  char* quoted = nullptr;
  if (quoteUserInfo(element, &quoted) != 0) {
    const PlatformText owner(quoted);
    writer.write(std::string_view(quoted));
  } else {
    writer.write(element);
  }
}

// Returns the list with all its elements rewritten; null if out of memory.
PlatformText quotedList(std::string_view uris) {
  if (uris.size() > UINT_MAX / kEscapeLength - 1) {
    return nullptr;
  }
  // A string grows to exactly what is asked for, so appending to it without a reserve would be
  // quadratic. No byte becomes longer than an escape.
  SipString list;
  TextWriter writer(list, static_cast<unsigned int>(kEscapeLength * uris.size()));
  for (;;) {
    const std::size_t length = elementLength(uris);
    writeQuoted(writer, uris.substr(0, length));
    if (length == uris.size()) {
      break;
    }
    writer.write(',');
    uris.remove_prefix(length + 1);
  }
  return writer.code() == VARN_OK ? copyOf({list.c_str(), list.length()}) : nullptr;
}

// Returns the value of a digit in base 36. Any other character repeats the value before it, on
// purpose.
unsigned int digitValue(char c, unsigned int before) {
  if (isIn(kDigit, c)) {
    return static_cast<unsigned int>(c - '0');
  }
  return isIn(kAlpha, c) ? static_cast<unsigned int>(foldCase(c) - 'a' + 10) : before;
}

// Cuts a list into its elements, in place, and stores pointers to the first count of them.
void splitList(char* list, const char** elements, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    elements[i] = list;
    list += std::strcspn(list, kListSeparator);
    if (*list != '\0') {
      *list++ = '\0';
    }
  }
}

// One selection pass, which on purpose does not fully sort. It always compares with element i, so
// the last smaller element moves to the front, not the smallest.
void orderElements(const char** elements, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    std::size_t last = count - 1;
    while (last > i && std::strcmp(elements[i], elements[last]) <= 0) {
      --last;
    }
    std::swap(elements[i], elements[last]);
  }
}

// Writes the elements in their new order over the list that they were copied from. Their total
// length is the same, so the text is not terminated anew.
void joinList(char* list, const char* const* elements, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    if (i != 0) {
      *list++ = *kListSeparator;
    }
    const std::size_t length = std::strlen(elements[i]);
    std::memcpy(list, elements[i], length);
    list += length;
  }
}

}  // namespace

int wyQuoteUserInfo(char* uri, char** out) {
  if (uri == nullptr || out == nullptr) {
    logFailure(kSourceFile, "wyQuoteUserInfo | input parameter NULL");
    return 0;
  }
  return quoteUserInfo(uri, out);
}

int wyQuoteUserInfoInSipUri(char* uris, char** out) {
  if (uris == nullptr || out == nullptr) {
    logFailure(kSourceFile, "wyQuoteUserInfoInSipUri | input parameter NULL");
    return 0;
  }
  const std::string_view list(uris);
  if (list.find(kScheme) == std::string_view::npos) {
    logFailure(kSourceFile, "wyQuoteUserInfoInSipUri | scheme is not present");
    return 0;
  }
  if (elementLength(list) == list.size()) {
    return quoteUserInfo(list, out);
  }
  PlatformText result = quotedList(list);
  if (result == nullptr) {
    logSevere(kSourceFile, "wyQuoteUserInfoInSipUri | Malloc Failed");
    return 0;
  }
  *out = result.release();
  return 1;
}

int wyQuoteFeatureTagValue(char* text, char* reference, char** out) {
  if (text == nullptr || reference == nullptr || out == nullptr) {
    logFailure(kSourceFile, "wyQuoteFeatureTagValue | input parameter NULL");
    return 0;
  }
  constexpr std::size_t kOpeningLength = 2;  // ="
  const std::string_view content(text);
  const char* const found = std::strstr(text, reference);
  const std::size_t begin = found == nullptr ? content.size()
                                             : static_cast<std::size_t>(found - text) +
                                                   std::strlen(reference) + kOpeningLength;
  const std::size_t end = content.find('"', begin);  // npos also if begin is past the end
  if (end == std::string_view::npos) {
    logFailure(kSourceFile, "wyQuoteFeatureTagValue | reference %s not found",
               logArgument(reference));
    return 0;
  }
  PlatformText result = joinedEscapingColons(
      content.substr(0, begin), content.substr(begin, end - begin), content.substr(end));
  if (result == nullptr) {
    logSevere(kSourceFile, "wyQuoteFeatureTagValue | Malloc Failed");
    return 0;
  }
  *out = result.release();
  return 1;
}

unsigned char* strToH8(char* hex, unsigned short* byteCount) {
  if (hex == nullptr || byteCount == nullptr) {
    return nullptr;
  }
  const std::size_t length = std::strlen(hex);
  const std::size_t evenLength = length + length % 2;
  *byteCount = static_cast<unsigned short>(evenLength / 2);
  // Callers rely on a block of twice the size of the bytes.
  auto* bytes = static_cast<unsigned char*>(__calloc(evenLength, 1));
  if (bytes == nullptr) {
    logSevere(kSourceFile, "strToH8 | wyDplCalloc failure");
    return nullptr;
  }
  logTrace(kSourceFile, "SIG wyDplCalloc strToH8 pArrStr: %x", logArgument(bytes));
  unsigned int high = 0;
  unsigned int low = 0;
  for (std::size_t i = 0; i < length; i += 2) {
    high = digitValue(hex[i], high);
    low = digitValue(hex[i + 1], low);  // the terminator, if the length is odd
    bytes[i / 2] = static_cast<unsigned char>(high << 4U | low);
  }
  return bytes;
}

int wySortCommaSepStrings(char** text) {
  if (text == nullptr || *text == nullptr) {
    logFailure(kSourceFile, "wySortCommaSepStrings | Invalid input parameter");
    return 0;
  }
  const std::string_view list(*text);
  // Only the low 8 bits: in a longer list, the elements after so many stay where they are.
  const auto count =
      static_cast<unsigned char>(1 + std::count(list.begin(), list.end(), *kListSeparator));
  if (count <= 1) {
    return 1;
  }
  const PlatformBlock<const char*> elements = newZeroed<const char*>(count);
  if (elements == nullptr) {
    logSevere(kSourceFile, "wySortCommaSepStrings | Malloc Failed");
    return 0;
  }
  const PlatformText copy(__strdup(*text));
  if (copy == nullptr) {
    logSevere(kSourceFile, "wySortCommaSepStrings | Strdup Failed");
    return 0;
  }
  splitList(copy.get(), elements.get(), count);
  orderElements(elements.get(), count);
  joinList(*text, elements.get(), count);
  return 1;
}

char* SipFormatIMEInumber(char* imei) {
  if (imei == nullptr) {
    logFailure(kSourceFile, "wySipCommon::FormatIMEInumber - strIMEInumber NULL");
    return nullptr;
  }
  const auto length = static_cast<unsigned short>(std::strlen(imei));
  if (length < kImeiLength) {
    logFailure(kSourceFile,
               "wySipCommon::FormatIMEInumber - IMEI must be at least 15 digits, not adding, %d",
               length);
    return nullptr;
  }
  auto* formatted = static_cast<char*>(__calloc(kImeiBlockSize, 1));
  if (formatted == nullptr) {
    logFailure(kSourceFile, "wySipCommon::FormatIMEInumber - Memory allocation failed");
    return nullptr;
  }
  // Type allocation code, serial number, check digit.
  char* end = std::copy_n(imei, 8, formatted);
  *end++ = '-';
  end = std::copy_n(imei + 8, 6, end);
  *end++ = '-';
  *end = imei[14];
  return formatted;
}
