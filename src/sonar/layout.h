// The sensor's parameter pages: which word is in which byte, and how.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "core/mirror.h"
#include "hid/report_channel.h"
#include "sonar/commands.h"

namespace tavlyn::sonar {

struct PageByte {
  Word word;
  std::uint8_t writeMask = 0xFF;
  std::uint8_t readMask = 0xFF;
  bool asRead = false;  // a write sends what the last read delivered, whatever the record holds
};

inline constexpr std::size_t kPageBytes = 8;

struct Page {
  Command command;
  std::array<PageByte, kPageBytes> bytes;  // b1 to b8
  bool requested = true;
};

inline constexpr std::size_t kPageCount = 6;
// clang-format off
//                 byte: word, mask of a write, of a read, as read
inline constexpr std::array<Page, kPageCount> kPages = {{
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
// clang-format on
// A commit names the pages by their index.
static_assert(std::ranges::is_sorted(kPages, {}, &Page::command));

void Unpack(const Page& page, const Report& reply, SonarWords& words);
void Pack(const Page& page, const SonarWords& words, Report& report);

// Sensor units to inches, to the nearest.
std::uint16_t InchesOf(std::uint8_t units);

}  // namespace tavlyn::sonar
