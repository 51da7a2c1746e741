// Compares what the manual pages, docs/tavlynctl.md and docs/tavlynsim.md say of the commands with the tools'
// own definition, or renews it (docs/renewal).
#include <string>

#include "docs/renewal/renewal.h"
#include "tools/manual/tables.h"

int main(int count, char** words) {
  using namespace tavlyn;
  const auto tableOf = [](const std::string& name) {
    const auto table = manual::MarkdownTable(name);
    return table ? table : manual::ManualTable(name);
  };
  return page::Renewal(
      {words + 1, words + count}, tableOf,
      "scripts/build release manual_pages && build/release/bin/manual_pages --renew man/* docs/tavlynctl.md "
      "docs/tavlynsim.md");
}
