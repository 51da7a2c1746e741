// Every transport call of every operation fails once, in every way that it can, on every link. The operation
// ends, leaves one of its error words and, after a disconnect, nothing open; and then the same operation with
// a healthy device gives what it gave before, with the same traffic.
#include <gtest/gtest.h>

#include <bit>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "api.h"
#include "tests/faults/faulty_host.h"
#include "tests/faults/links.h"
#include "tests/faults/operations.h"
#include "tests/faults/simulated_stage.h"
#include "tests/support/bench.h"

namespace tavlyn::faults {
namespace {

using test::Lines;

// A call is a point for each way in which it can fail.
constexpr Link kLinks[] = {
    {kPlain, "HID, plain reader", 5753},
    {kPlus, "HID, plus reader", 10535},
    {kNumbered, "HID, numbered reports", 7214},
    {kMagstripe, "HID, magstripe reader", 1717},
    {kSonar, "HID, sonar sensor", 583},
    {kCom, "COM, frames", 8038},
    {kText, "COM, text", 6978},
    {kTcp, "TCP", 16910},
    {kUdp, "UDP", 112},
    {kBulk, "bulk", 7571},
};

constexpr std::size_t kOneOf = 13;

// After so many the ring of the bulk device is empty.
constexpr int kMostConnects = 40;

struct Ran {
  std::string told;
  std::uint32_t word = 0;
  Lines traffic;
};

class Faults : public test::Bench {
 protected:
  void Begin(Stage stage) {
    EnterFolder();
    stage_ = std::make_unique<SimulatedStage>(stage);
    lost_ = Trouble::Instance().lost;
    usesRing_ = stage == kBulk;
    if (stage == kUdp) return;
    ASSERT_EQ(USBConnect(nullptr), 1U);
    PrepareFiles();
    EXPECT_EQ(USBDisconnect(), 1U);
  }

  // With a device that nobody has touched, up to the operation.
  void Begin(const Operation& operation) {
    stage_->Refresh();
    Trouble::Instance().Begin();
    if (usesRing_) EmptyRing();
    if (operation.begin == faults::Begin::kUnconnected) return;
    ASSERT_EQ(USBConnect(nullptr), 1U) << "a good device";
    LetTimePass();
  }
  Ran Run(const Operation& operation) {
    ForgetSaved();
    ForgetTraffic();
    Ran ran{operation.run(), GetLastLibErr(), {}};
    ran.told += Saved();
    return ran;
  }
  void End() {
    Trouble::Instance().Begin();
    EXPECT_EQ(USBDisconnect(), 1U);
    EXPECT_EQ(SimulatedStage::Open(), Trouble::Instance().lost - lost_) << "still open after a disconnect";
    ForgetTraffic();
  }

  // What it does with a good device, and which calls it makes.
  Ran RunWell(const Operation& operation, std::vector<unsigned>& calls) {
    Begin(operation);
    Trouble::Instance().Begin();
    Ran ran = Run(operation);
    ran.traffic = test::TrafficOf(host.transcript.Events());
    calls = Trouble::Instance().Calls();
    End();
    return ran;
  }

 private:
  // Surplus bytes of a bulk transfer outlive the device; each connect reads some of them.
  void EmptyRing() {
    for (int left = kMostConnects; left > 0 && USBConnect(nullptr) == 0; --left) stage_->Refresh();
    USBDisconnect();
    stage_->Refresh();
    Trouble::Instance().Begin();
  }

  std::unique_ptr<SimulatedStage> stage_;
  int lost_ = 0;
  bool usesRing_ = false;
};

class TransportFaults : public Faults, public testing::WithParamInterface<Row> {
 protected:
  void FailOne(const Operation& operation, std::size_t call, Way way) {
    Begin(operation);
    Trouble::Instance().Begin(call, way);
    const std::uint64_t start = host.clock.tick;
    const Ran ran = Run(operation);
    EXPECT_LE(host.clock.tick - start, kPatience);
    const std::uint32_t words = operation.words | TAVLYN_ERR_WRITE_REPORT;
    EXPECT_EQ(ran.word & ~words, 0U) << std::hex << ran.word << ", " << ran.told;
    End();
  }

  void FailEachWay(const Operation& operation, const Ran& clean, std::size_t call, unsigned ways) {
    for (unsigned bit = 0; bit < kWays && !HasFailure(); ++bit) {
      if ((ways >> bit & 1U) == 0 || ++points_ % stride_ != 0) continue;
      SCOPED_TRACE("call " + std::to_string(call) + ", way " + std::to_string(bit));
      FailOne(operation, call, static_cast<Way>(1U << bit));
      std::vector<unsigned> calls;
      const Ran again = RunWell(operation, calls);
      EXPECT_EQ(again.told, clean.told);
      EXPECT_EQ(again.word, clean.word);
      EXPECT_EQ(test::Difference(clean.traffic, again.traffic), "");
    }
  }

 private:
  std::size_t stride_ = OneOf(kOneOf);
  std::size_t points_ = std::string_view(std::get<Operation>(GetParam()).name).size() % stride_;
};

TEST_P(TransportFaults, EachCallInEachWay) {
  const auto& [link, operation] = GetParam();
  Faults::Begin(link.stage);
  std::vector<unsigned> calls;
  const Ran clean = RunWell(operation, calls);
  for (std::size_t call = 1; call <= calls.size(); ++call) {
    FailEachWay(operation, clean, call, calls[call - 1]);
  }
}

class FaultPoints : public Faults, public testing::WithParamInterface<Link> {};

TEST_P(FaultPoints, AreAsManyAsEver) {
  Faults::Begin(GetParam().stage);
  int points = 0;
  int operations = 0;
  for (const Operation& operation : Operations()) {
    if ((operation.stages & GetParam().stage) == 0) continue;
    ++operations;
    std::vector<unsigned> calls;
    RunWell(operation, calls);
    for (const unsigned ways : calls) points += std::popcount(ways);
  }
  std::printf("%s: %d faults in %d operations\n", GetParam().name, points, operations);
  RecordProperty("faults", points);
  EXPECT_GE(points, GetParam().points) << "see kLinks";
}

constexpr auto kNamed = [](const auto& test) { return NameOf(test.param); };
INSTANTIATE_TEST_SUITE_P(Link, FaultPoints, testing::ValuesIn(kLinks), kNamed);
INSTANTIATE_TEST_SUITE_P(Row, TransportFaults, testing::ValuesIn(RowsOf(kLinks)), kNamed);

}  // namespace
}  // namespace tavlyn::faults
