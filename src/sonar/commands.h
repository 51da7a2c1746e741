// Commands of the sonar sensor, b1 of a report, and the exchanges they take part in.
#pragma once

#include <cstdint>

#include "hid/report_channel.h"

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

// A report that is sent and not answered.
bool Tell(Command command, std::uint8_t argument = 0);
// A request and, after the sensor's wait, its reply.
bool Ask(Command command, Report& reply);
// A request and, after the sensor's wait, the page that it stores.
bool Store(Command command, const Report& page);
// The wait between a request and what belongs to it.
void AwaitSensor();

}  // namespace tavlyn::sonar
