// sipMessage.cpp - cuts a text with SIP messages into messages, and these into their parts.
#include "sipMessage.h"

#include <algorithm>

#include "sipText.h"
#include "wySipCxx.h"

namespace siputility {

namespace {

constexpr std::string_view kVersion = "SIP/2.0";
constexpr std::size_t npos = std::string_view::npos;

bool isBlank(char c) { return c == ' ' || c == '\t'; }

// Returns what the Content-Length fields say; nothing when there is none or they say nothing
// certain, which is a fault.
std::optional<std::size_t> contentLength(Message& message) {
  std::optional<std::size_t> length;
  for (const Field& field : message.fields) {
    if (!equalIgnoringCase(trimmed(field.name), "Content-Length")) {
      continue;
    }
    std::size_t number = 0;
    if (!readNumber(field.value, number)) {
      message.faults.push_back({"Content-Length is no number: " + field.value, field.offset});
      return std::nullopt;
    }
    if (length.value_or(number) != number) {
      message.faults.push_back(
          {"Content-Length is given twice, as " + std::to_string(*length) + " and " + field.value,
           field.offset});
      return std::nullopt;
    }
    length = number;
  }
  return length;
}

// Returns lines as one, each fold as one blank.
std::string unfolded(std::string_view lines) {
  std::string result;
  for (bool first = true; !lines.empty(); first = false) {
    const std::size_t end = lines.find('\n');
    std::string_view line = lines.substr(0, end);
    lines.remove_prefix(std::min(line.size() + 1, lines.size()));
    line.remove_suffix(end != npos && !line.empty() && line.back() == '\r' ? 1 : 0);
    line.remove_prefix(first ? 0 : std::min(line.find_first_not_of(" \t"), line.size()));
    result.append(first ? "" : " ").append(line);
  }
  return result;
}

// Adds the values of a field to a message.
void addField(Message& message, std::string_view line, std::size_t offset) {
  const std::string_view text = withoutLineEnd(line);
  const std::size_t colon = text.find(':');
  if (colon == npos) {
    message.faults.push_back({"no colon in the header line: " + unfolded(text), offset});
    return;
  }
  const std::string name = unfolded(text.substr(0, colon));
  const FieldKind* kind = findField(trimmed(name));
  const bool compact = kind != nullptr && trimmed(name).size() == 1;
  const std::string shown(compact ? kind->name : name);
  const auto add = [&](std::string_view itsName, std::string_view source, std::string_view value) {
    message.fields.push_back(
        {std::string(itsName), std::string(trimmed(value)), kind, offset, line, source});
  };
  const std::string_view value = text.substr(colon + 1);
  if (kind == nullptr || !kind->list) {
    add(shown, value, unfolded(value));
    return;
  }
  // Each piece has a copy of the name: without the blanks after it, which may be many.
  const std::vector<std::string_view> pieces = splitList(value);
  for (const std::string_view piece : pieces) {
    const std::string plain = unfolded(piece);
    if (pieces.size() == 1 || !trimmed(plain).empty()) {
      add(trimmed(shown), piece, plain);
    }
  }
}

bool isBareLineFeed(std::string_view text, std::size_t at) {
  return text[at] == '\n' && (at == 0 || text[at - 1] != '\r');
}

std::size_t countBareLineFeeds(std::string_view text, std::size_t begin, std::size_t end) {
  std::size_t count = 0;
  for (std::size_t at = begin; (at = text.find('\n', at)) < end; ++at) {
    count += isBareLineFeed(text, at) ? 1U : 0U;
  }
  return count;
}

}  // namespace

StartLine::StartLine(std::string_view line) : response(line.substr(0, 4) == "SIP/") {
  const std::size_t first = std::min(line.find(' '), line.size());
  const std::size_t last = std::min(line.rfind(' '), line.size());
  version = response ? line.substr(0, first) : line.substr(std::min(last + 1, line.size()));
  if (!response && first < last) {
    method = line.substr(0, first);
    uri = line.substr(first + 1, last - first - 1);
  }
  status = response ? line.substr(std::min(first + 1, line.size())) : "";
}

std::string_view StartLine::reason() const {
  return status.substr(std::min<std::size_t>(4, status.size()));
}

std::string Field::raw() const {
  const std::string_view text = withoutLineEnd(line);
  const std::string_view itsName = text.substr(0, text.find(':'));
  const std::string received = unfolded(itsName);
  const bool whole = itsName.size() + 1 + source.size() == text.size();
  return std::string(whole ? received : trimmed(received)) + ':' + unfolded(source);
}

const Field* Message::find(std::string_view name) const {
  const auto found = std::find_if(fields.begin(), fields.end(), [name](const Field& field) {
    return equalIgnoringCase(trimmed(field.name), name);
  });
  return found == fields.end() ? nullptr : &*found;
}

bool isStartLine(std::string_view line) {
  if (line.substr(0, kVersion.size() + 1) == "SIP/2.0 ") {
    const std::string_view code = line.substr(kVersion.size() + 1, 3);
    return code.size() == 3 && code.find_first_not_of("0123456789") == npos;
  }
  const std::size_t uri = line.find(' ');
  const std::size_t version = line.rfind(' ');
  return uri != npos && isToken(line.substr(0, uri)) && version > uri + 1 &&
         line.substr(version + 1) == kVersion;
}

bool beginsMessage(std::string_view line) {
  if (!isStartLine(line)) {
    return false;
  }
  const std::size_t first = line.find(' ');
  const std::string_view uri = line.substr(first + 1, line.find(' ', first + 1) - first - 1);
  return line.substr(0, 4) == "SIP/" ||
         (first + 1 + uri.size() == line.rfind(' ') && uri.find(':') != npos);
}

std::optional<std::size_t> statedLength(std::string_view header) {
  std::optional<Message> message = MessageReader(header).next();
  return message ? contentLength(*message) : std::nullopt;
}

std::string Message::content() const {
  std::string bytes;
  bytes.reserve(contentSize());
  for (std::size_t at = 0; at < body.size(); ++at) {
    bytes.append(restored && isBareLineFeed(body, at) ? "\r" : "").append(1, body[at]);
  }
  return bytes;
}

std::size_t Message::contentSize() const {
  return body.size() + (restored ? countBareLineFeeds(body, 0, body.size()) : 0);
}

MessageReader::MessageReader(std::string_view text)
    : text_(text),
      position_(0),
      counted_(0),
      bareLineFeeds_(countBareLineFeeds(text, 0, text.size())) {}

std::optional<Message> MessageReader::next() {
  position_ = std::min(text_.find_first_not_of("\r\n", position_), text_.size());
  const std::size_t start = position_;
  carriageReturns_ = false;
  const std::optional<std::string_view> line = nextLine();
  if (!line) {
    return std::nullopt;
  }
  Message message;
  message.offset = start;
  message.startLine = *line;
  if (!isStartLine(*line)) {
    const std::string_view version = StartLine(*line).version;
    const bool other = version.substr(0, 4) == "SIP/" && version != kVersion;
    message.faults.push_back(
        {(other ? "an unknown SIP version: " : "neither a request line nor a status line: ") +
             message.startLine,
         start});
  }
  if (position_ < text_.size() && isBlank(text_[position_])) {
    message.faults.push_back({"the line after the start line begins with a blank", position_});
  }
  readFields(message);
  message.restored = !carriageReturns_;
  readBody(message);
  return message;
}

// Returns the next line without its end; nothing at the end of the text.
std::optional<std::string_view> MessageReader::nextLine() {
  if (position_ == text_.size()) {
    return std::nullopt;
  }
  const std::string_view line = lineFrom(position_);
  position_ += line.size();
  carriageReturns_ = carriageReturns_ || text_.substr(position_, 1) == "\r";
  position_ = std::min(text_.find('\n', position_), text_.size() - 1) + 1;
  return line;
}

// Returns the next line together with those that continue it, and their ends; "" at the end.
std::string_view MessageReader::nextHeaderLine() {
  const std::size_t start = position_;
  const std::optional<std::string_view> first = nextLine();
  const bool text = first && !first->empty();
  while (text && position_ < text_.size() && isBlank(text_[position_])) {
    nextLine();
  }
  return text_.substr(start, position_ - start);
}

void MessageReader::readFields(Message& message) {
  for (;;) {
    const std::size_t start = position_;
    const std::string_view line = nextHeaderLine();
    if (line.empty()) {
      message.faults.push_back({"the text ends inside the header, no empty line follows", start});
      message.complete = false;
      return;
    }
    if (withoutLineEnd(line).empty()) {
      return;
    }
    addField(message, line, start);
  }
}

// A length that cannot be right must not swallow the next message: the body then ends before the
// next start line.
void MessageReader::readBody(Message& message) {
  const std::size_t faults = message.faults.size();
  const std::optional<std::size_t> stated = contentLength(message);
  std::optional<std::size_t> length;
  if (stated) {
    length = bodyLength(message, *stated);
  } else if (message.faults.size() == faults) {
    length = text_.size() - position_;
  }
  message.bodyOffset = position_;
  message.body = text_.substr(position_, length ? *length : lengthToStartLine());
  position_ += message.body.size();
  const std::size_t sent = message.contentSize();
  if (stated && sent < *stated) {
    message.complete = false;
    message.faults.push_back(
        {"the body has " + std::to_string(sent) + " of " + std::to_string(*stated) + " bytes",
         message.bodyOffset});
  } else if (stated) {
    readRestOfBody(message, *stated);
  }
}

// A body that ends inside a line, or before a line that is neither empty nor a start line, is
// longer than its Content-Length says; it then ends before the next start line.
void MessageReader::readRestOfBody(Message& message, std::size_t stated) {
  const std::string_view next = text_.substr(position_, 1);
  const char last = message.body.empty() ? '\n' : message.body.back();
  const bool insideLineEnd = message.contentSize() > stated || (last == '\r' && next == "\n");
  const bool moreText = next.find_first_not_of("\r\n") == 0 &&
                        (last != '\n' || lineFrom(position_).find("SIP/") == npos);
  const std::size_t rest = insideLineEnd || moreText ? lengthToStartLine() : 0;
  message.body = text_.substr(message.bodyOffset, message.body.size() + rest);
  position_ += rest;
  const std::size_t sent = message.contentSize();
  if (sent > stated) {
    message.faults.push_back({"Content-Length is too small: " + std::to_string(stated) +
                                  " bytes, but " + std::to_string(sent - stated) +
                                  " more before the next start line",
                              message.bodyOffset});
  }
}

// Returns how long a body is in the text; nothing if there is less.
std::optional<std::size_t> MessageReader::bodyLength(Message& message, std::size_t stated) {
  const std::size_t left = text_.size() - position_;
  const std::size_t bare = message.restored ? bareLineFeedsLeft() : 0;
  if (stated > left + bare) {
    return std::nullopt;
  }
  const std::size_t plain = position_ + stated;
  std::size_t end = bare == 0 ? plain : position_;
  std::size_t count = bare == 0 ? stated : 0;
  for (; count < stated; ++end) {
    count += isBareLineFeed(text_, end) ? 2U : 1U;
  }
  if (bare != 0 && (count != stated || !isMessageEnd(end)) && isMessageEnd(plain)) {
    message.restored = false;
    end = plain;
  }
  return beforeStartLine(end) - position_;
}

// Returns whether the next message begins at a position, or the text ends, apart from line ends.
bool MessageReader::isMessageEnd(std::size_t position) const {
  const std::size_t begin = text_.find_first_not_of("\r\n", position);
  const bool insideLine = begin == position && text_[begin - 1] != '\n';
  return position <= text_.size() &&
         (begin == npos || (!insideLine && isStartLine(lineFrom(begin))));
}

// Returns the position, or the start of the line if it is inside a start line of the body.
std::size_t MessageReader::beforeStartLine(std::size_t position) const {
  const std::size_t line = text_.rfind('\n', position - 1) + 1;
  return line >= position_ && line < position && beginsMessage(lineFrom(line)) ? line : position;
}

// Returns the line that begins at a position, without its end.
std::string_view MessageReader::lineFrom(std::size_t position) const {
  return withoutLineEnd(text_.substr(position, text_.find('\n', position) - position));
}

std::size_t MessageReader::bareLineFeedsLeft() {
  bareLineFeeds_ -= countBareLineFeeds(text_, counted_, position_);
  counted_ = position_;
  return bareLineFeeds_;
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

}  // namespace siputility
