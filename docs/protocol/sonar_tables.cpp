// The commands of the sonar sensor and its pages.
#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "docs/protocol/page.h"
#include "sonar/layout.h"

namespace tavlyn::page {
namespace {

constexpr std::array kWordNames = {
#define FIELD(record, name, ...) "ts" #record "." #name,
#include "core/sonar_fields.inc"
};

std::string FormText(const sonar::PageByte& byte) {
  const sonar::Field& field = sonar::kFields[byte.word];
  std::string form;
  const auto add = [&](const std::string& text) { form += (form.empty() ? "" : ", ") + text; };
  if (byte.writeMask != 0xFF)
    add((byte.readMask == byte.writeMask ? "& " : "written & ") + Hex(byte.writeMask));
  if (byte.asRead) add("written as it was read");
  if (field.step > 1) add("in steps of " + std::to_string(field.step) + " ms");
  if (field.inches) add("in sensor units");
  return form;
}

}  // namespace

std::string SonarCommands() {
  return Table({"Report", "What it does"}, {
#define COMMAND(id, opcode, does) {Code(Hex(opcode)), does},
#include "sonar/commands.inc"
                                           });
}

std::string SonarPages() {
  std::vector<Row> rows;
  for (const sonar::Page& page : sonar::kPages) {
    for (std::size_t at = 0; at < page.bytes.size(); ++at) {
      rows.push_back({Code(Hex(static_cast<unsigned>(page.command))), "b" + std::to_string(at + 1),
                      Code(kWordNames[page.bytes[at].word]), FormText(page.bytes[at])});
    }
  }
  return Table({"Page", "Byte", "Word", "Form"}, rows);
}

}  // namespace tavlyn::page
