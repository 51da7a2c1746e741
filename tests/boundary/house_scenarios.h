// The scenarios of tests/scenarios, each of which says in its second line what is run.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace tavlyn::boundary {

struct HouseScenario {
  std::filesystem::path file;
  std::string command;              // empty: its second line is none
  std::vector<std::string> events;  // the lines after it
};

inline std::vector<HouseScenario> HouseScenarios() {
  std::vector<HouseScenario> all;
  for (const std::filesystem::directory_entry& file : std::filesystem::directory_iterator(TAVLYN_SCENARIOS)) {
    if (file.path().extension() != ".scenario") continue;
    std::ifstream lines(file.path());
    std::string line;
    std::getline(lines, line);
    std::getline(lines, line);
    all.push_back({file.path(), line.starts_with("# ") ? line.substr(2) : "", {}});
    while (std::getline(lines, line)) all.back().events.push_back(line);
  }
  return all;
}

}  // namespace tavlyn::boundary
