// message.cpp - cuts a text with SIP messages into messages, and these into their parts.
#include "message.h"

#include <algorithm>
#include <charconv>

#include "fields.h"
#include "text.h"

namespace {

constexpr std::string_view kVersion = "SIP/2.0";

bool isStartLine(std::string_view line) {
  if (line.substr(0, kVersion.size() + 1) == "SIP/2.0 ") {
    const std::string_view code = line.substr(kVersion.size() + 1, 3);
    return code.size() == 3 && code.find_first_not_of("0123456789") == std::string_view::npos;
  }
  const std::size_t uri = line.find(' ');
  const std::size_t version = line.rfind(' ');
  return uri != 0 && uri != std::string_view::npos && version > uri + 1 &&
         line.substr(version + 1) == kVersion;
}

bool isBlank(char c) { return c == ' ' || c == '\t'; }

// Returns the length of the Content-Length field; nothing when there is none or it is no number.
std::optional<std::size_t> contentLength(Message& message) {
  for (const Field& field : message.fields) {
    if (!sameIgnoringCase(field.name, "Content-Length")) {
      continue;
    }
    const std::string_view digits = field.value;
    std::size_t length = 0;
    const std::from_chars_result result =
        std::from_chars(digits.data(), digits.data() + digits.size(), length);
    if (!digits.empty() && result.ec == std::errc() &&
        result.ptr == digits.data() + digits.size()) {
      return length;
    }
    message.faults.emplace_back("Content-Length is no number: " + field.value);
    return std::nullopt;
  }
  return std::nullopt;
}

void addField(Message& message, std::string_view line) {
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
    message.fields.push_back({shown, std::string(trimmed(value))});
    return;
  }
  for (const std::string_view piece : splitList(value)) {
    message.fields.push_back({shown, std::string(trimmed(piece))});
  }
}

}  // namespace

std::optional<Message> MessageReader::next() {
  position_ = std::min(text_.find_first_not_of("\r\n", position_), text_.size());
  const std::optional<std::string_view> line = nextLine();
  if (!line) {
    return std::nullopt;
  }
  Message message;
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
    const std::optional<std::string> line = nextHeaderLine();
    if (!line) {
      message.faults.emplace_back("the text ends inside the header, no empty line follows");
      return;
    }
    if (line->empty()) {
      return;
    }
    addField(message, *line);
  }
}

void MessageReader::readBody(Message& message) {
  const std::size_t left = text_.size() - position_;
  const std::size_t length = contentLength(message).value_or(left);
  if (length > left) {
    message.faults.emplace_back("the body has " + std::to_string(left) + " of " +
                                std::to_string(length) + " bytes");
  }
  message.body = text_.substr(position_, length);
  position_ += message.body.size();
}
