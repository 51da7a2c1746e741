#include "sonar/layout.h"

#include <algorithm>
#include <cmath>

#include "core/state.h"

namespace tavlyn::sonar {
namespace {

std::uint8_t UnitsOf(std::uint16_t inches) {
  return static_cast<std::uint8_t>(static_cast<unsigned>(std::floor(inches * kUnitsPerInch + 0.5)));
}

std::uint16_t WordOf(const PageByte& place, std::uint8_t byte) {
  const Field& field = kFields[place.word];
  return field.inches ? InchesOf(byte) : static_cast<std::uint16_t>(byte * field.step);
}

std::uint8_t ByteOf(const PageByte& place, std::uint16_t word) {
  const Field& field = kFields[place.word];
  return field.inches ? UnitsOf(word) : static_cast<std::uint8_t>(word / field.step);
}

}  // namespace

// clang-format off
//                 byte: word, mask of a write, of a read, as read
constexpr std::array<Page, kPageCount> kPages = {{
    {Command::kPage0, {{{LEDFlagsS, 0x7F, 0x7F}, {PingRateS}, {Reserved1S}, {MinDistS},
                        {MaxDistS}, {ORDBTmS}, {IRDBTmS}, {StartDlyS}}}},
    // A read fetches this page twice and deliberately never requests it.
    {Command::kPage1, {{{KeyCountWA, 15, 15}, {InterKeyDelayWA}, {Key1ModsWA}, {Key2ModsWA},
                        {Key3ModsWA}, {Key4ModsWA}, {Key5ModsWA}, {Key6ModsWA}}}, false},
    {Command::kPage2, {{{Flags0WA, 15}, {MinFltRepRate}, {Key1CodeWA}, {Key2CodeWA},
                        {Key3CodeWA}, {Key4CodeWA}, {Key5CodeWA}, {Key6CodeWA}}}},
    {Command::kPage3, {{{KeyCountWU, 15, 15}, {InterKeyDelayWU}, {Key1ModsWU}, {Key2ModsWU},
                        {Key3ModsWU}, {Key4ModsWU}, {Key5ModsWU}, {Key6ModsWU}}}},
    {Command::kPage4, {{{Flags0WU, 15}, {Reserved2WU, 0xFF, 0xFF, true}, {Key1CodeWU}, {Key2CodeWU},
                        {Key3CodeWU}, {Key4CodeWU}, {Key5CodeWU}, {Key6CodeWU}}}},
    {Command::kPage5, {{{Reserved1I, 15, 0xFF, true}, {PressRateI}, {Key1ModsI}, {Key1CodeI},
                        {FlagsI}, {DMTODeltaI}, {DMTOTmI}, {SNBlankTmI}}}},
}};
// clang-format on A commit names the pages by their index.
static_assert(std::ranges::is_sorted(kPages, {}, &Page::command));

void Unpack(const Page& page, const Report& reply, SonarWords& words) {
  for (std::size_t at = 0; at < kPageBytes; ++at) {
    const PageByte& byte = page.bytes[at];
    words[byte.word] = WordOf(byte, reply[at + 1] & byte.readMask);
  }
}

void Pack(const Page& page, const SonarWords& words, Report& report) {
  for (std::size_t at = 0; at < kPageBytes; ++at) {
    const PageByte& byte = page.bytes[at];
    const std::uint16_t word = (byte.asRead ? shared.sonarShadow : words)[byte.word];
    report[at + 1] = ByteOf(byte, word) & byte.writeMask;
  }
}

std::uint16_t InchesOf(std::uint8_t units) {
  return static_cast<std::uint16_t>(std::floor(units / kUnitsPerInch + 0.5));
}

}  // namespace tavlyn::sonar
