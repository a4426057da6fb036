// fuzz_message.cpp - the splitter of texts with SIP messages; its fields go to SipHeader. The same
// text as the tool reads it, in pieces: as messages and as a log.
#include "finding/log.h"
#include "finding/textMessages.h"
#include "law.h"
#include "text/sip.h"
#include "wySipHeader.h"

namespace {

// Returns a text without white space and line ends, which unfolding changes.
std::string squeezed(std::string_view text) {
  std::string bare;
  std::copy_if(text.begin(), text.end(), std::back_inserter(bare),
               [](char c) { return c != ' ' && c != '\t' && c != '\r' && c != '\n'; });
  return bare;
}

std::string written(const Message& message) {
  std::string text = message.startLine + "\r\n";
  for (const Field& field : message.fields) {
    text.append(field.name).append(": ").append(field.value).append("\r\n");
  }
  return text.append("\r\n").append(message.content());
}

void checkField(const Field& field) {
  SipHeader header({field.name.data(), static_cast<unsigned int>(field.name.size())},
                   {field.value.data(), static_cast<unsigned int>(field.value.size())});
  const bool empty = header.getValue().length() == 0 && header.firstParam() == nullptr;
  std::string list;
  for (const std::string_view piece : splitList(field.value)) {
    list.append(piece).append(",");
  }
  require(list == field.value + ",", "a list is its pieces", field.value, list);
  require(empty || header.getStringLength() == header.toString().length(), "a length", list, "");
  require(squeezed(field.source) == squeezed(field.value), "its source", field.source, field.value);
  require(field.source.data() > field.line.data() &&
              field.source.data() + field.source.size() <= field.line.data() + field.line.size(),
          "a part of its line", field.line, field.source);
}

// A message without a fault has the content of its text, and can be written and read again.
void checkMessage(const Message& message, std::string_view text) {
  const std::string_view header = text.substr(0, text.size() - message.body.size());
  require(message.body.data() == header.data() + header.size(), "the body ends it", text, header);
  std::string bare = squeezed(message.startLine);
  const bool sound = message.faults.empty();
  bool literal = sound && header.find(',') == std::string_view::npos;  // else a value may vanish
  bool readable = sound;  // no line is indented: it would continue the line before it
  for (const Field& field : message.fields) {
    checkField(field);
    bare.append(squeezed(field.name)).append(":").append(squeezed(field.value));
    const FieldKind* const kind = findField(trimmed(field.name));
    const bool single = kind == nullptr || !kind->list || splitList(field.value).size() == 1;
    require(single, "one value of a list", field.name, field.value);
    literal = literal && kind == nullptr;  // may have a compact name
    readable = readable && field.name.find_first_of(" \t") != 0;
    const bool length = sound && kind != nullptr && kind->compact == 'l';
    require(!length || std::stoull(field.value) == message.content().size(), "its length", text,
            bare);
  }
  require(!literal || bare == squeezed(header), "nothing is lost", text, bare);
  if (readable) {
    const std::string again = written(message);
    const std::optional<Message> read = MessageReader(again).next();
    require(read->faults.empty() && written(*read) == again, "reads the same", text, again);
  }
}

std::string describe(const Message& message, std::size_t line) {
  return std::to_string(line) + ':' + written(message) + std::to_string(message.faults.size());
}

// Returns the messages of a text.
std::string read(std::string_view text) {
  std::string messages;
  LineCounter lines(text, 1);
  MessageReader reader(text);
  while (const std::optional<Message> message = reader.next()) {
    messages.append(describe(*message, lines.at(message->offset)));
  }
  return messages;
}

// Returns the messages of a text that comes in pieces of this size.
std::string readInPieces(std::string_view text, std::size_t size) {
  std::string messages;
  TextMessages reader([&](const Message& message) {
    messages.append(describe(message, reader.lineAt(message.offset)));
  });
  for (std::size_t at = 0; at < text.size(); at += size) {
    reader.add(text.substr(at, size));
  }
  reader.finish();
  return messages;
}

// Returns the messages of a log that comes in pieces of this size, each after its line.
std::string found(std::string_view text, std::size_t size) {
  std::string messages;
  Log log([&](std::string_view message) {
    const std::size_t lines =
        1 + static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    const std::size_t first = log.lineAt(0);
    require(first > 0 && first <= log.lineAt(message.size() - 1), "lines count up", text, message);
    require(log.lineAt(message.size() - 1) <= lines, "a line of the text", text, message);
    messages.append(std::to_string(first)).append(":").append(message);
  });
  for (std::size_t at = 0; at < text.size(); at += size) {
    log.add(text.substr(at, size));
  }
  log.finish();
  return messages;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  size = std::min(size, kLongestInput);
  const Text copy = blockOf({reinterpret_cast<const char*>(data), size});
  const std::string_view text(copy.get(), size);
  MessageReader reader(text);
  std::size_t from = 0;
  for (std::optional<Message> message; (message = reader.next()); from = reader.position()) {
    require(from < reader.position() && reader.position() <= size, "it goes on", text, "");
    checkMessage(*message, text.substr(from, reader.position() - from));
  }
  require(squeezed(text.substr(from)).empty(), "to the end", text, text.substr(from));
  require(found(text, size + 1) == found(text, 1), "the same log in pieces", text, "");
  const std::string messages = read(text);
  for (const std::size_t piece : {std::size_t{1}, std::size_t{7}, std::size_t{64}}) {
    const std::string again = readInPieces(text, piece);
    require(messages == again, "the same messages in pieces", messages, again);
  }
  return 0;
}
