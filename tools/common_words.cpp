#include "tools/common_words.h"

#include <iostream>
#include <memory>
#include <vector>

#include "tools/wrong_words.h"

namespace tavlyn {
namespace {

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

}  // namespace tavlyn
