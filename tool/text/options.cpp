// options.cpp - options of the command line that may be given more than once.
#include "text/options.h"

void addRepeatable(CLI::App& parser, const std::string& flag, const std::string& form,
                   const std::string& help, const std::function<void(const std::string&)>& take) {
  parser.add_option_function<std::string>(flag, take, help)
      ->trigger_on_parse()
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
      ->type_name(form);
}
