#include <functional>
#include <map>
#include <span>
#include <string>

#include "tools/manual/definition.h"
#include "tools/manual/mdoc.h"
#include "tools/manual/tables.h"
#include "tools/reference.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynsim/commands.h"
#include "tools/variables.h"

namespace tavlyn::manual {
namespace {

using Examples = std::span<const Example>;

// "Fl -config Ar N"; "Ar FIELD ..."
std::string Requests(const Word& word) {
  const std::string more = word.several ? " ..." : "";
  if (!word.name.starts_with("-")) return "Ar " + Argument(word.name) + more;
  std::string flags = "Fl " + word.name.substr(1);
  if (const std::size_t other = flags.find(", -"); other != std::string::npos)
    flags.replace(other, 3, " , Fl ");
  return flags + (word.value.empty() ? "" : " Ar " + Argument(word.value));
}

std::string Synopsis(const Tool& tool, const Command& command) {
  std::string text = ".Nm " + tool.name + "\n.Cm " + command.words + "\n";
  for (const Word& option : command.options) text += ".Op " + Requests(option) + "\n";
  for (const Word& value : command.values) {
    const bool follows = tool.name == Tavlynsim().name;  // a command line, after its mark
    text += (value.required ? "." : ".Op ") + std::string(follows ? "Fl - " : "") + Requests(value) + "\n";
  }
  return text;
}

std::string Synopses(const Tool& tool, const std::string& page) {
  std::string text;
  for (const Command& command : tool.commands) {
    if (command.page == page) text += Synopsis(tool, command);
  }
  return text;
}

std::string Items(const std::vector<Word>& words) {
  std::string items;
  for (const Word& word : words) items += Item(Requests(word), word.text);
  return items;
}

std::string Commands(const Tool& tool, const std::string& page) {
  std::string items;
  for (const Command& command : tool.commands) {
    if (command.page != page) continue;
    items += ".It Xo Cm " + command.words + "\n";
    for (const Word& value : command.values) items += ".Ar " + Argument(value.name) + "\n";
    items += ".Xc\n" + Sentences(command.text) + List(Items(command.values) + Items(command.options));
  }
  return List(items);
}

// The first words of every command, by heading.
std::string Pages() {
  std::string text;
  for (const ctl::Heading& heading : ctl::Headings()) {
    std::string items;
    for (const Command& command : Tavlynctl().commands) {
      if (command.page == heading.page) items += Item("Cm " + command.words, command.text);
    }
    text +=
        ".Ss " + std::string(heading.title) + "\nIn\n.Xr tavlynctl-" + heading.page + " 1 :\n" + List(items);
  }
  return text;
}

std::string Statuses(std::span<const ExitStatus> statuses) {
  std::string items;
  for (const ExitStatus& one : statuses) items += Item(one.status, one.meaning);
  return List(items);
}

std::string VariablesOf(unsigned reader) {
  std::string items;
  for (const Variable& one : Variables()) {
    if ((one.readers & reader) != 0) items += Item("Ev " + std::string(one.name), one.text);
  }
  return List(items);
}

std::string ExamplesOf(const Tool& tool, Examples examples, const std::string& page) {
  std::string text;
  for (const Example& example : examples) {
    for (const Command& command : tool.commands) {
      if (command.words != example.command || command.page != page) continue;
      text +=
          (text.empty() ? "" : ".Pp\n") + Sentences(example.text) + Literal(std::string(example.line) + "\n");
    }
  }
  return text;
}

std::string Kinds() {
  std::string items;
  for (const sim::Kind& kind : sim::Kinds()) items += Item("Cm " + Argument(kind.word), kind.text);
  return List(items);
}

// By the first word of the name; the function gets the rest.
const std::map<std::string, std::function<std::string(const std::string&)>> kTables = {
    {"synopsis", [](const std::string& page) { return Synopses(Tavlynctl(), page); }},
    {"commands", [](const std::string& page) { return Commands(Tavlynctl(), page); }},
    {"examples", [](const std::string& page) { return ExamplesOf(Tavlynctl(), ctl::Examples(), page); }},
    {"options", [](const std::string&) { return List(Items(Tavlynctl().options)); }},
    {"pages", [](const std::string&) { return Pages(); }},
    {"statuses", [](const std::string&) { return Statuses(ctl::ExitStatuses()); }},
    {"variables", [](const std::string&) { return VariablesOf(kTavlynctl); }},
    {"sim-synopsis", [](const std::string&) { return Synopses(Tavlynsim(), ""); }},
    {"sim-commands", [](const std::string&) { return Commands(Tavlynsim(), ""); }},
    {"sim-examples", [](const std::string&) { return ExamplesOf(Tavlynsim(), sim::Examples(), ""); }},
    {"sim-options", [](const std::string&) { return List(Items(Tavlynsim().options)); }},
    {"sim-kinds", [](const std::string&) { return Kinds(); }},
    {"sim-statuses", [](const std::string&) { return Statuses(sim::ExitStatuses()); }},
    {"sim-variables", [](const std::string&) { return VariablesOf(kTavlynsim); }},
    {"library-variables", [](const std::string&) { return VariablesOf(kLibrary); }},
    {"library-calls", [](const std::string&) { return LibraryCalls(); }},
    {"library-errors", [](const std::string&) { return LibraryErrors(); }},
    {"udev-rules", [](const std::string&) { return UdevRules(); }},
};

}  // namespace

std::optional<std::string> ManualTable(const std::string& name) {
  const std::size_t blank = name.find(' ');
  const auto table = kTables.find(name.substr(0, blank));
  if (table == kTables.end()) return std::nullopt;
  return table->second(blank == std::string::npos ? "" : name.substr(blank + 1));
}

}  // namespace tavlyn::manual
