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

enum class Share { kAll, kNone, kNoTraffic, kSome };

struct Locking {
  const char* name;
  std::function<void()> call;
  Share share;
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
      EXPECT_EQ(counts.locks, one.share == Share::kAll || one.share == Share::kSome ? 1 : 0) << one.name;
      EXPECT_EQ(counts.under > 0, one.share == Share::kAll || one.share == Share::kSome) << one.name;
      EXPECT_EQ(counts.beside > 0, one.share == Share::kNone || one.share == Share::kSome) << one.name;
    }
  }

  std::array<std::uint8_t, 32> id{};
};

TEST_F(Locks, OfAMagneticStripeReader) {
  Connect(std::make_shared<sim::Magstripe>(), kMagstripe);
  const std::string file = (Folder() / "stripe.txt").string();
  tsTimeParms times{};
  tsLEDCtrl leds{};
  Expect({{"ReadCfg", [] { EXPECT_EQ(ReadCfg(), 1U); }, Share::kAll},
          {"WriteCfg", [] { EXPECT_EQ(WriteCfg(), 1U); }, Share::kAll},
          {"GetActiveID", [&] { GetActiveID(id.data(), 8); }, Share::kAll},
          {"GetActiveID32", [&] { GetActiveID32(id.data(), 32); }, Share::kAll},
          {"BeepNow", [] { BeepNow(1, 0); }, Share::kAll},
          {"Ping", [] { Ping(); }, Share::kNone},
          {"ResetFactoryDflts", [] { ResetFactoryDflts(); }, Share::kNone},
          {"sorbaneIsDataAvailable", [] { sorbaneIsDataAvailable(); }, Share::kNone},
          {"sorbaneClearDataAvailable", [] { sorbaneClearDataAvailable(); }, Share::kNone},
          {"sorbaneClearOverrun", [] { sorbaneClearOverrun(); }, Share::kNone},
          {"sorbaneGetSystemUptime", [] { sorbaneGetSystemUptime(); }, Share::kNone},
          {"sorbaneGetSystemCardsRead", [] { sorbaneGetSystemCardsRead(); }, Share::kNone},
          {"sorbaneGetSystemInternalCount", [] { sorbaneGetSystemInternalCount(1); }, Share::kNone},
          {"sorbaneGetTrackData", [] { sorbaneGetTrackData(1, 0); }, Share::kNone},
          {"sorbaneSetLED", [] { sorbaneSetLED(1, 1); }, Share::kNone},
          {"sorbaneSetActiveID", [] { sorbaneSetActiveID(1, 1, 0, 0); }, Share::kNoTraffic},
          {"sorbaneSetFieldEnable", [] { sorbaneSetFieldEnable(1, 1); }, Share::kNoTraffic},
          {"SetTimeParms", [&] { SetTimeParms(&times); }, Share::kNoTraffic},
          {"SetLEDCtrl", [&] { SetLEDCtrl(&leds); }, Share::kNone},
          {"WriteDevCfgToFile", [&] { EXPECT_EQ(WriteDevCfgToFile(file.c_str()), 1U); }, Share::kNoTraffic},
          {"ReadDevCfgFmFile", [&] { EXPECT_EQ(ReadDevCfgFmFile(file.c_str()), 1U); }, Share::kNoTraffic}});
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
  Expect({{"ReadCfg", [] { EXPECT_EQ(ReadCfg(), 1U); }, Share::kAll},
          {"WriteCfg", [] { EXPECT_EQ(WriteCfg(), 1U); }, Share::kAll},
          {"GetActiveID", [&] { EXPECT_EQ(GetActiveID(id.data(), 8), 4); }, Share::kAll},
          {"GetActiveID32", [&] { EXPECT_EQ(GetActiveID32(id.data(), 32), 4); }, Share::kAll},
          {"GetObjRangeInfo", [&] { EXPECT_EQ(GetObjRangeInfo(range.data()), 1U); }, Share::kNone},
          {"HaltKBSends", [] { HaltKBSends(1); }, Share::kNone},
          {"ResetUserDflts", [] { EXPECT_EQ(ResetUserDflts(), 1U); }, Share::kNone},
          {"SaveUserDflts", [] { EXPECT_EQ(SaveUserDflts(), 1U); }, Share::kNone},
          {"ResetFactoryDflts, whose last step is a WriteCfg", [] { EXPECT_EQ(ResetFactoryDflts(), 1U); },
           Share::kSome},
          {"GetSonarParms", [&] { EXPECT_EQ(GetSonarParms(&parms), 1U); }, Share::kNoTraffic},
          {"SetSonarParms", [&] { EXPECT_EQ(SetSonarParms(&parms), 1U); }, Share::kNoTraffic},
          {"GetWalkAwayParms", [&] { EXPECT_EQ(GetWalkAwayParms(&away), 1U); }, Share::kNoTraffic},
          {"SetWalkAwayParms", [&] { EXPECT_EQ(SetWalkAwayParms(&away), 1U); }, Share::kNoTraffic},
          {"GetWalkUpParms", [&] { EXPECT_EQ(GetWalkUpParms(&up), 1U); }, Share::kNoTraffic},
          {"SetWalkUpParms", [&] { EXPECT_EQ(SetWalkUpParms(&up), 1U); }, Share::kNoTraffic},
          {"GetIdleParms", [&] { EXPECT_EQ(GetIdleParms(&idle), 1U); }, Share::kNoTraffic},
          {"SetIdleParms", [&] { EXPECT_EQ(SetIdleParms(&idle), 1U); }, Share::kNoTraffic},
          {"GetLEDCtrl", [&] { GetLEDCtrl(&leds); }, Share::kNoTraffic},
          {"SetLEDCtrl", [&] { SetLEDCtrl(&leds); }, Share::kNoTraffic},
          {"WriteDevCfgToFile", [&] { EXPECT_EQ(WriteDevCfgToFile(file.c_str()), 1U); }, Share::kNoTraffic},
          {"ReadDevCfgFmFile", [&] { EXPECT_EQ(ReadDevCfgFmFile(file.c_str()), 1U); }, Share::kNoTraffic}});
  sensor->state.did = 0x0500;
  Expect({{"ResetFactoryDflts", [] { EXPECT_EQ(ResetFactoryDflts(), 1U); }, Share::kNone}});
}

// A beep is asked for under the lock also where it is none of the product's.
TEST_F(Locks, OfABeepThatASensorDoesNotHave) {
  Connect(std::make_shared<sim::Sonar>(), kSonar);
  ForgetTraffic();
  EXPECT_EQ(BeepNow(1, 0), 0U);
  EXPECT_EQ(host.transcript.Lines(), (Lines{"mutex lock", "mutex unlock"}));
}

}  // namespace
}  // namespace tavlyn::test
