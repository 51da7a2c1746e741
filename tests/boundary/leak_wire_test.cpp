// A thousand connects over every wire leave nothing open; a hundred where each reads a whole configuration.
#include "tests/boundary/wire.h"

namespace tavlyn::boundary {
namespace {

constexpr int kConnects = 1000;

class LeakWire : public Wire {
 protected:
  // What the system opens for the first sockets and keeps open is not a leak.
  LeakWire() {
    CALL(library_, FindXport)(127, 2, 0, 1, 1);
    ConnectTo({127, 3, 3, 3}, 1);
  }
};

TEST_F(LeakWire, ReaderOnAPort) {
  PortDevice device(ports_, kDevicePort, line_);
  const int before = OpenHandles();
  for (int time = 0; time < kConnects / 10; ++time) {
    ASSERT_EQ(ConnectToPort(kDevicePort), 1u) << time;
    CALL(library_, USBDisconnect)();
  }
  ExpectOpenAsBefore(before);
}

TEST_F(LeakWire, PortWithoutAReader) {
  Answering refusing({0x6D, 0x00});
  PortDevice device(ports_, kDevicePort, refusing);
  const int before = OpenHandles();
  for (int time = 0; time < kConnects; ++time) ASSERT_EQ(ConnectToPort(kDevicePort), 0u);
  ExpectOpenAsBefore(before);
}

TEST_F(LeakWire, ReaderWhoseConfigurationCannotBeRead) {
  Answering reader(kPingAnswer);
  PortDevice device(ports_, kDevicePort, reader);
  const int before = OpenHandles();
  for (int time = 0; time < kConnects; ++time) {
    ASSERT_EQ(ConnectToPort(kDevicePort), 0u);
    ASSERT_EQ(CALL(library_, GetDevCnt)(), 1) << time;
    CALL(library_, USBDisconnect)();
  }
  ExpectOpenAsBefore(before);
}

// Table entries are reused by connects without a disconnect between them.
TEST_F(LeakWire, ConnectsWithoutDisconnects) {
  PortDevice device(ports_, kDevicePort, line_);
  CALL(library_, SetDevTypeSrch)(1);
  CALL(library_, SetComSrchRange)(kDevicePort, kDevicePort);
  ASSERT_EQ(CALL(library_, USBConnect)(nullptr), 1u);
  const int before = OpenHandles();
  for (int time = 0; time < kConnects / 10; ++time)
    ASSERT_EQ(CALL(library_, USBConnect)(nullptr), 1u) << time;
  ExpectOpenAsBefore(before);
}

// Both ways to connect, of which neither finds a reader.
TEST_F(LeakWire, PeerThatNeverAnswers) {
  const Ip ip{127, 3, 3, 1};
  const DeafPort device(ip);
  const int before = OpenHandles();
  for (int time = 0; time < kConnects; ++time) ASSERT_EQ(ConnectTo(ip, device.Port()), 0u);
  ExpectOpenAsBefore(before);
  EXPECT_EQ(NewConnects(), 2 * kConnects);
}

TEST_F(LeakWire, NobodyListens) {
  const Ip ip{127, 3, 3, 2};
  const std::uint16_t port = ClosedTcpPort(ip);
  const int before = OpenHandles();
  for (int time = 0; time < kConnects; ++time) ASSERT_EQ(ConnectTo(ip, port), 0u);
  ExpectOpenAsBefore(before);
}

// A search for adapters deliberately loses an existing link. No number of lost links makes it fail.
TEST_F(LeakWire, LinksLostToASearchForAdapters) {
  const Ip ip{127, 4, 0, 1};
  for (int time = 0; time < kConnects / 10; ++time) {
    const TcpDevice device(ip, line_);
    ASSERT_EQ(ConnectTo(ip, device.Port()), 1u) << time;
    ASSERT_EQ(CALL(library_, FindXport)(127, 2, 0, 1, 1), 0u);
  }
}

TEST_F(LeakWire, AdaptersThatAreNotThere) {
  const int before = OpenHandles();
  for (int time = 0; time < kConnects; ++time) ASSERT_EQ(CALL(library_, FindXport)(127, 2, 0, 1, 1), 0u);
  ExpectOpenAsBefore(before);
}

}  // namespace
}  // namespace tavlyn::boundary
