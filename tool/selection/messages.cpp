// messages.cpp - the messages of files, whatever holds them: texts, logs or captures.
#include "selection/messages.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>

#include "finding/log.h"
#include "finding/textMessages.h"
#include "input/input.h"
#include "input/interrupt.h"
#include "input/progress.h"
#include "input/textInput.h"
#include "packets/capture.h"
#include "text/terminal.h"

namespace {

namespace fs = std::filesystem;

using Visit = std::function<void(const MessageInFile& found)>;

// Appends the files and directories in a directory to the pending paths, the first name last.
// Returns what is wrong when it cannot be read. Without symbolic links, so that no walk comes back
// to where it was.
std::error_code list(const fs::path& directory, std::vector<fs::path>& pending) {
  std::error_code error;
  const auto known = static_cast<std::ptrdiff_t>(pending.size());
  fs::directory_iterator entry(directory, error);
  while (!error && entry != fs::directory_iterator()) {
    const fs::file_status status = entry->symlink_status(error);
    if (fs::is_regular_file(status) || fs::is_directory(status)) {
      pending.push_back(entry->path());
    }
    entry.increment(error);
  }
  std::sort(pending.begin() + known, pending.end(), std::greater<>());
  return error;
}

// Visits each path or, of directories, each file at or below it in the order of names; reports the
// directories that cannot be read.
void walk(
    const Sources& sources, const std::function<void(const std::string& file)>& visit,
    const std::function<void(const std::string& directory, const std::string& fault)>& unreadable) {
  std::vector<fs::path> pending(sources.paths.rbegin(), sources.paths.rend());
  while (!pending.empty() && !Interrupt::requested()) {
    const fs::path path = pending.back();
    pending.pop_back();
    std::error_code error;
    if (!sources.directories || !fs::is_directory(path, error)) {
      visit(path.string());
    } else if ((error = list(path, pending))) {
      unreadable(path.string(), error.message());
    }
  }
}

// Returns how many bytes the files have; 0 where a progress bar is not wanted.
std::size_t sizeOf(const Sources& sources) {
  if (sources.follow || (isatty(STDOUT_FILENO) != 0 && !sources.summary)) {
    return 0;
  }
  std::size_t sum = 0;
  const auto add = [&sum](const std::string& file) {
    std::error_code error;
    const std::uintmax_t size = fs::file_size(file, error);
    sum += error ? 0 : static_cast<std::size_t>(size);
  };
  walk(sources, add, [](const std::string&, const std::string&) {});
  return sum;
}

// Reads files, one after the other.
class Reader {
 public:
  Reader(const Sources& sources, FileCounts& counts, const Visit& visit)
      : sources_(sources),
        counts_(counts),
        visit_(visit),
        progress_(sizeOf(sources)),
        flush_(sources.follow || isatty(STDOUT_FILENO) != 0) {}

  // Returns the worst status of all files.
  int readAll() {
    walk(
        sources_, [this](const std::string& file) { readFile(file); },
        [this](const std::string& path, const std::string& fault) {
          file_ = path;
          complainOf(fault, kWrongUsage);
        });
    if (counts_.files == 0 && status_ == kAccepted) {
      status_ = complain("no file in " + sources_.paths.front(), kRefused);
    } else if (counts_.read != 0 && counts_.messages == 0) {
      status_ = std::max(
          status_, complain("no message was chosen of " + std::to_string(counts_.read), kRefused));
    }
    return status_;
  }

 private:
  void readFile(const std::string& file) {
    file_ = file;
    while (readOnce()) {
      complain(file + ": became shorter; reading it from its start", kAccepted);
      --counts_.files;
    }
  }

  // Returns whether to read the file again, because it became shorter.
  bool readOnce() {
    Input input(file_, sources_.follow);
    std::optional<Interrupt> interrupt;
    if (input.live()) {
      interrupt.emplace();
    }
    input.begin();
    if (!input.readable()) {
      complainOf(input.error(), kWrongUsage);
      return false;
    }
    ++counts_.files;
    const unsigned long before = counts_.read;
    const std::string fault = readMessagesOf(input);
    if (input.becameShorter()) {
      return true;
    }
    judge(input, fault.empty() ? input.fault() : fault, counts_.read != before);
    done_ += input.position();
    progress_.at(done_);
    return false;
  }

  // Says what is wrong with a file. What is interrupted may end anywhere.
  void judge(const Input& input, const std::string& fault, bool messages) {
    if (!input.readable()) {
      complainOf(input.error(), kWrongUsage);
    } else if (!fault.empty() && !Interrupt::requested()) {
      complainOf(fault, kRefused);
    } else if (!messages) {
      status_ = std::max(status_, complain("no SIP message in " + titleOf(file_), kRefused));
    }
  }

  // Each returns what is wrong with the file, or "".
  std::string readMessagesOf(Input& input) {
    if (isCapture(input.head())) {
      return readCaptureFile(input);
    }
    if (!sources_.filter.empty()) {
      throw CaptureUsageError("--filter: " + titleOf(file_) + " is no capture");
    }
    return sources_.find ? readLog(input) : readText(input);
  }

  std::string readCaptureFile(Input& input) {
    CaptureCounts counts;
    const unsigned long before = counts_.read;
    std::string error;
    try {
      error = readCapture(
          input, sources_.filter,
          [&](const Passage& passage, std::string_view text) {
            visitAll(text, &passage, nullptr, input);
          },
          counts);
    } catch (const CaptureUsageError& usage) {
      if (!sources_.filter.empty()) {
        throw;
      }
      error = usage.what();  // built without libpcap
    }
    if (sources_.notes || counts_.read == before) {
      printNotes(file_, counts);
    }
    return error;
  }

  std::string readLog(Input& input) {
    Log log([&](std::string_view text) {
      visitAll(
          text, nullptr, [&log](std::size_t offset) { return log.lineAt(offset); }, input);
    });
    input.whenQuiet([&log] { log.quiet(); });
    TextInput text(input);
    for (std::string piece; text.read(piece); piece.clear()) {
      log.add(piece);
      progress_.at(done_ + input.position());
    }
    log.finish();
    return "";
  }

  std::string readText(Input& input) {
    chosen_ = false;
    TextMessages messages([&](const Message& message) {
      const auto lineAt = [&messages](std::size_t offset) { return messages.lineAt(offset); };
      visit({message, file_, nullptr, lineAt, messages.before(), messages.after()}, input);
    });
    input.whenQuiet([&messages] { messages.quiet(); });
    TextInput text(input);
    for (std::string piece; text.read(piece); piece.clear()) {
      if (!messages.add(piece)) {
        return "has a message that is too large";
      }
    }
    messages.finish();
    if (sources_.late && chosen_) {
      sources_.late(messages.rest());
    }
    return "";
  }

  // Visits the messages of a part of the file.
  void visitAll(std::string_view text, const Passage* passage, const LineAt& lineAt,
                const Input& input) {
    MessageReader reader(text);
    while (std::optional<Message> message = reader.next()) {
      if (passage != nullptr && passage->missing != 0) {
        message->faults.insert(message->faults.begin(), {cutText(*passage), 0});
      }
      visit({*message, file_, passage, lineAt}, input);
    }
  }

  void visit(MessageInFile found, const Input& input) {
    found.number = ++counts_.read;
    chosen_ = sources_.selection.wants(found.message, found.number);
    if (chosen_) {
      ++counts_.messages;
      visit_(found);
    }
    if (flush_) {
      flushOutput();
    }
    progress_.at(done_ + input.position());
  }

  void complainOf(const std::string& fault, int status) {
    status_ = std::max(status_, complain(file_ + ": " + fault, status));
  }

  const Sources& sources_;
  FileCounts& counts_;
  const Visit& visit_;
  Progress progress_;
  const bool flush_;
  std::size_t done_ = 0;  // bytes of the files before
  std::string file_;
  bool chosen_ = false;  // the last message of the file
  int status_ = kAccepted;
};

}  // namespace

int readMessages(const Sources& sources, FileCounts& counts, const Visit& visit) {
  return Reader(sources, counts, visit).readAll();
}

std::string titleOf(const std::string& file) { return file == "-" ? "standard input" : file; }
