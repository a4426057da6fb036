// externalPlatformTest.cpp - shows that every log line, allocation and assertion of the library
// reaches the platform it was linked with.
#include <cstdio>
#include <cstring>

#include "countingPlatform.h"
#include "wySipAddress.h"

namespace {

int failures = 0;

void expect(bool holds, const char* what) {
  if (!holds) {
    std::printf("not so: %s\n", what);
    ++failures;
  }
}

}  // namespace

int main() {
  SeenByPlatform& seen = seenByPlatform();
  {
    const SipString text("sip:a@b.test:5070;lr");
    expect(seen.allocations == 1, "a string is one allocation");
    SipAddress address(text);
    expect(address.GetLastErrorCode() == VARN_OK, "the address is read");
    expect(std::strcmp(address.toString().c_str(), "<sip:a@b.test:5070;lr>") == 0,
           "the address is written");
    expect(seen.allocations > 5 && seen.liveBlocks > 5, "its pieces are allocations");
    expect(address.setHost("-") == VARN_INVALID_INPUT, "a bad host is refused");
    SipParam unlinked(nullptr);
  }
  expect(seen.liveBlocks == 0, "everything recorded is taken off the record");
  expect(seen.logFormats == std::vector<std::string>{"SipMatchHost invalid character 0x%02x",
                                                     "SipAddress::setHost | parsing failed"},
         "the refusal is logged");
  expect(seen.assertions == 2, "a node without a chain is reported, made and deleted");
  std::printf("externalPlatformTest: %d failed\n", failures);
  return failures;
}
