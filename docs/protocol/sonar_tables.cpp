// The commands of the sonar sensor and its pages.
#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "docs/protocol/page.h"
#include "sonar/layout.h"
#include "tools/wire/places.h"

namespace tavlyn::page {
namespace {

constexpr std::array kWordNames = {
#define FIELD(record, name, ...) "ts" #record "." #name,
#include "core/sonar_fields.inc"
};

}  // namespace

std::string SonarCommands() {
  return Table({"Report", "What it does"}, {
#define COMMAND(id, opcode, does) {Code(HexByte(opcode)), does},
#include "sonar/commands.inc"
                                           });
}

std::string SonarPages() {
  std::vector<Row> rows;
  for (const wire::Place& place : wire::SonarPlaces()) {
    const auto* field =
        std::ranges::find_if(sonar::kFields, [&](const sonar::Field& one) { return place.key == one.key; });
    const auto word = static_cast<std::size_t>(field - sonar::kFields.begin());
    rows.push_back({Code(place.commands.front()), place.byte, Code(kWordNames[word]), place.bits});
  }
  return Table({"Page", "Byte", "Word", "Form"}, rows);
}

}  // namespace tavlyn::page
