// A person in front of a sensor: their distance over time.
#pragma once

#include <cstdint>
#include <vector>

namespace tavlyn::sim {

// A straight stretch at constant speed; from and to in inches.
struct Leg {
  std::uint64_t milliseconds;
  double from;
  double to;
};

class Walk {
 public:
  // Stands still at that distance.
  explicit Walk(double inches = 0) : Walk({{0, inches, inches}}, 0) {}
  // Walks the legs from now on and stays at the end of the last one.
  Walk(std::vector<Leg> legs, std::uint64_t now);

  [[nodiscard]] double At(std::uint64_t now) const;
  // Speed at that time in inches per second, above 0 when moving away.
  [[nodiscard]] double SpeedAt(std::uint64_t now) const;

 private:
  struct Point {
    const Leg* leg;         // the last one once all are over
    std::uint64_t elapsed;  // in it
  };
  [[nodiscard]] Point Locate(std::uint64_t now) const;

  std::vector<Leg> legs_;
  std::uint64_t begun_;
};

}  // namespace tavlyn::sim
