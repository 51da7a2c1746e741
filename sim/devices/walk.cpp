#include "sim/devices/walk.h"

#include <utility>

namespace tavlyn::sim {

Walk::Walk(std::vector<Leg> legs, std::uint64_t now) : legs_(std::move(legs)), begun_(now) {
  if (legs_.empty()) legs_.push_back({0, 0, 0});
}

Walk::Point Walk::Locate(std::uint64_t now) const {
  std::uint64_t elapsed = now > begun_ ? now - begun_ : 0;
  for (const Leg& leg : legs_) {
    if (elapsed < leg.milliseconds) return {&leg, elapsed};
    elapsed -= leg.milliseconds;
  }
  return {&legs_.back(), legs_.back().milliseconds};
}

double Walk::At(std::uint64_t now) const {
  const Point point = Locate(now);
  const Leg& leg = *point.leg;
  if (point.elapsed >= leg.milliseconds) return leg.to;
  return leg.from +
         (leg.to - leg.from) * static_cast<double>(point.elapsed) / static_cast<double>(leg.milliseconds);
}

double Walk::SpeedAt(std::uint64_t now) const {
  const Point point = Locate(now);
  const Leg& leg = *point.leg;
  if (point.elapsed >= leg.milliseconds) return 0;
  return (leg.to - leg.from) * 1000 / static_cast<double>(leg.milliseconds);
}

}  // namespace tavlyn::sim
