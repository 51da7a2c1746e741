// What tavlynd.toml, docs/tavlynd.md and tavlynd(1) say of keys and commands.
#include <algorithm>
#include <vector>

#include "docs/renewal/renewal.h"
#include "tools/manual/definition.h"
#include "tools/manual/mdoc.h"
#include "tools/manual/tables.h"
#include "tools/reference.h"
#include "tools/tavlynd/commands.h"
#include "tools/tavlynd/keys.h"
#include "tools/tavlynd/topics.h"

namespace tavlyn::manual {
namespace {

std::string KeyLines() {
  std::vector<page::Row> rows;
  for (const agent::Key& key : agent::Keys()) {
    rows.push_back(
        {page::Code(agent::NameOf(key)), agent::MustOf(key), page::Code(agent::DefaultOf(key)), key.meaning});
  }
  return page::Table({"Key", "Value", "Default", "Meaning"}, rows);
}

std::string KeyItems() {
  std::string items;
  for (const agent::Key& key : agent::Keys()) {
    items += Item("Cm " + agent::NameOf(key), std::string(key.meaning) + " Value: " + agent::MustOf(key) +
                                                  "; default " + agent::DefaultOf(key) + ".");
  }
  return List(items);
}

// "`count`: beeps, 1 to 5 (1)"
std::string ArgumentsOf(const agent::CommandKind& command, const char* before, const char* after) {
  std::string text;
  for (const agent::Argument& one : command.arguments) {
    text += (text.empty() ? "" : "; ") + std::string(before) + one.name + after + ": " + one.meaning;
  }
  return text;
}

std::string TopicTable() {
  std::vector<page::Row> rows;
  for (const agent::TopicKind& one : agent::TopicKinds()) {
    rows.push_back({page::Code(one.end), one.devices, one.retained ? "yes" : "", one.meaning});
  }
  return page::Table({"Topic ends with", "Of", "Retained", "Meaning"}, rows);
}

std::string CommandTable() {
  std::vector<page::Row> rows;
  for (const agent::CommandKind& one : agent::CommandKinds()) {
    rows.push_back({page::Code(one.name), one.meaning, ArgumentsOf(one, "`", "`")});
  }
  return page::Table({"`do`", "What it does", "Arguments"}, rows);
}

std::string CommandItems() {
  std::string items;
  for (const agent::CommandKind& one : agent::CommandKinds()) {
    const std::string arguments = ArgumentsOf(one, "", "");
    items +=
        Item("Cm " + std::string(one.name), one.meaning + (arguments.empty() ? "." : ": " + arguments + "."));
  }
  return List(items);
}

std::string AgentOptions() {
  std::string items;
  for (const Word& word : Tavlynd().values) items += Item("Ar " + word.name, word.text);
  for (const Word& word : Tavlynd().options) items += Item("Fl " + word.name.substr(1), word.text);
  return List(items);
}

std::string AgentStatuses() {
  std::string items;
  for (const ExitStatus& one : agent::ExitStatuses()) items += Item(one.status, one.meaning);
  return List(items);
}

constexpr page::NamedTable kAgentTables[] = {
    {"settings", agent::ExampleFile}, {"list of settings", KeyLines},
    {"list of topics", TopicTable},   {"list of agent commands", CommandTable},
    {"agent-keys", KeyItems},         {"agent-commands", CommandItems},
    {"agent-options", AgentOptions},  {"agent-statuses", AgentStatuses},
};

}  // namespace

std::optional<std::string> AgentTable(const std::string& name) { return page::Among(kAgentTables)(name); }

}  // namespace tavlyn::manual
