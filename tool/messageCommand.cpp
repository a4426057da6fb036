// messageCommand.cpp - siputil message: shows complete SIP messages and what is wrong with them.
#include <algorithm>
#include <cstdint>
#include <iostream>

#include "body.h"
#include "capture.h"
#include "command.h"
#include "diagnostics.h"
#include "dump.h"
#include "fields.h"
#include "input.h"
#include "log.h"
#include "message.h"
#include "place.h"
#include "progress.h"
#include "remarks.h"
#include "textInput.h"
#include "validSip.h"
#include "via.h"

namespace {

constexpr std::size_t kIndent = 2;
// A longer field name moves only its own value; otherwise one name would lengthen all lines.
constexpr std::size_t kMaxNameWidth = 32;

struct MessageOptions {
  std::vector<std::string> files;
  std::vector<std::string> only;
  std::string filter;
  bool find = false;
  bool json = false;
  bool verbose = false;
};

struct Counts {
  unsigned long messages = 0;
  unsigned long fields = 0;
  unsigned long refused = 0;
  unsigned long remarks = 0;
};

// What is said of a message apart from its fields and its body.
struct Findings {
  Findings() = default;
  explicit Findings(const Message& message) : faults(message.faults) {
    for (const Remark& remark : remarksOn(message)) {
      (remark.fault ? faults : remarks).push_back(lineOf(remark));
    }
  }

  std::vector<std::string> faults;
  std::vector<std::string> remarks;
};

// Returns whether a field is asked for, by its long or compact name.
bool isWanted(const Field& field, const std::vector<std::string>& only) {
  return only.empty() || std::any_of(only.begin(), only.end(), [&field](const std::string& name) {
           const FieldKind* kind = findField(name);
           return sameIgnoringCase(trimmed(field.name), kind != nullptr ? kind->name : name);
         });
}

// Shows one text with messages. Each field is read, counted and shown once.
class MessagePrinter {
 public:
  MessagePrinter(const MessageOptions& options, Counts& counts)
      : options_(options), counts_(counts) {}

  void begin(const std::string& file) { file_ = file; }

  unsigned long messages() const { return counts_.messages; }

  // Only a captured message has a passage. The lines of another one have the numbers that lineAt
  // returns for offsets.
  void print(const Message& message, const Passage* passage, const LineAt& lineAt) {
    ++counts_.messages;
    findings_ = Findings(message);
    counts_.refused += findings_.faults.size();
    counts_.remarks += findings_.remarks.size();
    lineAt_ = lineAt;
    line_ = passage == nullptr ? lineAt(message.offset) : 0;
    if (options_.json) {
      printJson(message, passage);
    } else {
      std::cout << (counts_.messages > 1 ? "\n" : "") << heading(passage);
      printTree(message);
    }
  }

  // Prints the messages of a text that has only messages.
  void printAll(std::string_view text, const Passage* passage, const LineAt& lineAt) {
    MessageReader reader(text);
    while (std::optional<Message> message = reader.next()) {
      if (passage != nullptr && passage->missing != 0) {
        message->faults.insert(message->faults.begin(), cutText(*passage));
      }
      print(*message, passage, lineAt);
    }
  }

 private:
  // One field as the library sees it.
  struct ReadField {
    explicit ReadField(const Field& field)
        : header(toSipString(field.name), toSipString(field.value)),
          code(header.GetLastErrorCode()),
          limit(code == VARN_OK ? "" : limitOf(field.name, field.value)),
          isVia(code == VARN_OK && sameIgnoringCase(trimmed(field.name), "Via")),
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
  std::string heading(const Passage* passage) const {
    const bool named = options_.files.size() > 1;
    if (passage != nullptr) {
      return (named ? printable(file_) + ": " : "") + passageText(*passage) + '\n';
    }
    return named || options_.find ? printable(file_) + ':' + std::to_string(line_) + '\n' : "";
  }

  // Returns `FILE:LINE: ` for a line of a text; "" in a captured message.
  std::string place(std::size_t line) const {
    return line == 0 ? "" : printable(file_) + ':' + std::to_string(line) + ": ";
  }

  std::string placeAt(std::size_t offset) const { return place(line_ == 0 ? 0 : lineAt_(offset)); }

  void count(const ReadField& read) {
    ++counts_.fields;
    counts_.refused += read.code == VARN_OK || !read.limit.empty() ? 0U : 1U;
    if (options_.verbose) {
      read.diagnostics.printAll("message " + std::to_string(counts_.messages) + ": ");
    }
  }

  void printJson(const Message& message, const Passage* passage) {
    nlohmann::ordered_json object = {{"file", file_}};
    if (passage == nullptr) {
      object["line"] = line_;
    } else {
      const std::string time = timeText(passage->time);
      object["frame"] = passage->frame;
      object["time"] = time.empty() ? nullptr : nlohmann::ordered_json(time);
      object["source"] = endpointJson(passage->source);
      object["destination"] = endpointJson(passage->destination);
      object["transport"] = passage->transport;
    }
    object["startLine"] = message.startLine;
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
    object["faults"] = findings_.faults;
    for (const std::string& fault : body.faults) {
      object["faults"].push_back(fault);
    }
    object["remarks"] = findings_.remarks;
    if (!body.limit.empty()) {
      object["remarks"].push_back(kNotTakenApart + body.limit);
    }
    std::cout << jsonLine(object) << '\n';
  }

  static nlohmann::ordered_json endpointJson(const Endpoint& endpoint) {
    return {{"address", addressText(endpoint)}, {"port", endpoint.port}};
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
    header["raw"] = field.raw;
    header["reason"] = nullptr;
    header["offset"] = nullptr;
    if (read.code != VARN_OK) {
      const Place place = placeInHeader(field.raw);
      header["reason"] = read.diagnostics.reason(read.code, &place);
      header["offset"] = place.offset;
    }
  }

  void printTree(const Message& message) {
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
    printLines("  ! " + place(line_), findings_.faults);
    printLines("  ? ", findings_.remarks);
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
      std::cout << indent << "? is it '" << meant << "'?\n";
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
      const Place place = placeInHeader(field.raw);
      std::cout << indent << "! " << placeAt(field.offset)
                << printable(read.diagnostics.reason(read.code, &place)) << '\n';
    } else {
      std::cout << indent << "? " << kNotTakenApart << read.limit << '\n';
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
    printLines("  ! " + placeAt(message.bodyOffset), body.faults);
    if (!body.limit.empty()) {
      printLines("  ? ", {kNotTakenApart + body.limit});
    }
  }

  static void printLines(const std::string& mark, const std::vector<std::string>& lines) {
    for (const std::string& line : lines) {
      std::cout << mark << printable(line) << '\n';
    }
  }

  const MessageOptions& options_;
  Counts& counts_;
  Findings findings_;  // of the message
  std::string file_;
  std::size_t line_ = 0;  // of the start line; 0 in a capture
  LineAt lineAt_;
};

int runCapture(const MessageOptions& options, const std::string& name, Input& input,
               MessagePrinter& printer) {
  Progress progress(input.size());
  CaptureCounts counts;
  const auto print = [&](const Passage& passage, std::string_view message) {
    printer.printAll(message, &passage, nullptr);
    progress.at(input.position());
  };
  const std::string error = readCapture(input, options.filter, print, counts);
  printNotes(name, counts);
  if (error.empty()) {
    return kAccepted;
  }
  std::cout.flush();
  return complain(name + ": " + error, kRefused);
}

// Shows the messages between the lines of a log.
void runLog(Input& input, MessagePrinter& printer) {
  Progress progress(input.size());
  TextInput text(input);
  Log log([&](std::string_view message) {
    printer.printAll(message, nullptr, [&log](std::size_t offset) { return log.lineAt(offset); });
  });
  std::string piece;
  for (; text.read(piece); piece.clear()) {
    log.add(piece);
    progress.at(input.position());
  }
  log.finish();
}

// A small gzip file may hold a text too large for the memory.
int runText(const std::string& name, Input& input, MessagePrinter& printer) {
  std::string text;
  if (!readText(input, input.expanded() ? kMaxText : SIZE_MAX, text)) {
    return complain(name + ": is too large", kRefused);
  }
  Progress progress(text.size());
  LineCounter lines(text);
  MessageReader reader(text);
  while (const std::optional<Message> message = reader.next()) {
    printer.print(*message, nullptr, [&lines](std::size_t offset) { return lines.at(offset); });
    progress.at(reader.position());
  }
  return kAccepted;
}

int runFile(const MessageOptions& options, const std::string& name, MessagePrinter& printer) {
  Input input(name);
  int status = kAccepted;
  const unsigned long before = printer.messages();
  printer.begin(name);
  input.expand();
  if (input.readable() && isCapture(input.head())) {
    status = runCapture(options, name, input, printer);
  } else if (input.readable() && !options.filter.empty()) {
    throw CaptureUsageError("--filter: " + name + " is no capture");
  } else if (input.readable() && options.find) {
    runLog(input, printer);
  } else if (input.readable()) {
    status = runText(name, input, printer);
  }
  if (!input.readable()) {
    status = complain(name + ": " + input.error(), kWrongUsage);
  } else if (*input.fault() != 0) {
    status = std::max(status, complain(name + ": " + input.fault(), kRefused));
  } else if (status == kAccepted && printer.messages() == before) {
    status = complain("no SIP message in " + name, kRefused);
  }
  return status;
}

int run(const MessageOptions& options) {
  Counts counts;
  MessagePrinter printer(options, counts);
  int status = kAccepted;
  for (const std::string& name : options.files) {
    status = std::max(status, runFile(options, name, printer));
  }
  if (!options.json && counts.messages > 1) {
    std::cout << "\n"
              << counts.messages << " messages, " << counts.fields << " header fields, "
              << counts.refused << " refused" << remarkCount(counts.remarks) << '\n';
  }
  return std::max(status, counts.refused == 0 ? kAccepted : kRefused);
}

}  // namespace

int runMessage(CommandLine& line) {
  CLI::App& parser = line.parser;
  MessageOptions options;
  options.files = {"-"};
  parser
      .add_option("FILE", options.files,
                  "Files with messages, as text or as pcap or pcapng captures; - or none is "
                  "standard input")
      ->type_name("")
      ->expected(1)
      ->allow_extra_args(false);
  parser.allow_extras();
  addOutputOptions(parser, options.json, options.verbose);
  parser.add_option("--only", options.only, "Show only these header fields; may be repeated")
      ->type_name("NAME")
      ->allow_extra_args(false);
  parser.add_option("--filter", options.filter, "Of captures, show what passes this pcap filter")
      ->type_name("EXPR")
      ->allow_extra_args(false);
  parser.add_flag("--find", options.find, "Of texts, show the messages between other lines");
  line.parse();
  takeRest(parser, options.files, SIZE_MAX);
  return run(options);
}
