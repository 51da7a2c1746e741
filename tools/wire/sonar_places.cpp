// The pages of a sonar sensor.
#include <cstddef>
#include <string>
#include <vector>

#include "sonar/layout.h"
#include "tools/wire/places.h"

namespace tavlyn::wire {
namespace {

std::string FormText(const sonar::PageByte& byte) {
  const sonar::Field& field = sonar::kFields[byte.word];
  std::string form;
  const auto add = [&](const std::string& text) { form += (form.empty() ? "" : ", ") + text; };
  if (byte.writeMask != 0xFF) {
    add((byte.readMask == byte.writeMask ? "& " : "written & ") + HexByte(byte.writeMask));
  }
  if (byte.asRead) add("written as it was read");
  if (field.step > 1) add("in steps of " + std::to_string(field.step) + " ms");
  if (field.inches) add("in sensor units");
  return form;
}

}  // namespace

std::vector<Place> SonarPlaces() {
  std::vector<Place> places;
  for (const sonar::Page& page : sonar::kPages) {
    for (std::size_t at = 0; at < page.bytes.size(); ++at) {
      const sonar::PageByte& byte = page.bytes[at];
      places.push_back({{HexByte(static_cast<unsigned>(page.command))},
                        "b" + std::to_string(at + 1),
                        FormText(byte),
                        sonar::kFields[byte.word].key});
    }
  }
  return places;
}

}  // namespace tavlyn::wire
