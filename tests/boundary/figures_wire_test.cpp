// What the library adds to the pauses that its readers need, and what a poll costs.
#include <sys/resource.h>

#include <cstdio>

#include "tests/boundary/wire.h"

namespace tavlyn::boundary {
namespace {

constexpr double kMostOverPauses = 1.05;
constexpr double kMostOfACpu = 0.005;

class FiguresWire : public Wire {
 protected:
  // The best of a few.
  double ReadOverPauses(const char* what, int times) {
    double best = 1e9;
    for (int time = 0; time < times; ++time) {
      const Cost cost = CostOf(what, [&] { EXPECT_EQ(1u, CALL(library_, ReadCfg)()); });
      best = std::min(best, cost.OverPauses());
    }
    return best;
  }
};

TEST_F(FiguresWire, ConfigurationReadOverAPort) {
  PortDevice device(ports_, 3, line_);
  ASSERT_EQ(1u, ConnectQuickly(3));
  EXPECT_LE(ReadOverPauses("configuration read over a port", 3), kMostOverPauses);
}

TEST_F(FiguresWire, ConfigurationReadOverTcp) {
  const Ip ip{127, 3, 1, 1};
  TcpDevice device(ip, line_);
  // Found, and not read before it is timed.
  line_.faults.RefuseCommand({0x04, 0x00});
  EXPECT_EQ(0u, ConnectTo(ip, device.Port()));
  device.With([&] { line_.faults.Restart(); });
  EXPECT_LE(ReadOverPauses("configuration read over TCP", 1), kMostOverPauses);
}

double CpuSeconds() {
  rusage usage{};
  getrusage(RUSAGE_THREAD, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

TEST_F(FiguresWire, PollTenTimesASecond) {
  PortDevice device(ports_, 3, line_);
  ASSERT_EQ(1u, ConnectQuickly(3));
  std::array<std::uint8_t, 8> id{};
  const auto read = CALL(library_, GetActiveID);
  const double before = CpuSeconds();
  const auto start = Clock::now();
  for (int poll = 0; poll < 40; ++poll) {
    EXPECT_EQ(0, read(id.data(), 8));
    std::this_thread::sleep_until(start + (poll + 1) * Milliseconds(100));
  }
  const std::chrono::duration<double> took = Clock::now() - start;
  const double share = (CpuSeconds() - before) / took.count();
  std::printf("a poll ten times a second: %.3f %% of a CPU\n", share * 100);
  EXPECT_LT(share, kMostOfACpu);
}

}  // namespace
}  // namespace tavlyn::boundary
