// fuzz_text.cpp - small parsers of plain text: every line of the input goes to each of them.
#include "law.h"
#include "wySipCommon.h"
#include "wySipUtils.h"

namespace {

void checkBytes(const std::string& text) {
  unsigned short count = 1;
  const HandedOutText bytes(reinterpret_cast<char*>(strToH8(copyOf(text).get(), &count)));
  require(bytes != nullptr && count == (text.size() + 1) / 2, "two digits a byte", text, "");
  const std::string padding(bytes.get() + count, count);
  require(padding == std::string(count, '\0'), "then as many zero bytes", text, padding);
  const std::string imei = taken(SipFormatIMEInumber(copyOf(text).get()), "");
  require(imei.size() == (text.size() < 15 ? 0U : 17U), "15 characters in groups", text, imei);
}

void checkCutting(const std::string& text, const char* delimiter) {
  Text copy = copyOf(text);
  char* rest = nullptr;
  const bool cut = NSIP_strtok(copy.get(), delimiter, &rest) != nullptr;
  require(cut == (text.find(delimiter) != std::string::npos), "cut if found", text, delimiter);
  const std::string head(copy.get());
  const bool complete = !cut || *delimiter == '\0' || head + delimiter + rest == text;
  require(complete, "the sides make the text", text, delimiter);
  copy = copyOf(text);
  const std::string_view bare(RemoveSpaces(copy.get()));
  require(bare.empty() || (bare.front() != ' ' && bare.back() != ' '), "no blanks", text, bare);
  require(text.compare(static_cast<std::size_t>(bare.data() - copy.get()), bare.size(), bare) == 0,
          "the result lies inside", text, bare);
}

// A number that does not fit ends the process. Of a long text only the first bytes are read.
void checkNumber(const std::string& text) {
  const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
  const bool number = digits == text.size() && digits != 0;
  if (text.size() < 256 && (!number || digits < 10)) {
    require(wyAtoi32(text.c_str()) == (number ? std::stoul(text) : 0), "digits count", text, "");
  }
}

void checkLists(const std::vector<Text>& arguments) {
  std::vector<char*> values;
  std::transform(arguments.begin(), arguments.end(), std::back_inserter(values),
                 [](const Text& text) { return text.get(); });
  const auto count = static_cast<unsigned char>(std::min<std::size_t>(values.size(), 255));
  const unsigned char index = ValidateAndGetMaxQValue(values.data(), count);
  require(index < count || index == 255, "an index of the list", values[0], values[1]);
  const char* const highest = values[index % count];
  const bool digits =  // after "0." any byte counts; the value ends at the first that is no digit
      (std::string_view(values[0]).find_first_not_of("0123456789", 2) &
       std::string_view(highest).find_first_not_of("0123456789", 2)) == std::string_view::npos;
  require(index == 255 || !digits || std::atof(highest) >= std::atof(values[0]), "the highest",
          values[0], highest);
  values.push_back(nullptr);
  require(wySipCheckIfHeaderValuePresent(values.data(), values[1], index % 2) == 1, "present",
          values[0], values[1]);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  const auto check = [](const char* text, const char* next) {
    checkBytes(text);
    checkCutting(text, next);
    checkNumber(text);
  };
  checkArguments(data, size, check, checkLists);
  return 0;
}
