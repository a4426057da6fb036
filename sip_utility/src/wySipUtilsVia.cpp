// wySipUtilsVia.cpp - Via values as addresses and as header fields.
#include "wySipUtils.h"

#include <cstring>
#include <string_view>

#include "base/log.h"
#include "base/platformBlock.h"
#include "base/recorded.h"
#include "wySipCommon.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wySipUtils";

constexpr std::size_t kTransportLength = 3;  // UDP, TCP

// The two Via functions share their steps. This is what differs: the texts that they log, and the
// quote.
struct ViaReading {
  char quote;  // written in place of each double quote
  const char* nullText;
  const char* noCopy;
  const char* empty;
  const char* noCompactCopy;
  const char* noTransport;
  const char* noUri;
};

constexpr ViaReading kAddressReading = {
    ' ',
    "wySipUtils::ParseViaHeaderToAdress | pViaheader is null",
    "wySipUtils::ParseViaHeaderToAdress | Strdup Failed",
    "wySipUtils::ParseViaHeaderToAdress  empty VIA header",
    "wySipUtils::ParseViaHeaderToAdress | wyDplMalloc failed",
    "wySipUtils::ParseViaHeaderToAdress | No or unknown Transport found",
    "wySipUtils::ParseViaHeaderToAdress | malloc failed",
};

constexpr ViaReading kHeaderReading = {
    '"',
    "wySipUtils::ParseViaHeaderToHeader | n_pViaheader is null",
    "wySipUtils::ParseViaHeaderToHeader | Strdup Failed",
    "wySipUtils::ParseViaHeaderToHeader::  empty VIA header",
    "wySipUtils::ParseViaHeaderToHeader::wyDplMalloc failed",
    "wySipUtils::ParseViaHeaderToHeader :: No or unknown Transport found",
    "wySipUtils::ParseViaHeaderToHeader :: malloc failed",
};

// Returns a copy of a text without the blanks outside double quotes; null if out of memory.
PlatformText compactCopy(std::string_view text, char quote) {
  PlatformText copy = newText(text.size());
  if (copy == nullptr) {
    return copy;
  }
  char* end = copy.get();
  bool quoted = false;
  for (const char byte : text) {
    if (byte == '"') {
      quoted = !quoted;
      *end++ = quote;
    } else if (quoted || byte != ' ') {
      *end++ = byte;
    }
  }
  *end = '\0';
  return copy;
}

// Returns the text after the transport; null if there is none.
const char* afterTransport(const char* via) {
  const char* transport = std::strstr(via, "UDP");
  if (transport == nullptr) {
    transport = std::strstr(via, "TCP");
  }
  return transport == nullptr ? nullptr : transport + kTransportLength;
}

// Returns "sip:" and the text after the transport of a Via value; null, logged, on failure.
PlatformText uriOfVia(const char* via, const ViaReading& reading) {
  if (via == nullptr) {
    logFailure(kSourceFile, reading.nullText);
    return nullptr;
  }
  const PlatformText copy(__strdup(via));
  if (copy == nullptr) {
    logSevere(kSourceFile, reading.noCopy);
    return nullptr;
  }
  const auto length = static_cast<unsigned char>(std::strlen(copy.get()));  // only the low 8 bits
  if (length == 0) {
    logFailure(kSourceFile, reading.empty);
    return nullptr;
  }
  const PlatformText compact = compactCopy({copy.get(), length}, reading.quote);
  if (compact == nullptr) {
    logSevere(kSourceFile, reading.noCompactCopy);
    return nullptr;
  }
  const char* const sentBy = afterTransport(compact.get());
  if (sentBy == nullptr) {
    logFailure(kSourceFile, reading.noTransport);
    return nullptr;
  }
  PlatformText uri = joined("sip:", sentBy);
  if (uri == nullptr) {
    logFailure(kSourceFile, reading.noUri);
  }
  return uri;
}

// Replaces the text with the URI, its user-info quoted. If the URI cannot be quoted, the text
// stays.
VARN_EXCEPTION_CODES replaceByQuoted(char* uri, SipString& text) {
  char* quoted = nullptr;
  if (wyQuoteUserInfoInSipUri(uri, &quoted) == 0) {
    return VARN_OK;
  }
  const PlatformText owner(quoted);
  text.clear();
  return text.append(quoted);
}

// Returns an object read from these texts; null if out of memory or if it has an error code.
template <typename Object, typename... Texts>
Object* newObject(const Texts&... texts) {
  Recorded<Object> object(newRecorded<Object>(kSourceFile, texts...));
  return object == nullptr || object->GetLastErrorCode() != VARN_OK ? nullptr : object.release();
}

}  // namespace

SipAddress* ParseViaHeaderToAdress(const char* via) {
  const PlatformText uri = uriOfVia(via, kAddressReading);
  if (uri == nullptr) {
    return nullptr;
  }
  uri[std::strcspn(uri.get(), ";")] = '\0';
  logTrace(kSourceFile, "ParseViaHeaderToAdress: %s ", logArgument(uri.get()));
  SipString text;
  if (text.append(uri.get()) != VARN_OK || replaceByQuoted(uri.get(), text) != VARN_OK) {
    logFailure(kSourceFile, "wySipUtils::ParseViaHeaderToAdress | append failed");
    return nullptr;
  }
  auto* address = newObject<SipAddress>(text);
  if (address == nullptr) {
    logFailure(kSourceFile, "wySipUtils::VIA header parsing failure");
  }
  return address;
}

SipHeader* ParseViaHeaderToHeader(const char* via) {
  const PlatformText uri = uriOfVia(via, kHeaderReading);
  if (uri == nullptr) {
    return nullptr;
  }
  logTrace(kSourceFile, "ParseViaHeaderToHeader: %s ", logArgument(uri.get()));
  SipString value;
  if (value.append(uri.get()) != VARN_OK) {
    logFailure(kSourceFile, "wySipUtils::strValue.append: failure append");
    return nullptr;
  }
  auto* header = newObject<SipHeader>(SipString("Via"), value);
  if (header == nullptr) {
    logFailure(kSourceFile, "wySipUtils::ParseViaHeaderToHeader VIA header parsing failure");
  }
  return header;
}
