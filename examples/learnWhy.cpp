// learnWhy.cpp - collects the log lines that say why a text is refused.
#include <cstdio>
#include <string>
#include <vector>

#include "hostControl.h"
#include "wySipAddress.h"

namespace {

void keepFailure(void* context, const HostLogLine& line) {
  constexpr int kFailure = 4;  // 3 is a trace, 5 out of memory
  if (line.level >= kFailure) {
    static_cast<std::vector<std::string>*>(context)->emplace_back(line.text);
  }
}

}  // namespace

int main() {
  std::vector<std::string> reasons;
  hostSetLogHandler(keepFailure, &reasons);
  for (const char* text :
       {"sip:alice@host.test:70000", "<sip:alice@host.test", "alice@host.test"}) {
    const SipAddress address(text);
    std::printf("%s: code %u\n", text, address.GetLastErrorCode());
    for (const std::string& reason : reasons) {
      std::printf("  %s\n", reason.c_str());
    }
    reasons.clear();
  }
  hostSetLogHandler(nullptr, nullptr);
  return 0;
}
