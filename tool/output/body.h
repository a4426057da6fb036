// body.h - the body of a message: expanded if it is gzip, split if it is multipart.
#ifndef TOOL_BODY_H
#define TOOL_BODY_H

#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fields/diagnostics.h"
#include "sipMultipartmessagebodyUtility.h"
#include "text/sip.h"

// One part, in the order in which parts are made; numbers begin with 1.
struct Part {
  unsigned long number;
  unsigned long parent;  // the number of the part that it is nested in; 0 for none
  unsigned int depth;    // 0 for a part that is not nested
  const SipMultipartMessageBody* node;
  std::string_view content;  // as many bytes as the node says
  bool mayBeLonger;          // a node stores the length modulo 65,536
};

// What follows the length of a content that may be longer.
constexpr const char* kOrLonger = ", or 65,536 or more";

// Why a body that the library refuses as one is valid.
constexpr const char* kNestedMultipart = "a multipart before another part (RFC 2046, 5.1)";

// The parts of a body under a Content-Type value. The library takes a multipart only as the last
// part of another one; where it refuses one, each content is given to it alone.
class BodyTree {
 public:
  BodyTree(std::string_view body, const std::string& contentType);

  // Returns whether the body is valid; the parts before a fault are kept.
  bool accepted() const { return accepted_; }

  // Returns whether the library refused the body as one.
  bool takenApart() const { return takenApart_; }

  const std::vector<Part>& parts() const { return parts_; }

 private:
  using Utility = SipMultipartMessageBodyUtility;

  Utility& makeUtility();
  void add(const std::vector<Part>& parts, const Part* outer);
  bool hasRoomFor(const std::vector<Part>& parts);
  bool readApart(std::string_view body, const std::string& contentType);
  bool readContent(const Part& part, std::vector<Part>& pending);
  bool readLevel(std::string_view body, const std::string& contentType, const Part* outer,
                 std::vector<Part>& pending);

  std::vector<std::unique_ptr<Utility>> utilities_;
  std::vector<Part> parts_;
  std::size_t epilogues_ = 0;
  bool takenApart_ = false;
  bool accepted_ = true;
};

// The body of a message, expanded and split as its Content-Encoding and Content-Type say.
struct MessageBody {
  explicit MessageBody(const Message& message);

  std::string bytes;
  std::string title = "body";
  std::unique_ptr<BodyTree> tree;   // of a multipart body
  std::vector<std::string> faults;  // why the library refused it
  std::string limit;                // how it is valid all the same; "" where that is no question
};

// Each returns what the library makes of the bytes; nothing when it refuses them.
std::optional<std::string> deflated(std::string bytes);
std::optional<std::string> inflated(std::string bytes);

// Returns the bytes below a title line with their length: as text, or in hexadecimal and text when
// they are none. The remark follows the length.
std::string contentLines(const std::string& title, std::string_view bytes, const char* remark = "");

// Returns a part below a title line.
std::string partLines(const Part& part);

// Adds `length` and `text` or `base64` to an object.
void addContent(nlohmann::ordered_json& object, std::string_view bytes);

// Returns the parts as a list, each with the number of its parent.
nlohmann::ordered_json toJson(const std::vector<Part>& parts);

// Returns the text with these blanks before each line that is not empty.
std::string indented(std::string_view text, std::size_t blanks);

#endif  // TOOL_BODY_H
