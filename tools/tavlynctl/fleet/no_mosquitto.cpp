// Built where libmosquitto's headers are not.
#include "tools/tavlynctl/fleet/broker.h"

namespace tavlyn::ctl {

struct Broker::Client {};

Broker::Broker(const FleetWords& words) {
  words.Check();
  throw Failure(kUsage, "this tavlynctl was built without libmosquitto, and has no fleet");
}

Broker::~Broker() = default;

void Broker::Subscribe(const std::vector<std::string>& /*topics*/, int /*quality*/) {}
void Broker::Publish(const std::string& /*topic*/, const std::string& /*payload*/) {}
std::optional<Heard> Broker::Hear(std::chrono::milliseconds /*most*/) { return std::nullopt; }

}  // namespace tavlyn::ctl
