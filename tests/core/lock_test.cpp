// Which calls hold the library's lock while they talk to a magnetic-stripe reader or a sonar sensor, and that
// no other call takes it. Each says how much of its traffic is under the lock.
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "api.h"
#include "core/state.h"
#include "sim/devices/magstripe.h"
#include "sim/devices/sonar.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

enum class Under { kWholly, kPartly, kNotAtAll, kNoTraffic };

struct Locking {
  const char* name;
  std::function<void()> call;
  Under lock;
};

class Locks : public Bench {
 protected:
  void Connect(std::shared_ptr<sim::HidDevice> device, std::uint32_t kind) {
    Plug(std::move(device));
    SetDevTypeSrch(0);
    SetConnectProduct(kind);
    ASSERT_EQ(USBConnect(nullptr), 1U);
  }
  // What the last calls exchanged and waited, and how many of these were under the lock.
  struct Counts {
    int locks = 0;
    int under = 0;
    int beside = 0;
  };
  Counts Count() {
    Counts counts;
    int depth = 0;
    for (const std::string& line : host.transcript.Lines()) {
      if (line == "mutex lock") {
        ++counts.locks;
        ++depth;
      } else if (line == "mutex unlock") {
        --depth;
      } else {
        ++(depth > 0 ? counts.under : counts.beside);
      }
    }
    ForgetTraffic();
    return counts;
  }
  void Expect(const std::vector<Locking>& calls) {
    for (const Locking& one : calls) {
      LetTimePass();
      ForgetTraffic();
      one.call();
      const Counts counts = Count();
      EXPECT_EQ(counts.locks, one.lock == Under::kWholly || one.lock == Under::kPartly ? 1 : 0) << one.name;
      EXPECT_EQ(counts.under > 0, one.lock == Under::kWholly || one.lock == Under::kPartly) << one.name;
      EXPECT_EQ(counts.beside > 0, one.lock == Under::kNotAtAll || one.lock == Under::kPartly) << one.name;
    }
  }

  std::array<std::uint8_t, 32> id{};
};

TEST_F(Locks, OfAMagneticStripeReader) {
  Connect(std::make_shared<sim::Magstripe>(), kMagstripe);
  const std::string file = (Folder() / "stripe.txt").string();
  tsTimeParms times{};
  tsLEDCtrl leds{};
  Expect({{"ReadCfg", [] { EXPECT_EQ(ReadCfg(), 1U); }, Under::kWholly},
          {"WriteCfg", [] { EXPECT_EQ(WriteCfg(), 1U); }, Under::kWholly},
          {"GetActiveID", [&] { GetActiveID(id.data(), 8); }, Under::kWholly},
          {"GetActiveID32", [&] { GetActiveID32(id.data(), 32); }, Under::kWholly},
          {"BeepNow", [] { BeepNow(1, 0); }, Under::kWholly},
          {"Ping", [] { Ping(); }, Under::kNotAtAll},
          {"ResetFactoryDflts", [] { ResetFactoryDflts(); }, Under::kNotAtAll},
          {"sorbaneIsDataAvailable", [] { sorbaneIsDataAvailable(); }, Under::kNotAtAll},
          {"sorbaneClearDataAvailable", [] { sorbaneClearDataAvailable(); }, Under::kNotAtAll},
          {"sorbaneClearOverrun", [] { sorbaneClearOverrun(); }, Under::kNotAtAll},
          {"sorbaneGetSystemUptime", [] { sorbaneGetSystemUptime(); }, Under::kNotAtAll},
          {"sorbaneGetSystemCardsRead", [] { sorbaneGetSystemCardsRead(); }, Under::kNotAtAll},
          {"sorbaneGetSystemInternalCount", [] { sorbaneGetSystemInternalCount(1); }, Under::kNotAtAll},
          {"sorbaneGetTrackData", [] { sorbaneGetTrackData(1, 0); }, Under::kNotAtAll},
          {"sorbaneSetLED", [] { sorbaneSetLED(1, 1); }, Under::kNotAtAll},
          {"sorbaneSetActiveID", [] { sorbaneSetActiveID(1, 1, 0, 0); }, Under::kNoTraffic},
          {"sorbaneSetFieldEnable", [] { sorbaneSetFieldEnable(1, 1); }, Under::kNoTraffic},
          {"SetTimeParms", [&] { SetTimeParms(&times); }, Under::kNoTraffic},
          {"SetLEDCtrl", [&] { SetLEDCtrl(&leds); }, Under::kNotAtAll},
          {"WriteDevCfgToFile", [&] { EXPECT_EQ(WriteDevCfgToFile(file.c_str()), 1U); }, Under::kNoTraffic},
          {"ReadDevCfgFmFile", [&] { EXPECT_EQ(ReadDevCfgFmFile(file.c_str()), 1U); }, Under::kNoTraffic}});
}

TEST_F(Locks, OfASonarSensor) {
  const auto sensor = std::make_shared<sim::Sonar>();
  Connect(sensor, kSonar);
  const std::string file = (Folder() / "sonar.txt").string();
  tsSonarParms parms{};
  tsWalkAwayParms away{};
  tsWalkUpParms up{};
  tsIdleParms idle{};
  tsLEDCtrl leds{};
  std::array<std::uint16_t, 5> range{};
  Expect({{"ReadCfg", [] { EXPECT_EQ(ReadCfg(), 1U); }, Under::kWholly},
          {"WriteCfg", [] { EXPECT_EQ(WriteCfg(), 1U); }, Under::kWholly},
          {"GetActiveID", [&] { EXPECT_EQ(GetActiveID(id.data(), 8), 4); }, Under::kWholly},
          {"GetActiveID32", [&] { EXPECT_EQ(GetActiveID32(id.data(), 32), 4); }, Under::kWholly},
          {"GetObjRangeInfo", [&] { EXPECT_EQ(GetObjRangeInfo(range.data()), 1U); }, Under::kNotAtAll},
          {"HaltKBSends", [] { HaltKBSends(1); }, Under::kNotAtAll},
          {"ResetUserDflts", [] { EXPECT_EQ(ResetUserDflts(), 1U); }, Under::kNotAtAll},
          {"SaveUserDflts", [] { EXPECT_EQ(SaveUserDflts(), 1U); }, Under::kNotAtAll},
          {"ResetFactoryDflts, whose last step is a WriteCfg", [] { EXPECT_EQ(ResetFactoryDflts(), 1U); },
           Under::kPartly},
          {"GetSonarParms", [&] { EXPECT_EQ(GetSonarParms(&parms), 1U); }, Under::kNoTraffic},
          {"SetSonarParms", [&] { EXPECT_EQ(SetSonarParms(&parms), 1U); }, Under::kNoTraffic},
          {"GetWalkAwayParms", [&] { EXPECT_EQ(GetWalkAwayParms(&away), 1U); }, Under::kNoTraffic},
          {"SetWalkAwayParms", [&] { EXPECT_EQ(SetWalkAwayParms(&away), 1U); }, Under::kNoTraffic},
          {"GetWalkUpParms", [&] { EXPECT_EQ(GetWalkUpParms(&up), 1U); }, Under::kNoTraffic},
          {"SetWalkUpParms", [&] { EXPECT_EQ(SetWalkUpParms(&up), 1U); }, Under::kNoTraffic},
          {"GetIdleParms", [&] { EXPECT_EQ(GetIdleParms(&idle), 1U); }, Under::kNoTraffic},
          {"SetIdleParms", [&] { EXPECT_EQ(SetIdleParms(&idle), 1U); }, Under::kNoTraffic},
          {"GetLEDCtrl", [&] { GetLEDCtrl(&leds); }, Under::kNoTraffic},
          {"SetLEDCtrl", [&] { SetLEDCtrl(&leds); }, Under::kNoTraffic},
          {"WriteDevCfgToFile", [&] { EXPECT_EQ(WriteDevCfgToFile(file.c_str()), 1U); }, Under::kNoTraffic},
          {"ReadDevCfgFmFile", [&] { EXPECT_EQ(ReadDevCfgFmFile(file.c_str()), 1U); }, Under::kNoTraffic}});
  sensor->state.did = 0x0500;
  Expect({{"ResetFactoryDflts", [] { EXPECT_EQ(ResetFactoryDflts(), 1U); }, Under::kNotAtAll}});
}

// A beep takes the lock even for a product that has no beep.
TEST_F(Locks, OfABeepThatASensorDoesNotHave) {
  Connect(std::make_shared<sim::Sonar>(), kSonar);
  ForgetTraffic();
  EXPECT_EQ(BeepNow(1, 0), 0U);
  EXPECT_EQ(host.transcript.Lines(), (Lines{"mutex lock", "mutex unlock"}));
}

}  // namespace
}  // namespace tavlyn::test
