#include <algorithm>
#include <vector>

#include "docs/renewal/renewal.h"
#include "tools/manual/definition.h"
#include "tools/manual/tables.h"
#include "tools/reference.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/output.h"
#include "tools/tavlynsim/run.h"
#include "tools/tavlynsim/scenario/scenario.h"

namespace tavlyn::manual {
namespace {

using page::Code;
using page::Row;

constexpr std::size_t kTextColumn = 44;

// "tavlynctl config set FIELD=VALUE…"
std::string Usage(const Command& command) {
  std::string line = std::string(ctl::kProgram) + " " + command.words;
  for (const Word& value : command.values) {
    const std::string name = value.name + (value.several ? "..." : "");
    line += value.required ? " " + name : " [" + name + "]";
  }
  return line;
}

std::string CommandLines() {
  std::string text;
  for (const ctl::Heading& heading : ctl::Headings()) {
    text += (text.empty() ? "" : "\n") + std::string(heading.title) + ":\n\n";
    for (const Command& command : Tavlynctl().commands) {
      if (command.page != heading.page) continue;
      std::string line = Usage(command);
      line.resize(std::max(line.size() + 2, kTextColumn), ' ');
      text += "    " + line + command.text + "\n";
    }
  }
  return text;
}

// A bar in a cell would begin the next one.
std::string Cell(std::string text) {
  for (std::size_t at = 0; (at = text.find('|', at)) != std::string::npos; at += 2) text.insert(at, "\\");
  return text;
}

std::string Shown(const Word& option) {
  return Code(Cell(option.name + (option.value.empty() ? "" : " " + option.value)));
}

// "`list`, `config show`"; "all but `find`" if these are fewer.
std::string OfCommands(const std::vector<std::string>& with) {
  std::vector<std::string> without;
  for (const Command& command : Tavlynctl().commands) {
    if (std::ranges::find(with, command.words) == with.end()) without.push_back(command.words);
  }
  const bool most = without.size() < with.size();
  std::string text;
  for (const std::string& words : most ? without : with) text += (text.empty() ? "" : ", ") + Code(words);
  return (most ? "all but " : "") + text;
}

// An option, and the commands in which it means this.
struct Line {
  Word option;
  std::vector<std::string> commands;
};

std::vector<Line> LinesOf(const Tool& tool) {
  std::vector<Line> lines;
  for (const Command& command : tool.commands) {
    for (const Word& option : command.options) {
      const auto same = std::ranges::find_if(lines, [&](const Line& one) {
        return one.option.name == option.name && one.option.text == option.text;
      });
      if (same == lines.end()) {
        lines.push_back({option, {command.words}});
      } else {
        same->commands.push_back(command.words);
      }
    }
  }
  return lines;
}

std::string Options() {
  std::vector<Line> lines = LinesOf(Tavlynctl());
  std::ranges::stable_sort(lines, {}, [](const Line& one) { return one.option.name; });
  std::vector<Row> rows;
  for (const Word& option : Tavlynctl().options) rows.push_back({Shown(option), "all", Cell(option.text)});
  for (const Line& line : lines) {
    rows.push_back({Shown(line.option), OfCommands(line.commands), Cell(line.option.text)});
  }
  return page::Table({"Option", "Of", "Meaning"}, rows);
}

std::string Statuses() {
  std::vector<Row> rows;
  for (const ExitStatus& one : ctl::ExitStatuses()) rows.push_back({one.status, one.meaning});
  return page::Table({"Code", "Meaning"}, rows);
}

std::string SimulatorOptions() {
  std::vector<Row> rows;
  for (const Line& line : LinesOf(Tavlynsim())) {
    std::string of;
    for (const std::string& words : line.commands) of += (of.empty() ? "" : ", ") + Code(words);
    rows.push_back({Shown(line.option), of, Cell(line.option.text)});
  }
  return page::Table({"Option", "Of", "Meaning"}, rows);
}

std::string SimulatorStatuses() {
  std::vector<Row> rows;
  for (const ExitStatus& one : sim::ExitStatuses()) rows.push_back({one.status, one.meaning});
  return page::Table({"Status", "Meaning"}, rows);
}

std::string ScenarioLines() {
  std::vector<Row> rows;
  for (const sim::ScenarioWords& one : sim::LinesOfScenarios())
    rows.push_back({Code(Cell(one.words)), Cell(one.meaning)});
  return page::Table({"Line", "Meaning"}, rows);
}

std::string ScenarioExpectations() {
  std::vector<Row> rows;
  for (const sim::ConditionKind& one : sim::ConditionKinds())
    rows.push_back({Code(Cell(one.words)), Cell(one.meaning)});
  return page::Table({"WHAT", "It is so if"}, rows);
}

struct NamedTable {
  const char* name;
  std::string (*write)();
};

constexpr NamedTable kMarkdown[] = {{"list of commands", CommandLines},
                                    {"list of options", Options},
                                    {"list of exit codes", Statuses},
                                    {"list of simulator options", SimulatorOptions},
                                    {"list of simulator exit statuses", SimulatorStatuses},
                                    {"list of scenario lines", ScenarioLines},
                                    {"list of scenario expectations", ScenarioExpectations}};

}  // namespace

std::optional<std::string> MarkdownTable(const std::string& name) {
  for (const NamedTable& table : kMarkdown) {
    if (name == table.name) return table.write();
  }
  return std::nullopt;
}

}  // namespace tavlyn::manual
