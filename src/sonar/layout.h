// The sensor's parameter pages: which word is in which byte, and how.
#pragma once

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
extern const std::array<Page, kPageCount> kPages;

void Unpack(const Page& page, const Report& reply, SonarWords& words);
void Pack(const Page& page, const SonarWords& words, Report& report);

// Sensor units to inches, to the nearest.
std::uint16_t InchesOf(std::uint8_t units);

}  // namespace tavlyn::sonar
