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
  // The time of a configuration read as a multiple of its pauses, the best of a few.
  double ReadOverPauses(const char* wire, int times) {
    double best = 1e9;
    for (int time = 0; time < times; ++time) {
      const auto before = Slept();
      const auto start = Clock::now();
      EXPECT_EQ(1u, CALL(library_, ReadCfg)());
      const std::chrono::duration<double, std::milli> took = Clock::now() - start;
      const auto pauses = static_cast<double>((Slept() - before).count());
      best = std::min(best, took.count() / pauses);
      std::printf("configuration read over %s: %.1f ms, its pauses: %.0f ms\n", wire, took.count(), pauses);
    }
    return best;
  }
};

TEST_F(FiguresWire, ConfigurationReadOverAPort) {
  PortDevice device(ports_, 3, line_);
  ASSERT_EQ(1u, ConnectQuickly(3));
  EXPECT_LE(ReadOverPauses("a port", 3), kMostOverPauses);
}

TEST_F(FiguresWire, ConfigurationReadOverTcp) {
  const Ip ip{127, 3, 1, 1};
  const TcpDevice device(ip, line_);
  ASSERT_EQ(1u, ConnectTo(ip, device.Port()));
  EXPECT_LE(ReadOverPauses("TCP", 1), kMostOverPauses);
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
