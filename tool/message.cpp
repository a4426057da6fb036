// message.cpp - cuts a text with SIP messages into messages, and these into their parts.
#include "message.h"

#include <algorithm>
#include <charconv>

#include "fields.h"
#include "text.h"
#include "wySipMatch.h"

namespace {

constexpr std::string_view kVersion = "SIP/2.0";

bool isToken(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
    return WySipIsToken(static_cast<unsigned char>(c)) != 0;
  });
}

bool isBlank(char c) { return c == ' ' || c == '\t'; }

bool readNumber(std::string_view digits, std::size_t& number) {
  const char* end = digits.data() + digits.size();
  const std::from_chars_result result = std::from_chars(digits.data(), end, number);
  return !digits.empty() && result.ec == std::errc() && result.ptr == end;
}

// Returns what the Content-Length fields say; nothing when there is none or they say nothing
// certain, which is a fault.
std::optional<std::size_t> contentLength(Message& message) {
  std::optional<std::size_t> length;
  for (const Field& field : message.fields) {
    if (!sameIgnoringCase(trimmed(field.name), "Content-Length")) {
      continue;
    }
    std::size_t number = 0;
    if (!readNumber(field.value, number)) {
      message.faults.emplace_back("Content-Length is no number: " + field.value);
      return std::nullopt;
    }
    if (length.value_or(number) != number) {
      message.faults.emplace_back("Content-Length is given twice, as " + std::to_string(*length) +
                                  " and " + field.value);
      return std::nullopt;
    }
    length = number;
  }
  return length;
}

void addField(Message& message, std::string_view line, std::size_t offset) {
  const std::size_t colon = line.find(':');
  if (colon == std::string_view::npos) {
    message.faults.emplace_back("no colon in the header line: " + std::string(line));
    return;
  }
  const std::string_view name = line.substr(0, colon);
  const std::string_view value = line.substr(colon + 1);
  const FieldKind* kind = findField(trimmed(name));
  const bool compact = kind != nullptr && trimmed(name).size() == 1;
  const std::string shown(compact ? kind->name : name);
  if (kind == nullptr || !kind->list) {
    message.fields.push_back({shown, std::string(trimmed(value)), offset});
    return;
  }
  const std::vector<std::string_view> pieces = splitList(value);
  for (const std::string_view piece : pieces) {
    if (pieces.size() == 1 || !trimmed(piece).empty()) {
      message.fields.push_back({shown, std::string(trimmed(piece)), offset});
    }
  }
}

}  // namespace

bool isStartLine(std::string_view line) {
  if (line.substr(0, kVersion.size() + 1) == "SIP/2.0 ") {
    const std::string_view code = line.substr(kVersion.size() + 1, 3);
    return code.size() == 3 && code.find_first_not_of("0123456789") == std::string_view::npos;
  }
  const std::size_t uri = line.find(' ');
  const std::size_t version = line.rfind(' ');
  return uri != std::string_view::npos && isToken(line.substr(0, uri)) && version > uri + 1 &&
         line.substr(version + 1) == kVersion;
}

bool beginsMessage(std::string_view line) {
  if (!isStartLine(line)) {
    return false;
  }
  const std::size_t first = line.find(' ');
  const std::string_view uri = line.substr(first + 1, line.find(' ', first + 1) - first - 1);
  return line.substr(0, 4) == "SIP/" ||
         (first + 1 + uri.size() == line.rfind(' ') && uri.find(':') != std::string_view::npos);
}

std::optional<std::size_t> statedLength(std::string_view header) {
  std::optional<Message> message = MessageReader(header).next();
  return message ? contentLength(*message) : std::nullopt;
}

std::optional<Message> MessageReader::next() {
  position_ = std::min(text_.find_first_not_of("\r\n", position_), text_.size());
  const std::size_t start = position_;
  const std::optional<std::string_view> line = nextLine();
  if (!line) {
    return std::nullopt;
  }
  Message message;
  message.offset = start;
  message.startLine = *line;
  if (!isStartLine(*line)) {
    message.faults.emplace_back("neither a request line nor a status line: " + message.startLine);
  }
  readFields(message);
  readBody(message);
  return message;
}

// Returns the next line without its end; nothing at the end of the text.
std::optional<std::string_view> MessageReader::nextLine() {
  if (position_ == text_.size()) {
    return std::nullopt;
  }
  const std::size_t end = std::min(text_.find('\n', position_), text_.size());
  std::string_view line = text_.substr(position_, end - position_);
  position_ = std::min(end + 1, text_.size());
  if (!line.empty() && line.back() == '\r') {
    line.remove_suffix(1);
  }
  return line;
}

// Returns the next line together with those that continue it, each fold as one blank.
std::optional<std::string> MessageReader::nextHeaderLine() {
  const std::optional<std::string_view> first = nextLine();
  if (!first) {
    return std::nullopt;
  }
  std::string line(*first);
  while (!line.empty() && position_ < text_.size() && isBlank(text_[position_])) {
    const std::string_view more = *nextLine();
    line.append(" ").append(more.substr(std::min(more.find_first_not_of(" \t"), more.size())));
  }
  return line;
}

void MessageReader::readFields(Message& message) {
  for (;;) {
    const std::size_t start = position_;
    const std::optional<std::string> line = nextHeaderLine();
    if (!line) {
      message.faults.emplace_back("the text ends inside the header, no empty line follows");
      return;
    }
    if (line->empty()) {
      return;
    }
    addField(message, *line, start);
  }
}

// A length that cannot be right must not swallow the next message: the body then ends before the
// next start line.
void MessageReader::readBody(Message& message) {
  const std::size_t left = text_.size() - position_;
  const std::size_t faults = message.faults.size();
  std::size_t length = contentLength(message).value_or(left);
  if (length > left || message.faults.size() != faults) {
    const std::size_t there = lengthToStartLine();
    if (length > there && message.faults.size() == faults) {
      message.faults.emplace_back("the body has " + std::to_string(there) + " of " +
                                  std::to_string(length) + " bytes");
    }
    length = there;
  }
  message.body = text_.substr(position_, length);
  position_ += message.body.size();
}

// Returns how many bytes are before the next start line, or before the end.
std::size_t MessageReader::lengthToStartLine() {
  const std::size_t start = position_;
  std::size_t line = position_;
  while (const std::optional<std::string_view> text = nextLine()) {
    if (beginsMessage(*text)) {
      break;
    }
    line = position_;
  }
  position_ = start;
  return line - start;
}
