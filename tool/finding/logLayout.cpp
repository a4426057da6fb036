// logLayout.cpp - how a log shows the lines of a message: what it puts before them, what it makes
// of their ends.
#include "finding/logLayout.h"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>

#include "text/sip.h"
#include "text/text.h"

namespace {

constexpr std::string_view kVersion = "SIP/2.0";
constexpr std::string_view kEscapedVersion = "SIP\\/2.0";
constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kDigits = "0123456789";
constexpr std::size_t kLongestName = 64;

constexpr std::string_view kMarks[] = {".", "#015", "\\r", "^M"};

// Letters from the header of a packet may be before these. PRACK comes before ACK, which ends it.
constexpr std::string_view kMethods[] = {"PRACK",   "INVITE",   "ACK",     "BYE",   "CANCEL",
                                         "OPTIONS", "REGISTER", "PUBLISH", "INFO",  "SUBSCRIBE",
                                         "NOTIFY",  "MESSAGE",  "REFER",   "UPDATE"};

// Returns the end of the run of such characters that begins at the offset.
std::size_t runEnd(std::string_view text, std::size_t offset, std::string_view characters) {
  return std::min(text.find_first_not_of(characters, offset), text.size());
}

// Returns the end of what a character of a shape matches at the offset, which is the offset itself
// where it matches nothing.
std::size_t matchEnd(std::string_view line, std::size_t offset, char shape) {
  if (shape == '0' || shape == ' ') {
    return runEnd(line, offset, shape == '0' ? kDigits : kBlanks);
  }
  return offset + (offset < line.size() && line[offset] == shape ? 1 : 0);
}

// Returns the length of an escaped line end at the offset; 0 for none.
std::size_t lineEndLength(std::string_view text, std::size_t offset) {
  for (const std::string_view end : {"\\r\\n", "\\n", "#015#012", "#012"}) {
    if (text.compare(offset, end.size(), end) == 0) {
      return end.size();
    }
  }
  return 0;
}

// Returns the offset of a status line that ends the line.
std::optional<std::size_t> findStatusLine(std::string_view line) {
  for (std::size_t at = 0; (at = line.find("SIP/2.0 ", at)) != std::string_view::npos; ++at) {
    if (isStartLine(line.substr(at, kVersion.size() + 4)) &&
        line.substr(at + kVersion.size() + 4, 1).find_first_not_of(' ') == std::string_view::npos) {
      return at;
    }
  }
  return std::nullopt;
}

// Returns the offset of a request line that ends the line. The method is in upper case; of other
// letters before a known method, as the header of a packet may have them, it is the known one.
std::optional<std::size_t> findRequestLine(std::string_view line) {
  if (!endsWith(line, " SIP/2.0")) {
    return std::nullopt;
  }
  const std::size_t uriEnd = line.size() - kVersion.size() - 1;
  const std::size_t methodEnd = line.substr(0, uriEnd).rfind(' ');
  if (methodEnd == std::string_view::npos) {
    return std::nullopt;
  }
  std::size_t begin = methodEnd;
  while (begin > 0 && line[begin - 1] >= 'A' && line[begin - 1] <= 'Z') {
    --begin;
  }
  const std::string_view letters = line.substr(begin, methodEnd - begin);
  const auto* const method =
      std::find_if(std::begin(kMethods), std::end(kMethods),
                   [letters](std::string_view candidate) { return endsWith(letters, candidate); });
  if (begin != 0 && method != std::end(kMethods)) {
    begin = methodEnd - method->size();
  }
  return beginsMessage(line.substr(begin)) ? std::optional(begin) : std::nullopt;
}

// Returns the text with the escapes of line ends and tabs replaced that begin with this character.
std::string unescaped(std::string_view text, char first) {
  const struct {
    std::string_view escape;
    char character;
  } escapes[] = {{"\\r", '\r'},  {"\\n", '\n'},  {"\\t", '\t'},
                 {"#015", '\r'}, {"#012", '\n'}, {"#011", '\t'}};
  std::string result;
  while (!text.empty()) {
    const auto* const found =
        std::find_if(std::begin(escapes), std::end(escapes), [text, first](const auto& each) {
          return text[0] == first && text.substr(0, each.escape.size()) == each.escape;
        });
    const bool escaped = found != std::end(escapes);
    result += escaped ? found->character : text[0];
    text.remove_prefix(escaped ? found->escape.size() : 1);
  }
  return result;
}

// Returns the offset of the quote that ends a string, or the length of the text.
std::size_t quotedLength(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size() && text[at] != '"') {
    at += text[at] == '\\' ? 2U : 1U;
  }
  return std::min(at, text.size());
}

// Returns what a string between quotes stands for, by the rules of JSON if it follows them.
std::string unquoted(std::string_view text) {
  const nlohmann::json value = nlohmann::json::parse('"' + std::string(text) + '"', nullptr, false);
  return value.is_string() ? value.get<std::string>() : unescaped(text, '\\');
}

// Returns whether a line is a header field of a known name.
bool isKnownField(std::string_view line) {
  const std::size_t colon = line.substr(0, kLongestName).find(':');
  return colon != std::string_view::npos && findField(trimmed(line.substr(0, colon))) != nullptr;
}

}  // namespace

Prefix::Prefix(std::string_view text) {
  const std::size_t last = text.find_last_not_of(kBlanks);
  const std::size_t end = last == std::string_view::npos ? 0 : last + 1;
  blanks_ = text.substr(end);
  for (std::size_t at = 0; at < end;) {
    const std::size_t digits = runEnd(text, at, kDigits);
    const std::size_t blanks = runEnd(text, at, kBlanks);
    const char other = blanks != at ? ' ' : text[at];
    shape_ += digits != at ? '0' : other;
    at = std::max({digits, blanks, at + 1});
  }
}

std::optional<std::string_view> Prefix::removedFrom(std::string_view line) const {
  std::size_t at = 0;
  for (const char each : shape_) {
    const std::size_t end = matchEnd(line, at, each);
    if (end == at) {
      return std::nullopt;
    }
    at = end;
  }
  line.remove_prefix(at);
  if (line.substr(0, blanks_.size()) == blanks_) {
    return line.substr(blanks_.size());
  }
  return trimmed(line).empty() ? std::optional(std::string_view()) : std::nullopt;
}

std::optional<LogStart> findStart(std::string_view line) {
  if (line.find(kVersion) == std::string_view::npos || isKnownField(line)) {
    return std::nullopt;
  }
  const auto* const mark =
      std::find_if(std::begin(kMarks), std::end(kMarks),
                   [line](std::string_view candidate) { return endsWith(line, candidate); });
  LogStart start = {0, mark == std::end(kMarks) ? "" : *mark};
  if (start.mark.empty() && beginsMessage(line)) {
    return start;
  }
  line.remove_suffix(start.mark.size());
  std::optional<std::size_t> offset = findRequestLine(line);
  if (!offset) {
    offset = findStatusLine(line);
  }
  start.offset = offset.value_or(0);
  return offset ? std::optional(start) : std::nullopt;
}

std::optional<Layout> layoutOf(std::string_view line, const LogStart& start,
                               std::string_view next) {
  const auto text = Prefix(line.substr(0, start.offset)).removedFrom(next);
  for (const std::size_t prefix : {text ? next.size() - text->size() : 0, std::size_t{0}}) {
    const std::size_t name = runEnd(next, prefix, kBlanks);
    if (isKnownField(next.substr(name))) {
      // A reason phrase may end as a mark does.
      const bool marked = endsWith(next, start.mark);
      return marked || isStartLine(line.substr(start.offset))
                 ? std::optional(Layout{Prefix(next.substr(0, name)), marked ? start.mark : ""})
                 : std::nullopt;
    }
  }
  return std::nullopt;
}

bool hasVersion(std::string_view line) {
  return line.find(kVersion) != std::string_view::npos ||
         line.find(kEscapedVersion) != std::string_view::npos;
}

std::string withPlainSlashes(std::string_view line) {
  std::string result(line);
  if (line.find(kEscapedVersion) == std::string_view::npos) {
    return result;
  }
  result.clear();
  while (!line.empty()) {
    const std::size_t length = line[0] == '\\' ? 2 : 1;
    const std::string_view character = line.substr(0, length);
    result += character == "\\/" ? "/" : character;
    line.remove_prefix(character.size());
  }
  return result;
}

std::optional<EscapedMessages> findEscaped(std::string_view line) {
  bool quoted = false;
  std::size_t begin = 0;  // of what a line end may end
  for (std::size_t at = 0; at < line.size(); ++at) {
    quoted = quoted != (line[at] == '"');
    const std::size_t length = lineEndLength(line, at);
    if (length == 0) {
      at += line[at] == '\\' ? 1U : 0U;
      continue;
    }
    const std::optional<LogStart> start = findStart(line.substr(begin, at - begin));
    if (start && isKnownField(line.substr(at + length))) {
      begin += start->offset;
      const std::string_view rest = line.substr(begin);
      const std::string_view text = rest.substr(0, quoted ? quotedLength(rest) : rest.size());
      return EscapedMessages{quoted ? unquoted(text) : unescaped(text, line[at]),
                             begin + text.size()};
    }
    begin = at + length;
    at = begin - 1;
  }
  return std::nullopt;
}

bool endsWith(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}
