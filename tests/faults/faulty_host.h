// The simulated system with one call of the library that fails: each call that reaches a transport is
// counted, and the one with the armed number goes wrong in the armed way.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sim/carriers/virtual_host.h"

namespace tavlyn::faults {

// How a call can fail. Each call allows some of these.
enum Way : unsigned {
  kRefused = 1U << 0,  // the system reports a failure
  kLost = 1U << 1,     // what is sent never arrives, though the system reports success
  kSilent = 1U << 2,   // nothing comes back, or only zeros
  kShort = 1U << 3,    // a part is moved
  kOneByte = 1U << 4,  // a single byte of the answer comes back, and the rest is lost
  kLong = 1U << 5,     // the answer is one byte too long
  kGarbled = 1U << 6,  // every bit of the answer is inverted
  kGone = 1U << 7,     // the device is away from this call on
  kStuck = 1U << 8,    // the system reports failures until the library gives up
};
inline constexpr unsigned kWays = 9;

// The numbered calls, and what is armed. A program has one.
class Trouble {
 public:
  static Trouble& Instance();

  // Counts from 1 again; nothing fails, and what was gone is back.
  void Begin();
  // The same, but that call fails in that way.
  void Begin(std::size_t call, Way way);

  // The ways in which each call since Begin could have failed.
  [[nodiscard]] const std::vector<unsigned>& Calls() const { return calls_; }

  // For the parts of the host: whether the call that comes now is the one, given the ways it allows. A device
  // that is gone fails each call that could find it gone.
  bool Fails(const char* name, unsigned ways);
  // How the last failing call fails.
  [[nodiscard]] Way How() const { return way_; }

  // Sockets that are open.
  int sockets = 0;
  // How many searches have lost a handle since the program began: an interface whose usages cannot be read
  // deliberately stays open.
  int lost = 0;

 private:
  std::vector<unsigned> calls_;
  std::size_t at_ = 0;
  Way way_ = kRefused;
  Way armed_ = kRefused;
  bool gone_ = false;
  int stuck_ = 0;  // how many more calls fail
};

}  // namespace tavlyn::faults
