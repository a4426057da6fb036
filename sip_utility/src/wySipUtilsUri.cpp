// wySipUtilsUri.cpp - equality of SIP URIs, and kinds of hosts.
#include "wySipUtils.h"

#include <cstring>
#include <string_view>

#include "base/checkedMath.h"
#include "base/equality.h"
#include "base/log.h"
#include "base/platformBlock.h"
#include "grammar/grammar.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wySipUtils";

constexpr int kHostUnknown = 0;
constexpr int kHostIpv4 = 1;
constexpr int kHostIpv6 = 2;

constexpr std::size_t kAddressRecordSize = 20;

// Returns a copy of an address's host without brackets; null, logged, if it is empty.
PlatformText bareHost(const SipAddress& address, const char* noMemory) {
  const SipString& host = address.getHost();
  const auto length = static_cast<unsigned short>(host.length());  // only the low 16 bits
  if (length == 0) {
    // The text says "LocalHost" for either address, on purpose.
    logFailure(kSourceFile, "SipUtils::CompareSIPURI | LocalHost Empty");
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

// Returns whether two addresses have the same user and port; logs if they do not.
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
