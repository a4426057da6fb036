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
#include "findMessages.h"
#include "input.h"
#include "message.h"
#include "progress.h"
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

  // Only a captured message has a passage.
  void print(const Message& message, const Passage* passage) {
    ++counts_.messages;
    counts_.refused += message.faults.size();
    if (options_.json) {
      printJson(message, passage);
    } else {
      std::cout << (counts_.messages > 1 ? "\n" : "")
                << (passage == nullptr ? "" : passageText(*passage) + '\n');
      printTree(message);
    }
  }

  // Prints the messages of a text that has only messages.
  void printAll(std::string_view text, const Passage* passage = nullptr) {
    MessageReader reader(text);
    while (const std::optional<Message> message = reader.next()) {
      print(*message, passage);
    }
  }

 private:
  // One field as the library sees it.
  struct ReadField {
    explicit ReadField(const Field& field)
        : header(toSipString(field.name), toSipString(field.value)),
          code(header.GetLastErrorCode()),
          isVia(code == VARN_OK && sameIgnoringCase(trimmed(field.name), "Via")),
          sentBy(isVia ? sentByUri(field.value) : "") {}

    Diagnostics diagnostics;
    SipHeader header;
    VARN_EXCEPTION_CODES code;
    bool isVia;          // and accepted
    std::string sentBy;  // of a Via; "" where it cannot be reduced
  };

  void count(const ReadField& read) {
    ++counts_.fields;
    counts_.refused += read.code == VARN_OK ? 0 : 1;
    if (options_.verbose) {
      read.diagnostics.printAll("message " + std::to_string(counts_.messages) + ": ");
    }
  }

  void printJson(const Message& message, const Passage* passage) {
    nlohmann::ordered_json object;
    if (passage != nullptr) {
      const std::string time = timeText(passage->time);
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
        object["headers"].push_back(fieldJson(read));
      }
    }
    const MessageBody body(message);
    counts_.refused += body.faults.size();
    addContent(object["body"], body.bytes);
    if (body.tree != nullptr) {
      object["body"]["parts"] = toJson(body.tree->parts());
    }
    object["faults"] = message.faults;
    for (const std::string& fault : body.faults) {
      object["faults"].push_back(fault);
    }
    std::cout << jsonLine(object) << '\n';
  }

  static nlohmann::ordered_json endpointJson(const Endpoint& endpoint) {
    return {{"address", addressText(endpoint)}, {"port", endpoint.port}};
  }

  static nlohmann::ordered_json fieldJson(ReadField& read) {
    nlohmann::ordered_json header = toJson(read.header, read.code);
    if (read.isVia) {
      header["sentBy"] = read.sentBy.empty() ? nullptr : nlohmann::ordered_json(read.sentBy);
    }
    header["diagnostics"] = read.diagnostics.toJson();
    return header;
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
    if (options_.only.empty()) {
      printBody(message);
    }
    printFaults(message.faults);
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
      for (const std::string& reason : read.diagnostics.reasons(read.code)) {
        std::cout << indent << "! " << printable(reason) << '\n';
      }
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

  void printBody(const Message& message) {
    if (message.body.empty()) {
      return;
    }
    const MessageBody body(message);
    counts_.refused += body.faults.size();
    if (body.tree == nullptr) {
      std::cout << indented(contentLines(body.title, body.bytes), kIndent);
    } else {
      std::cout << indented(body.title + ", " + std::to_string(body.bytes.size()) + " bytes",
                            kIndent);
      for (const Part& part : body.tree->parts()) {
        std::cout << indented(partLines(part), 2 * kIndent);
      }
    }
    printFaults(body.faults);
  }

  static void printFaults(const std::vector<std::string>& faults) {
    for (const std::string& fault : faults) {
      std::cout << "  ! " << printable(fault) << '\n';
    }
  }

  const MessageOptions& options_;
  Counts& counts_;
};

void printNotes(const std::string& name, const CaptureCounts& counts) {
  const std::pair<std::size_t, const char*> notes[] = {
      {counts.fragments, "IP fragments left out"},
      {counts.notSip, "datagrams that are not SIP passed over"},
      {counts.tcp.passedOver, "bytes outside messages in TCP streams passed over"},
      {counts.tcp.gaps, "gaps in TCP streams"},
      {counts.tcp.closed, "TCP streams closed early, too many at once"},
  };
  for (const auto& [count, what] : notes) {
    if (count != 0) {
      complain(name + ": " + std::to_string(count) + ' ' + what, kAccepted);
    }
  }
}

int runCapture(const MessageOptions& options, const std::string& name, Input& input,
               MessagePrinter& printer) {
  Progress progress(input.size());
  CaptureCounts counts;
  const auto print = [&](const Passage& passage, std::string_view message) {
    printer.printAll(message, &passage);
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
  MessageFinder finder(MessageFinder::Source::kLog,
                       [&printer](std::string_view message) { printer.printAll(message); });
  std::string piece(Input::kPieceSize, 0);
  while (const std::size_t length = input.read(piece.data(), piece.size())) {
    finder.add(std::string_view{piece}.substr(0, length));
    progress.at(input.position());
  }
  finder.finish();
}

void runText(Input& input, MessagePrinter& printer) {
  std::string text;
  input.readAll(text);
  Progress progress(text.size());
  MessageReader reader(text);
  while (const std::optional<Message> message = reader.next()) {
    printer.print(*message, nullptr);
    progress.at(reader.position());
  }
}

int runFile(const MessageOptions& options, const std::string& name, MessagePrinter& printer) {
  Input input(name);
  int status = kAccepted;
  if (input.readable() && isCapture(input.head())) {
    status = runCapture(options, name, input, printer);
  } else if (input.readable() && !options.filter.empty()) {
    throw CaptureUsageError("--filter: " + name + " is no capture");
  } else if (input.readable() && options.find) {
    runLog(input, printer);
  } else if (input.readable()) {
    runText(input, printer);
  }
  if (!input.readable()) {
    status = complain(name + " cannot be read", kWrongUsage);
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
              << counts.refused << " refused\n";
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
