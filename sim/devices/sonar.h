// The sonar sensor over feature reports of 8 bytes. A command report is followed by a fetch of its answer or,
// for the pages, by a report with the page's new content; fetches repeat the last answer until the next
// command.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "sim/devices/model.h"
#include "sim/devices/walk.h"

namespace tavlyn::sim {

using SonarPage = std::array<std::uint8_t, 8>;
inline constexpr std::size_t kSonarPages = 6;
// Page 0: ranging; 1 and 2: keys when somebody leaves; 3 and 4: keys when somebody comes; 5: nobody moves.
using SonarPages = std::array<SonarPage, kSonarPages>;

// The sensor measures in steps of 1/3.472222 inch.
inline constexpr double kUnitsPerInch = 3.472222;

enum SonarStatus : std::uint8_t {
  kSomebody = 0x01,   // within the accepted distances
  kGoingAway = 0x02,  // and moving
  kComingNear = 0x04,
};

struct SonarState {
  SonarPages working;
  SonarPages stored;  // committed
  SonarPages user;    // the user defaults
  std::uint16_t luid = 1;
  std::uint16_t did = 0x0400;
  std::array<std::uint8_t, 4> firmware{1, 0, 2, 3};
  bool sendsKeys = true;
  // A second fetch of a page returns the page after it, and later fetches repeat that one.
  bool repeatTurnsPage = true;

  Walk walk{30};
  std::optional<std::uint8_t> status;  // unset: as measured

  struct Counters {
    int commits = 0;
    int unknownCommands = 0;
  } counters;
};

SonarPages FactorySonarPages();
SonarState NewSonarState();

class Sonar final : public Model {
 public:
  explicit Sonar(SonarState initial = NewSonarState());

  SonarState state;
  // The time in milliseconds, for the walk; stands still if unset.
  std::function<std::uint64_t()> clock;

  // From now on somebody stands at that distance.
  void Stand(double inches) { state.walk = Walk(inches); }
  void Go(std::vector<Leg> legs) { state.walk = Walk(std::move(legs), Now()); }
  void SetLuid(std::uint16_t luid) override { state.luid = luid; }
  void Keep(Memory& memory) override;
  void PowerCycle() override;

 private:
  [[nodiscard]] std::uint64_t Now() const { return clock ? clock() : 0; }
  [[nodiscard]] SonarPage Range() const;
  bool TakeReport(Payload report) override;
  void TakeCommand(std::uint8_t opcode, std::uint8_t parameter);
  void Keep(std::uint8_t opcode, Payload data);
  void BeginFetch() override;

  int fetches_ = 0;  // since the last command
  bool dataMayFollow_ = false;
};

}  // namespace tavlyn::sim
