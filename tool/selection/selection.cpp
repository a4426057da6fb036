// selection.cpp - which of the messages that are read a command is about.
#include "selection/selection.h"

#include <algorithm>
#include <string_view>

#include "fields/names.h"
#include "output/summary.h"
#include "text/options.h"
#include "text/terminal.h"
#include "text/text.h"

namespace {

using View = std::string_view;

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Returns whether any value holds; true for none.
template <typename Values, typename Holds>
bool anyOrNone(const Values& values, const Holds& holds) {
  return values.empty() || std::any_of(values.begin(), values.end(), holds);
}

bool isLike(View code, View pattern) {
  return std::equal(code.begin(), code.end(), pattern.begin(), pattern.end(),
                    [](char c, char wanted) { return wanted == 'x' ? isDigit(c) : c == wanted; });
}

bool has(const Message& message, const Selection::FieldText& wanted) {
  return std::any_of(message.fields.begin(), message.fields.end(), [&wanted](const Field& field) {
    return equalIgnoringCase(trimmed(field.name), wanted.name) &&
           containsIgnoringCase(field.value, wanted.text);
  });
}

// Splits a list at its commas. Throws what the option expects for a piece that is not taken.
template <typename Take>
void takeEach(const std::string& list, const char* option, const char* expected, const Take& take) {
  View rest = list;
  for (bool more = true; more;) {
    const std::size_t comma = rest.find(',');
    more = comma != View::npos;
    if (!take(trimmed(rest.substr(0, comma)))) {
      throw CLI::ValidationError(option, std::string("expected ") + expected);
    }
    rest.remove_prefix(more ? comma + 1 : 0);
  }
}

bool takeStatus(View text, std::vector<std::string>& statuses) {
  std::string status(text);
  std::replace(status.begin(), status.end(), 'X', 'x');
  const bool valid = status.size() == 3 && isDigit(status[0]) &&
                     status.find_first_not_of("0123456789x") == std::string::npos;
  statuses.push_back(status);
  return valid;
}

bool takeRange(View text, std::vector<Selection::Range>& ranges) {
  const std::size_t dash = text.find('-');
  Selection::Range range = {};
  if (!readNumber(text.substr(0, dash), range.first)) {
    return false;
  }
  range.last = range.first;
  if (dash != View::npos && !readNumber(text.substr(dash + 1), range.last)) {
    return false;
  }
  ranges.push_back(range);
  return range.first >= 1 && range.first <= range.last;
}

// Takes `NAME` or `NAME=TEXT`.
void takeWith(const std::string& text, std::vector<Selection::FieldText>& wanted) {
  const std::size_t equal = std::min(text.find('='), text.size());
  const std::string name(trimmed(View{text}.substr(0, equal)));
  if (name.empty()) {
    throw CLI::ValidationError("--with", "expected NAME or NAME=TEXT, such as Require=100rel");
  }
  noteLikelyField(name);
  wanted.push_back({std::string(longName(name)), text.substr(std::min(equal + 1, text.size()))});
}

}  // namespace

bool Selection::wants(const Message& message, unsigned long number) const {
  const auto isIn = [number](const Range& range) {
    return range.first <= number && number <= range.last;
  };
  const auto hasStatus = [&message](const std::string& status) {
    const StartLine line(message.startLine);
    return line.response && isLike(line.code(), status);
  };
  const auto isOf = [&message](const std::string& method) {
    return equalIgnoringCase(methodOf(message), method);
  };
  const auto hasOne = [&message](const std::vector<FieldText>& list) {
    return anyOrNone(list, [&message](const FieldText& wanted) { return has(message, wanted); });
  };
  return anyOrNone(numbers, isIn) && anyOrNone(statuses, hasStatus) && anyOrNone(methods, isOf) &&
         std::all_of(fields.begin(), fields.end(), hasOne);
}

void addSelectionOptions(CLI::App& parser, Selection& selection) {
  const auto addField = [&parser](const char* flag, const char* name,
                                  std::vector<Selection::FieldText>& list) {
    addRepeatable(parser, flag, "TEXT", std::string("Only messages with this text in ") + name,
                  [name, &list](const std::string& text) {
                    list.push_back({name, text});
                  });
  };
  addRepeatable(parser, "--method", "METHOD,...",
                "Only requests of these methods and the responses to them",
                [&selection](const std::string& text) {
                  takeEach(text, "--method", "methods such as INVITE,BYE", [&](View method) {
                    selection.methods.emplace_back(method);
                    return isToken(method);
                  });
                });
  addRepeatable(parser, "--status", "CODE,...", "Only responses with these status codes",
                [&selection](const std::string& text) {
                  takeEach(text, "--status", "status codes such as 4xx,503",
                           [&](View status) { return takeStatus(status, selection.statuses); });
                });
  addField("--call-id", "Call-ID", selection.fields[0]);
  addField("--from", "From", selection.fields[1]);
  addField("--to", "To", selection.fields[2]);
  addRepeatable(parser, "--with", "NAME[=TEXT]",
                "Only messages with this field, or this text in it",
                [&selection](const std::string& text) { takeWith(text, selection.fields[3]); });
  addRepeatable(parser, "--number", "N[-M],...", "Only the messages that list shows as N to M",
                [&selection](const std::string& text) {
                  takeEach(text, "--number", "numbers from 1 on, such as 3 or 5-9",
                           [&](View range) { return takeRange(range, selection.numbers); });
                });
}
