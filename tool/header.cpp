// header.cpp - siputil header: takes header fields apart, edits them and writes them back.
#include "fields.h"
#include "textCommand.h"

namespace {

using Text = const SipString&;

const Setter<SipHeader> kSetters[] = {
    {"name", [](SipHeader& h, Text value) { return h.setName(value); }},
    {"value", [](SipHeader& h, Text value) { return h.setValue(value); }},
};

int runOn(const Options& options, const std::string& text, unsigned long line) {
  const Diagnostics diagnostics;
  const std::size_t colon = text.find(':');
  const bool whole = colon != std::string::npos;
  SipHeader header(sipString(text.substr(0, colon)),
                   sipString(whole ? text.substr(colon + 1) : std::string()));
  Result result;
  if (whole) {
    result.code = applyAll(header, options.edits, kSetters);
  } else {
    result.code = VARN_INVALID_INPUT;
    result.reason = "a header field is NAME: VALUE, but there is no colon";
  }
  const std::string name(trimmed(text.substr(0, colon)));
  const std::string_view meant = likelyField(name);
  if (whole && !meant.empty()) {
    result.note = "note: '" + name + "' is no known field, is it '" + std::string(meant) + "'?";
  }
  result.json = [&] { return toJson(header, result.code); };
  result.line = [&] { return with(pieces(header), "text", header.toString()); };
  result.lines = [&] {
    Pieces shown = pieces(header);
    for (const auto& [label, value] : addressPieces(header)) {
      shown.emplace_back("  " + label, value);
    }
    return with(shown, "text", header.toString());
  };
  return show(result, options, diagnostics, line);
}

}  // namespace

std::function<int()> prepareHeader(CLI::App& parser) {
  const auto options = std::make_shared<Options>();
  addTextOptions(parser, *options, namesOf(kSetters), [](const Edit&) { return std::string(); });
  return runOnEachText<Options>(options, runOn);
}
