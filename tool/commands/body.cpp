// bodyCommand.cpp - siputil body, gzip and gunzip: bodies of messages by themselves.
#include <iostream>
#include <iterator>
#include <optional>

#include "commands/command.h"
#include "fields/validSip.h"
#include "output/body.h"
#include "output/dump.h"

namespace {

struct BodyOptions {
  std::string file = "-";
  std::string type;
  unsigned long part = 0;  // 0 for all
  bool raw = false;
  bool json = false;
  bool verbose = false;
};

std::vector<Part> selected(const BodyOptions& options, const std::vector<Part>& parts) {
  std::vector<Part> wanted;
  std::copy_if(
      parts.begin(), parts.end(), std::back_inserter(wanted),
      [&options](const Part& part) { return options.part == 0 || options.part == part.number; });
  return wanted;
}

int run(const BodyOptions& options) {
  std::string body;
  if (const std::string fault = readFile(options.file, body); !fault.empty()) {
    return complain(options.file + ": " + fault, kWrongUsage);
  }
  Diagnostics diagnostics;
  const BodyTree tree(body, options.type);
  const std::vector<Part> parts = selected(options, tree.parts());
  if (options.json) {
    nlohmann::ordered_json object;
    object["ok"] = tree.accepted();
    object["parts"] = toJson(parts);
    object["diagnostics"] = diagnostics.toJson();
    std::cout << jsonLine(object) << '\n';
  } else {
    for (const Part& part : parts) {
      std::cout << (options.raw ? std::string(part.content) : partLines(part));
    }
  }
  if (options.verbose) {
    diagnostics.printAll("");
  } else if (tree.takenApart()) {
    complain(std::string(kNotTakenApart) + kNestedMultipart, kAccepted);
  } else if (!tree.accepted()) {
    complain(diagnostics.reason(VARN_INVALID_INPUT), kRefused);
  }
  if (options.part != 0 && parts.empty()) {
    return complain("there is no part " + std::to_string(options.part), kRefused);
  }
  if (options.raw && parts.front().mayBeLonger) {
    return complain("part " + std::to_string(options.part) + " has " +
                        std::to_string(parts.front().content.size()) + " bytes" + kOrLonger,
                    kRefused);
  }
  return tree.accepted() ? kAccepted : kRefused;
}

void addFile(CLI::App& parser, std::string& file) {
  parser.add_option("FILE", file, "The file; - or none is standard input")->type_name("");
}

// Runs a command that writes what the conversion makes of a file; refusal says why there is
// nothing.
int runConversion(CommandLine& line, std::optional<std::string> (*convert)(std::string),
                  const char* refusal) {
  std::string file = "-";
  addFile(line.parser, file);
  line.parse();
  std::string bytes;
  if (const std::string fault = readFile(file, bytes); !fault.empty()) {
    return complain(file + ": " + fault, kWrongUsage);
  }
  const Diagnostics diagnostics;
  const std::optional<std::string> converted = convert(std::move(bytes));
  if (converted) {
    std::cout << *converted;
    return kAccepted;
  }
  if (!diagnostics.hasFailure()) {
    return complain(refusal, kRefused);
  }
  return complain(diagnostics.reason(0), kRefused);
}

}  // namespace

int runBody(CommandLine& line) {
  CLI::App& parser = line.parser;
  BodyOptions options;
  addFile(parser, options.file);
  parser.add_option("--type", options.type, "The Content-Type value of the body")
      ->type_name("CONTENT-TYPE")
      ->required();
  CLI::Option* part = parser.add_option("--part", options.part, "Show only this part")
                          ->type_name("N")
                          ->check(CLI::PositiveNumber);
  parser.add_flag("--raw", options.raw, "Write the bytes of the part and nothing else")
      ->needs(part);
  addOutputOptions(parser, options.json, options.verbose);
  line.parse();
  return run(options);
}

int runGzip(CommandLine& line) {
  return runConversion(line, deflated, "the result would be longer than the text");
}

int runGunzip(CommandLine& line) {
  return runConversion(line, inflated, "no data, or more than the 65535 bytes that are read");
}
