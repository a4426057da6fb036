// fuzz_uri.cpp - Via values, URI equality and hosts: every line of the input goes to each of them.
#include "law.h"
#include "wySipUtils.h"

namespace {

// Returns the text of an address or header that the library handed out, "" for none. Deletes it.
template <typename Object>
std::string textOf(Object* object) {
  const siputility::HandedOut<Object> owner(object);
  return object == nullptr ? "" : toStdString(object->toString());
}

void checkVia(const std::string& via) {
  const std::string address = textOf(ParseViaHeaderToAdress(copyOf(via).get()));
  const std::string header = textOf(ParseViaHeaderToHeader(copyOf(via).get()));
  require(header.empty() || header.compare(0, 5, "Via: ") == 0, "it is a Via", via, header);
  if (via.find('"') != std::string::npos || via.size() > 255) {
    return;
  }
  std::string bare(via);
  bare.erase(std::remove(bare.begin(), bare.end(), ' '), bare.end());
  const bool transport =
      bare.find("UDP") != std::string::npos || bare.find("TCP") != std::string::npos;
  require(transport || (address + header).empty(), "no transport, no result", via, address);
  require(address == textOf(ParseViaHeaderToAdress(bare.c_str())), "blanks are nothing", via, bare);
  require(header == textOf(ParseViaHeaderToHeader(bare.c_str())), "blanks are nothing", via, bare);
}

// Returns whether a host is a name, or an address that the platform can read.
bool isReadable(std::string host) {
  if (host.size() >= 3 && host.front() == '[') {
    host = host.substr(1, host.size() - 2);
  }
  unsigned char record[20];
  return GetHostType(host.c_str()) == 0 || wyDplInetPton(record, host.c_str()) == 1;
}

void checkEquality(const char* a, const char* b) {
  const int equal = CompareSIPURI(a, b);
  require(equal == CompareSIPURI(b, a), "equality is symmetric", a, b);
  const SipAddress address{SipString(a)};
  const bool complete = address.GetLastErrorCode() == VARN_OK && !address.isWildcard() &&
                        address.getUser().length() != 0 && isReadable(address.getHost().c_str());
  require(!complete || CompareSIPURI(a, a) == 1, "an address equals itself", a, a);
}

void checkHost(const char* host) {
  const int type = GetHostType(host);
  require(type >= 0 && type <= 2, "a host has one of three types", host, "");
  if (*host != '\0' && *host != '[') {
    const Text bracketed = copyOf(std::string("[").append(host).append("]"));
    require(type == GetHostType(bracketed.get()), "brackets change no type", host, bracketed.get());
  }
  unsigned char record[20];
  require(type != 0 || *host == '[' || wyDplInetPton(record, host) == 0,
          "what the platform reads is an address", host, "");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  const auto check = [](const char* text, const char* next) {
    checkVia(text);
    checkHost(text);
    checkEquality(text, next);
  };
  checkArguments(data, size, check, [](const std::vector<Text>&) {});
  return 0;
}
