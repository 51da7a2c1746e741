#include "docs/renewal/renewal.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string_view>

namespace tavlyn::page {
namespace {

struct Marks {
  std::string_view begin;
  std::string_view beginEnd;
  std::string_view end;
  std::string_view gap;
};

constexpr Marks kMarkdown = {"<!-- table ", " -->", "<!-- end -->", "\n"};
constexpr Marks kManual = {".\\\" table ", "", ".\\\" end", ""};
constexpr Marks kSettings = {"# table ", "", "# end", ""};
constexpr Marks kHeader = {"/* table ", " */", "/* end */", ""};

const Marks& MarksOf(const std::string& path) {
  if (path.ends_with(".md")) return kMarkdown;
  if (path.ends_with(".toml")) return kSettings;
  return path.ends_with(".h") ? kHeader : kManual;
}

// The name in a line that begins a table.
std::optional<std::string> NameIn(const std::string& line, const Marks& marks) {
  if (!line.starts_with(marks.begin) || !line.ends_with(marks.beginEnd)) return std::nullopt;
  return line.substr(marks.begin.size(), line.size() - marks.begin.size() - marks.beginEnd.size());
}

// The page with all its tables made again; none if it has no table or names one that does not exist.
std::optional<std::string> Renewed(const std::string& page, const Marks& marks, const TableOf& tableOf) {
  std::istringstream lines(page);
  std::ostringstream renewed;
  bool inTable = false;
  bool anyTable = false;
  for (std::string line; std::getline(lines, line);) {
    if (line == marks.end) inTable = false;
    if (!inTable) renewed << line << '\n';
    const auto name = NameIn(line, marks);
    if (!name) continue;
    const auto table = tableOf(*name);
    if (!table) {
      std::cerr << "no such table: " << line << '\n';
      return std::nullopt;
    }
    renewed << marks.gap << *table << marks.gap;
    inTable = anyTable = true;
  }
  if (!anyTable) std::cerr << "no table\n";
  return anyTable ? std::optional(renewed.str()) : std::nullopt;
}

int RenewPage(const std::string& path, bool renew, const TableOf& tableOf, const char* command) {
  std::ostringstream page;
  page << std::ifstream(path).rdbuf();
  const auto renewed = Renewed(page.str(), MarksOf(path), tableOf);
  if (!renewed) return 2;
  if (*renewed == page.str()) return 0;
  if (renew) return std::ofstream(path) << *renewed ? 0 : 2;
  std::cerr << path << " is not current. Renew it:\n  " << command << '\n';
  return 1;
}

}  // namespace

TableOf Among(std::span<const NamedTable> tables) {
  return [tables](const std::string& name) -> std::optional<std::string> {
    const auto found = std::ranges::find(tables, name, &NamedTable::name);
    if (found == tables.end()) return std::nullopt;
    return found->write();
  };
}

int Renewal(const std::vector<std::string>& arguments, const TableOf& tableOf, const char* command) {
  const bool renew = !arguments.empty() && arguments.front() == "--renew";
  if (arguments.size() <= (renew ? 1 : 0)) {
    std::cerr << "usage: [--renew] PAGE...\n";
    return 2;
  }
  int status = 0;
  for (std::size_t at = renew ? 1 : 0; at < arguments.size(); ++at) {
    status = std::max(status, RenewPage(arguments[at], renew, tableOf, command));
  }
  return status;
}

std::string Table(const Row& heads, const std::vector<Row>& rows) {
  const auto line = [](const Row& cells) {
    std::string text = "|";
    for (const std::string& cell : cells) text += " " + cell + " |";
    return text + "\n";
  };
  std::string text = line(heads) + line(Row(heads.size(), "---"));
  for (const Row& row : rows) text += line(row);
  return text;
}

std::string Code(const std::string& text) { return text.empty() ? "" : "`" + text + "`"; }

}  // namespace tavlyn::page
