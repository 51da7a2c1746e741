#include "tools/command_line.h"

#include <algorithm>
#include <charconv>
#include <iostream>
#include <iterator>
#include <limits>
#include <memory>

#include "tools/nearest.h"
#include "tools/printable.h"

namespace tavlyn {
namespace {

// Between the words in the name of a validator, where they are found again.
constexpr char kOr = '|';

constexpr int kNoEnd = std::numeric_limits<int>::max();

template <typename Number>
bool IsNumber(const std::string& word, Number least, Number most, Number& number) {
  const char* end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, number);
  return error == std::errc() && stop == end && number >= least && number <= most;
}

std::string BoundsText(int least, int most) {
  const std::string from = std::to_string(least);
  return most == kNoEnd ? ", " + from + " or more" : " from " + from + " to " + std::to_string(most);
}

// For a command, and for those above it whose options it takes too.
std::vector<std::string> OptionsOf(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* at = &app; at != nullptr; at = at->get_fallthrough() ? at->get_parent() : nullptr) {
    for (const CLI::Option* option : at->get_options()) {
      for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    }
  }
  return names;
}

std::vector<std::string> CommandsOf(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* one : app.get_subcommands([](const CLI::App*) { return true; })) {
    names.push_back(one->get_name());
  }
  return names;
}

// "there is no command lsit; did you mean list?", among the subcommands of a command or of the program.
std::string NoCommand(const CLI::App& app, const std::string& word) {
  return "there is no command " + word + DidYouMean(word, CommandsOf(app));
}

// The parser words these errors itself; they begin with the option's name, or have it after a colon.
std::string ParserProblem(const CLI::ParseError& error) {
  std::string told = error.what();
  if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
    const bool tooMany = told.find("At Most") != std::string::npos;
    return told.substr(0, told.find(':')) + (tooMany ? " is given more than once" : " needs a value");
  }
  if (dynamic_cast<const CLI::ConversionError*>(&error) != nullptr) {
    const std::size_t name = told.find("--");
    if (name != std::string::npos) return told.substr(name, told.find(' ', name) - name) + " takes no value";
  }
  return told;
}

std::string Problem(const CLI::App& app, const CLI::ParseError& error, bool mayHoldKeys) {
  const std::vector<std::string> rest = app.remaining(true);
  const bool commandIsMissing = Innermost(app).get_require_subcommand_min() > 0;
  const bool isMissing = dynamic_cast<const CLI::RequiredError*>(&error) != nullptr;
  const bool isTooMuch = dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr;
  if (isMissing && rest.empty()) return commandIsMissing ? "a command is missing" : error.what();
  if (mayHoldKeys) return "wrong arguments; they are not repeated here, as they may hold a key";
  if (rest.empty() || !(isMissing || isTooMuch)) return ParserProblem(error);
  const auto option =
      std::ranges::find_if(rest, [](const std::string& one) { return one.starts_with('-') && one != "--"; });
  // After a misspelt command every option of that command is unknown.
  const bool commandIsWrong = commandIsMissing && option != rest.begin();
  if (option != rest.end() && !commandIsWrong) {
    // Its value is not repeated.
    const std::string name = option->substr(0, option->find('='));
    return "there is no option " + name + DidYouMean(name, OptionsOf(Innermost(app)));
  }
  const std::string& word = rest.front();
  if (commandIsMissing) return NoCommand(Innermost(app), word);
  // The wrong word may come before the command that was found, "secur read", or below it, "cards st".
  std::vector<std::string> names = CommandsOf(app);
  std::ranges::move(CommandsOf(Innermost(app)), std::back_inserter(names));
  return word + " was not expected" + DidYouMean(word, names);
}

void ShowHelp(const CLI::App& app, const std::vector<std::string>& words) {
  const CLI::App* at = &app;
  std::string above;
  for (const std::string& word : words) {
    const auto below = at->get_subcommands([&](const CLI::App* one) { return one->get_name() == word; });
    if (below.empty()) throw CLI::ValidationError(NoCommand(*at, word));
    above += (above.empty() ? "" : " ") + at->get_name();
    at = below.front();
  }
  const std::string name = above + (above.empty() ? "" : " ") + at->get_name();
  std::cout << at->get_formatter()->make_help(at, name, CLI::AppFormatMode::Normal) << std::flush;
}

}  // namespace

CLI::Validator WholeNumber(int least) { return WholeNumber(least, kNoEnd); }

CLI::Validator WholeNumber(int least, int most) {
  return {[least, most](const std::string& word) {
            int number = 0;
            // The parser takes a leading zero as the mark of an octal number.
            if (IsNumber(word, least, most, number) && word == std::to_string(number)) return std::string();
            return word + " is not a whole number" + BoundsText(least, most);
          },
          ""};
}

CLI::Validator Seconds(int most) {
  return {[most](const std::string& word) {
            double number = 0;
            if (IsNumber<double>(word, 0, most, number)) return std::string();
            return word + " is not a number of seconds" + BoundsText(0, most);
          },
          ""};
}

CLI::Validator OneOf(const std::vector<std::string>& words) {
  CLI::Validator validator = {[words](const std::string& word) {
                                if (std::ranges::find(words, word) != words.end()) return std::string();
                                std::string all;
                                for (const std::string& one : words) all += (all.empty() ? "" : ", ") + one;
                                return word + " is not one of " + all + DidYouMean(word, words);
                              },
                              ""};
  return validator.name(CLI::detail::join(words, std::string(1, kOr)));
}

std::vector<std::string> ChoicesOf(CLI::Option& option) try {
  const std::string& name = option.get_validator(0)->get_name();
  return name.empty() ? std::vector<std::string>() : CLI::detail::split(name, kOr);
} catch (const CLI::OptionNotFound&) {
  return {};  // it has no validator
}

void AddCommonWords(CLI::App& app, const std::function<std::string()>& version) {
  app.set_version_flag("--version", version, "Print the version");
  const auto words = std::make_shared<std::vector<std::string>>();
  CLI::App* help = app.add_subcommand(kHelp, "What --help of a command prints");
  help->add_option("COMMAND", *words, "Its words");
  help->callback([&app, words] {
    ShowHelp(app, *words);
    throw CLI::Success();
  });
}

const CLI::App& Innermost(const CLI::App& app) {
  const CLI::App* at = &app;
  while (!at->get_subcommands().empty()) at = at->get_subcommands().front();
  return *at;
}

std::string GivenCommand(const CLI::App& app) {
  std::string words;
  for (auto given = app.get_subcommands(); !given.empty(); given = given.front()->get_subcommands()) {
    words += (words.empty() ? "" : " ") + given.front()->get_name();
  }
  return words;
}

std::string WrongWords(const CLI::App& app, const CLI::ParseError& error, bool mayHoldKeys) {
  std::string command = GivenCommand(app);
  if (command == kHelp) command.clear();
  const std::string problem = Problem(app, error, mayHoldKeys);
  return problem + (problem.ends_with('?') ? " " : "; ") + app.get_name() + (command.empty() ? "" : " ") +
         command + " --help says more";
}

std::optional<int> Parsed(CLI::App& app, int argc, char** argv, std::span<const Offer> offers, int badUsage) {
  if (const auto words = WordsToComplete(argc, argv)) {
    ShowCandidates(app, *words, offers);
    return 0;
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);  // help
    Tell(app.get_name().c_str(), WrongWords(app, error));
    return badUsage;
  }
  return {};
}

}  // namespace tavlyn
