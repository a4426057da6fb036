// fuzz_quote.cpp - rewriting of plain text: every line of the input goes to each function.
#include "law.h"
#include "wySipCommon.h"

namespace {

// Returns the text quoted; the text itself if it cannot be quoted.
std::string quoted(int (*quote)(char* uri, char** out), const std::string& text) {
  char* out = nullptr;
  require(quote(copyOf(text).get(), &out) == (out != nullptr ? 1 : 0), "1 for a text", text, "");
  return taken(out, text);
}

void checkQuoting(const std::string& text) {
  const std::string once = quoted(wyQuoteUserInfo, text);
  const std::string list = quoted(wyQuoteUserInfoInSipUri, text);
  require(once == quoted(wyQuoteUserInfo, once), "quoted once, quoted for good", text, once);
  if (text.find('"') != std::string::npos || once == text) {
    return;  // an escaped quote splits a list differently; the first "sip:" may not be the scheme
  }
  require(list == quoted(wyQuoteUserInfoInSipUri, list), "also as a list", text, list);
  const std::size_t begin = once.find("sip:") + 4;
  const std::size_t colon = once.substr(0, once.rfind('@')).find(':', begin);
  require(colon == std::string::npos, "a user-info has no colon", text, once);
}

void checkFeatureTag(const std::string& text, const char* reference) {
  char* out = nullptr;
  const int done = wyQuoteFeatureTagValue(copyOf(text).get(), copyOf(reference).get(), &out);
  const std::string result = taken(out, text);
  require(done == 0 || text.find(reference) != std::string::npos, "not there", text, reference);
  require((result.size() - text.size()) % 2 == 0, "a colon becomes three bytes", text, result);
}

void checkSort(std::string text) {
  const Text list = copyOf(text);
  char* pointer = list.get();
  require(wySortCommaSepStrings(&pointer) == 1 && pointer == list.get(), "in place", text, "");
  std::string sorted(pointer);
  std::sort(text.begin(), text.end());
  std::sort(sorted.begin(), sorted.end());
  require(text == sorted, "nothing is lost", pointer, text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  const auto check = [](const char* text, const char* next) {
    checkQuoting(text);
    checkFeatureTag(text, next);
    checkSort(text);
  };
  checkArguments(data, size, check, [](const std::vector<Text>&) {});
  return 0;
}
