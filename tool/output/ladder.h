// ladder.h - the picture of a call: a column for each endpoint, an arrow for each message.
#ifndef TOOL_LADDER_H
#define TOOL_LADDER_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// A message of a call.
struct Step {
  std::string source;  // the endpoint that sent it, and the other one
  std::string destination;
  bool response;
  std::string name;                  // the method or the status code
  std::string reason;                // of a response
  std::string body;                  // what its body is; "" for none
  std::optional<std::int64_t> time;  // in microseconds
  bool again;                        // the same message passed before
};

// Lays out messages. The texts are ASCII; "?" replaces each other byte.
class Ladder {
 public:
  // With more endpoints than these, the last column is that of all others.
  static constexpr std::size_t kMaxColumns = 5;

  struct Arrow {
    std::size_t from;   // the numbers of its columns
    std::size_t to;     // the same for a message to the same endpoint
    std::string after;  // the time since the message before, such as "+0.500"; "" for none
    Step step;
  };

  // Takes the lines above the picture and its messages.
  Ladder(const std::vector<std::string>& heading, const std::vector<Step>& steps);

  const std::vector<std::string>& heading() const { return heading_; }
  const std::vector<std::string>& columns() const { return columns_; }
  const std::vector<Arrow>& arrows() const { return arrows_; }

  // Returns whether a time is known.
  bool timed() const { return timed_; }

  // Returns what the picture needs to be understood, one line each.
  std::vector<std::string> legend() const;

 private:
  std::size_t columnOf(const std::string& endpoint);

  std::vector<std::string> heading_;
  std::vector<std::string> columns_;
  std::vector<std::string> others_;  // the endpoints of the last column, if it has several
  bool unnamed_ = false;             // more endpoints than others_ has
  std::vector<Arrow> arrows_;
  bool timed_ = false;
  bool again_ = false;
};

// Returns what is written on an arrow, in at most so many characters: the name, then as much of the
// body and the reason as there is room for.
std::string labelOf(const Step& step, std::size_t room);

// Returns the picture as lines of at most 80 characters, after the heading.
std::string ladderText(const Ladder& ladder);

#endif  // TOOL_LADDER_H
