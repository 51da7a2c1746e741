#include "tools/completion.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <string_view>

#include "tools/command_line.h"
#include "tools/printable.h"

namespace tavlyn {
namespace {

using Candidates = std::vector<Candidate>;

// Instead of a word: a command line of another program, which begins with the word of this number.
constexpr const char* kOtherCommand = ":command ";
constexpr const char* kOtherProgram = "COMMAND";

// Where the word to be completed is.
struct Place {
  CLI::App* command;
  CLI::Option* option = nullptr;  // whose value it is
  std::size_t values = 0;         // that the command has already
  std::size_t firstValue = 0;     // the number of its word
  bool onlyValues = false;        // after "--"
  bool inHelp = false;
};

bool IsOption(const std::string& word) { return word.size() > 1 && word.starts_with('-'); }

std::string Dashed(const std::string& name) { return "--" + name; }

// Of a command, and of those above it whose options it takes too.
std::vector<CLI::Option*> AllOptions(CLI::App* command) {
  std::vector<CLI::Option*> all;
  for (CLI::App* at = command; at != nullptr; at = at->get_fallthrough() ? at->get_parent() : nullptr) {
    for (CLI::Option* option : at->get_options()) {
      const auto isKnown = [&](const CLI::Option* one) { return one->get_lnames() == option->get_lnames(); };
      if (option->nonpositional() && std::ranges::none_of(all, isKnown)) all.push_back(option);
    }
  }
  return all;
}

CLI::Option* OptionOf(CLI::App* command, const std::string& word) {
  for (CLI::Option* option : AllOptions(command)) {
    for (const std::string& name : option->get_lnames()) {
      if (Dashed(name) == word) return option;
    }
  }
  return nullptr;
}

CLI::App* CommandOf(CLI::App* command, const std::string& word) {
  const auto all = command->get_subcommands([&](CLI::App* one) { return one->get_name() == word; });
  return all.empty() ? nullptr : all.front();
}

void Enter(Place& place, CLI::App* command, CLI::App& whole) {
  place.inHelp = place.inHelp || command->get_name() == kHelp;
  place.command = command->get_name() == kHelp ? &whole : command;
}

// Follows the words before the last one.
Place PlaceOf(CLI::App& app, const std::vector<std::string>& words) {
  Place place{&app};
  for (std::size_t at = 0; at + 1 < words.size(); ++at) {
    const std::string& word = words[at];
    if (place.option != nullptr) {
      place.option = nullptr;
    } else if (!place.onlyValues && word == "--") {
      place.onlyValues = true;
    } else if (!place.onlyValues && IsOption(word)) {
      CLI::Option* option = OptionOf(place.command, word);
      if (option != nullptr && option->get_items_expected_max() > 0) place.option = option;
    } else if (CLI::App* below = CommandOf(place.command, word);
               below != nullptr && place.values == 0 && !place.onlyValues) {
      Enter(place, below, app);
    } else if (place.values++ == 0) {
      place.firstValue = at;
    }
  }
  return place;
}

Candidates ValuesOf(CLI::Option* option, const std::vector<std::string>& words,
                    std::span<const Offer> offers) {
  const std::string name = option->get_name(option->get_positional());
  const auto offer = std::ranges::find_if(offers, [&](const Offer& one) { return name == one.name; });
  if (offer != offers.end()) return offer->candidates(words);
  Candidates all;
  for (const std::string& word : ChoicesOf(*option)) all.push_back({word, ""});
  return all;
}

Candidates NamesOfOptions(CLI::App* command) {
  Candidates all;
  for (const CLI::Option* option : AllOptions(command)) {
    for (const std::string& name : option->get_lnames())
      all.push_back({Dashed(name), option->get_description()});
  }
  return all;
}

// The commands below this one, and the values that it takes itself.
Candidates WordsOf(const Place& place, const std::vector<std::string>& words, std::span<const Offer> offers) {
  Candidates all;
  if (place.values == 0 && !place.onlyValues) {
    for (const CLI::App* below : place.command->get_subcommands([](const CLI::App*) { return true; })) {
      all.push_back({below->get_name(), below->get_description()});
    }
  }
  const auto taken = place.command->get_options([](const CLI::Option* one) { return one->get_positional(); });
  if (taken.empty() || place.inHelp) return all;
  CLI::Option* option = taken[std::min(place.values, taken.size() - 1)];
  if (option->get_name(true) == kOtherProgram) {
    const std::size_t first = place.values == 0 ? words.size() - 1 : place.firstValue;
    return {{kOtherCommand + std::to_string(first), ""}};
  }
  if (place.values < taken.size() || option->get_items_expected_max() > 1) {
    std::ranges::move(ValuesOf(option, words, offers), std::back_inserter(all));
  }
  return all;
}

Candidates AllCandidates(CLI::App& app, const std::vector<std::string>& words,
                         std::span<const Offer> offers) {
  const Place place = PlaceOf(app, words);
  if (place.option != nullptr) return ValuesOf(place.option, words, offers);
  const std::string& begun = words.back();
  if (place.onlyValues || !begun.starts_with('-') || place.inHelp) return WordsOf(place, words, offers);
  const std::size_t sign = begun.find('=');
  if (sign == std::string::npos) return NamesOfOptions(place.command);
  CLI::Option* option = OptionOf(place.command, begun.substr(0, sign));
  if (option == nullptr) return {};
  Candidates all = ValuesOf(option, words, offers);
  for (Candidate& one : all) one.word.insert(0, begun.substr(0, sign + 1));
  return all;
}

}  // namespace

std::optional<std::vector<std::string>> WordsToComplete(int argc, char** argv) {
  if (argc < 4 || argv[1] != std::string_view("complete") || argv[2] != std::string_view("--")) {
    return std::nullopt;
  }
  return std::vector<std::string>(argv + 3, argv + argc);
}

void ShowCandidates(CLI::App& app, const std::vector<std::string>& words, std::span<const Offer> offers) {
  for (const Candidate& one : AllCandidates(app, words, offers)) {
    if (!one.word.starts_with(':') && !one.word.starts_with(words.back())) continue;
    std::printf("%s\t%s\n", Printable(one.word).c_str(), Printable(one.text).c_str());
  }
}

}  // namespace tavlyn
