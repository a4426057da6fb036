// fuzz_message.cpp - the tool's splitter of texts with SIP messages; its fields go to SipHeader.
#include "fields.h"
#include "law.h"
#include "message.h"
#include "text.h"
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
  return text.append("\r\n").append(message.body);
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
    require(!length || std::stoull(field.value) == message.body.size(), "its length", text, bare);
  }
  require(!literal || bare == squeezed(header), "nothing is lost", text, bare);
  if (readable) {
    const std::string again = written(message);
    const std::optional<Message> read = MessageReader(again).next();
    require(read->faults.empty() && written(*read) == again, "reads the same", text, again);
  }
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
  return 0;
}
