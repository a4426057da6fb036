// calls.cpp - siputil calls: the calls in messages by Call-ID, the picture of one, and counts.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <iostream>
#include <map>
#include <optional>

#include "commands/command.h"
#include "fields/diagnostics.h"
#include "output/dump.h"
#include "selection/messages.h"
#include "text/sip.h"

namespace {

// Bounds of what is kept, whatever is read.
constexpr std::size_t kMaxCalls = 65536;
constexpr std::size_t kMaxMethods = 16;
constexpr std::size_t kMaxText = 64;
constexpr std::size_t kMaxId = 256;

constexpr std::size_t kMaxCell = 24;  // characters of a cell of the table

struct CallsOptions {
  Sources sources;
  bool json = false;
};

// The messages of a Call-ID.
struct Call {
  std::string id;
  std::string time;  // of the first message; "" where that is not known, as the length
  std::optional<std::int64_t> begin;  // the earliest and the latest time, in microseconds
  std::optional<std::int64_t> end;
  std::string from;
  std::string to;
  std::vector<std::string> methods;
  std::string method;  // whose status the call has: INVITE, or that of the first message
  std::string status;  // "" for none
  std::string reason;
  unsigned long messages = 0;
};

std::string cut(std::string_view text, std::size_t length) {
  return std::string(text.substr(0, length)) + (text.size() > length ? "..." : "");
}

// Returns a text that is another one for another text, and short.
std::string keyOf(std::string_view text) {
  return text.size() <= kMaxId ? std::string(text)
                               : std::string(text.substr(0, kMaxId)) + ' ' +
                                     std::to_string(std::hash<std::string_view>()(text));
}

// Returns the time of day, `23:59:59.000`.
std::string clockText(const std::string& time) {
  return time.substr(std::min(time.find('T') + 1, time.size()), 12);
}

// Returns when a message passed; nothing where that is not known or is so far away that the
// difference of two such times is no number.
std::optional<std::int64_t> microsecondsOf(const Passage* passage) {
  constexpr std::int64_t kSecond = 1000000;
  constexpr std::int64_t kMax = INT64_MAX / kSecond / 4;
  if (passage == nullptr || timeText(passage->time).empty() || passage->time.tv_sec > kMax ||
      passage->time.tv_sec < -kMax) {
    return std::nullopt;
  }
  return passage->time.tv_sec * kSecond + passage->time.tv_usec;
}

std::string_view valueOf(const Message& message, std::string_view name) {
  const Field* field = message.find(name);
  return field == nullptr ? std::string_view() : field->value;
}

// Returns who is named in a field.
std::string partyIn(const Message& message, std::string_view name) {
  const Diagnostics ignored;
  const SipAddress address(toSipString(valueOf(message, name)));
  const std::string_view user = view(address.getUser());
  return cut(user.empty() ? view(address.getHost()) : user, kMaxText);
}

std::string_view methodOf(const Message& message) {
  const StartLine line(message.startLine);
  if (!line.response) {
    return line.method;
  }
  const std::string_view sequence = valueOf(message, "CSeq");
  return trimmed(sequence.substr(std::min(sequence.find_first_of(" \t"), sequence.size())));
}

// Collects the calls, in the order of their first messages.
class CallList {
 public:
  void add(const MessageInFile& found) {
    const std::string_view id = valueOf(found.message, "Call-ID");
    if (id.empty()) {
      ++withoutId_;
      return;
    }
    const std::string key = keyOf(id);
    const auto known = places_.find(key);
    if (known != places_.end()) {
      add(calls_[known->second], found);
    } else if (calls_.size() < kMaxCalls) {
      places_.emplace(key, calls_.size());
      calls_.emplace_back();
      calls_.back().id = cut(id, kMaxId);
      add(calls_.back(), found);
    } else {
      ++leftOut_;
    }
  }

  const std::vector<Call>& calls() const { return calls_; }

  // Says on standard error what is in no call.
  void printNotes() const {
    if (withoutId_ != 0) {
      complain(counted(withoutId_, "message") + " without a Call-ID", kAccepted);
    }
    if (leftOut_ != 0) {
      complain(counted(leftOut_, "message") + " of more than " + std::to_string(kMaxCalls) +
                   " calls left out",
               kAccepted);
    }
  }

 private:
  static void add(Call& call, const MessageInFile& found) {
    const Message& message = found.message;
    const StartLine line(message.startLine);
    const std::string method = cut(methodOf(message), kMaxText);
    if (++call.messages == 1) {
      call.from = partyIn(message, "From");
      call.to = partyIn(message, "To");
      call.method = method;
    }
    addMethod(call, method);
    addTime(call, found.passage);
    if (line.response && method == call.method && (call.status.empty() || call.status[0] != '2')) {
      call.status = line.code();
      call.reason = cut(line.reason(), kMaxText);
    }
  }

  static void addMethod(Call& call, const std::string& method) {
    if (method == "INVITE" && call.method != method) {
      call.method = method;
      call.status.clear();
    }
    std::vector<std::string>& methods = call.methods;
    if (!method.empty() && methods.size() < kMaxMethods &&
        std::find(methods.begin(), methods.end(), method) == methods.end()) {
      methods.push_back(method);
    }
  }

  static void addTime(Call& call, const Passage* passage) {
    const std::optional<std::int64_t> time = microsecondsOf(passage);
    if (!time) {
      return;
    }
    call.time = call.begin ? call.time : timeText(passage->time);
    call.begin = std::min(*time, call.begin.value_or(*time));
    call.end = std::max(*time, call.end.value_or(*time));
  }

  std::vector<Call> calls_;
  std::map<std::string, std::size_t> places_;  // in calls_, by the key of the Call-ID
  unsigned long withoutId_ = 0;
  unsigned long leftOut_ = 0;
};

nlohmann::ordered_json textOrNull(const std::string& text) {
  return text.empty() ? nullptr : nlohmann::ordered_json(text);
}

double secondsOf(const Call& call) { return static_cast<double>(*call.end - *call.begin) / 1e6; }

std::string secondsText(const Call& call) {
  if (!call.begin) {
    return "";
  }
  char text[64] = "";
  static_cast<void>(std::snprintf(text, sizeof(text), "%.3f", secondsOf(call)));
  return text;
}

nlohmann::ordered_json toJson(const Call& call) {
  nlohmann::ordered_json object = {{"callId", call.id}, {"time", textOrNull(call.time)}};
  object["seconds"] = call.begin ? nlohmann::ordered_json(secondsOf(call)) : nullptr;
  object["from"] = call.from;
  object["to"] = call.to;
  object["methods"] = call.methods;
  object["status"] = textOrNull(call.status);
  object["reason"] = textOrNull(call.reason);
  object["messages"] = call.messages;
  return object;
}

std::string joined(const std::vector<std::string>& texts) {
  std::string line;
  for (const std::string& text : texts) {
    line.append(line.empty() ? "" : " ").append(text);
  }
  return line;
}

using Row = std::array<std::string, 8>;

const Row kTitles = {"time", "from", "to", "methods", "status", "seconds", "messages", "Call-ID"};

Row rowOf(const Call& call) {
  Row row = {clockText(call.time),          call.from,   call.to,
             joined(call.methods),          call.status, secondsText(call),
             std::to_string(call.messages), call.id};
  for (std::string& cell : row) {
    cell = cell.empty() ? "-" : printable(&cell == &row.back() ? cell : cut(cell, kMaxCell));
  }
  return row;
}

void printRow(const Row& row, const std::array<std::size_t, 8>& widths) {
  for (std::size_t column = 0; column + 1 < row.size(); ++column) {
    const std::string& cell = row[column];
    std::cout << cell << std::string(widths[column] - cell.size() + 2, ' ');
  }
  std::cout << row.back() << '\n';
}

void printTable(const std::vector<Call>& calls) {
  std::array<std::size_t, 8> widths = {};
  const auto fit = [&widths](const Row& row) {
    for (std::size_t column = 0; column < row.size(); ++column) {
      widths[column] = std::max(widths[column], row[column].size());
    }
  };
  fit(kTitles);
  for (const Call& call : calls) {
    fit(rowOf(call));
  }
  printRow(kTitles, widths);
  for (const Call& call : calls) {
    printRow(rowOf(call), widths);
  }
}

int run(const CallsOptions& options) {
  CallList list;
  FileCounts counts;
  const int status = readMessages(options.sources, counts,
                                  [&list](const MessageInFile& found) { list.add(found); });
  list.printNotes();
  if (options.json) {
    for (const Call& call : list.calls()) {
      std::cout << jsonLine(toJson(call)) << '\n';
    }
  } else {
    printTable(list.calls());
  }
  return status;
}

}  // namespace

int runCalls(CommandLine& line) {
  CallsOptions options;
  options.sources.directories = true;
  options.sources.notes = false;
  addFormatOptions(line.parser, options.json);
  parseWithSources(line, options.sources);
  return run(options);
}
