// train.cpp - the run that a profile counts: what a signalling stack does with its messages, with
// the texts of the tests and of the fuzz targets. It does not read the texts of the
// benchmarks, which have some header fields in common with those.
//
// It runs in the folder of the sources.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "sipMessage.h"
#include "sipMultipartmessagebodyUtility.h"
#include "wySipCxx.h"
#include "wySipHeader.h"
#include "wySipUtils.h"
#include "wyTelAddress.h"

namespace {

using siputility::Field;
using siputility::FieldKind;
using siputility::findField;
using siputility::Message;
using siputility::MessageReader;

using siputility::toSipString;

// Reads each parameter and looks each up by its name, changes one, writes the object.
template <typename Object>
void readAndEdit(Object& object) {
  std::size_t bytes = 0;
  for (const SipParam& param : siputility::paramsOf(object)) {
    const SipString* const value = object.getParameter(param.getName());
    bytes += value == nullptr ? 0 : value->length();
  }
  object.setParameter("transport", bytes == 0 ? "tcp" : "tls");
  static_cast<void>(object.toString());
}

void readAddress(std::string_view text) {
  SipAddress address(toSipString(text));
  const std::string uri = siputility::toStdString(address.getURI());
  static_cast<void>(CompareSIPURI(uri.c_str(), uri.c_str()));
  static_cast<void>(GetHostType(address.getHost().c_str()));
  address.setPort(5060);
  readAndEdit(address);
}

void readTel(std::string_view text) {
  TelAddress tel(toSipString(text));
  readAndEdit(tel);
}

// Reads a value of a header field; one that is an address, also as such.
void readField(const std::string& name, std::string_view value) {
  SipHeader header(toSipString(name), toSipString(value));
  const FieldKind* const kind = findField(name);
  if (kind != nullptr && kind->address) {
    const std::string address = siputility::toStdString(header.getValue());
    address.find("tel:") == std::string::npos ? readAddress(address) : readTel(address);
  } else if (kind != nullptr && kind->compact == 'v') {
    const siputility::HandedOut<SipAddress> sentBy(
        ParseViaHeaderToAdress(std::string(value).c_str()));
  }
  readAndEdit(header);
}

void readBody(std::string_view body, const char* type) {
  std::string bytes(body);
  SipMultipartMessageBodyUtility utility;
  utility.wySipGetMultiPartMessageBody(reinterpret_cast<unsigned char*>(bytes.data()),
                                       static_cast<unsigned int>(bytes.size()), type);
}

// Among the samples bodies of parts are rarer than in traffic.
constexpr int kBodyTimes = 10;

void readMessages(std::string_view text) {
  MessageReader reader(text);
  while (const std::optional<Message> message = reader.next()) {
    std::string type;
    for (const Field& field : message->fields) {
      readField(field.name, field.value);
      type = field.name == "Content-Type" ? field.value : type;
    }
    for (int i = 0; i < kBodyTimes; ++i) {
      readBody(message->body, type.c_str());
    }
  }
}

// A line of tests/data/header.txt.
void readFieldLine(std::string_view line) {
  const std::size_t colon = std::min(line.find(": "), line.size());
  readField(std::string(line.substr(0, colon)), line.substr(std::min(colon + 2, line.size())));
}

// The first line is the Content-Type value.
void readTypeAndBody(std::string_view text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  readBody(text.substr(std::min(end + 1, text.size())), std::string(text.substr(0, end)).c_str());
}

// Returns the contents of a file or of all files of a directory; ends the program if there is none.
std::vector<std::string> textsOf(const std::filesystem::path& path) {
  std::vector<std::filesystem::path> files = {path};
  if (std::filesystem::is_directory(path)) {
    files.assign(std::filesystem::directory_iterator(path), {});
    std::sort(files.begin(), files.end());  // the same run, the same profile
  }
  std::vector<std::string> texts;
  for (const std::filesystem::path& file : files) {
    std::string text(std::filesystem::file_size(file), '\0');
    std::ifstream(file, std::ios::binary).read(text.data(), static_cast<long>(text.size()));
    texts.push_back(text);
  }
  return texts;
}

// Texts, how they are read, whole or line by line, and how many times. Ordinary texts count more
// than those made to be refused.
struct Texts {
  const char* path;
  void (*read)(std::string_view text);
  int times;
  bool lines;
};

constexpr Texts kTexts[] = {
    {"tests/data/messages", readMessages, 40, false},
    {"tests/data/header.txt", readFieldLine, 40, true},
    {"tests/data/address.txt", readAddress, 40, true},
    {"tests/data/tel.txt", readTel, 40, true},
    {"fuzz/corpus/message", readMessages, 1, false},
    {"fuzz/corpus/multipart", readTypeAndBody, 1, false},
    {"fuzz/corpus/header", readFieldLine, 1, true},
    {"fuzz/corpus/address", readAddress, 1, true},
    {"fuzz/corpus/tel", readTel, 1, true},
};

void readOnce(const Texts& texts, const std::string& text) {
  if (!texts.lines) {
    return texts.read(text);
  }
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    texts.read(line);
  }
}

void readAll(const Texts& texts) {
  for (const std::string& text : textsOf(texts.path)) {
    for (int i = 0; i < texts.times; ++i) {
      readOnce(texts, text);
    }
  }
}

}  // namespace

int main() {
  std::for_each(std::begin(kTexts), std::end(kTexts), readAll);
  return 0;
}
