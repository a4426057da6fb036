// messageEdit.h - edits the fields and the body of a message, and nothing else of its bytes.
#ifndef TOOL_MESSAGE_EDIT_H
#define TOOL_MESSAGE_EDIT_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fields/valueEdit.h"
#include "text/sip.h"

// One edit of a message.
struct MessageEdit {
  enum class Kind { kSet, kSetHeader, kAddHeader, kRemoveHeader, kBody };
  Kind kind;
  std::string shown;       // as it is on the command line
  std::string field;       // a name, long or compact
  std::size_t number = 0;  // of one value of the fields of that name, from 1; 0 for all
  EditedPart part = EditedPart::kField;
  Edit edit = {Edit::Kind::kSet, "", ""};  // of kSet
  std::string value;                       // the new value of a field, or the new body
};

// What an edit did.
struct EditOutcome {
  bool found = false;  // a field that it is for, or there need not be one
  std::optional<Refusal> refusal;
  std::size_t offset = 0;  // of the refused field, in the text of the message
};

// A message while it is edited. Its text must outlive it. The time of an edit is linear in the
// fields that it changes and in the number of the others.
class EditedMessage {
 public:
  explicit EditedMessage(const Message& message);

  // After a refusal the message may be half edited.
  EditOutcome apply(const MessageEdit& edit);

  std::string text() const;

 private:
  // A header field, or other bytes.
  struct Line {
    std::string_view before;          // other bytes before it
    std::string name;                 // the long one
    std::string head;                 // up to the colon
    std::vector<std::string> values;  // joined with commas
    std::string_view end;
    std::size_t offset;
    bool removed;  // there are only the other bytes
  };

  struct Target {
    Line* line;
    std::size_t value;
  };

  bool isNamed(const Line& line, const std::string& name) const;
  std::vector<Target> targetsOf(const MessageEdit& edit);
  static void addTargets(Line& line, std::size_t wanted, std::size_t& number,
                         std::vector<Target>& targets);
  EditOutcome set(const MessageEdit& edit);
  EditOutcome setHeader(const MessageEdit& edit);
  bool setFields(const std::string& name, const std::string& value);
  void removeHeader(const MessageEdit& edit);
  void addHeader(const std::string& name, const std::string& value);
  void setBody(const std::string& body);
  std::string header() const;

  bool restored_;
  std::string_view lineEnd_;
  std::vector<Line> lines_;
  std::string tail_;  // the empty line after the header, if there is one
  std::string_view body_;
};

// Returns the bytes of a message in the text that it was read from.
std::string_view textOf(const Message& message);

// Returns how the start line ends.
std::string_view lineEndOf(const Message& message);

// Returns why the library refuses a new field, which may have several values; nothing for valid
// SIP.
std::optional<Refusal> refusalOfFields(const std::string& name, const std::string& value);

#endif  // TOOL_MESSAGE_EDIT_H
