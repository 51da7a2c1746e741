// One exchange with the active sonar sensor.
#pragma once

#include <cstdint>

#include "hid/report_channel.h"
#include "sonar/commands.h"

namespace tavlyn::sonar {

// Sends a request and, after the sensor's wait, fetches its reply.
bool Ask(Command command, Report& reply);
// Sends a request and, after the sensor's wait, the page that it stores.
bool Tell(Command command, const Report& page);
// Sends a report that is not answered.
bool Fire(Command command, std::uint8_t argument = 0);
// The wait between a request and what belongs to it.
void AwaitSensor();

}  // namespace tavlyn::sonar
