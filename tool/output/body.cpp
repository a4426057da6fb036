// body.cpp - the body of a message: expanded if it is gzip, split if it is multipart.
#include "output/body.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "imsdpl.h"
#include "output/dump.h"
#include "text/sip.h"
#include "text/text.h"
#include "wySipUtils.h"

namespace {

constexpr std::size_t kIndent = 2;
constexpr std::size_t kDumpWidth = 16;
constexpr unsigned int kMaxDepth = 8;                        // of parts that are read one by one
constexpr std::size_t kMaxEpilogues = std::size_t{1} << 26;  // bytes that theirs have together
constexpr std::string_view kMultipart = "multipart";

unsigned char* data(std::string& bytes) { return reinterpret_cast<unsigned char*>(bytes.data()); }

// Returns the bytes of a block of the library, and frees it; nothing for none.
std::optional<std::string> takeBlock(unsigned char* block, unsigned int length) {
  std::optional<std::string> bytes;
  if (length != 0) {
    bytes.emplace(reinterpret_cast<char*>(block), length);
  }
  __free(block);
  return bytes;
}

// By hand: Debian's libb64 breaks the text into lines and would be one more shared library.
std::string base64(std::string_view bytes) {
  constexpr std::string_view kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    unsigned int bits = 0;
    for (std::size_t k = 0; k < 3; ++k) {
      bits = bits << 8 | (i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k]) : 0U);
    }
    for (std::size_t k = 0; k < 4; ++k) {
      text += i + k > bytes.size() ? '=' : kDigits[bits >> (18 - 6 * k) & 0x3FU];
    }
  }
  return text;
}

// Returns `offset  16 bytes  |text|` for up to 16 bytes.
std::string dumpLine(std::size_t offset, std::string_view bytes) {
  char number[32];
  std::snprintf(number, sizeof(number), "%08zx ", offset);
  std::string line(number);
  std::string text;
  for (const char byte : bytes) {
    const unsigned int code = static_cast<unsigned char>(byte);
    std::snprintf(number, sizeof(number), " %02x", code);
    line += number;
    text += code >= 0x20 && code < 0x7F ? byte : '.';
  }
  line.append(3 * (kDumpWidth - bytes.size()), ' ');
  return line + "  |" + text + "|\n";
}

std::string hexDump(std::string_view bytes) {
  std::string dump;
  for (std::size_t at = 0; at < bytes.size(); at += kDumpWidth) {
    dump += dumpLine(at, bytes.substr(at, kDumpWidth));
  }
  return dump;
}

// Each node is the sibling or the first child of the previous one, so that the parts are a chain in
// the order in which they are made.
const SipMultipartMessageBody* following(const SipMultipartMessageBody* node) {
  return node->next != nullptr ? node->next : node->child;
}

bool isMultipartType(std::string_view contentType) {
  return contentType.find(kMultipart) < contentType.find(';');
}

template <typename Function>
void forEachHeader(const SipMultipartMessageBody& node, Function function) {
  for (SipHeader** header = node.headers; header != nullptr && *header != nullptr; ++header) {
    function(**header);
  }
}

bool parse(SipMultipartMessageBodyUtility& utility, std::string_view body,
           const std::string& contentType) {
  std::string copy(body);
  return body.size() <= UINT32_MAX &&
         utility.wySipGetMultiPartMessageBody(data(copy), static_cast<unsigned int>(body.size()),
                                              contentType.c_str()) != nullptr;
}

// Returns the text with a word in place of another one of the same length.
std::string replaced(std::string_view text, std::string_view word, std::string_view other) {
  std::string result(text);
  for (std::size_t at = result.find(word); at != std::string::npos; at = result.find(word, at)) {
    result.replace(at, word.size(), other);
  }
  return result;
}

// Returns "multipart" in letters of other case, which a body does not have: the library then takes
// it for any other type. "" if the body has them all, or has no "multipart".
std::string hiddenWord(std::string_view body) {
  if (body.find(kMultipart) == std::string_view::npos) {
    return "";
  }
  for (std::size_t i = 0; i < kMultipart.size(); ++i) {
    std::string word(kMultipart);
    word[i] = static_cast<char>(word[i] ^ 0x20);
    if (body.find(word) == std::string_view::npos) {
      return word;
    }
  }
  return "";
}

// A parameter that is set comes first, so they are set from the last one on.
void showWord(SipHeader& header, std::string_view hidden) {
  std::vector<std::pair<std::string, std::string>> params;
  for (const SipParam& param : siputility::paramsOf(header)) {
    params.emplace_back(replaced(view(param.getName()), hidden, kMultipart),
                        replaced(view(param.getValue()), hidden, kMultipart));
  }
  if (view(header.toString()).find(hidden) == std::string_view::npos) {
    return;
  }
  header.setValue(toSipString(replaced(view(header.getValue()), hidden, kMultipart)));
  for (auto param = params.rbegin(); param != params.rend(); ++param) {
    header.setParameter(toSipString(param->first), toSipString(param->second));
  }
}

// Restores the word in what a parse has made.
void showWord(SipMultipartMessageBodyUtility& utility, std::string_view hidden) {
  const auto show = [hidden](char* text, std::size_t length) {
    const std::string shown = replaced({text, length}, hidden, kMultipart);
    std::copy(shown.begin(), shown.end(), text);
  };
  for (const SipMultipartMessageBody* node = utility.m_pMultipartMsgHead; node != nullptr;
       node = following(node)) {
    show(reinterpret_cast<char*>(node->body), node->bodyLength);
    for (char* text : {node->preamble, node->epilogue}) {
      show(text, text == nullptr ? 0 : std::strlen(text));
    }
    forEachHeader(*node, [hidden](SipHeader& header) { showWord(header, hidden); });
  }
}

// Returns the Content-Type of a part that is multipart itself, as the library takes it; else "".
std::string multipartTypeOf(const SipMultipartMessageBody& node) {
  std::string type;
  forEachHeader(node, [&type](SipHeader& header) {
    const std::string_view name = view(header.getName());
    const std::string_view value = view(header.getValue());
    if (type.empty() && (equalIgnoringCase(name, "Content-Type") || equalIgnoringCase(name, "c")) &&
        equalIgnoringCase(value.substr(0, kMultipart.size()), kMultipart)) {
      type =
          std::string(kMultipart).append(view(header.getHeaderValue()).substr(kMultipart.size()));
    }
  });
  return type;
}

void subtract(std::size_t& from, std::size_t size) { from -= std::min(from, size); }

// Returns the parts of one parse of a body of this size.
std::vector<Part> partsOf(const SipMultipartMessageBodyUtility& utility, std::size_t size) {
  std::vector<Part> parts;
  std::size_t elsewhere = size;  // what is in no content, as far as the nodes say
  for (const SipMultipartMessageBody* node = utility.m_pMultipartMsgHead; node != nullptr;
       node = following(node)) {
    const std::size_t i = parts.size();
    const bool nested = i != 0 && parts[i - 1].node == node->parent;
    Part part = {i + 1, 0, 0, node, {reinterpret_cast<const char*>(node->body), node->bodyLength},
                 false};
    if (i != 0) {
      part.parent = nested ? i : parts[i - 1].parent;
      part.depth = parts[i - 1].depth + (nested ? 1 : 0);
    }
    subtract(elsewhere, part.content.size());
    subtract(elsewhere, node->preamble == nullptr ? 0 : std::strlen(node->preamble));
    parts.push_back(part);
  }
  if (!parts.empty() && parts.back().node->epilogue != nullptr) {  // the others include it
    subtract(elsewhere, std::strlen(parts.back().node->epilogue));
  }
  for (Part& part : parts) {
    part.mayBeLonger = elsewhere > UINT16_MAX;
  }
  return parts;
}

}  // namespace

BodyTree::BodyTree(std::string_view body, const std::string& contentType) {
  Utility& whole = makeUtility();
  accepted_ = parse(whole, body, contentType);
  if (!accepted_) {
    takenApart_ = readApart(body, contentType);
    accepted_ = takenApart_;
  }
  if (!takenApart_) {
    parts_.clear();
    add(partsOf(whole, body.size()), nullptr);
  }
}

BodyTree::Utility& BodyTree::makeUtility() {
  return *utilities_.emplace_back(std::make_unique<Utility>());
}

// Adds the parts of one parse, which know only each other.
void BodyTree::add(const std::vector<Part>& parts, const Part* outer) {
  const std::size_t known = parts_.size();
  for (Part part : parts) {
    part.number += known;
    part.parent = part.parent != 0 ? part.parent + known : outer != nullptr ? outer->number : 0;
    part.depth += outer != nullptr ? outer->depth + 1 : 0;
    parts_.push_back(part);
  }
}

// Reads a body level by level. A part comes before those in it, so the next one is the last pending
// one.
bool BodyTree::readApart(std::string_view body, const std::string& contentType) {
  const Diagnostics ignored;
  std::vector<Part> pending;
  bool valid = readLevel(body, contentType, nullptr, pending);
  while (valid && !pending.empty()) {
    Part part = pending.back();
    pending.pop_back();
    part.number = parts_.size() + 1;
    parts_.push_back(part);
    valid = readContent(part, pending);
  }
  return valid;
}

// Reads the content of a part that is multipart itself. False for one that is not valid.
bool BodyTree::readContent(const Part& part, std::vector<Part>& pending) {
  const std::string type = multipartTypeOf(*part.node);
  if (type.empty()) {
    return true;
  }
  if (part.mayBeLonger || part.depth + 1 == kMaxDepth) {
    return false;
  }
  Utility& inner = makeUtility();
  if (!parse(inner, part.content, type)) {
    return readLevel(part.content, type, &part, pending);
  }
  const std::vector<Part> parts = partsOf(inner, part.content.size());
  add(parts, &part);
  return hasRoomFor(parts);
}

// Reads the parts of a body without looking into them.
bool BodyTree::readLevel(std::string_view body, const std::string& contentType, const Part* outer,
                         std::vector<Part>& pending) {
  const std::string hidden = hiddenWord(body);
  if (hidden.empty()) {
    return false;
  }
  const std::size_t slash = std::min(contentType.find('/'), contentType.size());
  const std::string type =
      contentType.substr(0, slash) + replaced(contentType.substr(slash), kMultipart, hidden);
  Utility& utility = makeUtility();
  if (!parse(utility, replaced(body, kMultipart, hidden), type)) {
    return false;
  }
  std::vector<Part> parts = partsOf(utility, body.size());
  for (Part& part : parts) {
    part.parent = outer != nullptr ? outer->number : 0;
    part.depth = outer != nullptr ? outer->depth + 1 : 0;
  }
  showWord(utility, hidden);
  pending.insert(pending.end(), parts.rbegin(), parts.rend());
  return hasRoomFor(parts);
}

// Counts the epilogues of one parse. Each is a copy of all after its part.
bool BodyTree::hasRoomFor(const std::vector<Part>& parts) {
  for (const Part& part : parts) {
    epilogues_ += part.node->epilogue == nullptr ? 0 : std::strlen(part.node->epilogue);
  }
  return epilogues_ <= kMaxEpilogues;
}

MessageBody::MessageBody(const Message& message) : bytes(message.content()) {
  std::string type;
  bool gzip = false;
  for (const Field& field : message.fields) {
    const std::string_view name = trimmed(field.name);
    type = equalIgnoringCase(name, "Content-Type") && type.empty() ? field.value : type;
    gzip = gzip ||
           (equalIgnoringCase(name, "Content-Encoding") && equalIgnoringCase(field.value, "gzip"));
  }
  Diagnostics diagnostics;
  if (gzip) {
    std::optional<std::string> inflatedBytes = inflated(bytes);
    if (!inflatedBytes) {
      faults = {diagnostics.reason(VARN_INVALID_INPUT)};
      return;
    }
    title = "body, " + std::to_string(bytes.size()) + " bytes of gzip";
    bytes = std::move(*inflatedBytes);
  }
  if (isMultipartType(type) && !bytes.empty()) {
    tree = std::make_unique<BodyTree>(bytes, type);
    if (!tree->accepted()) {
      faults = {diagnostics.reason(VARN_INVALID_INPUT)};
    } else if (tree->takenApart()) {
      limit = kNestedMultipart;
    }
  }
}

std::optional<std::string> deflated(std::string bytes) {
  unsigned char* block = nullptr;
  const unsigned int length =
      bytes.size() > UINT32_MAX
          ? 0
          : compMessageWithDeflate(bytes.data(), &block, static_cast<unsigned int>(bytes.size()));
  return takeBlock(block, length);
}

std::optional<std::string> inflated(std::string bytes) {
  unsigned char* block = nullptr;
  const unsigned int length =
      bytes.size() > UINT16_MAX
          ? 0
          : DeCompressGzipData(data(bytes), static_cast<unsigned short>(bytes.size()), &block);
  return takeBlock(block, length);
}

std::string contentLines(const std::string& title, std::string_view bytes, const char* remark) {
  std::string lines;
  if (isPlainText(bytes)) {
    lines = printableLines(bytes);
    lines.erase(std::remove(lines.begin(), lines.end(), '\r'), lines.end());
  } else {
    lines = hexDump(bytes);
  }
  return title + ", " + std::to_string(bytes.size()) + " bytes" + remark + '\n' +
         indented(lines, kIndent);
}

std::string partLines(const Part& part) {
  std::string lines;
  forEachHeader(*part.node, [&lines](SipHeader& header) {
    lines += printable(view(header.toString())) + '\n';
  });
  if (part.node->preamble != nullptr) {
    lines += contentLines("preamble", part.node->preamble);
  }
  lines += contentLines("content", part.content, part.mayBeLonger ? kOrLonger : "");
  if (part.node->epilogue != nullptr) {
    lines += contentLines("epilogue", part.node->epilogue);
  }
  return indented("part " + std::to_string(part.number) + '\n' + indented(lines, kIndent),
                  kIndent * part.depth);
}

void addContent(nlohmann::ordered_json& object, std::string_view bytes) {
  object["length"] = bytes.size();
  if (isPlainText(bytes)) {
    object["text"] = bytes;
  } else {
    object["base64"] = base64(bytes);
  }
}

nlohmann::ordered_json toJson(const std::vector<Part>& parts) {
  const auto textOrNull = [](const char* text) {
    return text == nullptr ? nlohmann::ordered_json(nullptr) : nlohmann::ordered_json(text);
  };
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const Part& part : parts) {
    nlohmann::ordered_json object;
    object["number"] = part.number;
    object["parent"] = part.parent == 0 ? nullptr : nlohmann::ordered_json(part.parent);
    object["headers"] = nlohmann::ordered_json::array();
    forEachHeader(*part.node, [&object](SipHeader& header) {
      object["headers"].push_back(toJson(header, VARN_OK));
    });
    object["preamble"] = textOrNull(part.node->preamble);
    object["epilogue"] = textOrNull(part.node->epilogue);
    addContent(object["content"], part.content);
    if (part.mayBeLonger) {
      object["content"]["length"] = nullptr;
    }
    list.push_back(object);
  }
  return list;
}

std::string indented(std::string_view text, std::size_t blanks) {
  std::string lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines.append(end == 0 ? 0 : blanks, ' ').append(text.substr(0, end)).append(1, '\n');
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}
