// A fault at each exchange of each operation of a sonar sensor, and connects with other products around.
#include <algorithm>

#include "core/state.h"
#include "sim/devices/magstripe.h"
#include "tests/sonar/model_bench.h"

namespace tavlyn::test {
namespace {

using sim::Sonar;

constexpr int kReadExchanges = 14;
constexpr int kFirstIdentityExchange = 13;

class SonarModelFaults : public SonarModelBench {
 protected:
  // The sensor fresh from the factory, the mirror with every record and the LUID changed.
  void Begin() {
    sonar->faults.Restart();
    sonar->state = factory_;
    sonar->PowerCycle();
    EXPECT_EQ(ReadCfg(), 1U);
    ChangeAll();
    EXPECT_EQ(SetLUID(0x0708), 1U);
    sonar->faults.Restart();
    ForgetTraffic();
  }
  void ExpectRecovery() {
    sonar->faults.Restart();
    sonar->PowerCycle();
    EXPECT_EQ(WriteCfg(), 1U);
    EXPECT_EQ(sonar->state.stored, ChangedAsKept());
    EXPECT_EQ(sonar->state.luid, 0x0708);
    sonar->PowerCycle();
    EXPECT_EQ(ReadCfg(), 1U);
    EXPECT_EQ(Ranging().MaxDist, 70);
    EXPECT_EQ(Idle().SNBlankTm, 57);
    EXPECT_EQ(GetLUID(), 0x0708U);
  }

 private:
  const sim::SonarState factory_ = sim::NewSonarState();
};

bool IsFetchOfRead(int exchange) { return exchange == 3 || exchange % 2 == 0; }

TEST_F(SonarModelFaults, AReadEndsAtEachRefusedFetchAndRepeatsEachRefusedRequest) {
  ConnectSonar();
  for (int exchange = 1; exchange <= kReadExchanges; ++exchange) {
    SCOPED_TRACE(exchange);
    Begin();
    sonar->faults.RefuseAt(exchange);
    EXPECT_EQ(ReadCfg(), IsFetchOfRead(exchange) ? 0U : 1U);
    EXPECT_EQ(GetLastLibErr(), IsFetchOfRead(exchange) ? 0x20000U : 0U);
    EXPECT_EQ(sonar->faults.Exchanges(), IsFetchOfRead(exchange) ? exchange : kReadExchanges + 1);
  }
}

TEST_F(SonarModelFaults, ASensorThatVanishesInARead) {
  ConnectSonar();
  for (int exchange = 1; exchange <= kReadExchanges; ++exchange) {
    SCOPED_TRACE(exchange);
    Begin();
    sonar->faults.VanishAt(exchange);
    EXPECT_EQ(ReadCfg(), 0U);
    EXPECT_EQ(GetLastLibErr(), IsFetchOfRead(exchange) ? 0x20000U : 0x20202U);
    // Dirty flags go when the last page has arrived, the LUID's when the identity has.
    sonar->faults.Restart();
    sonar->PowerCycle();
    ForgetTraffic();
    EXPECT_EQ(WriteCfg(), 1U);
    const Lines lines = TrafficOf(host.transcript.Events());
    const bool pagesRead = exchange >= kFirstIdentityExchange;
    EXPECT_EQ(std::find(lines.begin(), lines.end(), "set 90 3F") == lines.end(), pagesRead);
    EXPECT_NE(std::find(lines.begin(), lines.end(), "set 8A"), lines.end());
  }
}

TEST_F(SonarModelFaults, APartialReadKeepsWhatCameWithoutItsLimits) {
  ConnectSonar();
  sonar->state.working[0] = {0x05, 10, 3, 255, 255, 6, 7, 8};
  sonar->state.working[3] = {9, 0};
  sonar->faults.RefuseAt(8);
  EXPECT_EQ(ReadCfg(), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x20000U);
  EXPECT_EQ(Ranging().PingRate, 40);
  EXPECT_EQ(Ranging().MinDist, 73);
  EXPECT_EQ(Ranging().MaxDist, 73);
  EXPECT_EQ(WalkUp().KeyCount, 1) << "its page did not come";
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(Ranging().PingRate, 200);
  EXPECT_EQ(Ranging().MinDist, 59);
  EXPECT_EQ(WalkUp().KeyCount, 0);
  EXPECT_EQ(WalkUp().InterKeyDelay, 64);
}

TEST_F(SonarModelFaults, AReadOfPagesTurnedOverStaysWithinItsLimits) {
  ConnectSonar();
  for (int exchange = 1; exchange <= kReadExchanges; ++exchange) {
    for (const sim::Fault fault : {sim::Fault::kGarble, sim::Fault::kDelay}) {
      SCOPED_TRACE(exchange);
      Begin();
      if (fault == sim::Fault::kGarble) sonar->faults.GarbleAt(exchange);
      if (fault == sim::Fault::kDelay) sonar->faults.DelayAt(exchange);
      EXPECT_EQ(ReadCfg(), 1U);
      EXPECT_EQ(GetLastLibErr(), 0U);
      const tsSonarParms ranging = Ranging();
      EXPECT_TRUE(ranging.PingRate >= 200 && ranging.PingRate <= 1020) << ranging.PingRate;
      EXPECT_TRUE(ranging.MinDist >= 1 && ranging.MinDist <= 59) << ranging.MinDist;
      EXPECT_TRUE(ranging.MaxDist >= 15 && ranging.MaxDist <= 72) << ranging.MaxDist;
      EXPECT_LE(WalkAway().KeyCount, 6);
      EXPECT_TRUE(WalkAway().InterKeyDelay >= 64 && WalkAway().InterKeyDelay <= 16320);
      EXPECT_LE(WalkUp().KeyCount, 6);
      EXPECT_TRUE(WalkUp().InterKeyDelay >= 64 && WalkUp().InterKeyDelay <= 16320);
    }
  }
}

TEST_F(SonarModelFaults, AWriteThatLosesItsSensorAtEachExchange) {
  ConnectSonar();
  constexpr int kCommit = 13;
  constexpr int kExchanges = 15;
  for (int exchange = 1; exchange <= kExchanges; ++exchange) {
    SCOPED_TRACE(exchange);
    Begin();
    sonar->faults.VanishAt(exchange);
    EXPECT_EQ(WriteCfg(), 0U);
    EXPECT_EQ(GetLastLibErr(), 0x40202U);
    sonar->PowerCycle();
    EXPECT_EQ(sonar->state.stored, exchange > kCommit ? ChangedAsKept() : sim::FactorySonarPages());
    EXPECT_EQ(sonar->state.luid, 1);
    // Dirty flags stay until the commit has been sent.
    sonar->faults.Restart();
    ForgetTraffic();
    EXPECT_EQ(WriteCfg(), 1U);
    EXPECT_EQ(TrafficOf(host.transcript.Events()).size(), exchange > kCommit ? 4U : 22U);
    ExpectRecovery();
  }
}

TEST_F(SonarModelFaults, AWriteRepeatsEachRefusedReport) {
  ConnectSonar();
  for (int exchange = 1; exchange <= 15; ++exchange) {
    SCOPED_TRACE(exchange);
    Begin();
    sonar->faults.RefuseAt(exchange, 5);
    EXPECT_EQ(WriteCfg(), 1U);
    EXPECT_EQ(GetLastLibErr(), 0U);
    EXPECT_EQ(sonar->faults.Exchanges(), 20);
    EXPECT_EQ(sonar->state.stored, ChangedAsKept());
    Begin();
    sonar->faults.RefuseAt(exchange, 6);
    EXPECT_EQ(WriteCfg(), 0U);
    EXPECT_EQ(GetLastLibErr(), 0x40202U);
    ExpectRecovery();
  }
}

TEST_F(SonarModelFaults, AWriteWhoseReportsAreSpoiltIsMendedByAnother) {
  ConnectSonar();
  for (int exchange = 1; exchange <= 15; ++exchange) {
    for (const bool garble : {true, false}) {
      SCOPED_TRACE(exchange);
      Begin();
      if (garble) {
        sonar->faults.GarbleAt(exchange);
      } else {
        sonar->faults.DropAt(exchange);
      }
      EXPECT_EQ(WriteCfg(), 1U) << "nothing is read back";
      sonar->PowerCycle();
      ChangeAll();
      EXPECT_EQ(SetLUID(0x0708), 1U);
      ExpectRecovery();
    }
  }
}

TEST_F(SonarModelFaults, ResetsAtEachExchange) {
  ConnectSonar();
  struct Reset {
    std::uint32_t (*run)();
    int exchanges;
  };
  for (const Reset& reset : {Reset{ResetFactoryDflts, 1 + kReadExchanges + 3 + kReadExchanges},
                             {ResetUserDflts, 1 + kReadExchanges},
                             {SaveUserDflts, 1 + kReadExchanges}}) {
    for (int exchange = 1; exchange <= reset.exchanges + 1; ++exchange) {
      SCOPED_TRACE(exchange);
      Begin();
      EXPECT_EQ(ReadCfg(), 1U);
      sonar->faults.Restart();
      sonar->faults.VanishAt(exchange);
      EXPECT_EQ(reset.run(), exchange > reset.exchanges ? 1U : 0U);
      if (exchange == 1) {
        EXPECT_EQ(GetLastLibErr(), 0x80202U);
      }
      if (exchange > reset.exchanges) {
        EXPECT_EQ(GetLastLibErr(), 0U);
      }
      if (exchange >= 16 && exchange <= 18 && reset.run == ResetFactoryDflts) {
        EXPECT_EQ(GetLastLibErr(), 0x40202U) << "of the write without idle flags";
      }
    }
  }
}

TEST_F(SonarModelFaults, AConnectThatLosesItsSensor) {
  Plug(sonar);
  SetDevTypeSrch(0);
  SetConnectProduct(4);
  for (int exchange = 1; exchange <= kReadExchanges + 1; ++exchange) {
    SCOPED_TRACE(exchange);
    sonar->faults.Restart();
    sonar->faults.VanishAt(exchange);
    std::uint32_t did = 99;
    const bool good = exchange > kReadExchanges;
    EXPECT_EQ(USBConnect(&did), good ? 1U : 0U);
    EXPECT_EQ(did, good ? 0x0400U : 99U);
    EXPECT_EQ(GetDevCnt(), 1);
    EXPECT_EQ(GetActDev(), 0);
    EXPECT_EQ(USBDisconnect(), 1U);
  }
  EXPECT_EQ(host.hid.OpenHandles(), 0U);
}

class SonarModelAmongOthers : public SonarModelBench {
 protected:
  std::uint32_t Connect(std::uint32_t products) {
    EXPECT_EQ(SetDevTypeSrch(0), 1U);
    EXPECT_EQ(SetConnectProduct(products), 1U);
    return USBConnect(nullptr);
  }
};

TEST_F(SonarModelAmongOthers, EachProductIsFoundByItsOwnSearch) {
  Plug(sim::Reader::Plain());
  Plug(std::make_shared<sim::Magstripe>());
  Plug(sonar);
  Plug(std::make_shared<sim::Magstripe>());
  Plug(std::make_shared<Sonar>());
  EXPECT_EQ(Connect(4), 1U);
  EXPECT_EQ(GetDevCnt(), 2);
  EXPECT_EQ(GetProduct(), 4U);
  char name[512];
  EXPECT_EQ(GetDevName(name), 999U);
  EXPECT_STREQ(name, "device-3");
  EXPECT_EQ(SetActDev(1), 1U);
  EXPECT_EQ(GetDevName(name), 999U);
  EXPECT_STREQ(name, "device-5");
  tsSonarParms record{};
  EXPECT_EQ(GetSonarParms(&record), 1U) << "each is read";
  USBDisconnect();
  EXPECT_EQ(Connect(2), 1U);
  EXPECT_EQ(GetDevCnt(), 2);
  EXPECT_EQ(GetProduct(), 2U);
  EXPECT_EQ(GetDevName(name), 999U);
  EXPECT_STREQ(name, "device-2");
  USBDisconnect();
  EXPECT_EQ(Connect(6), 1U);
  EXPECT_EQ(GetProduct(), 2U) << "magstripe readers come first, and end the search";
  EXPECT_EQ(GetDevCnt(), 2);
  USBDisconnect();
  EXPECT_EQ(Connect(7), 1U);
  EXPECT_EQ(GetProduct(), 1U);
  EXPECT_EQ(GetDevCnt(), 1);
}

TEST_F(SonarModelAmongOthers, OtherIdentitiesAreNot) {
  sonar->identity.pid = 0x2BFB;
  Plug(sonar);
  Plug(sim::Reader::Plain());
  EXPECT_EQ(Connect(4), 0U);
  EXPECT_EQ(GetDevCnt(), 0);
  EXPECT_EQ(GetProduct(), 0U);
}

}  // namespace
}  // namespace tavlyn::test
