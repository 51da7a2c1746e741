// The links on which faults are tried, and a test for each operation on each of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>
#include <tuple>
#include <vector>

#include "tests/faults/operations.h"

namespace tavlyn::faults {

struct Link {
  Stage stage;
  const char* name;
  // How many faults there are, at least. A number that has grown may be entered; one that has shrunk means
  // that an operation or a way to fail is no longer tried.
  int points;
};

using Row = std::tuple<Link, Operation>;

inline std::vector<Row> RowsOf(std::span<const Link> links) {
  std::vector<Row> rows;
  for (const Link& link : links) {
    for (const Operation& operation : Operations()) {
      if ((operation.stages & link.stage) != 0) rows.emplace_back(link, operation);
    }
  }
  return rows;
}

// For the name of a test.
inline std::string Squeezed(std::string name) {
  std::erase_if(name, [](char c) { return c == ' ' || c == ','; });
  return name;
}
inline std::string NameOf(const Link& link) { return Squeezed(link.name); }
inline std::string NameOf(const Row& row) {
  return NameOf(std::get<Link>(row)) + '_' + Squeezed(std::get<Operation>(row).name);
}

// A quick run tries one fault of so many, not the same ones for each operation; with TAVLYN_EVERY_FAULT set
// all are tried (scripts/faults).
inline std::size_t OneOf(std::size_t many) { return std::getenv("TAVLYN_EVERY_FAULT") != nullptr ? 1 : many; }

// Whatever fails, an operation takes no more time than this, in milliseconds. The most is taken by a plus
// reader that goes away while its card types are asked for: six attempts for each of 257 reports.
inline constexpr std::uint64_t kPatience = 300'000;

}  // namespace tavlyn::faults
