#include "sim/devices/sights.h"

#include <algorithm>
#include <cstddef>
#include <sstream>
#include <utility>

namespace tavlyn::sim {
namespace {

constexpr std::size_t kMostSights = 10'000;
constexpr std::uint8_t kLedsAreSet = 0x02;  // of the second byte
constexpr std::uint8_t kBeepIsLong = 0x80;

constexpr const char* kColours[] = {"off", "red", "green", "red+green"};
constexpr const char* kAutomatic = "automatic";

std::string LedsOf(const Sights::Outputs& outputs) {
  return (outputs[1] & kLedsAreSet) == 0 ? kAutomatic : kColours[outputs[0] & (kRedLed | kGreenLed)];
}

// What is on or off, by the bit of the first byte.
struct Switch {
  const char* name;
  std::uint8_t bit;
};
constexpr Switch kSwitches[] = {{"relay", kRelay}, {"beeper", kBeeper}};

bool IsOneOf(const std::string& word, const char* one, const char* other) {
  return word == one || word == other;
}

bool IsBeepCount(const std::string& word) {
  constexpr std::size_t kMostDigits = 3;
  return word.size() <= kMostDigits && word.find_first_not_of("0123456789") == std::string::npos;
}

}  // namespace

bool Sights::CanBe(const std::string& line) {
  std::istringstream words(line);
  std::string what;
  std::string how;
  std::string length;
  std::string more;
  words >> what >> how >> length >> more;
  if (!more.empty()) return false;
  if (what == "beep") return IsBeepCount(how) && IsOneOf(length, "long", "short");
  if (!length.empty()) return false;
  if (what == "leds") return how == kAutomatic || std::ranges::count(kColours, how) > 0;
  return std::ranges::count(kSwitches, what, &Switch::name) > 0 && IsOneOf(how, "on", "off");
}

void Sights::Look(const Sights::Outputs& outputs) {
  const Outputs before = std::exchange(last_, outputs);
  if (!std::exchange(looked_, true)) return;
  if (LedsOf(outputs) != LedsOf(before)) Note("leds " + LedsOf(outputs));
  for (const Switch& one : kSwitches) {
    const bool on = (outputs[0] & one.bit) != 0;
    if (on != ((before[0] & one.bit) != 0)) Note(one.name + std::string(on ? " on" : " off"));
  }
}

void Sights::HearBeep(std::uint8_t code) {
  const int count = code & ~kBeepIsLong;
  beeps_ += count;
  Note("beep " + std::to_string(count) + ((code & kBeepIsLong) != 0 ? " long" : " short"));
}

void Sights::Note(std::string sight) {
  if (seen_.size() == kMostSights) seen_.pop_front();
  seen_.push_back(std::move(sight));
}

}  // namespace tavlyn::sim
