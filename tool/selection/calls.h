// calls.h - the calls that messages belong to, by Call-ID, and the messages of one of them.
//
// What is kept is bounded, whatever is read: long texts are cut and end in "...".
#ifndef TOOL_CALLS_H
#define TOOL_CALLS_H

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "output/ladder.h"
#include "selection/messages.h"

// The messages of a Call-ID.
struct Call {
  std::string id;
  timeval first = {};                 // the first time that is known, if one is
  std::optional<std::int64_t> begin;  // the earliest and the latest time, in microseconds
  std::optional<std::int64_t> end;
  std::string from;  // in the first message, as to
  std::string to;
  std::vector<std::string> methods;
  std::string method;  // whose status the call has: INVITE, or that of the first message
  std::string status;  // the first 2xx, else the last code; "" for none
  std::string reason;
  unsigned long messages = 0;
};

// Collects the calls, in the order of their first messages.
class CallList {
 public:
  static constexpr std::size_t kMaxCalls = 65536;

  void add(const MessageInFile& found);

  const std::vector<Call>& calls() const { return calls_; }

  // Each returns how many messages are in no call: because they have no Call-ID, or because there
  // are kMaxCalls others.
  unsigned long withoutId() const { return withoutId_; }
  unsigned long leftOut() const { return leftOut_; }

 private:
  std::vector<Call> calls_;
  std::map<std::string, std::size_t> places_;  // in calls_, by the key of the Call-ID
  unsigned long withoutId_ = 0;
  unsigned long leftOut_ = 0;
};

// Collects the messages of the call whose Call-ID is a text, or else has it in it.
class ChosenCall {
 public:
  static constexpr std::size_t kMaxSteps = 10000;

  explicit ChosenCall(std::string part) : part_(std::move(part)) {}

  void add(const MessageInFile& found);

  // Returns the calls to which the text applies.
  const CallList& list() const { return list_; }

  // Returns the first messages of the call; none when there are several calls.
  const std::vector<Step>& steps() const { return steps_; }

 private:
  void addStep(const MessageInFile& found);

  std::string part_;
  bool exact_ = false;  // a Call-ID that is the text was found
  CallList list_;
  std::vector<Step> steps_;
  std::set<std::string> seen_;  // what a message and another that repeats it have in common
};

#endif  // TOOL_CALLS_H
