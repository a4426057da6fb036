// edit.cpp - siputil edit: changes fields and bodies of complete SIP messages and writes them back.
#include <algorithm>
#include <iostream>
#include <iterator>
#include <utility>

#include "commands/command.h"
#include "fields/messageEdit.h"
#include "fields/names.h"
#include "output/dump.h"
#include "selection/messages.h"

namespace {

struct EditOptions {
  Sources sources;
  std::vector<MessageEdit> edits;  // in the order of the command line
};

[[noreturn]] void expect(const std::string& option, const std::string& expected) {
  throw CLI::ValidationError(option, "expected " + expected);
}

// Takes `NAME` or `NAME[N]`.
void takeField(MessageEdit& edit, std::string_view text) {
  const std::size_t open = std::min(text.find('['), text.size());
  edit.field = text.substr(0, open);
  if (open != text.size()) {
    const std::string_view number = text.substr(open + 1, text.size() - open - 2);
    if (text.back() != ']' || !readNumber(number, edit.number) || edit.number == 0) {
      expect(edit.shown, "a number from 1 in brackets");
    }
  }
  if (!isToken(edit.field)) {
    expect(edit.shown, "the name of a header field");
  }
}

// A line end in a value would begin another field.
MessageEdit makeEdit(MessageEdit::Kind kind, const std::string& option, const std::string& text) {
  MessageEdit edit;
  edit.kind = kind;
  edit.shown = option + ' ' + text;
  if (text.find_first_of("\r\n") != std::string::npos) {
    expect(edit.shown, "no line end");
  }
  return edit;
}

bool contains(const std::vector<std::string>& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

std::vector<std::string> pieceNames() {
  std::vector<std::string> names = addressPieceNames();
  const std::vector<std::string> address = names;
  const std::vector<std::string> tel = telPieceNames();
  std::copy_if(tel.begin(), tel.end(), std::back_inserter(names),
               [&address](const std::string& name) { return !contains(address, name); });
  names.emplace_back("value");
  return names;
}

// Takes `FIELD.PIECE`.
void takePiece(MessageEdit& edit, std::string_view place) {
  const std::size_t dot = std::min(place.rfind('.'), place.size());
  edit.edit.name = place.substr(std::min(dot + 1, place.size()));
  if (!contains(pieceNames(), edit.edit.name)) {
    expect(edit.shown,
           "FIELD.PIECE=VALUE with one of " + joined(pieceNames()) + ", or FIELD;PARAMETER=VALUE");
  }
  if (const std::string expected = expectedValue(edit.edit); !expected.empty()) {
    expect(edit.shown, expected);
  }
  edit.part = edit.edit.name == "value" ? EditedPart::kField : EditedPart::kAddress;
  takeField(edit, place.substr(0, dot));
}

// Takes `FIELD;NAME` or, for a parameter of the URI, `FIELD.uri;NAME`.
void takeParam(MessageEdit& edit, std::string_view place) {
  constexpr std::string_view kUri = ".uri";
  const std::size_t semicolon = place.find(';');
  std::string_view field = place.substr(0, semicolon);
  edit.edit.kind = Edit::Kind::kParam;
  edit.edit.name = place.substr(semicolon + 1);
  if (field.size() > kUri.size() && field.substr(field.size() - kUri.size()) == kUri) {
    edit.part = EditedPart::kAddress;
    field.remove_suffix(kUri.size());
  }
  takeField(edit, field);
}

MessageEdit makeSet(const std::string& text) {
  MessageEdit edit = makeEdit(MessageEdit::Kind::kSet, "--set", text);
  const std::size_t equal = std::min(text.find('='), text.size());
  const std::string_view place = std::string_view{text}.substr(0, equal);
  edit.edit.value = text.substr(std::min(equal + 1, text.size()));
  if (place.find(';') != std::string_view::npos) {
    takeParam(edit, place);
  } else {
    takePiece(edit, equal == text.size() ? "" : place);
  }
  return edit;
}

// Takes `NAME=VALUE`.
MessageEdit makeField(MessageEdit::Kind kind, const std::string& option, const std::string& text) {
  MessageEdit edit = makeEdit(kind, option, text);
  const std::size_t equal = text.find('=');
  if (equal == std::string::npos) {
    expect(edit.shown, "NAME=VALUE");
  }
  takeField(edit, std::string_view{text}.substr(0, equal));
  if (kind == MessageEdit::Kind::kAddHeader && edit.number != 0) {
    expect(edit.shown, "a name without a number");
  }
  edit.value = trimmed(std::string_view{text}.substr(equal + 1));
  return edit;
}

MessageEdit makeRemoval(const std::string& text) {
  MessageEdit edit = makeEdit(MessageEdit::Kind::kRemoveHeader, "--remove-header", text);
  takeField(edit, text);
  return edit;
}

MessageEdit makeBody(const std::string& file) {
  MessageEdit edit = makeEdit(MessageEdit::Kind::kBody, "--body", file);
  const std::string fault = readFile(file, edit.value);
  if (!fault.empty()) {
    throw CLI::ValidationError("--body", file + ": " + fault);
  }
  return edit;
}

void complainOf(const std::string& place, const MessageEdit& edit, const Refusal& refusal) {
  complain(place + edit.shown + ": " + refusal.reason, kRefused);
  if (refusal.place) {
    std::cerr << caretLines(refusal.raw, refusal.place->offset);
  }
}

// Shows what is remarkable about an edit whatever the messages are. Returns the status.
int check(const MessageEdit& edit) {
  const std::string_view meant = likelyField(edit.field);
  if (!meant.empty()) {
    std::cerr << "siputil: note: '" << edit.field << "' is no known field, is it '" << meant
              << "'?\n";
  }
  if (edit.kind != MessageEdit::Kind::kSetHeader && edit.kind != MessageEdit::Kind::kAddHeader) {
    return kAccepted;
  }
  const std::optional<Refusal> refusal = refusalOfFields(edit.field, edit.value);
  if (refusal) {
    complainOf("", edit, *refusal);
  }
  return refusal ? kRefused : kAccepted;
}

int checkAll(const std::vector<MessageEdit>& edits) {
  int status = kAccepted;
  for (const MessageEdit& edit : edits) {
    status = std::max(status, check(edit));
  }
  return status;
}

// Writes messages with the edits. A message that refuses an edit is written as it came.
class MessageWriter {
 public:
  explicit MessageWriter(const EditOptions& options)
      : options_(options),
        found_(options.edits.size()),
        newBody_(std::any_of(options.edits.begin(), options.edits.end(), [](const auto& edit) {
          return edit.kind == MessageEdit::Kind::kBody;
        })) {}

  void write(const MessageInFile& found) {
    const std::string_view old = textOf(found.message);
    std::string text;
    if (!options_.edits.empty()) {
      text = edited(found);
    }
    const std::string_view written = text.empty() ? old : text;
    separate(found);
    put(found.before);
    put(written);
    put(found.after);
    file_ = found.file;
  }

  void put(std::string_view bytes) {
    std::cout.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    last_ = bytes.empty() ? last_ : bytes.back();
  }

  // Says which edits had no field. Returns the status.
  int finish() {
    for (std::size_t i = 0; i < found_.size(); ++i) {
      if (!found_[i]) {
        status_ = complain(options_.edits[i].shown + ": no message has that field", kRefused);
      }
    }
    return status_;
  }

 private:
  // Returns the message with the edits; "" if one is refused.
  std::string edited(const MessageInFile& found) {
    EditedMessage message(found.message);
    for (std::size_t i = 0; i < options_.edits.size(); ++i) {
      const EditOutcome outcome = message.apply(options_.edits[i]);
      found_[i] = found_[i] || outcome.found;
      if (outcome.refusal) {
        complainOf(placeOf(found, outcome.offset), options_.edits[i], *outcome.refusal);
        status_ = kRefused;
        std::fill(found_.begin() + static_cast<std::ptrdiff_t>(i), found_.end(), true);
        return "";
      }
    }
    return message.text();
  }

  static std::string placeOf(const MessageInFile& found, std::size_t offset) {
    return found.file + (found.passage != nullptr
                             ? ": " + passageText(*found.passage) + ": "
                             : ':' + std::to_string(found.lineAt(offset)) + ": ");
  }

  // Ends the last line, so that a start line begins the next one. Within a text, only a new body
  // needs that.
  void separate(const MessageInFile& found) {
    const bool sameText = found.passage == nullptr && !options_.sources.find && found.file == file_;
    if (last_ != '\n' && (newBody_ || !sameText)) {
      put(lineEndOf(found.message));
    }
  }

  const EditOptions& options_;
  std::vector<bool> found_;  // a field, for each edit
  bool newBody_;
  std::string file_;  // of the message before
  char last_ = '\n';  // byte written
  int status_ = kAccepted;
};

void addEdits(CLI::App& parser, EditOptions& options) {
  using Kind = MessageEdit::Kind;
  const auto add = [&](const std::string& flag, const std::string& help, const std::string& form,
                       const std::function<MessageEdit(const std::string&)>& make) {
    addEditOption(parser, flag, help, form, [&options, make](const std::string& text) {
      options.edits.push_back(make(text));
    });
  };
  add("--set",
      "Replace a piece of all values of a field, with FIELD[N] of one: " + joined(pieceNames()) +
          "; or, as FIELD;NAME=VALUE and FIELD.uri;NAME=VALUE, a parameter",
      "FIELD.PIECE=VALUE", makeSet);
  add("--set-header", "Replace the value of a field, with NAME[N] one of its values", "NAME=VALUE",
      [](const std::string& text) { return makeField(Kind::kSetHeader, "--set-header", text); });
  add("--add-header", "Add a field", "NAME=VALUE",
      [](const std::string& text) { return makeField(Kind::kAddHeader, "--add-header", text); });
  add("--remove-header", "Remove all fields of a name, with NAME[N] one value", "NAME",
      makeRemoval);
  add("--body", "Replace the body by the bytes of a file", "FILE", makeBody);
}

}  // namespace

int runEdit(CommandLine& line) {
  EditOptions options;
  addEdits(line.parser, options);
  parseWithSources(line, options.sources);
  if (const int status = checkAll(options.edits); status != kAccepted) {
    return status;
  }
  FileCounts counts;
  MessageWriter writer(options);
  options.sources.late = [&writer](std::string_view lineEnds) { writer.put(lineEnds); };
  const int status = readMessages(options.sources, counts,
                                  [&writer](const MessageInFile& found) { writer.write(found); });
  return std::max(status, counts.messages == 0 ? kAccepted : writer.finish());
}
