// A sonar sensor on the bench: plugged in, connected and active.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "api.h"
#include "sim/devices/sonar.h"
#include "tests/support/bench.h"

namespace tavlyn::test {

class SonarModelBench : public Bench {
 protected:
  void ConnectSonar() {
    sonar->clock = [this] { return host.clock.tick; };
    Plug(sonar);
    SetDevTypeSrch(0);
    SetConnectProduct(4);
    EXPECT_EQ(USBConnect(nullptr), 1U);
    LetTimePass();
    ForgetTraffic();
    sonar->faults.Restart();
  }

  // The traffic of a complete read. The second page is fetched without having been asked for.
  static Lines ReadLines() {
    Lines lines = {"set 80", "sleep 250", "get", "get", "sleep 250", "get"};
    for (const char* command : {"set 82", "set 83", "set 84", "set 85", "set 8A"}) {
      lines = Join({lines, {command, "sleep 250", "get"}});
    }
    return lines;
  }
  static Lines PageLines(int page, const sim::SonarPage& data) {
    const std::string command = "set 8" + std::to_string(page);
    return {command, "sleep 250", "set " + sim::TrimmedHexText({data.begin(), data.end()})};
  }

  static tsSonarParms Ranging() {
    tsSonarParms record{};
    EXPECT_EQ(GetSonarParms(&record), 1U);
    return record;
  }
  static tsWalkAwayParms WalkAway() {
    tsWalkAwayParms record{};
    EXPECT_EQ(GetWalkAwayParms(&record), 1U);
    return record;
  }
  static tsWalkUpParms WalkUp() {
    tsWalkUpParms record{};
    EXPECT_EQ(GetWalkUpParms(&record), 1U);
    return record;
  }
  static tsIdleParms Idle() {
    tsIdleParms record{};
    EXPECT_EQ(GetIdleParms(&record), 1U);
    return record;
  }

  // All four records with values other than the factory's, dirty for the next write.
  static void ChangeAll() {
    const tsSonarParms ranging{5, 1001, 99, 20, 70, 11, 12, 13};
    const tsWalkAwayParms away{6, 16320, 1, 2, 3, 4, 5, 6, 0xF7, 77, 21, 22, 23, 24, 25, 26};
    const tsWalkUpParms up{3, 130, 31, 32, 33, 34, 35, 36, 0x12, 88, 41, 42, 43, 44, 45, 46};
    const tsIdleParms idle{9, 51, 52, 53, 0x1F, 55, 56, 57};
    EXPECT_EQ(SetSonarParms(&ranging), 1U);
    EXPECT_EQ(SetWalkAwayParms(&away), 1U);
    EXPECT_EQ(SetWalkUpParms(&up), 1U);
    EXPECT_EQ(SetIdleParms(&idle), 1U);
  }
  // The same as pages: 1001 ms are 250 steps of 4, 20 inches 69.44 units, 70 inches 243.06, 130 ms two steps
  // of 64; the keys' flags have four bits; reserved bytes go back as they were in the factory's pages.
  static constexpr sim::SonarPages kChanged = {{
      {0x05, 250, 99, 69, 243, 11, 12, 13},
      {6, 255, 1, 2, 3, 4, 5, 6},
      {7, 77, 21, 22, 23, 24, 25, 26},
      {3, 2, 31, 32, 33, 34, 35, 36},
      {2, 0, 41, 42, 43, 44, 45, 46},
      {0, 51, 52, 53, 0x1F, 55, 56, 57},
  }};
  static Lines ChangedLines() {
    Lines lines;
    for (int page = 0; page < 6; ++page) {
      lines = Join({lines, PageLines(page, kChanged.at(static_cast<std::size_t>(page)))});
    }
    return Join({lines, {"set 90 3F"}});
  }
  // As the sensor then has them: the cycle count stays its own.
  static sim::SonarPages ChangedAsKept() {
    sim::SonarPages pages = kChanged;
    pages[0][2] = sim::FactorySonarPages()[0][2];
    return pages;
  }

  std::shared_ptr<sim::Sonar> sonar = std::make_shared<sim::Sonar>();
};

}  // namespace tavlyn::test
