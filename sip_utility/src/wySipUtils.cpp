// wySipUtils.cpp - questions to plain text: Via values, URI equality, hosts, q-values, parsers.
#include "wySipUtils.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string_view>

#include "imsvarnZlib.h"
#include "internal/charClass.h"
#include "internal/checkedMath.h"
#include "internal/equality.h"
#include "internal/grammar.h"
#include "internal/log.h"
#include "internal/matchOf.h"
#include "internal/platformBlock.h"
#include "internal/recorded.h"
#include "internal/unread.h"
#include "wySipCommon.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wySipUtils";

constexpr std::size_t kTransportLength = 3;  // UDP, TCP

constexpr int kHostUnknown = 0;
constexpr int kHostIpv4 = 1;
constexpr int kHostIpv6 = 2;

constexpr std::size_t kAddressRecordSize = 20;

constexpr unsigned char kNoIndex = 255;
constexpr std::size_t kDecimals = 3;
constexpr unsigned int kHeaderValuesLimit = 20;

constexpr const char* kZlibVersion = "1.2.3";
constexpr int kWindowBits = 15;
constexpr int kGzipWindowBits = 16;  // added to a window's: gzip header and trailer
constexpr int kMemoryLevel = 4;
constexpr unsigned int kExpansionLimit = 60;

// How the two Via functions differ in the steps that they share.
struct ViaReading {
  char quote;  // what a double quote is written as
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

// Returns a copy of a text without the blanks outside double quotes; null without memory.
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

// Returns what stands behind the transport; null for none.
const char* behindTransport(const char* via) {
  const char* transport = std::strstr(via, "UDP");
  if (transport == nullptr) {
    transport = std::strstr(via, "TCP");
  }
  return transport == nullptr ? nullptr : transport + kTransportLength;
}

// Returns "sip:" and what stands behind the transport of a Via value; null, logged, on failure.
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
  const auto length = static_cast<unsigned char>(std::strlen(copy.get()));  // 8 bits, no more
  if (length == 0) {
    logFailure(kSourceFile, reading.empty);
    return nullptr;
  }
  const PlatformText compact = compactCopy({copy.get(), length}, reading.quote);
  if (compact == nullptr) {
    logSevere(kSourceFile, reading.noCompactCopy);
    return nullptr;
  }
  const char* const sentBy = behindTransport(compact.get());
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

// Puts the URI with its user-info quoted into the text, where it has one.
VARN_EXCEPTION_CODES replaceByQuoted(char* uri, SipString& text) {
  char* quoted = nullptr;
  if (wyQuoteUserInfoInSipUri(uri, &quoted) == 0) {
    return VARN_OK;
  }
  const PlatformText owner(quoted);
  text.clear();
  return text.append(quoted);
}

// Returns an object read from these texts; null when it cannot be made or has an error.
template <typename Object, typename... Texts>
Object* newObject(const Texts&... texts) {
  Recorded<Object> object(newRecorded<Object>(kSourceFile, texts...));
  return object == nullptr || object->GetLastErrorCode() != VARN_OK ? nullptr : object.release();
}

// Returns a copy of an address's host, brackets dropped; null, logged, when it is empty.
PlatformText bareHost(const SipAddress& address, const char* noMemory) {
  const SipString& host = address.getHost();
  const auto length = static_cast<unsigned short>(host.length());  // 16 bits, no more
  if (length == 0) {
    logFailure(kSourceFile, "SipUtils::CompareSIPURI | LocalHost Empty");  // of either one
    return nullptr;
  }
  PlatformText copy = newZeroed<char>(length + 1U);
  if (copy == nullptr) {
    logFailure(kSourceFile, noMemory);
    return nullptr;
  }
  const bool bracketed = length >= 3 && *host.c_str() == '[';
  host.copy(copy.get(), bracketed ? length - 2U : length, bracketed ? 1 : 0);
  return copy;
}

// Returns whether two texts are the same IP address; texts that cannot be read never are.
bool isSameIpAddress(const char* a, const char* b) {
  unsigned char records[2][kAddressRecordSize] = {};
  return wyDplInetPton(records[0], a) != 0 && wyDplInetPton(records[1], b) != 0 &&
         std::memcmp(records[0], records[1], kAddressRecordSize) == 0;
}

// Returns whether two hosts without brackets are the same; logs where they are not.
bool isSameHost(const char* remote, const char* local) {
  const int localType = GetHostType(local);
  const int remoteType = GetHostType(remote);
  if (localType != kHostUnknown && remoteType != kHostUnknown) {
    const bool same = isSameIpAddress(remote, local);
    if (!same) {
      logFailure(kSourceFile, "SipUtils::CompareSIPURI | IP Addr Comparision failed");
    }
    return same;
  }
  const bool same = std::strcmp(remote, local) == 0;
  if (!same) {
    logFailure(kSourceFile, "SipUtils::CompareSIPURI | FQDN MisMatch");
  }
  return same;
}

// Returns whether two addresses have the same user and port; logs where they do not.
bool isSameUserAndPort(const SipAddress& remote, const SipAddress& local) {
  if (remote.getUser().length() == 0 || !equal(remote.getUser(), view(local.getUser()))) {
    logFailure(kSourceFile, "SipUtils::CompareSIPURI | UserName MisMatch ");
    return false;
  }
  if (remote.getStoredPort() != local.getStoredPort()) {
    logFailure(kSourceFile, "SipUtils::CompareSIPURI | PortMisMatch Remote = %d Local = %d",
               remote.getStoredPort(), local.getStoredPort());
    return false;
  }
  return true;
}

// Returns whether a rule covers a text that is not empty, all of it.
template <Rule* rule>
bool coversAll(Unread text) {
  const unsigned int count = matchOf<rule>(text, 0);
  return count != 0 && count == text.length;
}

// Returns the text inside brackets, whatever the closing one is; other texts as they are.
std::string_view withoutBrackets(std::string_view host) {
  if (host.front() != '[') {
    return host;
  }
  return host.substr(1, host.size() < 2 ? 0 : host.size() - 2);
}

// Returns whether integer and fraction of a q-value are what they may be; logs where not.
bool isQValue(std::string_view integer, std::string_view fraction) {
  const char* fault = nullptr;
  if (integer.empty()) {
    fault = "SipUtils:ValidateAndGetMaxQValue | NO Integer part in q value";
  } else if (integer.size() > 1) {
    fault =
        "SipUtils:ValidateAndGetMaxQValue | ILLEGAL! Integer part in q value MUST be a single "
        "digit";
  } else if (integer != "0" && integer != "1") {
    fault = "SipUtils:ValidateAndGetMaxQValue | ILLEGAL! Integer part in q value MUST be 0/1";
  } else if (fraction.size() > kDecimals) {
    fault =
        "SipUtils:ValidateAndGetMaxQValue | ILLEGAL! Decimal part in q value MUST have atmost 3 "
        "digits";
  } else if (integer == "1" && fraction.find_first_not_of('0') != std::string_view::npos) {
    fault =
        "SipUtils:ValidateAndGetMaxQValue | ILLEGAL! Decimal part in q value MUST have only 0's "
        "when integer part is 1";
  }
  if (fault != nullptr) {
    logFailure(kSourceFile, fault);
  }
  return fault == nullptr;
}

// Reads a q-value as thousandths. Returns whether it is one; logs where not.
bool readQValue(const char* qvalue, unsigned short& thousandths) {
  if (std::strpbrk(qvalue, "-+") != nullptr) {
    logFailure(kSourceFile, "SipUtils:ValidateAndGetMaxQValue | Sign present in q value");
    return false;
  }
  const PlatformText copy(__strdup(qvalue));
  if (copy == nullptr) {
    logSevere(kSourceFile, "SipUtils:ValidateAndGetMaxQValue | Failure in Strdup");
    return false;
  }
  std::string_view fraction;
  char* rest = nullptr;
  if (NSIP_strtok(copy.get(), ".", &rest) != nullptr) {
    fraction = rest;
  } else {
    logTrace(kSourceFile, "SipUtils:ValidateAndGetMaxQValue | NO Fractional part in q value");
  }
  if (!isQValue(copy.get(), fraction)) {
    return false;
  }
  char digits[] = "0000";
  digits[0] = copy[0];
  fraction.copy(digits + 1, kDecimals);
  thousandths = static_cast<unsigned short>(__atoi(digits));
  return true;
}

// Returns whether two of the values are the same; changes their order.
bool hasEqual(unsigned short* values, std::size_t count) {
  std::sort(values, values + count);
  return std::adjacent_find(values, values + count) != values + count;
}

// Reads the entries into values. Returns whether all are q-values, and the index of the highest,
// the last of equal ones.
bool readQValues(char** qvalues, unsigned char count, unsigned short* values,
                 unsigned char& highest) {
  unsigned short best = 0;
  for (unsigned char i = 0; i < count && qvalues[i] != nullptr; ++i) {
    if (!readQValue(qvalues[i], values[i])) {
      return false;
    }
    if (values[i] >= best) {
      best = values[i];
      highest = i;
    }
  }
  return true;
}

// The state of one zlib run, zero at first.
class ZlibStream {
 public:
  // End is what ends the run that a set-up has begun.
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

// Compresses one byte into at most one byte, until the input or the room is used up.
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

// Writes the rest of the stream, byte by byte. Returns whether it fits the length: zlib tells the
// end only when there is room behind it, so that a byte more than the length must be there.
bool finishDeflate(const ZlibStream& stream, unsigned int length) {
  stream->avail_in = 0;
  int result = Z_OK;
  while (result == Z_OK && stream->total_out <= length) {
    stream->avail_out = 1;
    result = varnDeflate(stream.get(), Z_FINISH);
  }
  return result == Z_STREAM_END && stream->total_out <= length;
}

// Expands the input up to its end or that of the stream. Returns whether nothing was wrong.
bool inflateInput(const ZlibStream& stream, unsigned int length) {
  while (stream->total_in < length) {
    const int result = varnInflate(stream.get(), Z_NO_FLUSH);
    if (result != Z_OK) {
      return result == Z_STREAM_END;
    }
  }
  return true;
}

// Hands a result out, null without memory. Returns its length, 0 without memory.
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

bool isSameValue(std::string_view a, std::string_view b, bool ignoreCase) {
  return ignoreCase ? equalIgnoringCase(a, b) : a == b;
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

int CompareSIPURI(const char* remote, const char* local) {
  if (remote == nullptr || local == nullptr) {
    logFailure(kSourceFile, "SipUtils::CompareSIPURI | Invalid Args RemoteAddr=%x LocalAddr=%x",
               logArgument(remote), logArgument(local));
    return 0;
  }
  const SipAddress remoteAddress{SipString(remote)};
  const SipAddress localAddress{SipString(local)};
  if (remoteAddress.GetLastErrorCode() != VARN_OK || localAddress.GetLastErrorCode() != VARN_OK) {
    logFailure(kSourceFile, "SipUtils::CompareSIPURI | Decode Error RemotStr=%d LocalStr=%x",
               remoteAddress.GetLastErrorCode(), localAddress.GetLastErrorCode());
  }
  if (!isSameUserAndPort(remoteAddress, localAddress)) {
    return 0;
  }
  const PlatformText localHost =
      bareHost(localAddress, "SipUtils::CompareSIPURI | LocalHost Calloc failed ");
  if (localHost == nullptr) {
    return 0;
  }
  const PlatformText remoteHost =
      bareHost(remoteAddress, "SipUtils::CompareSIPURI | RemoteHost Calloc failed ");
  return remoteHost != nullptr && isSameHost(remoteHost.get(), localHost.get()) ? 1 : 0;
}

int GetHostType(const char* host) {
  if (host == nullptr || *host == '\0') {
    logFailure(kSourceFile, "GetHostType | Invalid Arg");
    return kHostUnknown;
  }
  const std::string_view bare = withoutBrackets(host);
  const PlatformText copy = copyOf(bare);
  if (copy == nullptr) {
    logTrace(kSourceFile, "wyDplMalloc: Fatal Error Malloc failed - UNKNOWN_IP_TYPE");
    return kHostUnknown;
  }
  const Unread text{bare.data(), checkedLength(bare.size())};
  if (coversAll<grammar::ipv6Address>(text)) {
    logTrace(kSourceFile, "GetHostType | IPv6 = %s %s", logArgument(copy.get()), logArgument(host));
    return kHostIpv6;
  }
  if (coversAll<grammar::ipv4Address>(text)) {
    logTrace(kSourceFile, "GetHostType | IPv4 = %s %s", logArgument(copy.get()), logArgument(host));
    return kHostIpv4;
  }
  logTrace(kSourceFile, "GetHostType | UNKNOWN IP Type %s %s", logArgument(copy.get()),
           logArgument(host));
  return kHostUnknown;
}

char* NSIP_strtok(char* text, const char* delimiter, char** rest) {
  if (text == nullptr || delimiter == nullptr || rest == nullptr) {
    logFailure(kSourceFile, "NSIP_strtok | One or more NULL input parameters");
    return nullptr;
  }
  char* const found = std::strstr(text, delimiter);
  if (found == nullptr) {
    return nullptr;
  }
  *rest = found + std::strlen(delimiter);
  *found = '\0';
  return text;
}

char* RemoveSpaces(char* text) {
  if (text == nullptr) {
    return nullptr;
  }
  text += std::strspn(text, " ");
  for (std::size_t length = std::strlen(text); length != 0 && text[length - 1] == ' '; --length) {
    text[length - 1] = '\0';
  }
  return text;
}

unsigned char ValidateAndGetMaxQValue(char** qvalues, unsigned char count) {
  if (qvalues == nullptr || count == 0) {
    logFailure(kSourceFile,
               "SipUtils:ValidateAndGetMaxQValue | Input paramter NULL or Arr Count is 0");
    return kNoIndex;
  }
  const PlatformBlock<unsigned short> values = newZeroed<unsigned short>(count + 1U);
  if (values == nullptr) {
    logSevere(kSourceFile, "SipUtils:ValidateAndGetMaxQValue | Failure in Malloc");
    return kNoIndex;
  }
  unsigned char highest = kNoIndex;
  if (qvalues[0] == nullptr || !readQValues(qvalues, count, values.get(), highest)) {
    return kNoIndex;
  }
  if (hasEqual(values.get(), count)) {
    logFailure(kSourceFile,
               "SipUtils:ValidateAndGetMaxQValue | ILLEGAL! Two or more q values are same");
    highest = kNoIndex;
  }
  // As a signed byte, so that 255 is shown as -1.
  logTrace(kSourceFile, "SipUtils:ValidateAndGetMaxQValue | Return MaxValue Index is %d",
           static_cast<uintptr_t>(static_cast<signed char>(highest)));
  return highest;
}

int wySipCheckIfHeaderValuePresent(char** values, char* value, int ignoreCase) {
  if (value == nullptr) {
    logFailure(kSourceFile, "SipUtils::wySipCheckIfHeaderValuePresent| Invalid Input");
    return 0;
  }
  for (unsigned int i = 0; values != nullptr && i < kHeaderValuesLimit; ++i) {
    if (values[i] == nullptr) {
      return 0;
    }
    if (isSameValue(values[i], value, ignoreCase != 0)) {
      return 1;
    }
  }
  return 0;
}

unsigned int wyAtoi32(const char* text) {
  if (text == nullptr || *text == '\0') {
    logFailure(kSourceFile, "wyAtoi32 | Input Param NULL");
    return 0;
  }
  const std::string_view digits(text, static_cast<unsigned char>(std::strlen(text)));  // 8 bits
  if (!std::all_of(digits.begin(), digits.end(), [](char c) { return isIn(kDigit, c); })) {
    logFailure(kSourceFile, "wyAtoi32 | Conversion Failed");
    return 0;
  }
  unsigned int value = 0;
  for (const char digit : digits) {
    value = checkedSum(checkedProduct(value, 10), static_cast<unsigned int>(digit - '0'));
  }
  return value;
}

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
             "DeCompressGzipData | varnDeflateInit2 Failed");  // Deflate is what it says
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
