// log.cpp - finds the SIP messages in a log, whatever it puts around their lines.
#include "finding/log.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "text/sip.h"

namespace {

// Returns the line end that the bytes end with, a literal; "" for none.
std::string_view lineEnd(std::string_view bytes) {
  for (const std::string_view end : {"\r\n", "\n"}) {
    if (endsWith(bytes, end)) {
      return end;
    }
  }
  return "";
}

// Returns whether a line has the form of a header field. A time has not.
bool isField(std::string_view line) {
  const std::string_view name = trimmed(line.substr(0, line.find(':')));
  return name.size() < line.size() && isToken(name) &&
         std::isalpha(static_cast<unsigned char>(name[0])) != 0;
}

}  // namespace

void Log::add(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t end = std::min(bytes.find('\n'), bytes.size() - 1) + 1;
    addToLine(bytes.substr(0, end));
    bytes.remove_prefix(end);
  }
}

// What comes after that is on the same line.
void Log::quiet() {
  const std::optional<std::string_view> text = layout_.prefix.removedFrom(line_);
  if (text && !text->empty() && text->size() == messages_.missing() && !insideLine_) {
    endLine();
    --number_;
  }
}

void Log::finish() {
  if (!line_.empty()) {
    endLine();
  }
  settle("");
  messages_.finish();
}

// Takes bytes of which only the last one may be a line feed.
void Log::addToLine(std::string_view bytes) {
  const bool ends = bytes.back() == '\n';
  if (insideLine_) {
    insideLine_ = !ends;
    return;
  }
  line_.append(bytes);
  if (ends || line_.size() > LogMessages::kLongest) {
    insideLine_ = !ends;
    endLine();
  }
}

void Log::endLine() {
  Line line = {std::exchange(line_, std::string()), "", ++number_};
  line.end = lineEnd(line.text);
  line.text.resize(line.text.size() - line.end.size());
  if (candidate_ && isForeign(line.text)) {
    candidate_->foreign.push_back(std::move(line));
    return;
  }
  settle(line.text);
  if (!takeEscaped(line)) {
    takeLine(line);
  }
}

// Returns whether a line may be one of another program between the start line of the candidate and
// its first header field.
bool Log::isForeign(std::string_view line) const {
  return candidate_->start.offset != 0 && candidate_->foreign.size() < kMaxForeign &&
         !trimmed(line).empty() && !hasVersion(line) &&
         !layoutOf(candidate_->line.text, candidate_->start, line);
}

// Takes a line with escaped line ends. Returns false for another one.
bool Log::takeEscaped(const Line& line) {
  bool taken = false;
  const std::string plain = withPlainSlashes(line.text);
  std::string_view rest = plain;
  while (const std::optional<EscapedMessages> found = findEscaped(rest)) {
    taken = true;
    messages_.finish();
    std::string_view text = found->text;
    while (!text.empty()) {
      const std::string_view bytes = text.substr(0, std::min(text.find('\n'), text.size() - 1) + 1);
      const std::string_view end = lineEnd(bytes);
      messages_.add(bytes.substr(0, bytes.size() - end.size()), end, line.number);
      text.remove_prefix(bytes.size());
    }
    messages_.finish();
    rest.remove_prefix(found->end);
  }
  return taken;
}

// A start line in the layout of the line before it needs no more than itself.
void Log::takeLine(const Line& line) {
  const std::optional<LogStart> start = findStart(line.text);
  const bool inLayout = start && start->mark == layout_.mark &&
                        layout_.prefix.removedFrom(line.text) &&
                        start->offset == prefixLength(line.text);
  if (start && !inLayout) {
    candidate_ = {line, *start, {}};
  } else {
    takeText(line);
  }
}

// Takes a line in the layout of the last message. One without its prefix is not of the message,
// unless it is empty.
void Log::takeText(const Line& line) {
  std::optional<std::string_view> text = layout_.prefix.removedFrom(line.text);
  if (!text && !line.text.empty()) {
    return;
  }
  add(text.value_or(""), line);
}

// Takes the candidate, if there is one, and the lines after it. If the next line does not confirm
// it, it is a line as any other.
void Log::settle(std::string_view next) {
  if (!candidate_) {
    return;
  }
  const auto [line, start, foreign] = *std::exchange(candidate_, std::nullopt);
  const std::optional<Layout> layout = layoutOf(line.text, start, next);
  const std::size_t prefix = prefixLength(line.text);
  const bool taken =
      layout && (messages_.missing() == 0 || prefix + messages_.missing() != start.offset);
  if (taken) {
    layout_ = *layout;
    add(std::string_view{line.text}.substr(start.offset), line);
  } else if (!layout && beginsMessage(line.text)) {
    layout_ = Layout();
    add(line.text, line);
  } else {
    takeText(line);
  }
  for (const Line& each : foreign) {
    // Without a prefix, only its form shows that a line is a header field.
    if (!taken || !layout_.prefix.empty() || isField(each.text)) {
      takeText(each);
    }
  }
}

void Log::add(std::string_view text, const Line& line) {
  const bool marked = !layout_.mark.empty() && endsWith(text, layout_.mark);
  text.remove_suffix(marked ? layout_.mark.size() : 0);
  messages_.add(text, marked ? "\r\n" : line.end, line.number);
}

std::size_t Log::prefixLength(std::string_view line) const {
  const std::optional<std::string_view> text = layout_.prefix.removedFrom(line);
  return text ? line.size() - text->size() : 0;
}
