// Connects, reads and disconnects over each carrier, and a table that is full: every one works, and
// afterwards the process holds what it held before.
#include <cstdint>
#include <cstdio>
#include <string>

#include "tests/boundary/bulk_standin.h"
#include "tests/boundary/endurance.h"
#include "tests/boundary/held.h"
#include "tests/boundary/wire.h"

namespace tavlyn::boundary {
namespace {

constexpr int kFirst = 3;  // fill the caches of the system and of the simulator

class Connects : public Wire {
 protected:
  template <typename Connect>
  void Repeat(Connect connect) {
    const int times = Times(1000, 30);
    Held before;
    for (int time = -kFirst; time < times; ++time) {
      if (time == 0) before = Held();
      ASSERT_EQ(connect(), 1U) << time;
      ASSERT_EQ(CALL(library_, GetDevCnt)(), 1) << time;
      ASSERT_EQ(CALL(library_, ReadCfg)(), 1U) << time;
      CALL(library_, USBDisconnect)();
      Passed();
      ASSERT_TRUE(time < 0 || Held() == before) << time << ": " << testing::PrintToString(Held());
    }
    std::printf("%d connects and disconnects, held: %s\n", times, testing::PrintToString(before).c_str());
  }
  // Far ends notice a closed link a moment later.
  static void Passed() {
    PassUntil(Now() + Milliseconds(10), [] { return false; });
  }
};

TEST_F(Connects, Reports) {
  library_.Standin("plug plus:2");
  library_.Standin("record off");
  CALL(library_, SetDevTypeSrch)(0);
  Repeat([&] { return CALL(library_, USBConnect)(nullptr); });
}

TEST_F(Connects, SerialPort) {
  PortDevice device(ports_, kDevicePort, line_);
  Repeat([&] { return ConnectToPort(kDevicePort); });
}

TEST_F(Connects, Adapter) {
  const Ip ip{127, 3, 7, 1};
  const TcpDevice device(ip, line_);
  Repeat([&] { return ConnectTo(ip, device.Port()); });
}

TEST_F(Connects, BulkDevice) {
  const BulkStandin standin;
  standin.Do("plug reader@bulk");
  CALL(library_, SetDevTypeSrch)(0);
  if (CALL(library_, USBConnect)(nullptr) != 1) GTEST_SKIP() << kNotTrusted;
  CALL(library_, USBDisconnect)();
  Repeat([&] { return CALL(library_, USBConnect)(nullptr); });
}

TEST_F(Connects, EveryReaderOfAFullTableIsReachedInItsTurn) {
  constexpr std::int16_t kMost = 127;
  for (int number = 1; number <= kMost; ++number)
    library_.Standin("plug reader@7A31:3BFA,luid=" + std::to_string(number));
  CALL(library_, SetDevTypeSrch)(0);
  // The handles of the first connect stay open.
  ASSERT_EQ(CALL(library_, USBConnect)(nullptr), 1U);
  ASSERT_EQ(CALL(library_, USBConnect)(nullptr), 1U);
  ASSERT_EQ(CALL(library_, GetDevCnt)(), kMost);
  for (std::int16_t index = 0; index < kMost; ++index) {
    ASSERT_EQ(CALL(library_, SetActDev)(index), 1U);
    EXPECT_EQ(CALL(library_, ReadCfg)(), 1U);
    EXPECT_EQ(CALL(library_, GetLUID)(), 1U + static_cast<unsigned>(index));
  }
}

}  // namespace
}  // namespace tavlyn::boundary
