#include "sonar/exchange.h"

#include "core/pause.h"

namespace tavlyn::sonar {
namespace {

constexpr std::uint32_t kSensorWait = 250;

}  // namespace

bool Ask(Command command, Report& reply) {
  if (!Fire(command)) return false;
  AwaitSensor();
  return FetchReport(reply);
}

bool Tell(Command command, const Report& page) {
  if (!Fire(command)) return false;
  AwaitSensor();
  return SendReport(page);
}

bool Fire(Command command, std::uint8_t argument) {
  return SendReport(Report{0, static_cast<std::uint8_t>(command), argument});
}

void AwaitSensor() { Pause(kSensorWait); }

}  // namespace tavlyn::sonar
