// Compares what the manual pages, docs/tavlynctl.md, docs/tavlynsim.md and docs/tavlynd.md say of commands
// and settings with the tools' own definition, or renews it (docs/renewal).
#include <string>

#include "docs/renewal/renewal.h"
#include "tools/manual/tables.h"

int main(int count, char** words) {
  using namespace tavlyn;
  const auto tableOf = [](const std::string& name) {
    auto table = manual::MarkdownTable(name);
    if (!table) table = manual::AgentTable(name);
    return table ? table : manual::ManualTable(name);
  };
  return page::Renewal(
      {words + 1, words + count}, tableOf,
      "scripts/build release manual_pages && build/release/bin/manual_pages --renew man/* docs/tavlynctl.md "
      "docs/tavlynsim.md docs/tavlynd.md packaging/agent/tavlynd.toml");
}
