// wySipUtilsUri.cpp - equality of SIP URIs, and kinds of hosts.
#include "wySipUtils.h"

#include <cstring>
#include <string_view>

#include "address/addrSpec.h"
#include "base/log.h"
#include "base/platformBlock.h"
#include "grammar/grammar.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wySipUtils";

constexpr int kHostUnknown = 0;
constexpr int kHostIpv4 = 1;
constexpr int kHostIpv6 = 2;

constexpr std::size_t kAddressRecordSize = 20;

// What a comparison looks at, in the text of a URI.
struct ComparedUri {
  explicit ComparedUri(const char* uri) : code(scanAddress(uri, texts, port)) {}

  AddressTexts texts;
  unsigned short port = 0;
  VARN_EXCEPTION_CODES code;
};

// Returns a copy of a host without brackets; null, logged, if it is empty.
PlatformText bareHost(std::string_view host, const char* noMemory) {
  const auto length = static_cast<unsigned short>(host.size());  // only the low 16 bits
  if (length == 0) {
    // The text says "LocalHost" for either address, on purpose.
    logFailure(kSourceFile, "SipUtils::CompareSIPURI | LocalHost Empty");
    return nullptr;
  }
  const bool bracketed = length >= 3 && host.front() == '[';
  PlatformText copy = copyOf(bracketed ? host.substr(1, length - 2U) : host.substr(0, length));
  if (copy == nullptr) {
    logFailure(kSourceFile, noMemory);
  }
  return copy;
}

// Returns whether two texts are the same IP address; false if one of them is none.
bool isSameIpAddress(const char* a, const char* b) {
  unsigned char records[2][kAddressRecordSize] = {};
  return wyDplInetPton(records[0], a) != 0 && wyDplInetPton(records[1], b) != 0 &&
         std::memcmp(records[0], records[1], kAddressRecordSize) == 0;
}

// Returns whether two hosts without brackets are the same; logs if they are not.
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

// Returns whether two URIs have the same user and port; logs if they do not.
bool isSameUserAndPort(const ComparedUri& remote, const ComparedUri& local) {
  if (remote.texts.user.empty() || remote.texts.user != local.texts.user) {
    logFailure(kSourceFile, "SipUtils::CompareSIPURI | UserName MisMatch ");
    return false;
  }
  if (remote.port != local.port) {
    logFailure(kSourceFile, "SipUtils::CompareSIPURI | PortMisMatch Remote = %d Local = %d",
               remote.port, local.port);
    return false;
  }
  return true;
}

// Returns whether a rule covers all of a text that is not empty.
template <Rule* rule>
bool coversAll(Unread text) {
  const unsigned int count = matchOf<rule>(text, 0);
  return count != 0 && count == text.length;
}

// Returns the host without brackets, if it begins with one. The last byte is dropped unchecked.
std::string_view withoutBrackets(std::string_view host) {
  if (host.front() != '[') {
    return host;
  }
  return host.substr(1, host.size() < 2 ? 0 : host.size() - 2);
}

}  // namespace

int CompareSIPURI(const char* remote, const char* local) {
  if (remote == nullptr || local == nullptr) {
    logFailure(kSourceFile, "SipUtils::CompareSIPURI | Invalid Args RemoteAddr=%x LocalAddr=%x",
               logArgument(remote), logArgument(local));
    return 0;
  }
  const ComparedUri remoteUri(remote);
  const ComparedUri localUri(local);
  if (remoteUri.code != VARN_OK || localUri.code != VARN_OK) {
    logFailure(kSourceFile, "SipUtils::CompareSIPURI | Decode Error RemotStr=%d LocalStr=%x",
               remoteUri.code, localUri.code);
  }
  if (!isSameUserAndPort(remoteUri, localUri)) {
    return 0;
  }
  const PlatformText localHost =
      bareHost(localUri.texts.host, "SipUtils::CompareSIPURI | LocalHost Calloc failed ");
  if (localHost == nullptr) {
    return 0;
  }
  const PlatformText remoteHost =
      bareHost(remoteUri.texts.host, "SipUtils::CompareSIPURI | RemoteHost Calloc failed ");
  return remoteHost != nullptr && isSameHost(remoteHost.get(), localHost.get()) ? 1 : 0;
}

int GetHostType(const char* host) {
  if (host == nullptr || *host == '\0') {
    logFailure(kSourceFile, "GetHostType | Invalid Arg");
    return kHostUnknown;
  }
  const std::string_view bare = withoutBrackets(host);
  const bool whole = bare.data() == host;
  const PlatformText copy = whole ? nullptr : copyOf(bare);
  if (!whole && copy == nullptr) {
    logTrace(kSourceFile, "wyDplMalloc: Fatal Error Malloc failed - UNKNOWN_IP_TYPE");
    return kHostUnknown;
  }
  const char* const address = whole ? host : copy.get();
  const Unread text = unread(bare);
  if (coversAll<grammar::ipv6Address>(text)) {
    logTrace(kSourceFile, "GetHostType | IPv6 = %s %s", logArgument(address), logArgument(host));
    return kHostIpv6;
  }
  if (coversAll<grammar::ipv4Address>(text)) {
    logTrace(kSourceFile, "GetHostType | IPv4 = %s %s", logArgument(address), logArgument(host));
    return kHostIpv4;
  }
  logTrace(kSourceFile, "GetHostType | UNKNOWN IP Type %s %s", logArgument(address),
           logArgument(host));
  return kHostUnknown;
}
