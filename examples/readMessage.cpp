// readMessage.cpp - takes a message apart: start line, header fields, addresses, body.
#include <cstdio>

#include "sipMessage.h"
#include "wySipAddress.h"
#include "wySipCxx.h"
#include "wySipHeader.h"

namespace {

void show(const siputility::Field& field) {
  const SipHeader header(field.name.c_str(), siputility::toSipString(field.value));
  if (header.GetLastErrorCode() != VARN_OK) {
    std::printf("%s: refused\n", field.name.c_str());
    return;
  }
  std::printf("%s: %s\n", field.name.c_str(), header.getValue().c_str());
  for (const SipParam& param : siputility::paramsOf(header)) {
    std::printf("  %s=%s\n", param.getName().c_str(), param.getValue().c_str());
  }
  if (field.kind != nullptr && field.kind->address) {
    const SipAddress address(header.getValue());
    std::printf("  user %s, host %s\n", address.getUser().c_str(), address.getHost().c_str());
  }
}

}  // namespace

int main() {
  const std::string_view text =
      "MESSAGE sip:bob@home.test SIP/2.0\r\n"
      "v: SIP/2.0/UDP a.test;branch=z9hG4bK1,\r\n"
      " SIP/2.0/UDP b.test;branch=z9hG4bK2\r\n"
      "f: \"Alice\" <sip:alice@home.test>;tag=1\r\n"
      "To: <sip:bob@home.test>\r\n"
      "Content-Type: text/plain\r\n"
      "Content-Length: 5\r\n"
      "\r\n"
      "hello";
  siputility::MessageReader reader(text);
  while (const auto message = reader.next()) {
    const siputility::StartLine start(message->startLine);
    std::printf("%.*s\n", static_cast<int>(start.method.size()), start.method.data());
    for (const siputility::Field& field : message->fields) {
      show(field);
    }
    std::printf("body '%s'\n", message->content().c_str());
    for (const siputility::Fault& fault : message->faults) {
      std::printf("fault at byte %zu: %s\n", fault.offset, fault.words.c_str());
    }
  }
  return 0;
}
