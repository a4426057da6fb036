// body.cpp - the body of a message: expanded if it is gzip, split if it is multipart.
#include "body.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "dump.h"
#include "imsdpl.h"
#include "text.h"
#include "wySipUtils.h"

namespace {

constexpr std::size_t kIndent = 2;
constexpr std::size_t kDumpWidth = 16;

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
  return contentType.find("multipart") < contentType.find(';');
}

template <typename Function>
void forEachHeader(const SipMultipartMessageBody& node, Function function) {
  for (SipHeader** header = node.headers; header != nullptr && *header != nullptr; ++header) {
    function(**header);
  }
}

void subtract(std::size_t& from, std::size_t size) { from -= std::min(from, size); }

}  // namespace

BodyTree::BodyTree(std::string_view body, const std::string& contentType) : accepted_(false) {
  std::string copy(body);
  accepted_ = body.size() <= UINT32_MAX && utility_.wySipGetMultiPartMessageBody(
                                               data(copy), static_cast<unsigned int>(body.size()),
                                               contentType.c_str()) != nullptr;
  std::size_t elsewhere = body.size();  // what is in no content, as far as the nodes say
  for (const SipMultipartMessageBody* node = utility_.m_pMultipartMsgHead; node != nullptr;
       node = following(node)) {
    const std::size_t i = parts_.size();
    const bool nested = i != 0 && parts_[i - 1].node == node->parent;
    Part part = {i + 1, 0, 0, node, {reinterpret_cast<const char*>(node->body), node->bodyLength},
                 false};
    if (i != 0) {
      part.parent = nested ? i : parts_[i - 1].parent;
      part.depth = parts_[i - 1].depth + (nested ? 1 : 0);
    }
    subtract(elsewhere, part.content.size());
    subtract(elsewhere, node->preamble == nullptr ? 0 : std::strlen(node->preamble));
    parts_.push_back(part);
  }
  if (!parts_.empty() && parts_.back().node->epilogue != nullptr) {  // the others include it
    subtract(elsewhere, std::strlen(parts_.back().node->epilogue));
  }
  for (Part& part : parts_) {
    part.mayBeLonger = elsewhere > UINT16_MAX;
  }
}

MessageBody::MessageBody(const Message& message) : bytes(message.content()) {
  std::string type;
  bool gzip = false;
  for (const Field& field : message.fields) {
    const std::string_view name = trimmed(field.name);
    type = sameIgnoringCase(name, "Content-Type") && type.empty() ? field.value : type;
    gzip = gzip ||
           (sameIgnoringCase(name, "Content-Encoding") && sameIgnoringCase(field.value, "gzip"));
  }
  Diagnostics diagnostics;
  if (gzip) {
    std::optional<std::string> inflatedBytes = inflated(bytes);
    if (!inflatedBytes) {
      faults = diagnostics.reasons(VARN_INVALID_INPUT);
      return;
    }
    title = "body, " + std::to_string(bytes.size()) + " bytes of gzip";
    bytes = std::move(*inflatedBytes);
  }
  if (isMultipartType(type) && !bytes.empty()) {
    tree = std::make_unique<BodyTree>(bytes, type);
    faults = tree->accepted() ? faults : diagnostics.reasons(VARN_INVALID_INPUT);
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
    lines = bytes;
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
