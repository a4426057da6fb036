// summary.cpp - what lists show of a message, read off it without the library's objects.
#include "output/summary.h"

#include <algorithm>

namespace {

using View = std::string_view;

bool isSip(const StartLine& line) {
  return line.response || (line.version.substr(0, 4) == "SIP/" && !line.method.empty());
}

// Returns where the URI of an address begins: after the first bracket outside quotes, if there is
// one.
std::size_t uriBegin(View value) {
  bool quoted = false;
  for (std::size_t at = 0; at < value.size(); ++at) {
    if (quoted && value[at] == '\\') {
      ++at;
    } else if (value[at] == '"') {
      quoted = !quoted;
    } else if (value[at] == '<' && !quoted) {
      return at + 1;
    }
  }
  return 0;
}

}  // namespace

std::string_view valueOf(const Message& message, std::string_view name) {
  const Field* field = message.find(name);
  return field == nullptr ? View() : View{field->value};
}

Sequence sequenceOf(const Message& message) {
  const View value = trimmed(valueOf(message, "CSeq"));
  const std::size_t end = std::min(value.find_first_of(" \t"), value.size());
  Sequence sequence = {{}, value.substr(0, end), trimmed(value.substr(end))};
  std::uint32_t number = 0;
  if (readNumber(sequence.text, number)) {
    sequence.number = number;
  }
  return sequence;
}

std::string_view methodOf(const Message& message) {
  const StartLine line(message.startLine);
  return line.response ? sequenceOf(message).method : isSip(line) ? line.method : View();
}

std::string_view headlineOf(const Message& message) {
  const StartLine line(message.startLine);
  return !isSip(line) ? "not SIP" : line.response ? line.status : line.method;
}

std::string_view userOf(std::string_view value) {
  value.remove_prefix(uriBegin(value));
  const View uri = trimmed(value.substr(0, value.find('>')));
  const std::size_t scheme = std::min(uri.find(':'), uri.size());
  const View rest = uri.substr(std::min(scheme + 1, uri.size()));
  if (rest.empty()) {
    return uri;
  }
  const std::size_t at = rest.find('@');
  const bool user = at != View::npos && !equalIgnoringCase(uri.substr(0, scheme), "tel");
  return user ? rest.substr(0, std::min(at, rest.find(':')))
              : rest.substr(0, rest.find_first_of(";? \t"));
}

std::string_view userOf(const Message& message, std::string_view name) {
  return userOf(valueOf(message, name));
}

std::string_view callIdOf(const Message& message) { return valueOf(message, "Call-ID"); }

std::string clockText(const timeval& time) {
  const std::string text = timeText(time);
  const std::size_t begin = text.find('T');
  return begin == std::string::npos ? "?" : text.substr(begin + 1, 12);
}
