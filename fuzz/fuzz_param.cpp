// fuzz_param.cpp - parameter lists: the first line is the text of a list, in each dialect in turn;
// the others are edits, `+name=value` and `-name`.
#include "params.h"

namespace {

std::string textOf(const SipParamList& list) {
  SipString text("before");
  require(list.appendToString(text) == VARN_OK, "written", view(text), "");
  require(text.length() == 6 + list.getStringLength(), "its length", view(text), "");
  return std::string(view(text).substr(6));
}

// Compares the list with its model and the array of names with its walk. Returns the array.
const SipString** checkList(SipParamList& list, const Params& model, std::string_view line) {
  const std::string text = textOf(list);
  require(paramsOf(list) == model, "the parameters of the model", text, line);
  VARN_EXCEPTION_CODES code = VARN_INVALID_INPUT;
  const SipString** const names = list.getParameterNames(&code);
  require(code == VARN_OK && (names == nullptr) == model.empty(), "names if any", text, line);
  std::size_t count = 0;
  for (const SipParam* p = list.firstParam(); p != nullptr; p = list.nextParam(p)) {
    require(names[count++] == &p->getName(), "the names of the walk", text, line);
    require(list.find(toSipString(lowerCase(view(p->getName())))) == p, "found", text, line);
  }
  require(names == nullptr || names[count] == nullptr, "no more of them", text, line);
  return names;
}

void edit(SipParamList& list, Params& model, std::string_view line) {
  const std::size_t equal = std::min(line.find('='), line.size());
  const std::string_view name = line.substr(1, equal - 1);
  const std::string_view value = line.substr(std::min(equal + 1, line.size()));
  const SipString** const names = checkList(list, model, line);
  const bool sets = line[0] == '+';
  const bool done = sets ? list.setParameter(toSipString(name), toSipString(value)) == VARN_OK
                         : list.removeParameter(toSipString(name)) == VARN_OK;
  const std::string key = lowerCase(sets ? trimmed(name) : name);
  const auto old = std::find_if(model.begin(), model.end(),
                                [&](const auto& param) { return lowerCase(param.first) == key; });
  if (!done || (!sets && old == model.end())) {
    require(checkList(list, model, line) == names, "nothing has changed", line, "");
    return;
  }
  if (old != model.end()) {
    model.erase(old);
  }
  if (sets) {
    model.emplace(model.begin(), trimmed(name), trimmed(value));
  }
}

void check(SipParamList& list, SipParamList& again, const std::vector<std::string_view>& lines) {
  SipStrStream stream(toSipString(lines[0]));
  list.parseParamList(stream);
  Params model = paramsOf(list);
  for (const std::string_view line : lines) {
    if (!line.empty() && (line[0] == '+' || line[0] == '-')) {
      edit(list, model, line);
    }
  }
  const SipString** const names = checkList(list, model, lines[0]);
  const std::string text = textOf(list);
  SipStrStream written(toSipString(text));
  if (readsAgain(list, model)) {
    require(again.parseParamList(written) == VARN_OK && written.done(), "read again", text, "");
    std::reverse(model.begin(), model.end());
    require(paramsOf(again) == model, "the same in reverse", text, textOf(again));
  }
  list.clearParamList();
  require(names == nullptr || *names == nullptr, "no names are left", text, textOf(list));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  forbidAssertions();
  const MemoryLogWatch watch;
  const std::vector<std::string_view> lines = linesOf(data, size);
  for (const auto type : {WY_SIP_HEADER_TYPE_AUTH, WY_SIP_HEADER_TYPE_NON_AUTH}) {
    SipHdrParamList lists[2];
    lists[0].setHeaderType(type);
    lists[1].setHeaderType(type);
    check(lists[0], lists[1], lines);
  }
  SipAddrParamList lists[2];
  check(lists[0], lists[1], lines);
  return 0;
}
