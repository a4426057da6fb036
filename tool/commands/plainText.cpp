// plainText.cpp - siputil compare, host, quote and the other questions to plain text.
#include <algorithm>
#include <cstdint>
#include <iostream>
#include <iterator>

#include "commands/textCommand.h"
#include "imsdpl.h"
#include "wySipCommon.h"
#include "wySipUtils.h"

namespace {

using Texts = std::vector<std::string>;

constexpr std::size_t kMaxQValues = 255;      // what their count holds
constexpr std::size_t kEachAlone = SIZE_MAX;  // any number, one question for each

struct Answer {
  bool accepted = false;
  std::string text;    // what is shown of an accepted text
  std::string reason;  // the tool's own, of a refusal without a log line
  int index = -1;      // of the text among others
};

// Returns the answer that a text of the library is, and frees it; null is a refusal.
Answer answerOf(char* text) {
  Answer answer;
  answer.accepted = text != nullptr;
  if (answer.accepted) {
    answer.text = text;
  }
  __free(text);
  return answer;
}

Answer compare(Texts& texts) {
  return {CompareSIPURI(texts[0].c_str(), texts[1].c_str()) == 1, "match", ""};
}

Answer host(Texts& texts) {
  switch (GetHostType(texts[0].c_str())) {
    case 1:
      return {true, "IPv4 address", ""};
    case 2:
      return {true, "IPv6 address", ""};
    default:
      return {false, "", "neither an IPv4 nor an IPv6 address"};
  }
}

Answer quote(Texts& texts) {
  char* quoted = nullptr;
  wyQuoteUserInfoInSipUri(texts[0].data(), &quoted);
  Answer answer = answerOf(quoted);
  answer.reason = "no user part to quote";
  return answer;
}

Answer featureTag(Texts& texts) {
  char* quoted = nullptr;
  wyQuoteFeatureTagValue(texts[0].data(), texts[1].data(), &quoted);
  return answerOf(quoted);
}

Answer sort(Texts& texts) {
  char* list = texts[0].data();
  const bool ordered = wySortCommaSepStrings(&list) == 1;
  return {ordered, texts[0], ""};
}

Answer maxQ(Texts& texts) {
  std::vector<char*> values;
  std::transform(texts.begin(), texts.end(), std::back_inserter(values),
                 [](std::string& text) { return text.data(); });
  const unsigned char index =
      ValidateAndGetMaxQValue(values.data(), static_cast<unsigned char>(values.size()));
  return index < texts.size() ? Answer{true, texts[index], "", index} : Answer();
}

Answer imei(Texts& texts) { return answerOf(SipFormatIMEInumber(texts[0].data())); }

struct Question {
  const char* name;
  const char* form;
  const char* help;
  int fewest;
  std::size_t most;
  Answer (*ask)(Texts& texts);
};

const Question kQuestions[] = {
    {"compare", "URI", "Two SIP URIs", 2, 2, compare},
    {"host", "TEXT", "A host, in brackets or bare", 1, 1, host},
    {"quote", "TEXT", "SIP URIs, or lists of them", 1, kEachAlone, quote},
    {"feature-tag", "TEXT REFERENCE", "A text and the name before the value", 2, 2, featureTag},
    {"sort", "LIST", "Elements between semicolons", 1, 1, sort},
    {"max-q", "Q", "Values from 0 to 1", 1, kMaxQValues, maxQ},
    {"imei", "DIGITS", "At least 15 digits", 1, 1, imei},
};

struct PlainTextOptions : Options {
  Texts texts;
};

// Asks about the texts and shows the answer; the place is "" for a single question.
int run(const Question& question, const PlainTextOptions& options, Texts texts,
        const std::string& place) {
  const Diagnostics diagnostics;
  const Answer answer = question.ask(texts);
  Outcome outcome;
  outcome.code = answer.accepted ? VARN_OK : VARN_INVALID_INPUT;
  outcome.reason = answer.accepted || diagnostics.hasFailure() ? "" : answer.reason;
  if (options.json) {
    nlohmann::ordered_json object;
    object["ok"] = answer.accepted;
    object["result"] = answer.accepted ? nlohmann::ordered_json(answer.text) : nullptr;
    if (answer.index >= 0) {
      object["index"] = answer.index;
    }
    object["diagnostics"] = diagnostics.toJson();
    std::cout << jsonLine(object) << '\n';
  } else if (answer.accepted) {
    std::cout << printable(answer.text)
              << (answer.index < 0 ? "" : ", index " + std::to_string(answer.index)) << '\n';
  } else {
    std::cout << (place.empty() ? "" : "refused\n");
  }
  return report(outcome, options, diagnostics, place);
}

int runAll(const Question& question, const PlainTextOptions& options) {
  if (question.most != kEachAlone) {
    return run(question, options, options.texts, "");
  }
  int status = kAccepted;
  for (std::size_t i = 0; i < options.texts.size(); ++i) {
    const std::string place =
        options.texts.size() == 1 ? "" : "text " + std::to_string(i + 1) + ": ";
    status = std::max(status, run(question, options, {options.texts[i]}, place));
  }
  return status;
}

}  // namespace

int runPlainText(CommandLine& line) {
  CLI::App& parser = line.parser;
  const Question& question =
      *std::find_if(std::begin(kQuestions), std::end(kQuestions),
                    [&parser](const Question& q) { return parser.get_name() == q.name; });
  PlainTextOptions options;
  parser.add_option(question.form, options.texts, question.help)
      ->required()
      ->expected(question.fewest)
      ->allow_extra_args(false)
      ->type_name("");
  addOutputOptions(parser, options.json, options.verbose);
  parser.allow_extras();
  line.parse();
  takeRest(parser, options.texts, question.most);
  return runAll(question, options);
}
