#include "tools/tavlynsim/scenario/check.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "tools/printable.h"
#include "tools/tavlynsim/run.h"
#include "tools/tavlynsim/scenario/rehearsal.h"

namespace tavlyn::sim {

std::function<int()> AddCheck(CLI::App& app) {
  const auto files = std::make_shared<std::vector<std::string>>();
  CLI::App& check =
      *app.add_subcommand("check", "Look for mistakes in scenario files, without running anything");
  check.add_option("FILE", *files, "Scenarios")->required();
  return [files] {
    std::vector<std::string> problems;
    for (const std::string& file : *files) ReadScenario(file, problems);
    for (const std::string& problem : problems) Tell(kProgram, problem);
    return problems.empty() ? 0 : kBadUsage;
  };
}

}  // namespace tavlyn::sim
