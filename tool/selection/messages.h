// messages.h - the messages of files, whatever holds them: texts, logs or captures.
#ifndef TOOL_MESSAGES_H
#define TOOL_MESSAGES_H

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "packets/packet.h"
#include "selection/selection.h"
#include "text/lines.h"
#include "text/sip.h"

// Which files to read, and how.
struct Sources {
  std::vector<std::string> paths = {"-"};  // - is standard input
  std::string filter;                      // a pcap filter for captures; "" for none
  bool find = false;                       // of texts, the messages between other lines
  Selection selection;                     // which messages to visit
  bool directories = false;                // a directory is all files below it, else a fault
  bool notes = true;                       // say what is left out of a capture that has messages
  bool follow = false;                     // of one file, wait at its end for more
  bool summary = false;                    // what is printed comes after all messages

  // Takes the line ends of a live text that came after its last message was visited.
  std::function<void(std::string_view lineEnds)> late = nullptr;
};

// A message and where it was found.
struct MessageInFile {
  const Message& message;
  const std::string& file;
  const Passage* passage;        // of a captured message; null in a text
  LineAt lineAt;                 // in a text; null for a captured message
  std::string_view before = {};  // line ends of a text that are in no message: before the first one
  std::string_view after = {};   // and after each
  unsigned long number = 0;      // among all messages of all files, from 1
};

// How many files were read, with those that have no message.
struct FileCounts {
  unsigned long files = 0;
  unsigned long read = 0;      // messages
  unsigned long messages = 0;  // those that were visited
};

// Reads the files and visits each message of the selection, in the order in which they are
// complete. Standard error gets what cannot be read, is damaged or has no message, and a progress
// bar. A terminal, and whatever reads along with a file that is followed, gets the output for a
// message at once. SIGINT and SIGTERM end the reading of a pipe and of a file that is followed.
// Returns the worst status of these. Throws CaptureUsageError for a wrong filter.
int readMessages(const Sources& sources, FileCounts& counts,
                 const std::function<void(const MessageInFile& found)>& visit);

// Returns how a file is called in sentences.
std::string titleOf(const std::string& file);

#endif  // TOOL_MESSAGES_H
