// The built library with simulated devices on pseudo-terminals and on loopback.
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <memory>
#include <string>

#include "sim/carriers/ethernet.h"
#include "sim/carriers/pseudo_terminal.h"
#include "tests/boundary/attended.h"
#include "tests/boundary/far_end.h"
#include "tests/boundary/library.h"
#include "tests/boundary/passing.h"
#include "tests/boundary/scratch_folder.h"
#include "tests/boundary/variable.h"

namespace tavlyn::boundary {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;

class Lines : public testing::Test {
 protected:
  void SetUp() override {
    library_ = std::make_unique<Library>();
    library_->Standin("reset");
  }
  void TearDown() override {
    if (library_ != nullptr) CALL(*library_, USBDisconnect)();
    library_.reset();
  }

  std::string Link(const std::string& name) const { return (folder_.Path() / name).string(); }

  std::uint32_t ConnectCom(std::uint16_t number) {
    CALL(*library_, SetDevTypeSrch)(1);
    CALL(*library_, SetConnectProduct)(1);
    CALL(*library_, SetComSrchRange)(number, number);
    std::uint32_t did = 0;
    return CALL(*library_, USBConnect)(&did);
  }
  std::uint32_t ConnectTcp(std::array<std::uint8_t, 4> ip, std::uint16_t port) {
    CALL(*library_, SetDevTypeSrch)(2);
    CALL(*library_, SetConnectProduct)(1);
    CALL(*library_, SetIpPort)(ip[0], ip[1], ip[2], ip[3], port);
    std::uint32_t did = 0;
    return CALL(*library_, USBConnect)(&did);
  }

  // Bit count and the first two bytes of the card's ID.
  std::array<int, 3> Card() {
    Pause(milliseconds(270));  // longer than the library leaves a reader alone after each exchange
    std::array<std::uint8_t, 8> id{};
    const int bits = CALL(*library_, GetActiveID)(id.data(), 8);
    return {bits, id[0], id[1]};
  }

  const ScratchFolder folder_;
  const Variable ports_{"TAVLYNAPI_PORT_DIR", folder_.Path().c_str()};
  std::unique_ptr<Library> library_;
};

TEST_F(Lines, PortLeadsToItsReaderAgainAndAgain) {
  sim::ReaderFa model(sim::Reader::Plain());
  sim::PseudoTerminal port(model, Link("com3"));
  Attended attended({&port});
  ASSERT_TRUE(port.IsPlugged());
  for (std::uint8_t round = 1; round <= 3; ++round) {
    ASSERT_EQ(ConnectCom(3), 1u) << int{round};
    attended.With([&] { model.Device().PutCard({round, 0x12}, 26); });
    EXPECT_EQ(Card(), (std::array<int, 3>{26, round, 0x12}));
    attended.With([&] { model.Device().TakeCard(); });
    EXPECT_EQ(Card(), (std::array<int, 3>{0, 0, 0}));
    CALL(*library_, USBDisconnect)();
  }
}

TEST_F(Lines, PortGoesWithItsCarrier) {
  sim::ReaderFa model(sim::Reader::Plain());
  {
    sim::PseudoTerminal port(model, Link("com3"));
    EXPECT_TRUE(fs::is_symlink(Link("com3")));
  }
  EXPECT_FALSE(fs::is_symlink(Link("com3")));
  EXPECT_EQ(ConnectCom(3), 0u);
  const sim::PseudoTerminal nowhere(model, Link("none/com3"));
  EXPECT_FALSE(nowhere.IsPlugged());
}

TEST_F(Lines, SlowReaderIsRead) {
  sim::ReaderFa model(sim::Reader::Plain());
  model.Device().PutCard({0x34, 0x12}, 26);
  sim::PseudoTerminal port(model, Link("com7"));
  port.Manner() = {milliseconds(40), milliseconds(3)};
  const Attended attended({&port});
  ASSERT_EQ(ConnectCom(7), 1u);
  EXPECT_EQ(Card(), (std::array<int, 3>{26, 0x34, 0x12}));
}

TEST_F(Lines, CutPortComesBackUnderItsName) {
  sim::ReaderFa model(sim::Reader::Plain());
  model.Device().PutCard({0x34, 0x12}, 26);
  sim::PseudoTerminal port(model, Link("com3"));
  Attended attended({&port});
  ASSERT_EQ(ConnectCom(3), 1u);
  attended.With([&] { model.CutAfter(5); });
  EXPECT_EQ(Card()[0], 0);
  EXPECT_EQ(Card()[0], 0);
  ASSERT_EQ(ConnectCom(3), 1u);
  EXPECT_EQ(Card(), (std::array<int, 3>{26, 0x34, 0x12}));
}

TEST_F(Lines, FloodedPortIsLeftInTime) {
  sim::ReaderFa model(sim::Reader::Plain());
  model.Device().PutCard({0x34, 0x12}, 26);
  sim::PseudoTerminal port(model, Link("com3"));
  Attended attended({&port});
  ASSERT_EQ(ConnectCom(3), 1u);
  EXPECT_EQ(Card()[0], 26);
  attended.With([&] { model.Flood(1'000'000); });
  // After the pause, six attempts at the first command, with 50 ms in each.
  EXPECT_EQ(TimeOf([&] { EXPECT_EQ(0, Card()[0]); }), 270 + 6 * 50);
}

TEST_F(Lines, AdapterLeadsToItsReader) {
  sim::EthernetAdapter model(sim::Reader::Plain());
  model.Device().PutCard({0x34, 0x12}, 26);
  sim::EthernetCarrier adapter(model, {sim::kBridgeMac, {127, 77, 0, 5}}, 0);
  const Attended attended({&adapter});
  ASSERT_TRUE(adapter.IsPlugged());
  ASSERT_EQ(ConnectTcp({127, 77, 0, 5}, adapter.Port()), 1u);
  EXPECT_EQ(Card(), (std::array<int, 3>{26, 0x34, 0x12}));
  std::array<char, 512> name{};
  CALL(*library_, GetDevName)(name.data());
  EXPECT_EQ(std::string(name.data()),
            "MAC:00:20:4A:04:05:06 TCP/IP:127.77.0.5;Port:" + std::to_string(adapter.Port()));
  EXPECT_EQ(CALL(*library_, FindXport)(127, 77, 0, 4, 6), 5u);
}

TEST_F(Lines, AdapterThatCutsServesTheNextConnection) {
  sim::EthernetAdapter model(sim::Reader::Plain());
  model.Device().PutCard({0x34, 0x12}, 26);
  sim::EthernetCarrier adapter(model, {sim::kWedgeMac, {127, 77, 0, 6}}, 0);
  Attended attended({&adapter});
  ASSERT_EQ(ConnectTcp({127, 77, 0, 6}, adapter.Port()), 1u);
  attended.With([&] { model.CutAfter(3); });
  EXPECT_EQ(Card()[0], 0);
  ASSERT_EQ(ConnectTcp({127, 77, 0, 6}, adapter.Port()), 1u);
  EXPECT_EQ(Card(), (std::array<int, 3>{26, 0x34, 0x12}));
}

}  // namespace
}  // namespace tavlyn::boundary
