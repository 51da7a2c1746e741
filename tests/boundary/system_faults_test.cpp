// The built library while the system fails: every system call and every allocation of every operation fails
// once. It ends, leaves no memory and no descriptor behind, and then the same operation does what it did
// before. What a serial port has to hide is not noticed at all.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "api.h"
#include "tests/boundary/built_stage.h"
#include "tests/boundary/bulk_standin.h"
#include "tests/boundary/failing_system_linux.h"
#include "tests/boundary/held.h"
#include "tests/boundary/passing.h"
#include "tests/boundary/scarce_memory.h"
#include "tests/boundary/scratch_folder.h"
#include "tests/faults/links.h"
#include "tests/faults/operations.h"

// What stays behind is counted here (held.h); the sanitizer's own search does not survive some of these runs.
extern "C" const char* __asan_default_options() { return "detect_leaks=0"; }

namespace tavlyn::boundary {
namespace {

using faults::Link;
using faults::Operation;
using faults::Row;

constexpr std::size_t kOneOf = 197;

constexpr Link kLinks[] = {
    {faults::kPlain, "files of a plain reader", 338},
    {faults::kPlus, "files of a plus reader", 347},
    {faults::kMagstripe, "files of a magstripe reader", 101},
    {faults::kSonar, "files of a sonar sensor", 35},
    {faults::kCom, "COM, frames", 14127},
    {faults::kText, "COM, text", 12260},
    {faults::kTcp, "TCP", 11566},
    {faults::kUdp, "UDP", 150},
    {faults::kBulk, "bulk", 54},
};

struct Ran {
  std::string told;
  std::uint32_t word = 0;
  bool operator==(const Ran&) const = default;
};

void PrintTo(const Ran& ran, std::ostream* out) { *out << ran.told << std::hex << ", 0x" << ran.word; }

class Faults : public testing::Test {
 protected:
  void SetUp() override { ChooseTraceFile(); }
  void Begin(faults::Stage stage) {
    stage_ = std::make_unique<BuiltStage>(stage, library_);
    remembers_ = stage == faults::kBulk;
    if (!stage_->Exists()) GTEST_SKIP() << kNotTrusted;
    if (stage == faults::kUdp) return;
    ASSERT_EQ(USBConnect(nullptr), 1U);
    faults::PrepareFiles();
    EXPECT_EQ(USBDisconnect(), 1U);
  }

  // What it does while the system is as it was made to be.
  template <typename Fail, typename Mend>
  Ran Run(const Operation& operation, Fail fail, Mend mend) {
    stage_->Refresh();
    faults::ForgetSaved();
    if (operation.begin == faults::Begin::kConnected) {
      EXPECT_EQ(USBConnect(nullptr), 1U) << "a good device";
      Pass(Milliseconds(1000));
    }
    Ran ran;
    fail();
    const int time = TimeOf([&] {
      ran.told = operation.run();
      ran.word = GetLastLibErr();
    });
    mend();
    EXPECT_LE(static_cast<std::uint64_t>(time), faults::kPatience);
    ran.told += faults::Saved();
    EXPECT_EQ(USBDisconnect(), 1U);
    return ran;
  }
  Ran RunWell(const Operation& operation) {
    return Run(
        operation, [] {}, [] {});
  }

  // With a device that has nothing to remember, when far ends have closed what they had open.
  Held Holds() {
    stage_->Refresh();
    Pass(Milliseconds(1000));
    Held held;
    if (remembers_) held.blocks = 0;
    return held;
  }

  // Runs it while something fails, then well. True if the failure was not noticed.
  template <typename Fail, typename Mend>
  bool FailOnce(const Operation& operation, const Ran& clean, Fail fail, Mend mend) {
    const Held before = Holds();
    const bool unnoticed = Run(operation, fail, mend) == clean;
    EXPECT_EQ(RunWell(operation), clean);
    if (Holds() == before) return unnoticed;
    // What the system and the stand-ins allocate once for such a failure is not the library's leak.
    const Held once = Holds();
    Run(operation, fail, mend);
    RunWell(operation);
    EXPECT_EQ(Holds(), once);
    return unnoticed;
  }

  std::vector<long> CallsOf(const Operation& operation) {
    std::vector<long> calls;
    Run(
        operation, [] { WatchSystem(); },
        [&] {
          const auto made = UnwatchSystem();
          calls.assign(made.begin(), made.end());
        });
    return calls;
  }

  static int PointsOf(const std::vector<long>& calls) {
    int points = 0;
    for (const long call : calls) {
      for (const SystemWay& way : SystemWays()) points += way.call == call ? 1 : 0;
    }
    return points;
  }

 private:
  static void Pass(Milliseconds time) {
    PassUntil(Now() + time, [] { return false; });
  }

  const CurrentScratchFolder folder_;
  Library library_;
  std::unique_ptr<BuiltStage> stage_;
  bool remembers_ = false;  // the stand-in for libusb keeps every device that it has had
};

class OperationFaults : public Faults, public testing::WithParamInterface<Row> {
 protected:
  void SetUp() override {
    Faults::SetUp();
    Begin(std::get<Link>(GetParam()).stage);
  }
  [[nodiscard]] static const Operation& TheOperation() { return std::get<Operation>(GetParam()); }
  // And on nothing but a port: files are the C library's.
  [[nodiscard]] static bool IsOnAPort() {
    return !std::string_view(TheOperation().name).ends_with("template") &&
           (std::get<Link>(GetParam()).stage & (faults::kCom | faults::kText)) != 0;
  }
};

TEST_P(OperationFaults, EachSystemCallInEachWay) {
  if (!SystemCanFail()) GTEST_SKIP() << "this system does not let a program catch its own calls";
  const Ran clean = RunWell(TheOperation());
  const std::vector<long> calls = CallsOf(TheOperation());
  const std::size_t stride = faults::OneOf(kOneOf);
  std::size_t point = std::string_view(TheOperation().name).size();
  for (std::size_t call = 1; call <= calls.size(); ++call) {
    for (const SystemWay& way : SystemWays()) {
      if (way.call != calls[call - 1] || ++point % stride != 0 || HasFailure()) continue;
      SCOPED_TRACE(std::string(way.name) + ", call " + std::to_string(call) + ", mishap " +
                   std::to_string(static_cast<int>(way.mishap)) + ", error " + std::to_string(way.error));
      const bool unnoticed = FailOnce(
          TheOperation(), clean, [&] { WatchSystem(call, &way); }, [] { UnwatchSystem(); });
      EXPECT_TRUE(unnoticed || !way.harmless || !IsOnAPort());
    }
  }
}

class AllocationFaults : public Faults, public testing::WithParamInterface<Link> {};

TEST_P(AllocationFaults, OfEachOperation) {
  if (!MemoryCanBeScarce()) GTEST_SKIP() << "a sanitizer has replaced malloc";
  Begin(GetParam().stage);
  if (IsSkipped()) return;
  for (const Operation& operation : faults::Operations()) {
    if ((operation.stages & GetParam().stage) == 0) continue;
    const Ran clean = RunWell(operation);
    bool denied = true;
    for (int number = 1; denied && !HasFailure(); ++number) {
      SCOPED_TRACE(std::string(operation.name) + ", allocation " + std::to_string(number));
      FailOnce(
          operation, clean, [&] { Deny(number, Denial::kOnce); }, [&] { denied = Grant(); });
    }
  }
}

class FaultPoints : public Faults, public testing::WithParamInterface<Link> {};

TEST_P(FaultPoints, AreAsManyAsEver) {
  if (!SystemCanFail()) GTEST_SKIP() << "this system does not let a program catch its own calls";
  Begin(GetParam().stage);
  if (IsSkipped()) return;
  int points = 0;
  int operations = 0;
  for (const Operation& operation : faults::Operations()) {
    if ((operation.stages & GetParam().stage) == 0) continue;
    const int these = PointsOf(CallsOf(operation));
    points += these;
    operations += these != 0 ? 1 : 0;
  }
  std::printf("%s: %d faults of the system in %d operations\n", GetParam().name, points, operations);
  RecordProperty("faults", points);
  EXPECT_GE(points, GetParam().points) << "see kLinks";
}

constexpr auto kNamed = [](const auto& test) { return faults::NameOf(test.param); };
INSTANTIATE_TEST_SUITE_P(Link, FaultPoints, testing::ValuesIn(kLinks), kNamed);
INSTANTIATE_TEST_SUITE_P(Link, AllocationFaults, testing::ValuesIn(kLinks), kNamed);
INSTANTIATE_TEST_SUITE_P(Row, OperationFaults, testing::ValuesIn(faults::RowsOf(kLinks)), kNamed);

}  // namespace
}  // namespace tavlyn::boundary
