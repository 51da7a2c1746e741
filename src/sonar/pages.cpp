#include "sonar/pages.h"

#include <cmath>

#include "core/state.h"

namespace tavlyn::sonar {
namespace {

constexpr double kUnitsPerInch = 3.472222;

std::uint8_t UnitsOf(std::uint16_t inches) {
  return static_cast<std::uint8_t>(static_cast<unsigned>(std::floor(inches * kUnitsPerInch + 0.5)));
}

constexpr Scale kPlain{[](std::uint8_t byte) { return std::uint16_t{byte}; },
                       [](std::uint16_t word) { return static_cast<std::uint8_t>(word); }};
constexpr Scale kInches{InchesOf, UnitsOf};

template <unsigned kStep>
constexpr Scale kSteps{[](std::uint8_t byte) { return static_cast<std::uint16_t>(byte * kStep); },
                       [](std::uint16_t word) { return static_cast<std::uint8_t>(word / kStep); }};

// Bits of a byte that count: always, or for a write only.
constexpr PageByte Masked(Word word, std::uint8_t mask) { return {word, kPlain, mask, mask}; }
constexpr PageByte MaskedOnWrite(Word word) { return {word, kPlain, 0xFF, 15}; }
constexpr PageByte Plain(Word word) { return {word, kPlain}; }

}  // namespace

// clang-format off
constinit const std::array<Page, kPageCount> kPages = {{
    {Command::kPage0, {{Masked(LEDFlagsS, 0x7F), {PingRateS, kSteps<4>}, Plain(Reserved1S), {MinDistS, kInches},
                        {MaxDistS, kInches}, Plain(ORDBTmS), Plain(IRDBTmS), Plain(StartDlyS)}}},
    // A read fetches this page twice and deliberately never asks for it.
    {Command::kPage1, {{Masked(KeyCountWA, 15), {InterKeyDelayWA, kSteps<64>}, Plain(Key1ModsWA), Plain(Key2ModsWA),
                        Plain(Key3ModsWA), Plain(Key4ModsWA), Plain(Key5ModsWA), Plain(Key6ModsWA)}}, false},
    {Command::kPage2, {{MaskedOnWrite(Flags0WA), Plain(MinFltRepRate), Plain(Key1CodeWA), Plain(Key2CodeWA),
                        Plain(Key3CodeWA), Plain(Key4CodeWA), Plain(Key5CodeWA), Plain(Key6CodeWA)}}},
    {Command::kPage3, {{Masked(KeyCountWU, 15), {InterKeyDelayWU, kSteps<64>}, Plain(Key1ModsWU), Plain(Key2ModsWU),
                        Plain(Key3ModsWU), Plain(Key4ModsWU), Plain(Key5ModsWU), Plain(Key6ModsWU)}}},
    {Command::kPage4, {{MaskedOnWrite(Flags0WU), {Reserved2WU, kPlain, 0xFF, 0xFF, true}, Plain(Key1CodeWU),
                        Plain(Key2CodeWU), Plain(Key3CodeWU), Plain(Key4CodeWU), Plain(Key5CodeWU),
                        Plain(Key6CodeWU)}}},
    {Command::kPage5, {{{Reserved1I, kPlain, 0xFF, 15, true}, Plain(PressRateI), Plain(Key1ModsI), Plain(Key1CodeI),
                        Plain(FlagsI), Plain(DMTODeltaI), Plain(DMTOTmI), Plain(SNBlankTmI)}}},
}};
// clang-format on

void Unpack(const Page& page, const Report& reply, SonarWords& words) {
  for (std::size_t at = 0; at < kPageBytes; ++at) {
    const PageByte& byte = page.bytes[at];
    words[byte.word] = byte.scale.toWord(reply[at + 1] & byte.readMask);
  }
}

void Pack(const Page& page, const SonarWords& words, Report& report) {
  for (std::size_t at = 0; at < kPageBytes; ++at) {
    const PageByte& byte = page.bytes[at];
    const std::uint16_t word = (byte.asRead ? SonarShadow : words)[byte.word];
    report[at + 1] = byte.scale.toByte(word) & byte.writeMask;
  }
}

std::uint16_t InchesOf(std::uint8_t units) {
  return static_cast<std::uint16_t>(std::floor(units / kUnitsPerInch + 0.5));
}

}  // namespace tavlyn::sonar
