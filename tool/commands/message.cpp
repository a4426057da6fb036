// messageCommand.cpp - siputil message: shows complete SIP messages and what is wrong with them.
#include <algorithm>
#include <cstdint>
#include <iostream>

#include "commands/command.h"
#include "commands/via.h"
#include "fields/diagnostics.h"
#include "fields/names.h"
#include "fields/place.h"
#include "fields/remarks.h"
#include "fields/validSip.h"
#include "output/body.h"
#include "output/dump.h"
#include "selection/messageJson.h"
#include "selection/messages.h"
#include "text/options.h"
#include "text/sip.h"

namespace {

constexpr std::size_t kIndent = 2;
// A longer field name moves only its own value; otherwise one name would lengthen all lines.
constexpr std::size_t kMaxNameWidth = 32;

struct MessageOptions {
  Sources sources;
  std::vector<std::string> only;  // long names
  bool json = false;
  bool verbose = false;
};

struct Counts : FileCounts {
  unsigned long fields = 0;
  unsigned long refused = 0;
  unsigned long remarks = 0;
};

// What is said of a message apart from its fields and its body.
struct Findings {
  explicit Findings(const Message& message) : faults(message.faults) {
    for (const Remark& remark : remarksOn(message)) {
      if (remark.fault) {
        faults.push_back(
            {lineOf(remark), (remark.field == nullptr ? message.offset : remark.field->offset)});
      } else {
        remarks.push_back(lineOf(remark));
      }
    }
  }

  std::vector<Fault> faults;
  std::vector<std::string> remarks;
};

// Returns whether a field is asked for.
bool isWanted(const Field& field, const std::vector<std::string>& only) {
  return only.empty() || std::any_of(only.begin(), only.end(), [&field](const std::string& name) {
           return equalIgnoringCase(trimmed(field.name), name);
         });
}

// Shows messages. Each field is read, counted and shown once.
class MessagePrinter {
 public:
  MessagePrinter(const MessageOptions& options, Counts& counts)
      : options_(options), counts_(counts) {}

  void print(const MessageInFile& found) {
    const Findings findings(found.message);
    counts_.refused += findings.faults.size();
    counts_.remarks += findings.remarks.size();
    found_ = &found;
    if (options_.json) {
      printJson(findings);
    } else {
      std::cout << (counts_.messages > 1 ? "\n" : "") << heading();
      printTree(findings);
    }
  }

 private:
  // One field as the library sees it.
  struct ReadField {
    explicit ReadField(const Field& field)
        : header(toSipString(field.name), toSipString(field.value)),
          code(header.GetLastErrorCode()),
          limit(code == VARN_OK ? "" : limitOf(field.name, field.value)),
          isVia(code == VARN_OK && equalIgnoringCase(trimmed(field.name), "Via")),
          sentBy(isVia ? sentByUri(field.value) : "") {}

    Diagnostics diagnostics;
    SipHeader header;
    VARN_EXCEPTION_CODES code;
    std::string limit;   // why a refused one is valid all the same
    bool isVia;          // and accepted
    std::string sentBy;  // of a Via; "" where it cannot be reduced
  };

  // Returns a line that names the file, if that is not clear, and the line, or when and between
  // whom a captured message passed; "" for none.
  std::string heading() const {
    const Sources& sources = options_.sources;
    const bool named = sources.paths.size() > 1;
    if (found_->passage != nullptr) {
      return (named ? printable(found_->file) + ": " : "") + passageText(*found_->passage) + '\n';
    }
    return named || sources.find ? printable(found_->file) + ':' +
                                       std::to_string(found_->lineAt(found_->message.offset)) + '\n'
                                 : "";
  }

  // Returns `FILE:LINE: ` for an offset in a text; "" in a captured message.
  std::string placeAt(std::size_t offset) const {
    return found_->passage != nullptr
               ? ""
               : printable(found_->file) + ':' + std::to_string(found_->lineAt(offset)) + ": ";
  }

  void count(const ReadField& read) {
    ++counts_.fields;
    counts_.refused += read.code == VARN_OK || !read.limit.empty() ? 0U : 1U;
    if (options_.verbose) {
      read.diagnostics.printAll("message " + std::to_string(found_->number) + ": ");
    }
  }

  void printJson(const Findings& findings) {
    const Message& message = found_->message;
    nlohmann::ordered_json object = summaryJson(*found_);
    object["headers"] = nlohmann::ordered_json::array();
    for (const Field& field : message.fields) {
      ReadField read(field);
      count(read);
      if (isWanted(field, options_.only)) {
        object["headers"].push_back(fieldJson(field, read));
      }
    }
    const MessageBody body(message);
    counts_.refused += body.faults.size();
    addContent(object["body"], body.bytes);
    if (body.tree != nullptr) {
      object["body"]["parts"] = toJson(body.tree->parts());
    }
    object["faults"] = nlohmann::ordered_json::array();
    for (const Fault& fault : findings.faults) {
      object["faults"].push_back(fault.words);
    }
    for (const std::string& fault : body.faults) {
      object["faults"].push_back(fault);
    }
    object["remarks"] = findings.remarks;
    if (!body.limit.empty()) {
      object["remarks"].push_back(kNotTakenApart + body.limit);
    }
    std::cout << jsonLine(object) << '\n';
  }

  static nlohmann::ordered_json fieldJson(const Field& field, ReadField& read) {
    nlohmann::ordered_json header = toJson(read.header, read.code);
    if (read.isVia) {
      header["sentBy"] = read.sentBy.empty() ? nullptr : nlohmann::ordered_json(read.sentBy);
    }
    addRefusal(header, field, read);
    header["diagnostics"] = read.diagnostics.toJson();
    return header;
  }

  static void addRefusal(nlohmann::ordered_json& header, const Field& field,
                         const ReadField& read) {
    header["limit"] = read.limit.empty() ? nullptr : nlohmann::ordered_json(read.limit);
    header["raw"] = field.raw();
    header["reason"] = nullptr;
    header["offset"] = nullptr;
    if (read.code != VARN_OK) {
      const Place place = placeInHeader(field.raw());
      header["reason"] = read.diagnostics.reason(read.code, &place);
      header["offset"] = place.offset;
    }
  }

  void printTree(const Findings& findings) {
    const Message& message = found_->message;
    std::cout << emphasised(printable(message.startLine)) << '\n';
    std::size_t width = 0;
    for (const Field& field : message.fields) {
      if (isWanted(field, options_.only)) {
        width = std::max(width, printable(field.name).size());
      }
    }
    width = std::min(width, kMaxNameWidth);
    for (const Field& field : message.fields) {
      ReadField read(field);
      count(read);
      if (isWanted(field, options_.only)) {
        printField(field, read, width);
      }
    }
    printBody(message);
    for (const Fault& fault : findings.faults) {
      printFault(fault);
    }
    for (const std::string& remark : findings.remarks) {
      printNote(remark);
    }
  }

  void printField(const Field& field, const ReadField& read, std::size_t width) {
    const bool refused = read.code != VARN_OK;
    const std::string name = printable(field.name);
    std::cout << std::string(kIndent, ' ') << emphasised(name)
              << std::string(width - std::min(width, name.size()) + 2, ' ')
              << printable(refused ? trimmed(field.value) : view(read.header.getValue())) << '\n';
    const std::string indent(kIndent + width + 4, ' ');
    const std::string_view meant = likelyField(trimmed(field.name));
    if (!meant.empty()) {
      std::cout << indent << asNote("? is it '" + std::string(meant) + "'?") << '\n';
    }
    if (refused) {
      printRefusal(field, read, indent);
      return;
    }
    const SipHeader& header = read.header;
    for (const SipParam& param : siputility::paramsOf(header)) {
      std::cout << indent << ';' << printable(view(param.getName()))
                << (param.getValue().length() == 0 ? "" : "=") << printable(view(param.getValue()))
                << '\n';
    }
    std::cout << indented(aligned(addressPieces(header), false), indent.size());
    if (!read.sentBy.empty()) {
      std::cout << indent << "sent by  " << printable(read.sentBy) << '\n';
    }
  }

  void printRefusal(const Field& field, const ReadField& read, const std::string& indent) {
    if (read.limit.empty()) {
      const Place place = placeInHeader(field.raw());
      std::cout << indent
                << asFault("! " + placeAt(field.offset) +
                           printable(read.diagnostics.reason(read.code, &place)))
                << '\n';
    } else {
      std::cout << indent << asNote(std::string("? ") + kNotTakenApart + read.limit) << '\n';
    }
  }

  void printBody(const Message& message) {
    if (message.body.empty()) {
      return;
    }
    const MessageBody body(message);
    counts_.refused += body.faults.size();
    if (!options_.only.empty()) {
      return;
    }
    if (body.tree == nullptr) {
      std::cout << indented(contentLines(body.title, body.bytes), kIndent);
    } else {
      std::cout << indented(body.title + ", " + std::to_string(body.bytes.size()) + " bytes",
                            kIndent);
      for (const Part& part : body.tree->parts()) {
        std::cout << indented(partLines(part), 2 * kIndent);
      }
    }
    for (const std::string& fault : body.faults) {
      printFault({fault, message.bodyOffset});
    }
    if (!body.limit.empty()) {
      printNote(kNotTakenApart + body.limit);
    }
  }

  void printFault(const Fault& fault) const {
    std::cout << "  " << asFault("! " + placeAt(fault.offset) + printable(fault.words)) << '\n';
  }

  static void printNote(const std::string& words) {
    std::cout << "  " << asNote("? " + printable(words)) << '\n';
  }

  const MessageOptions& options_;
  Counts& counts_;
  const MessageInFile* found_ = nullptr;  // what is being printed
};

int run(const MessageOptions& options) {
  Counts counts;
  MessagePrinter printer(options, counts);
  const int status = readMessages(options.sources, counts,
                                  [&printer](const MessageInFile& found) { printer.print(found); });
  if (!options.json && counts.messages > 1) {
    std::cout << "\n"
              << counted(counts.messages, "message") << ", "
              << counted(counts.fields, "header field") << ", " << counts.refused << " refused"
              << remarkCount(counts.remarks) << '\n';
  }
  return std::max(status, counts.refused == 0 ? kAccepted : kRefused);
}

}  // namespace

int runMessage(CommandLine& line) {
  MessageOptions options;
  addOutputOptions(line.parser, options.json, options.verbose);
  addRawOption(line.parser);
  addRepeatable(line.parser, "--only", "NAME", "Show only these header fields; may be repeated",
                [&options](const std::string& name) {
                  noteLikelyField(name);
                  options.only.emplace_back(longName(name));
                });
  parseWithSources(line, options.sources);
  return run(options);
}
