// main.cpp - siputil: SIP text in a shell. The table of its commands, and their exit statuses.
#include <algorithm>
#include <iostream>
#include <iterator>

#include "commands/command.h"
#include "commands/completion.h"
#include "text/text.h"

namespace {

constexpr std::size_t kNameWidth = 14;

// The tests run the examples; message.sip, body.bin, message.gz, uris.txt and the directory traces
// are there.
const Command kCommands[] = {
    {"address",
     "Split a SIP address into pieces, edit it and write it back",
     runAddress,
     {R"(siputil address '"Alice" <sip:alice@example.test:5060;transport=tcp;lr>')",
      "siputil address 'sip:alice@example.test' --set port=5070 --param lr",
      "siputil address - --json <uris.txt"}},
    {"tel",
     "Split a tel address into pieces, edit it and convert it to a SIP address",
     runTel,
     {"siputil tel 'tel:+1-201-555-0123;ext=7'",
      "siputil tel 'tel:7042;phone-context=example.test' --to-sip sip:host.test"}},
    {"header",
     "Split a header field into pieces, edit it and write it back",
     runHeader,
     {"siputil header 'Contact: <sip:bob@host.test>;expires=60'",
      "siputil header 'Via: SIP/2.0/UDP a.test;branch=z9hG4bK1' --set name=v --remove-param branch"}},
    {"list",
     "List SIP messages, a line each",
     runList,
     {"siputil list trace.pcap", "siputil list --method REGISTER --with Contact traces",
      "siputil list --find --wide server.log", "siputil list --json --number 2-3 traces"}},
    {"message",
     "Show complete SIP messages and what is wrong with them",
     runMessage,
     {"siputil message message.sip", "siputil message --only Via --only Contact message.sip",
      "siputil message --filter 'udp port 5060' trace.pcap", "siputil message --find server.log",
      "siputil message --color=always message.sip | less -R"}},
    {"edit",
     "Edit complete SIP messages and write them back",
     runEdit,
     {"siputil edit --set To.host=other.test --set 'Via;rport' message.sip",
      "siputil edit --remove-header 'Route[1]' --add-header X-Trace=7 message.sip",
      "siputil edit --body body.bin --add-header 'Content-Type=multipart/mixed;boundary=b' message.sip"}},
    {"check",
     "Read any number of messages and show what is refused, by reason",
     runCheck,
     {"siputil check traces", "siputil check --json message.sip traces"}},
    {"calls",
     "Show the calls in messages, or draw one",
     runCalls,
     {"siputil calls traces", "siputil calls --show 0b92 message.sip"}},
    {"body",
     "Split the body of a message into its parts",
     runBody,
     {"siputil body --type 'multipart/mixed;boundary=b' body.bin",
      "siputil body --type 'multipart/mixed;boundary=b' --part 1 --raw body.bin"}},
    {"gzip",
     "Compress a message as the library does",
     runGzip,
     {"siputil gzip message.sip | wc -c", "siputil gzip message.sip | siputil gunzip"}},
    {"gunzip",
     "Expand a gzip body",
     runGunzip,
     {"siputil gunzip message.gz", "siputil gunzip message.gz | siputil message"}},
    {"via",
     "Reduce the value of a Via header field to its sent-by",
     runVia,
     {"siputil via 'SIP/2.0/UDP 10.0.0.1:5060;branch=z9hG4bK1'",
      "siputil via --json 'SIP/2.0/TCP host.test'"}},
    {"compare",
     "Compare the user, port and host of two SIP URIs",
     runPlainText,
     {"siputil compare sip:a@[::1] 'sip:a@[0::1];lr'",
      "siputil compare sip:a@b.test 'sip:a@b.test;lr' && echo equal"}},
    {"host",
     "Show what kind of address a host is",
     runPlainText,
     {"siputil host '[::1]'", "siputil host --json 192.0.2.1"}},
    {"quote",
     "Percent-encode the user-info of SIP URIs or lists of them",
     runPlainText,
     {"siputil quote sip:a:b@host.test", "siputil quote 'sip:a:b@host.test,sip:c@host.test'"}},
    {"feature-tag",
     "Percent-encode the colons of a quoted feature-tag value",
     runPlainText,
     {R"(siputil feature-tag 'a;tag="x:y"' tag)",
      R"(siputil feature-tag '+g.3gpp.icsi-ref="urn:urn-7:x"' icsi-ref)"}},
    {"sort",
     "Order a list separated by semicolons, in one pass",
     runPlainText,
     {"siputil sort 'c;a;b'", "siputil sort --json 'b;a'"}},
    {"max-q",
     "Find the highest of q-values that all differ",
     runPlainText,
     {"siputil max-q 0.5 1.0 0.7", "siputil max-q --json 0.1 0.25"}},
    {"imei",
     "Write the digits of an IMEI in groups",
     runPlainText,
     {"siputil imei 123456789012345", "siputil imei --json 123456789012345"}},
};

int printHelp() {
  std::cout << "Reads, checks, edits and writes SIP text.\n"
               "Usage: siputil COMMAND [OPTIONS] [ARGUMENT...]\n"
               "       siputil --help | --version | COMMAND --help\n\n"
               "Commands:\n";
  for (const Command& command : kCommands) {
    const std::string name = command.name;
    std::cout << "  " << name << std::string(kNameWidth - name.size(), ' ') << command.help << '\n';
  }
  return kAccepted;
}

int complainOfCommand(const std::string& name) {
  std::vector<std::string_view> names;
  for (const Command& command : kCommands) {
    names.emplace_back(command.name);
  }
  const std::string_view meant = closest(name, names, name.size() / 3);
  const std::string hint = meant.empty() ? "; siputil --help lists them"
                                         : "; did you mean '" + std::string(meant) + "'?";
  return complain("there is no command '" + name + "'" + hint, kWrongUsage);
}

// Runs a command. Its parser is no subcommand of another one, which would take a "++" for the end
// of the command.
int run(const Command& command, int argc, char** argv, bool complete) {
  CLI::App parser(command.help, command.name);
  std::string examples = "Examples:";
  for (const char* example : command.examples) {
    examples.append("\n  ").append(example);
  }
  parser.footer(examples);
  CommandLine line = {parser, argc, argv, complete};
  try {
    return command.run(line);
  } catch (const CLI::CallForHelp&) {
    return kAccepted;
  }
}

const Command* findCommand(const std::string& name) {
  const auto* command =
      std::find_if(std::begin(kCommands), std::end(kCommands),
                   [&name](const Command& candidate) { return name == candidate.name; });
  return command == std::end(kCommands) ? nullptr : command;
}

// Prints what the last of the words may be; the completions of the shells ask this.
int completeWords(int count, char** words) {
  const Command* command = count > 1 ? findCommand(words[0]) : nullptr;
  if (command != nullptr) {
    return run(*command, count, words, true);
  }
  if (count != 1) {
    return kAccepted;  // of no command
  }
  const std::string text = words[0];
  for (const Command& each : kCommands) {
    printCandidate(text, each.name, each.help);
  }
  printCandidate(text, "--help", "Print the commands");
  printCandidate(text, "--version", "Print the version");
  return kAccepted;
}

int run(int argc, char** argv) {
  if (argc < 2) {
    return complain("a command is required; siputil --help lists them", kWrongUsage);
  }
  const std::string name = argv[1];
  if (name == "--help" || name == "-h") {
    return printHelp();
  }
  if (name == "--version") {
    std::cout << "siputil " SIPUTIL_VERSION "\n";
    return kAccepted;
  }
  if (name == "--complete") {
    return completeWords(argc - 2, argv + 2);
  }
  const Command* command = findCommand(name);
  return command == nullptr ? complainOfCommand(name) : run(*command, argc - 1, argv + 1, false);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    std::ios::sync_with_stdio(false);
    const int status = run(argc, argv);
    flushOutput();
    return status;
  } catch (const std::exception& error) {
    return complain(error.what(), kWrongUsage);
  }
}
