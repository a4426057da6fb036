// messageJson.cpp - where a message was found and what it is, for programs.
#include "selection/messageJson.h"

#include "output/dump.h"
#include "output/summary.h"

namespace {

using Json = nlohmann::ordered_json;

Json textOrNull(bool known, std::string_view text) { return known ? Json(text) : Json(); }

Json endpointJson(const Endpoint& endpoint) {
  return {{"address", addressText(endpoint)}, {"port", endpoint.port}};
}

void addPassage(Json& object, const Passage& passage) {
  const std::string time = timeText(passage.time);
  object["frame"] = passage.frame;
  object["time"] = textOrNull(!time.empty(), time);
  object["source"] = endpointJson(passage.source);
  object["destination"] = endpointJson(passage.destination);
  object["transport"] = passage.transport;
}

Json sequenceJson(const Message& message) {
  const Sequence sequence = sequenceOf(message);
  return sequence.number && isToken(sequence.method)
             ? Json({{"number", *sequence.number}, {"method", sequence.method}})
             : Json();
}

}  // namespace

nlohmann::ordered_json summaryJson(const MessageInFile& found) {
  const Message& message = found.message;
  const StartLine line(message.startLine);
  Json object = {{"number", found.number}, {"file", found.file}};
  if (found.passage == nullptr) {
    object["line"] = found.lineAt(message.offset);
  } else {
    addPassage(object, *found.passage);
  }
  unsigned int code = 0;
  const bool hasCode = line.code().size() == 3 && readNumber(line.code(), code);
  object["startLine"] = message.startLine;
  const bool request = !line.response && !methodOf(message).empty();
  object["method"] = textOrNull(request, line.method);
  object["requestUri"] = request ? addressJson(line.uri) : Json();
  object["statusCode"] = hasCode ? Json(code) : Json();
  object["reasonPhrase"] = textOrNull(line.response, line.reason());
  object["cseq"] = sequenceJson(message);
  return object;
}
