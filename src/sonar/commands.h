// Every command of the sonar sensor, once: b1 of a report.
#pragma once

#include <cstdint>

namespace tavlyn::sonar {

enum class Command : std::uint8_t {
  kPage0 = 0x80,
  kPage1 = 0x81,
  kPage2 = 0x82,
  kPage3 = 0x83,
  kPage4 = 0x84,
  kPage5 = 0x85,
  kIdentity = 0x8A,
  kRange = 0x8F,
  kCommit = 0x90,  // b2: bit n keeps page n
  kFactoryDefaults = 0xA0,
  kSendKeys = 0xB0,
  kHaltKeys = 0xB1,
  kRestoreUserDefaults = 0xD0,
  kSaveUserDefaults = 0xE0,
};

}  // namespace tavlyn::sonar
