// main.cpp - makes the library use all parts of the platform, and counts wrong results.
#include <cstdio>
#include <cstring>
#include <string>
#include <thread>

#include "imsdpl.h"
#include "sipMultipartmessagebodyUtility.h"
#include "wySipAddress.h"
#include "wySipCommon.h"
#include "wySipInit.h"
#include "wySipUtils.h"

namespace {

constexpr signed char kSingoConfigId = 3;

int failures = 0;

void expect(bool holds, const char* what) {
  if (!holds) {
    std::fprintf(stderr, "not true: %s\n", what);
    ++failures;
  }
}

void expectText(const char* expected, const char* actual) {
  expect(actual != nullptr && std::strcmp(expected, actual) == 0, expected);
}

void startUp() {
  InitServiceModules();
  WySingletonBaseClass* const config = Globals::Instance()->GetSingObj(kSingoConfigId);
  expect(config != nullptr, "the configuration is registered");
  expect(SingoConfig_SO::Instance() == config, "it is found again");
  std::thread([config] {
    expect(Globals::Instance()->GetSingObj(kSingoConfigId) == nullptr, "a new thread has none");
    InitServiceModules();
    expect(Globals::Instance()->GetSingObj(kSingoConfigId) != config, "a thread gets its own");
  }).join();
}

void editAddress() {
  SipAddress address("\"Alice\" <sip:alice@example.test;transport=tcp>");
  expect(address.GetLastErrorCode() == VARN_OK, "the address is read");
  address.setPort(5070);
  expectText("\"Alice\" <sip:alice@example.test:5070;transport=tcp>", address.toString().c_str());
  expect(address.setHost("-") == VARN_INVALID_INPUT, "a bad host is refused");
  SipParam unlinked(nullptr);  // a failed assertion, and another one at its end
}

void freeFunctions() {
  char uri[] = "sip:a%20\xE9:b@host.test";
  char* quoted = nullptr;
  expect(wyQuoteUserInfo(uri, &quoted) == 1, "the user-info is quoted");
  expectText("sip:a%20%E9%3Ab@host.test", quoted);
  __free(quoted);
  expect(CompareSIPURI("sip:a@[::1]", "sip:a@[0:0::1]") == 1, "one address in two spellings");
  char text[6];
  expect(__strlcpy(text, "tel:+1", 5) == 6, "the part of a text that fits is copied");
  expect(__strlcat(text, "55", 6) == 6 && __stricmp(text, "TEL:5") == 0,
         "the part that fits is appended");
  char digits[] = "-9223372036854775808";
  expectText("-2147483648", __itoaL(__atoi(digits), digits, 10));
}

void splitBody() {
  unsigned char body[] = "--b\r\nSubject: first\r\n\r\none\r\n--b\r\n\r\ntwo\r\n--b--\r\n";
  SipMultipartMessageBodyUtility utility;
  const SipMultipartMessageBody* part = utility.wySipGetMultiPartMessageBody(
      body, sizeof(body) - 1, "multipart/mixed;boundary=\"b\"");
  expect(part != nullptr && part->next != nullptr, "there are two parts");
  if (part != nullptr && part->next != nullptr) {
    const auto* const content = reinterpret_cast<const char*>(part->next->body);
    expectText("two\r\n", std::string(content, part->next->bodyLength).c_str());
  }
}

void compress() {
  std::string text(1000, 'x');
  unsigned char* packed = nullptr;
  const auto length = static_cast<unsigned int>(text.size());
  const unsigned int packedLength = compMessageWithDeflate(text.data(), &packed, length);
  expect(packedLength != 0 && packedLength < length, "a text is compressed");
  unsigned char* expanded = nullptr;
  const unsigned int expandedLength =
      DeCompressGzipData(packed, static_cast<unsigned short>(packedLength), &expanded);
  expect(text == std::string(reinterpret_cast<const char*>(expanded), expandedLength),
         "it is expanded again");
  __free(packed);
  __free(expanded);
}

}  // namespace

int main() {
  startUp();
  editAddress();
  freeFunctions();
  splitBody();
  compress();
  // On standard error as the log, so that it comes last.
  std::fprintf(stderr, "platformExample: %d failed\n", failures);
  return failures;
}
