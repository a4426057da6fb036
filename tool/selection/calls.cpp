// calls.cpp - the calls that messages belong to, by Call-ID, and the messages of one of them.
#include "selection/calls.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "output/summary.h"
#include "text/sip.h"
#include "text/text.h"

namespace {

constexpr std::size_t kMaxMethods = 16;
constexpr std::size_t kMaxText = 64;
constexpr std::size_t kMaxId = 256;

// Returns a short text that differs for different texts.
std::string keyOf(std::string_view text) {
  return text.size() <= kMaxId ? std::string(text)
                               : std::string(text.substr(0, kMaxId)) + '\n' +
                                     std::to_string(std::hash<std::string_view>()(text));
}

// Returns the host of the address of which userOf() returns the user, or both where that has no
// user.
std::string_view hostOf(std::string_view value) {
  const std::string_view user = userOf(value);
  const std::string_view rest =
      value.substr(static_cast<std::size_t>(user.data() - value.data()) + user.size());
  const std::size_t host = rest.substr(0, 1) == "@" || rest.substr(0, 1) == ":"
                               ? rest.find('@')
                               : std::string_view::npos;
  return host == std::string_view::npos
             ? user
             : rest.substr(host + 1, rest.find_first_of(";>? \t", host) - host - 1);
}

// Returns when a message passed, in microseconds; nothing where that is not known or is so far away
// that the difference of two such times is no number.
std::optional<std::int64_t> microsecondsOf(const Passage* passage) {
  constexpr std::int64_t kSecond = 1000000;
  constexpr std::int64_t kMax = INT64_MAX / kSecond / 4;
  if (passage == nullptr || timeText(passage->time).empty() || passage->time.tv_sec > kMax ||
      passage->time.tv_sec < -kMax) {
    return std::nullopt;
  }
  return passage->time.tv_sec * kSecond + passage->time.tv_usec;
}

void addTime(Call& call, const Passage* passage) {
  const std::optional<std::int64_t> time = microsecondsOf(passage);
  if (!time) {
    return;
  }
  call.first = call.begin ? call.first : passage->time;
  call.begin = std::min(*time, call.begin.value_or(*time));
  call.end = std::max(*time, call.end.value_or(*time));
}

void addMethod(Call& call, const std::string& method) {
  if (method == "INVITE" && call.method != method) {
    call.method = method;
    call.status.clear();
    call.reason.clear();
  }
  std::vector<std::string>& methods = call.methods;
  if (!method.empty() && methods.size() < kMaxMethods &&
      std::find(methods.begin(), methods.end(), method) == methods.end()) {
    methods.push_back(method);
  }
}

void addMessage(Call& call, const MessageInFile& found) {
  const Message& message = found.message;
  const StartLine line(message.startLine);
  const std::string method = shortened(methodOf(message), kMaxText);
  if (++call.messages == 1) {
    call.from = shortened(userOf(message, "From"), kMaxText);
    call.to = shortened(userOf(message, "To"), kMaxText);
    call.method = method;
  }
  addMethod(call, method);
  addTime(call, found.passage);
  if (line.response && method == call.method && call.status.substr(0, 1) != "2") {
    call.status = line.code();
    call.reason = shortened(line.reason(), kMaxText);
  }
}

// Returns who sent a message to whom. A text does not say that: there they are the users of From
// and To, which the response to a request has as well; of the same users the hosts; and of the same
// addresses, as a REGISTER has them, the user and the host.
std::pair<std::string, std::string> endsOf(const MessageInFile& found) {
  if (found.passage != nullptr) {
    return {endpointText(found.passage->source), endpointText(found.passage->destination)};
  }
  const std::string_view from = valueOf(found.message, "From");
  const std::string_view to = valueOf(found.message, "To");
  std::string_view source = userOf(from);
  std::string_view destination = userOf(to);
  if (source == destination) {
    destination = hostOf(to);
    source = hostOf(from) == destination ? source : hostOf(from);
  }
  if (StartLine(found.message.startLine).response) {
    std::swap(source, destination);
  }
  const auto name = [](std::string_view end) {
    return end.empty() ? "?" : shortened(end, kMaxText);
  };
  return {name(source), name(destination)};
}

// Returns what a body is called, by its type; "" for none.
std::string nameOfBody(const Message& message) {
  if (message.body.empty()) {
    return "";
  }
  const std::string_view value = valueOf(message, "Content-Type");
  const std::string_view type = trimmed(value.substr(0, value.find(';')));
  if (equalIgnoringCase(type, "application/sdp")) {
    return "SDP";
  }
  if (equalIgnoringCase(type.substr(0, type.find('/')), "multipart")) {
    return "multipart";
  }
  return type.empty() ? "body" : shortened(type, kMaxText);
}

// Returns what a message and another one that repeats it have in common, and no others: of
// responses from several phones the tags differ, of several reliable ones the RSeq.
std::string identityOf(const Message& message, const Step& step) {
  std::string identity = step.source + '\n' + step.destination + '\n' + keyOf(message.startLine);
  for (const char* name : {"CSeq", "Via", "To", "RSeq"}) {
    identity.append("\n").append(keyOf(valueOf(message, name)));
  }
  return identity;
}

}  // namespace

void CallList::add(const MessageInFile& found) {
  const std::string_view id = callIdOf(found.message);
  if (id.empty()) {
    ++withoutId_;
    return;
  }
  const std::string key = keyOf(id);
  const auto known = places_.find(key);
  if (known != places_.end()) {
    addMessage(calls_[known->second], found);
  } else if (calls_.size() < kMaxCalls) {
    places_.emplace(key, calls_.size());
    calls_.emplace_back();
    calls_.back().id = shortened(id, kMaxId);
    addMessage(calls_.back(), found);
  } else {
    ++leftOut_;
  }
}

void ChosenCall::add(const MessageInFile& found) {
  const std::string_view id = callIdOf(found.message);
  const bool exact = id == part_;
  if (id.empty() || (exact_ ? !exact : id.find(part_) == std::string_view::npos)) {
    return;
  }
  if (exact && !exact_) {
    *this = ChosenCall(part_);
    exact_ = true;
  }
  list_.add(found);
  if (list_.calls().size() > 1) {
    steps_.clear();
    seen_.clear();
  } else if (steps_.size() < kMaxSteps) {
    addStep(found);
  }
}

void ChosenCall::addStep(const MessageInFile& found) {
  const StartLine line(found.message.startLine);
  const auto [source, destination] = endsOf(found);
  Step step = {source,
               destination,
               line.response,
               shortened(line.response ? line.code() : line.method, kMaxText),
               shortened(line.reason(), kMaxText),
               nameOfBody(found.message),
               microsecondsOf(found.passage),
               false};
  step.again = !seen_.insert(identityOf(found.message, step)).second;
  steps_.push_back(std::move(step));
}
