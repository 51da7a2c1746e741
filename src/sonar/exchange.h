// One exchange with the active sonar sensor.
#pragma once

#include <cstdint>

#include "hid/report_channel.h"
#include "sonar/commands.h"

namespace tavlyn::sonar {

// A request and, after the sensor's wait, its reply.
bool Ask(Command command, Report& reply);
// A request and, after the sensor's wait, the page that it stores.
bool Tell(Command command, const Report& page);
// A report that is sent and not answered.
bool Fire(Command command, std::uint8_t argument = 0);
// The wait between a request and what belongs to it.
void AwaitSensor();

}  // namespace tavlyn::sonar
