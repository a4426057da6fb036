// header.cpp - siputil header: splits header fields into pieces, edits them and writes them back.
#include "commands/textCommand.h"
#include "fields/names.h"
#include "fields/validSip.h"
#include "text/sip.h"

namespace {

using Text = const SipString&;

const Setter<SipHeader> kSetters[] = {
    {"name", [](SipHeader& h, Text value) { return h.setName(value); }},
    {"value", [](SipHeader& h, Text value) { return h.setValue(value); }},
};

std::string nameOf(const std::string& field) { return field.substr(0, field.find(':')); }

std::string valueOf(const std::string& field) {
  const std::size_t colon = field.find(':');
  return colon == std::string::npos ? "" : field.substr(colon + 1);
}

struct HeaderReading : Reading {
  HeaderReading(const Options& options, const std::string& text)
      : header(toSipString(nameOf(text)), toSipString(valueOf(text))) {
    if (text.find(':') == std::string::npos) {
      code = VARN_INVALID_INPUT;
      reason = "a header field is NAME: VALUE, but there is no colon";
      return;
    }
    if (header.GetLastErrorCode() != VARN_OK) {
      limit = limitOf(nameOf(text), valueOf(text));
      place = placeInHeader(text);
    }
    code = applyAll(header, options.edits, kSetters);
    const std::string name(trimmed(nameOf(text)));
    if (const std::string note = noteOnField(name); !note.empty()) {
      notes.push_back(note);
    }
  }

  nlohmann::ordered_json json() override {
    nlohmann::ordered_json object = toJson(header, code);
    object["limit"] = limit.empty() ? nullptr : nlohmann::ordered_json(limit);
    return object;
  }

  Pieces line() override { return with(pieces(header), "text", header.toString()); }

  Pieces lines() override {
    Pieces shown = pieces(header);
    for (const auto& [label, value] : addressPieces(header)) {
      shown.emplace_back("  " + label, value);
    }
    return with(shown, "text", header.toString());
  }

  SipHeader header;
};

}  // namespace

int runHeader(CommandLine& line) {
  Options options;
  addTextOptions(line.parser, options, namesOf(kSetters));
  line.parse();
  return readEachText<HeaderReading>(options);
}
