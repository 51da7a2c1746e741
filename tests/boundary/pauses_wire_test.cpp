// The library adds nothing to the pauses that its readers need: all the time that a call takes it spends
// sleeping. A configuration is read in 21 exchanges.
#include "tests/boundary/wire.h"

namespace tavlyn::boundary {
namespace {

class PausesWire : public Wire {
 protected:
  template <typename Call>
  static void ExpectPauses(int expected, Call call) {
    const auto before = Slept();
    EXPECT_EQ(TimeOf(call), expected);
    EXPECT_EQ(Slept() - before, Milliseconds(expected));
  }
};

TEST_F(PausesWire, ConfigurationReadOverAPort) {
  PortDevice device(ports_, 3, line_);
  ASSERT_EQ(ConnectToPort(3), 1u);
  ExpectPauses(21 * 50, [&] { EXPECT_EQ(CALL(library_, ReadCfg)(), 1u); });
}

TEST_F(PausesWire, ConfigurationReadOverTcp) {
  const Ip ip{127, 3, 1, 1};
  const TcpDevice device(ip, line_);
  ASSERT_EQ(ConnectTo(ip, device.Port()), 1u);
  // Seven of the exchanges end with a status of their own: two reads after the echo instead of one.
  ExpectPauses(21 * 270 + 7 * 100, [&] { EXPECT_EQ(CALL(library_, ReadCfg)(), 1u); });
}

TEST_F(PausesWire, PollOfAReaderWithoutACard) {
  PortDevice device(ports_, 3, line_);
  ASSERT_EQ(ConnectToPort(3), 1u);
  std::array<std::uint8_t, 8> id{};
  const auto poll = [&] { EXPECT_EQ(CALL(library_, GetActiveID)(id.data(), 8), 0); };
  ExpectPauses(50, poll);
  ExpectPauses(50, poll);
}

}  // namespace
}  // namespace tavlyn::boundary
