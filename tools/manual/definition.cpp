#include "tools/manual/definition.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>

#include "tools/command_line.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/commands.h"
#include "tools/tavlynctl/program.h"
#include "tools/tavlynd/settings.h"
#include "tools/tavlynd/words.h"
#include "tools/tavlynsim/commands.h"
#include "tools/tavlynsim/run.h"

namespace tavlyn::manual {
namespace {

bool IsFlag(const CLI::Option& option) { return option.get_items_expected_max() == 0; }

Word WordOf(const CLI::Option& option) {
  Word word{"", "", option.get_description(), option.get_required(), option.get_items_expected_max() > 1};
  if (option.get_positional()) {
    word.name = option.get_name(true);
    return word;
  }
  for (const std::string& name : option.get_lnames()) word.name += (word.name.empty() ? "--" : ", --") + name;
  if (IsFlag(option)) return word;
  const std::string& text = option.get_option_text();
  word.value = text.empty() ? option.get_type_name() : text;
  return word;
}

std::vector<Word> WordsOf(const CLI::App& app, bool positional) {
  std::vector<Word> words;
  for (const CLI::Option* option : app.get_options()) {
    const bool isHidden = option->get_group().empty();
    if (!isHidden && option->get_positional() == positional) words.push_back(WordOf(*option));
  }
  return words;
}

// The commands below a word, those below them too; a word that only introduces others is none itself.
void AddBelow(const CLI::App& app, const std::string& above, const std::string& page,
              std::vector<Command>& all) {
  for (const CLI::App* one : app.get_subcommands([](const CLI::App*) { return true; })) {
    if (one->get_name() == kHelp) continue;
    Command command{above + one->get_name(), one->get_description(), page, {}, WordsOf(*one, true)};
    command.options = WordsOf(*one, false);
    const std::string words = command.words;
    std::string itsPage = page;
    for (const ctl::Heading& heading : ctl::Headings()) {
      if (one->get_group() == heading.title) itsPage = heading.page;
    }
    command.page = itsPage;
    if (one->get_require_subcommand_min() == 0) all.push_back(std::move(command));
    AddBelow(*one, words + " ", itsPage, all);
  }
}

Tool ToolOf(const CLI::App& app) {
  Tool tool{app.get_name(), WordsOf(app, false), WordsOf(app, true), {}};
  AddBelow(app, "", "", tool.commands);
  // What every command has is told once.
  for (Command& command : tool.commands) {
    std::erase_if(command.options, [&](const Word& option) {
      return option.name == kHelpOption ||
             std::ranges::find(tool.options, option.name, &Word::name) != tool.options.end();
    });
  }
  return tool;
}

}  // namespace

const Tool& Tavlynctl() {
  static const Tool kTool = ToolOf(ctl::WholeProgram()->Definition());
  return kTool;
}

const Tool& Tavlynsim() {
  static const Tool kTool = [] {
    CLI::App app(sim::kAbout, sim::kProgram);
    sim::AddCommands(app);
    return ToolOf(app);
  }();
  return kTool;
}

const Tool& Tavlynd() {
  static const Tool kTool = [] {
    CLI::App app(agent::kAbout, agent::kProgram);
    agent::CommandLine line;
    agent::AddWords(app, line);
    return ToolOf(app);
  }();
  return kTool;
}

}  // namespace tavlyn::manual
