#include "tools/wrong_words.h"

#include <algorithm>
#include <vector>

namespace tavlyn {
namespace {

const CLI::App& Innermost(const CLI::App& app) {
  const CLI::App* at = &app;
  while (!at->get_subcommands().empty()) at = at->get_subcommands().front();
  return *at;
}

std::string Problem(const CLI::App& app, const CLI::ParseError& error, bool mayHoldKeys) {
  const std::vector<std::string> rest = app.remaining(true);
  const bool commandIsMissing = Innermost(app).get_require_subcommand_min() > 0;
  const bool isMissing = dynamic_cast<const CLI::RequiredError*>(&error) != nullptr;
  const bool isTooMuch = dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr;
  if (isMissing && rest.empty()) return commandIsMissing ? "a command is missing" : error.what();
  if (mayHoldKeys) return "the words do not fit; they are not repeated here, as they may hold a key";
  if (rest.empty() || !(isMissing || isTooMuch)) return error.what();
  const auto option =
      std::ranges::find_if(rest, [](const std::string& one) { return one.starts_with('-') && one != "--"; });
  if (option != rest.end()) return "there is no option " + *option;
  const std::string& word = rest.front();
  return commandIsMissing ? "there is no command " + word : word + " was not expected";
}

}  // namespace

std::string GivenCommand(const CLI::App& app) {
  std::string words;
  for (auto given = app.get_subcommands(); !given.empty(); given = given.front()->get_subcommands()) {
    words += (words.empty() ? "" : " ") + given.front()->get_name();
  }
  return words;
}

std::string WrongWords(const CLI::App& app, const CLI::ParseError& error, bool mayHoldKeys) {
  const std::string command = GivenCommand(app);
  return Problem(app, error, mayHoldKeys) + "; " + app.get_name() + (command.empty() ? "" : " ") + command +
         " --help tells more";
}

}  // namespace tavlyn
