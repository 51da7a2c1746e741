// What a person sees and hears of a reader: LEDs, relay and beeper as they change, and beeps.
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <string>

namespace tavlyn::sim {

// Bits of the first byte of the block that has them.
enum Output : std::uint8_t { kRedLed = 0x01, kGreenLed = 0x02, kRelay = 0x04, kBeeper = 0x08 };

class Sights {
 public:
  // Whether a line can be one of those that are seen, and which there are.
  [[nodiscard]] static bool CanBe(const std::string& line);
  static constexpr const char* kLines =
      "leds off|red|green|red+green|automatic, relay on|off, beeper on|off, beep N short|long";

  using Outputs = std::array<std::uint8_t, 8>;
  // The block of the configuration in use that has the outputs. The first look is what was there before.
  void Look(const Outputs& outputs);
  void HearBeep(std::uint8_t code);

  // A line for each, the oldest first.
  [[nodiscard]] const std::deque<std::string>& Seen() const { return seen_; }
  [[nodiscard]] int Beeps() const { return beeps_; }

 private:
  void Note(std::string sight);

  bool looked_ = false;
  int beeps_ = 0;
  Outputs last_{};
  std::deque<std::string> seen_;
};

}  // namespace tavlyn::sim
