#include "tools/tavlynctl/help.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "tools/reference.h"
#include "tools/tavlynctl/areas.h"

namespace tavlyn::ctl {
namespace {

// Of the commands of --help under a heading.
std::string ExampleUnder(const CLI::App& app, const std::string& title) {
  for (const CLI::App* one : app.get_subcommands([](const CLI::App*) { return true; })) {
    if (one->get_group() == title) return ExampleOf(one->get_name());
  }
  return {};
}

class Formatter : public CLI::Formatter {
 public:
  std::string make_subcommands(const CLI::App* app, CLI::AppFormatMode mode) const override {
    std::string text = CLI::Formatter::make_subcommands(app, mode);
    // Below the program the examples are those of whole areas, in their footers.
    if (app->get_parent() != nullptr) return text;
    for (const Heading& heading : Headings()) {
      const std::size_t begin = text.find("\n" + std::string(heading.title) + ":\n");
      const std::string example = ExampleUnder(*app, heading.title);
      if (begin == std::string::npos || example.empty()) continue;
      const std::size_t end = std::min(text.find("\n\n", begin + 1), text.size() - 1);
      text.insert(end, "\n  Example: " + example);
    }
    return text;
  }
};

// The commands that people want first with a device of a product, or without any.
struct FirstCommands {
  std::string_view product;  // as list names it
  std::array<const char*, 3> commands;
};

constexpr FirstCommands kFirstCommands[] = {
    {"card reader", {"read", "watch", "config show"}},
    {"magstripe reader", {"swipe watch", "track", "info"}},
    {"sonar sensor", {"range", "config show", "info"}},
    {"", {"doctor", "find", "help"}},
};

// Null if there is none, or nothing to look below.
const CLI::App* Below(const CLI::App* above, const std::string& word) {
  if (above == nullptr) return nullptr;
  const auto found = above->get_subcommands([&](const CLI::App* one) { return one->get_name() == word; });
  return found.empty() ? nullptr : found.front();
}

Json StepsFor(const CLI::App& app, const std::string& product) {
  Json steps = Json::array();
  const auto* first = std::ranges::find(kFirstCommands, product, &FirstCommands::product);
  for (const std::string words : first->commands) {
    const CLI::App* command = &app;
    for (const std::string& word : CLI::detail::split(words, ' ')) command = Below(command, word);
    if (command == nullptr) continue;
    steps.push_back({{"next", app.get_name() + " " + words}, {"what_for", command->get_description()}});
  }
  return steps;
}

}  // namespace

bool IsOrIsBelow(std::string_view command, std::string_view words) {
  return command.starts_with(words) && (command.size() == words.size() || command[words.size()] == ' ');
}

std::string ExampleOf(const std::string& words) {
  const auto all = Examples();
  const auto found =
      std::ranges::find_if(all, [&](const Example& one) { return IsOrIsBelow(one.command, words); });
  return found != all.end() ? found->line : "";
}

std::shared_ptr<CLI::FormatterBase> HelpWithExamples() { return std::make_shared<Formatter>(); }

Json FirstSteps(const CLI::App& app, const std::function<Json()>& list) {
  Json document = NewDocument("");
  Json found;
  try {
    found = list();
  } catch (const Failure& failure) {
    found = failure.document;
    document["problem"] = failure.what();
  }
  std::string product;
  if (found.contains("devices")) {
    document["devices"] = found["devices"];
    product = found["devices"].front()["product"];
  }
  document["steps"] = StepsFor(app, product);
  return document;
}

}  // namespace tavlyn::ctl
