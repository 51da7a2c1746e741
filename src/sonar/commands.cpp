#include "sonar/commands.h"

#include "core/pause.h"

namespace tavlyn::sonar {
namespace {

constexpr std::uint32_t kSensorWait = 250;

}  // namespace

bool Tell(Command command, std::uint8_t argument) {
  return SendReport(Report{0, static_cast<std::uint8_t>(command), argument});
}

bool Ask(Command command, Report& reply) {
  if (!Tell(command)) return false;
  AwaitSensor();
  return FetchReport(reply);
}

bool Store(Command command, const Report& page) {
  if (!Tell(command)) return false;
  AwaitSensor();
  return SendReport(page);
}

void AwaitSensor() { Pause(kSensorWait); }

}  // namespace tavlyn::sonar
