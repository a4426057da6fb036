// list.cpp - siputil list: a line for each message.
#include <iostream>

#include "commands/command.h"
#include "output/summary.h"
#include "text/sip.h"
#include "text/text.h"

namespace {

struct ListOptions {
  Sources sources;
};

int run(const ListOptions& options) {
  FileCounts counts;
  return readMessages(options.sources, counts, [](const MessageInFile& found) {
    const Message& message = found.message;
    const Sequence sequence = sequenceOf(message);
    std::cout << found.number;
    if (found.passage != nullptr) {
      std::cout << "  " << clockText(found.passage->time) << "  "
                << endpointText(found.passage->source) << " -> "
                << endpointText(found.passage->destination);
    }
    for (const std::string_view cell :
         {headlineOf(message), sequence.text, sequence.method, userOf(message, "From"),
          userOf(message, "To"), callIdOf(message)}) {
      std::cout << "  " << printable(cell);
    }
    std::cout << '\n';
  });
}

}  // namespace

int runList(CommandLine& line) {
  ListOptions options;
  options.sources.directories = true;
  options.sources.notes = false;
  parseWithSources(line, options.sources);
  return run(options);
}
