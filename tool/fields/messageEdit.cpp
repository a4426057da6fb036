// messageEdit.cpp - edits the fields and the body of a message, and nothing else of its bytes.
#include "fields/messageEdit.h"

#include <algorithm>
#include <iterator>

#include "fields/names.h"

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

bool isBlank(std::string_view text) {
  return text.find_first_not_of(kBlanks) == std::string_view::npos;
}

std::string knownName(std::string_view name) { return std::string(longName(trimmed(name))); }

// Fields of which a new one comes first, as a proxy adds it.
bool growsOnTop(const std::string& name) {
  constexpr std::string_view kNames[] = {"Via", "Route", "Record-Route", "Path"};
  return std::any_of(std::begin(kNames), std::end(kNames), [&name](std::string_view candidate) {
    return equalIgnoringCase(name, candidate);
  });
}

// Returns the text with other bytes between the white space around it.
std::string withText(const std::string& old, const std::string& text) {
  if (isBlank(old)) {
    return (old.empty() && !text.empty() ? " " : old) + text;
  }
  const std::size_t first = old.find_first_not_of(kBlanks);
  return old.substr(0, first) + text + old.substr(old.find_last_not_of(kBlanks) + 1);
}

std::vector<std::string> valuesOf(const std::string& name, std::string_view text) {
  const FieldKind* kind = findField(name);
  if (kind == nullptr || !kind->list) {
    return {std::string(text)};
  }
  const std::vector<std::string_view> pieces = splitList(text);
  return {pieces.begin(), pieces.end()};
}

std::string joined(const std::vector<std::string>& values) {
  std::string text = values.front();
  for (auto value = std::next(values.begin()); value != values.end(); ++value) {
    text.append(",").append(*value);
  }
  return text;
}

// Empty elements of a list are nothing.
bool isValue(const std::vector<std::string>& values, std::size_t i) {
  return values.size() == 1 || !isBlank(values[i]);
}

std::size_t lengthOfLineEnd(std::string_view line) {
  const std::size_t feed = !line.empty() && line.back() == '\n' ? 1 : 0;
  line.remove_suffix(feed);
  return feed + (!line.empty() && line.back() == '\r' ? 1 : 0);
}

// Returns the length of the last line of the rest of a header, if it is empty; else 0.
std::size_t lengthOfEmptyLine(std::string_view rest) {
  const std::size_t length = lengthOfLineEnd(rest);
  rest.remove_suffix(length);
  return rest.empty() || rest.back() == '\n' ? length : 0;
}

}  // namespace

EditedMessage::EditedMessage(const Message& message)
    : restored_(message.restored && lineEndOf(message) == "\n"),
      lineEnd_(lineEndOf(message)),
      body_(message.body) {
  const std::string_view text = textOf(message);
  const std::string_view header = text.substr(0, message.bodyOffset - message.offset);
  std::size_t done = std::min(header.find('\n'), header.size() - 1) + 1;
  lines_.push_back({header.substr(0, done), "", "", {}, "", message.offset, true});
  const char* last = nullptr;
  for (const Field& field : message.fields) {
    if (field.line.data() == last) {
      continue;
    }
    last = field.line.data();
    const std::size_t begin = field.offset - message.offset;
    const std::string_view end = field.line.substr(field.line.size() - lengthOfLineEnd(field.line));
    std::string_view value = field.line.substr(0, field.line.size() - end.size());
    const std::string_view head = value.substr(0, value.find(':') + 1);
    value.remove_prefix(head.size());
    const std::string name = knownName(field.name);
    lines_.push_back({header.substr(done, begin - done), name, std::string(head),
                      valuesOf(name, value), end, field.offset, false});
    done = begin + field.line.size();
  }
  const std::string_view rest = header.substr(done);
  const std::size_t end = lengthOfEmptyLine(rest);
  lines_.push_back(
      {rest.substr(0, rest.size() - end), "", "", {}, "", message.offset + done, true});
  tail_ = rest.substr(rest.size() - end);
}

EditOutcome EditedMessage::apply(const MessageEdit& edit) {
  switch (edit.kind) {
    case MessageEdit::Kind::kSet:
      return set(edit);
    case MessageEdit::Kind::kSetHeader:
      return setHeader(edit);
    case MessageEdit::Kind::kRemoveHeader:
      removeHeader(edit);
      break;
    case MessageEdit::Kind::kAddHeader:
      addHeader(edit.field, edit.value);
      break;
    case MessageEdit::Kind::kBody:
      setBody(edit.value);
      break;
  }
  EditOutcome outcome;
  outcome.found = true;
  return outcome;
}

std::string EditedMessage::text() const { return header().append(body_); }

bool EditedMessage::isNamed(const Line& line, const std::string& name) const {
  return !line.removed && equalIgnoringCase(line.name, name);
}

// Returns the values that an edit is for.
std::vector<EditedMessage::Target> EditedMessage::targetsOf(const MessageEdit& edit) {
  const std::string name = knownName(edit.field);
  std::vector<Target> targets;
  std::size_t number = 0;
  for (Line& line : lines_) {
    if (isNamed(line, name)) {
      addTargets(line, edit.number, number, targets);
    }
  }
  return targets;
}

// Adds the values of a line, or the wanted one. Counts all.
void EditedMessage::addTargets(Line& line, std::size_t wanted, std::size_t& number,
                               std::vector<Target>& targets) {
  for (std::size_t i = 0; i < line.values.size(); ++i) {
    const bool counts = isValue(line.values, i);
    number += counts ? 1U : 0U;
    if (counts && (wanted == 0 || number == wanted)) {
      targets.push_back({&line, i});
    }
  }
}

EditOutcome EditedMessage::set(const MessageEdit& edit) {
  EditOutcome outcome;
  for (const Target& target : targetsOf(edit)) {
    Line& line = *target.line;
    outcome.found = true;
    outcome.offset = line.offset;
    outcome.refusal = editValue(line.name, line.values[target.value], edit.part, edit.edit);
    if (outcome.refusal) {
      break;
    }
  }
  return outcome;
}

EditOutcome EditedMessage::setHeader(const MessageEdit& edit) {
  EditOutcome outcome;
  if (edit.number == 0) {
    outcome.found = setFields(knownName(edit.field), edit.value);
    return outcome;
  }
  for (const auto& [line, i] : targetsOf(edit)) {
    line->values[i] = withText(line->values[i], edit.value);
    line->values = valuesOf(line->name, joined(line->values));
    outcome.found = true;
  }
  return outcome;
}

// The first field gets the new value, the others are removed. Returns whether there is one.
bool EditedMessage::setFields(const std::string& name, const std::string& value) {
  bool found = false;
  for (Line& line : lines_) {
    if (!isNamed(line, name)) {
      continue;
    }
    if (!found) {
      line.values = valuesOf(name, withText(joined(line.values), value));
    }
    line.removed = found;
    found = true;
  }
  return found;
}

void EditedMessage::removeHeader(const MessageEdit& edit) {
  for (const auto& [line, i] : targetsOf(edit)) {
    std::vector<std::string>& values = line->values;
    if (edit.number != 0) {
      values.erase(values.begin() + static_cast<std::ptrdiff_t>(i));
    }
    line->removed = edit.number == 0 || std::all_of(values.begin(), values.end(), isBlank);
  }
}

void EditedMessage::addHeader(const std::string& name, const std::string& value) {
  Line line = {"", knownName(name), name + ':', {}, lineEnd_, lines_.front().offset, false};
  line.values = valuesOf(line.name, (value.empty() ? "" : " ") + value);
  const auto first = std::find_if(lines_.begin(), lines_.end(), [&](const Line& other) {
    return growsOnTop(line.name) && isNamed(other, line.name);
  });
  if (first != lines_.end()) {
    std::swap(line.before, first->before);
    lines_.insert(first, line);
    return;
  }
  if (tail_.empty() && header().back() != '\n') {
    line.head.insert(0, lineEnd_);
  }
  lines_.push_back(line);
}

// The Content-Length counts CRLF where the lines ended in that before the text was saved.
void EditedMessage::setBody(const std::string& body) {
  body_ = body;
  Message counted;
  counted.body = body;
  counted.restored = restored_;
  const std::string length = std::to_string(counted.contentSize());
  if (!setFields("Content-Length", length)) {
    addHeader("Content-Length", length);
  }
  if (tail_.find('\n') == std::string::npos) {  // the text ends in the header
    tail_.clear();
    tail_.append(header().back() == '\n' ? "" : lineEnd_).append(lineEnd_);
  }
}

std::string EditedMessage::header() const {
  std::string text;
  for (const Line& line : lines_) {
    text.append(line.before);
    if (!line.removed) {
      text.append(line.head).append(joined(line.values)).append(line.end);
    }
  }
  return text.append(tail_);
}

std::string_view textOf(const Message& message) {
  const std::size_t header = message.bodyOffset - message.offset;
  return {message.body.data() - header, header + message.body.size()};
}

std::string_view lineEndOf(const Message& message) {
  const std::string_view text = textOf(message);
  const std::size_t feed = text.find('\n');
  return feed != std::string_view::npos && text[feed - 1] != '\r' ? "\n" : "\r\n";
}

std::optional<Refusal> refusalOfFields(const std::string& name, const std::string& value) {
  for (const std::string& piece : valuesOf(knownName(name), value)) {
    if (std::optional<Refusal> refusal = refusalOfField(name, piece)) {
      return refusal;
    }
  }
  return std::nullopt;
}
