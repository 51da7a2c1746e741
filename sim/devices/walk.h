// Somebody in front of a sensor: how far away, over time.
#pragma once

#include <cstdint>
#include <vector>

namespace tavlyn::sim {

// A straight way at even speed; from and to in inches.
struct Leg {
  std::uint64_t milliseconds;
  double from;
  double to;
};

class Walk {
 public:
  // Stands at a place for good.
  explicit Walk(double inches = 0) : Walk({{0, inches, inches}}, 0) {}
  // Stays at the end of the last leg. now: when it begins.
  Walk(std::vector<Leg> legs, std::uint64_t now);

  [[nodiscard]] double At(std::uint64_t now) const;
  // Inches per second at that time, above 0 when going away; 0 when standing.
  [[nodiscard]] double SpeedAt(std::uint64_t now) const;

 private:
  struct Point {
    const Leg* leg;         // the last one when all are over
    std::uint64_t elapsed;  // in it
  };
  [[nodiscard]] Point Locate(std::uint64_t now) const;

  std::vector<Leg> legs_;
  std::uint64_t begun_;
};

}  // namespace tavlyn::sim
