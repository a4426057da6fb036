// main.cpp - siputil: SIP text in a shell. The table of its commands, and their exit statuses.
#include <iostream>
#include <stdexcept>

#include "command.h"

namespace {

const Command kCommands[] = {
    {"address", "Take a SIP address apart, edit it and write it back", prepareAddress},
    {"tel", "Take a tel address apart, edit it and turn it into a SIP address", prepareTel},
    {"header", "Take a header field apart, edit it and write it back", prepareHeader},
    {"message", "Show whole SIP messages and what is wrong with them", prepareMessage},
    {"body", "Take the body of a message apart", prepareBody},
    {"gzip", "Compress a message as the library does", prepareGzip},
    {"gunzip", "Expand a gzip body", prepareGunzip},
    {"via", "Reduce the value of a Via header field to its sent-by", prepareVia},
    {"compare", "Tell whether two SIP URIs have the same user, port and host", preparePlainText},
    {"host", "Tell what kind of address a host is", preparePlainText},
    {"quote", "Percent-encode the user-info of SIP URIs or lists of them", preparePlainText},
    {"feature-tag", "Percent-encode the colons of a quoted feature-tag value", preparePlainText},
    {"sort", "Order a list separated by semicolons, in one pass", preparePlainText},
    {"max-q", "Find the highest of q-values that all differ", preparePlainText},
    {"imei", "Write the digits of an IMEI in groups", preparePlainText},
};

int run(int argc, char** argv) {
  CLI::App parser("Reads, checks, edits and writes SIP text.", "siputil");
  parser.require_subcommand(1);
  parser.set_version_flag("--version", "siputil " SIPUTIL_VERSION);
  std::function<int()> chosen;
  for (const Command& command : kCommands) {
    CLI::App* added = parser.add_subcommand(command.name, command.help);
    added->callback([&chosen, work = command.prepare(*added)] { chosen = work; });
  }
  try {
    parser.parse(argc, argv);
    return chosen();
  } catch (const CLI::Success& success) {
    return parser.exit(success);
  }
}

}  // namespace

int main(int argc, char** argv) {
  try {
    std::ios::sync_with_stdio(false);
    const int status = run(argc, argv);
    if (!std::cout.flush()) {
      throw std::runtime_error("the output cannot be written");
    }
    return status;
  } catch (const std::exception& error) {
    std::cerr << "siputil: " << error.what() << '\n';
    return kWrongUsage;
  }
}
