// fuzz_header.cpp - headers: the first line is the name, the second the value; the others are
// edits, `:name`, `=value`, `+name=value` and `-name`.
#include "params.h"
#include "wySipHeader.h"

namespace {

// Returns the text that the pieces of a header make: its value and parameters.
std::string valueText(const SipHeader& header) {
  const bool ordinary = header.getHeaderType() == WY_SIP_HEADER_TYPE_NON_AUTH;
  std::string text(view(header.getValue()));
  const char* separator = ordinary ? ";" : " ";
  for (const auto& [name, value] : paramsOf(header)) {
    text.append(separator).append(name).append(value.empty() ? "" : "=").append(value);
    separator = ordinary ? ";" : ",";
  }
  return text;
}

// Compares the header's texts with its pieces. Returns the line. A header without a name has no
// dialect and is not asked for texts: that of its value would stay when a name chooses a dialect.
std::string checkTexts(SipHeader& header) {
  const std::string value = valueText(header);
  const std::string name(view(header.getName()));
  const std::string line = value.empty() ? "" : name + ": " + value;
  if (name.empty()) {
    return line;
  }
  require(view(header.getHeaderValue()) == value, "value", value, view(header.getHeaderValue()));
  require(view(header.toString()) == line, "line", line, view(header.toString()));
  require(header.GetLastErrorCode() == VARN_OK, "written", line, "");
  require(header.getHeaderValueLength() == value.size(), "the value's length", line, "");
  require(value.empty() || header.getStringLength() == line.size(), "the length", line, "");
  return line;
}

VARN_EXCEPTION_CODES edit(SipHeader& header, std::string_view line) {
  const std::size_t equal = std::min(line.find('=', 1), line.size());
  const SipString text = toSipString(line.substr(1));
  if (line[0] == '+') {
    return header.setParameter(toSipString(line.substr(1, equal - 1)),
                               toSipString(line.substr(std::min(equal + 1, line.size()))));
  }
  return line[0] == ':'   ? header.setName(text)
         : line[0] == '=' ? header.setValue(text)
                          : header.removeParameter(text);
}

// Some values cannot be read again: an empty one, one with a tel URI in brackets (its length is
// that of its written form), and a tag or branch that is no token.
void checkReading(SipHeader& header, const std::string& line) {
  const std::string_view value = view(header.getValue());
  if (value.empty() || value.find("<tel:") != value.npos ||
      !readsAgain(SipHdrParamList(), paramsOf(header))) {
    return;
  }
  SipHeader again(header.getName(), header.getHeaderValue());
  require(again.GetLastErrorCode() == VARN_OK, "accepted again", line, checkTexts(again));
  Params reversed = paramsOf(again);
  std::reverse(reversed.begin(), reversed.end());
  require(view(again.getName()) == view(header.getName()) && view(again.getValue()) == value &&
              reversed == paramsOf(header),
          "equal pieces", line, checkTexts(again));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  const MemoryLogWatch watch;
  const std::vector<std::string_view> lines = linesOf(data, size);
  SipHeader header(toSipString(lines[0]), toSipString(lines.size() > 1 ? lines[1] : ""));
  std::string before = checkTexts(header);
  for (std::size_t i = 2; i < lines.size(); ++i) {
    if (!lines[i].empty()) {
      const std::string name(view(header.getName()));
      const VARN_EXCEPTION_CODES code = edit(header, lines[i]);
      require(header.GetLastErrorCode() == code, "the code is stored", before, lines[i]);
      const std::string after = checkTexts(header);
      const bool same = after == before && view(header.getName()) == name;
      require(code == VARN_OK || same, "a failure changes nothing", before, after);
      before = after;
    }
  }
  checkReading(header, before);
  return 0;
}
