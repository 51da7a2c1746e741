// Compares the tables of docs/protocol.md with the library's own, or renews them:
//
//   protocol_page PAGE
//   protocol_page --renew PAGE
#include <cstdio>
#include <fstream>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>

#include "docs/protocol/page.h"

namespace tavlyn::page {
namespace {

struct NamedTable {
  std::string_view name;
  std::string (*write)();
};

constexpr NamedTable kTables[] = {
    {"reader commands", ReaderCommands},
    {"format block", FormatBlock},
    {"time block", TimeBlock},
    {"display block", DisplayBlock},
    {"text requests", TextRequests},
    {"text keys", TextKeys},
    {"magstripe commands", MagstripeCommands},
    {"magstripe settings", MagstripeSettings},
    {"sonar commands", SonarCommands},
    {"sonar pages", SonarPages},
};

constexpr std::string_view kBegin = "<!-- table ";
constexpr std::string_view kBeginEnd = " -->";
constexpr std::string_view kEnd = "<!-- end -->";

std::optional<std::string> TableNamed(std::string_view name) {
  for (const NamedTable& table : kTables) {
    if (table.name == name) return table.write();
  }
  return std::nullopt;
}

// The page with all its tables made again; none if it names a table that does not exist.
std::optional<std::string> Renewed(const std::string& page) {
  std::istringstream lines(page);
  std::ostringstream renewed;
  bool inTable = false;
  for (std::string line; std::getline(lines, line);) {
    if (line == kEnd) inTable = false;
    if (!inTable) renewed << line << '\n';
    if (!line.starts_with(kBegin) || !line.ends_with(kBeginEnd)) continue;
    const std::size_t length = line.size() - kBegin.size() - kBeginEnd.size();
    const auto table = TableNamed(std::string_view(line).substr(kBegin.size(), length));
    if (!table) {
      std::cerr << "no such table: " << line << '\n';
      return std::nullopt;
    }
    renewed << '\n' << *table << '\n';
    inTable = true;
  }
  return renewed.str();
}

int Run(const char* path, bool renew) {
  std::ostringstream page;
  page << std::ifstream(path).rdbuf();
  const auto renewed = Renewed(page.str());
  if (!renewed) return 2;
  if (renew) return std::ofstream(path) << *renewed ? 0 : 2;
  if (*renewed == page.str()) return 0;
  std::cerr << path << " is not current. Renew it:\n"
            << "  scripts/build release protocol_page && build/release/bin/protocol_page --renew "
               "docs/protocol.md\n";
  return 1;
}

}  // namespace

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

std::string Hex(unsigned byte) {
  char text[8];
  std::snprintf(text, sizeof text, "%02X", byte);
  return text;
}

std::string FieldName(FieldId id) {
  return Code(std::string(kRecordNames[id.record]) + "." + FieldOf(id).name);
}

}  // namespace tavlyn::page

int main(int count, char** words) {
  const bool renew = count == 3 && std::string_view(words[1]) == "--renew";
  if (!renew && count != 2) {
    std::cerr << "usage: protocol_page [--renew] PAGE\n";
    return 2;
  }
  return tavlyn::page::Run(words[count - 1], renew);
}
