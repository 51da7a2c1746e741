// Connects that go wrong: the failure path, and a fault at each exchange in turn.
#include <gtest/gtest.h>

#include <functional>

#include "api.h"
#include "core/state.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

using sim::Faults;
using sim::Reader;

class ConnectFaultsTest : public Bench {
 protected:
  void SetUp() override {
    Bench::SetUp();
    SetConnectProduct(1);
    SetDevTypeSrch(0);
  }
};

TEST_F(ConnectFaultsTest, AFailedConfigurationReadEndsTheConnect) {
  auto first = Reader::Plain();
  auto second = Reader::Plain();
  first->faults.RefuseReply({0x80});
  Plug(first);
  Plug(second);
  StartTrace();
  std::uint32_t did = kUntouched;
  EXPECT_EQ(USBConnect(&did), 0U);
  EXPECT_EQ(did, kUntouched);
  EXPECT_EQ(shared.SearchErr, 0x10000U);
  EXPECT_EQ(GetLastLibErr(), 0x20000U);
  EXPECT_EQ(GetDevCnt(), 2);
  EXPECT_EQ(GetActDev(), 0);
  EXPECT_EQ(host.hid.OpenHandles(), 2U);
  EXPECT_EQ(second->faults.Exchanges(), 0) << "those behind it are not spoken to";
  ExpectTrace({"USBConnect ENTER", "USBConnect Success !!", kReadCode, kReadFailed,
               "USBConnect ERROR CODE: 65536", "USBConnect EXIT"});
}

TEST_F(ConnectFaultsTest, AFailedIdentityLogsOneLine) {
  auto reader = Reader::Plain();
  reader->faults.RefuseCommand({0x8A});
  Plug(reader);
  StartTrace();
  EXPECT_EQ(USBConnect(nullptr), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x20202U);
  ExpectTrace({"USBConnect ENTER", "USBConnect Success !!", kReadCode, "USBConnect ERROR CODE: 65536",
               "USBConnect EXIT"});
}

TEST_F(ConnectFaultsTest, TheDevicesBeforeTheFailedOneHaveTheirWords) {
  auto first = Reader::Plus();
  auto second = Reader::Plus();
  auto third = Reader::Plus();
  second->faults.RefuseReply({0x81});
  Plug(first);
  Plug(second);
  Plug(third);
  EXPECT_EQ(USBConnect(nullptr), 0U);
  EXPECT_EQ(GetDevCnt(), 3);
  EXPECT_EQ(GetFirmwareVersion(0, 0), 0x10072005U);
  EXPECT_EQ(DevTable[1].FWVersion[0][0], 0U);
  EXPECT_EQ(third->faults.Exchanges(), 0);
  EXPECT_EQ(DevTable[0].LastLibErr, 0U);
  EXPECT_EQ(DevTable[1].LastLibErr, 0x20000U);
}

TEST_F(ConnectFaultsTest, TheApplicationMaySelectWhatWasFoundAndReadItItself) {
  auto first = Reader::Plain();
  auto second = Reader::Plain();
  second->faults.RefuseReply({0x80}, 1);
  Plug(first);
  Plug(second);
  EXPECT_EQ(USBConnect(nullptr), 0U);
  EXPECT_EQ(SetActDev(1), 1U);
  tsCfgFlags flags{};
  EXPECT_EQ(GetFlags(&flags), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x100002U) << "not read";
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(GetFlags(&flags), 1U);
  EXPECT_EQ(SetActDev(0), 1U);
  EXPECT_EQ(GetFlags(&flags), 1U);
}

TEST_F(ConnectFaultsTest, TheNextSearchClearsTheSearchWord) {
  auto reader = Reader::Plain();
  reader->faults.RefuseReply({0x80}, 1);
  Plug(reader);
  EXPECT_EQ(USBConnect(nullptr), 0U);
  EXPECT_EQ(shared.SearchErr, 0x10000U);
  USBDisconnect();
  EXPECT_EQ(shared.SearchErr, 0x10000U);
  EXPECT_EQ(USBConnect(nullptr), 1U);
  EXPECT_EQ(shared.SearchErr, 0U);
}

// A device that stops opening once its attributes have been asked for.
class Closing final : public sim::HidDevice {
 public:
  sim::Interface* interface = nullptr;
  [[nodiscard]] const sim::HidIdentity& Identity() const override {
    if (interface != nullptr) interface->opens = false;
    return identity_;
  }
  bool SetFeature(std::span<const std::uint8_t>) override { return true; }
  bool GetFeature(std::span<std::uint8_t>) override { return true; }
  bool TakeInput(std::vector<std::uint8_t>&) override { return false; }
  [[nodiscard]] bool Present() const override { return true; }

 private:
  sim::HidIdentity identity_{0x7A31, 0x3BFA, {{1, 6}}, 0, 8, "", ""};
};

TEST_F(ConnectFaultsTest, AHandleThatIsNoneGoesIntoTheEntryAllTheSame) {
  host.hid.listsIds = false;
  auto device = std::make_shared<Closing>();
  device->interface = &Plug(device);
  ForgetTraffic();
  EXPECT_EQ(USBConnect(nullptr), 0U);
  EXPECT_EQ(GetDevCnt(), 1);
  EXPECT_EQ(DevTable[0].hDev, platform::kNoHandle);
  EXPECT_EQ(shared.SearchErr, 0x10000U);
  EXPECT_EQ(GetLastLibErr(), 0x20202U);
  ExpectTraffic(
      Join({Times(6, {"set 89 01 refused", "sleep 80"}), Times(6, {"set 8A refused", "sleep 80"})}));
  StartTrace();
  EXPECT_EQ(USBDisconnect(), 1U);
  ExpectTrace({"USBDisconnect ENTER", "USBDisconnect EXIT"});
}

// What can be done to one exchange.
struct Mishap {
  const char* name;
  void (*arm)(Faults&, int exchange);
};

constexpr Mishap kMishaps[] = {
    {"refused once", [](Faults& faults, int n) { faults.RefuseAt(n); }},
    {"refused to the end of its tries", [](Faults& faults, int n) { faults.RefuseAt(n, 6); }},
    {"refused for good", [](Faults& faults, int n) { faults.RefuseFrom(n); }},
    {"garbled", [](Faults& faults, int n) { faults.GarbleAt(n); }},
    {"gone", [](Faults& faults, int n) { faults.VanishAt(n); }},
};

class EachExchange : public ConnectFaultsTest {
 protected:
  // Connects a fresh reader with the mishap and puts everything right again.
  void Try(const std::function<std::shared_ptr<Reader>()>& make, const Mishap& mishap, int exchange) {
    SCOPED_TRACE(std::string(mishap.name) + " at exchange " + std::to_string(exchange));
    auto reader = make();
    const std::string path = "reader-" + std::to_string(++tried_);
    Plug(reader, path);
    mishap.arm(reader->faults, exchange);
    std::uint32_t did = kUntouched;
    const std::uint32_t result = USBConnect(&did);
    ASSERT_LE(result, 1U);
    EXPECT_EQ(did == kUntouched, result == 0);
    EXPECT_EQ(shared.SearchErr, result == 0 ? 0x10000U : 0U);
    EXPECT_EQ(GetDevCnt(), 1);
    EXPECT_EQ(GetActDev(), 0);
    EXPECT_EQ(host.mutex.Depth(), 0);
    EXPECT_EQ(host.hid.OpenHandles(), 1U);
    EXPECT_LE(DevTable[0].ActConfig, 10);
    EXPECT_LE(DevTable[0].MaxConfig, 10);
    results_[result]++;

    reader->faults.Restart();
    reader->state = make()->state;
    EXPECT_EQ(USBDisconnect(), 1U);
    EXPECT_EQ(host.hid.OpenHandles(), 0U);
    EXPECT_EQ(USBConnect(&did), 1U);
    EXPECT_EQ(did, 0x7431U);
    EXPECT_EQ(GetDevCnt(), 1);
    EXPECT_EQ(GetLastLibErr(), 0U);
    EXPECT_EQ(USBDisconnect(), 1U);
    EXPECT_EQ(host.hid.OpenHandles(), 0U);
    host.hid.Unplug(path);
    ForgetTraffic();
  }

  int CountOf(const std::function<std::shared_ptr<Reader>()>& make) {
    auto reader = make();
    Plug(reader, "counted");
    EXPECT_EQ(USBConnect(nullptr), 1U);
    USBDisconnect();
    host.hid.Unplug("counted");
    return reader->faults.Exchanges();
  }

  void Walk(const std::function<std::shared_ptr<Reader>()>& make, int expectedExchanges) {
    const int count = CountOf(make);
    EXPECT_EQ(count, expectedExchanges);
    for (const Mishap& mishap : kMishaps) {
      for (int exchange = 1; exchange <= count; ++exchange) Try(make, mishap, exchange);
    }
    EXPECT_GT(results_[0], 0);
    EXPECT_GT(results_[1], 0);
  }

  int results_[2] = {};

 private:
  int tried_ = 0;
};

TEST_F(EachExchange, OfAPlainReadersConnectMayFail) { Walk(Reader::Plain, 68); }

TEST_F(EachExchange, OfAPlusReadersConnectMayFail) {
  Walk([] { return Reader::Plus(2); }, 158);
}

TEST_F(EachExchange, OfAReportIdReadersConnectMayFail) {
  Walk([] { return Reader::Kelda(1); }, 90);
}

TEST_F(ConnectFaultsTest, ADeviceThatVanishesBetweenConnectAndDisconnectIsClosed) {
  auto reader = Connected(Reader::Plain());
  reader->Unplug();
  StartTrace();
  EXPECT_EQ(USBDisconnect(), 1U);
  ExpectTrace({"USBDisconnect ENTER", "UsbDriver_Close ENTER", "UsbDriver_Close EXIT",
               "USBDisconnect Handle closed successfully", "USBDisconnect EXIT"});
  EXPECT_EQ(host.hid.OpenHandles(), 0U);
  EXPECT_EQ(USBConnect(nullptr), 0U);
  EXPECT_EQ(GetDevCnt(), 0);
  reader->PlugIn();
  EXPECT_EQ(USBConnect(nullptr), 1U);
}

TEST_F(ConnectFaultsTest, APathOf511CharactersFitsItsFieldAndALongerOneIsCut) {
  for (const std::size_t length : {std::size_t{511}, std::size_t{512}, std::size_t{2000}}) {
    std::string path = std::string(length - 1, 'p') + 'q';
    Plug(Reader::Plain(), path);
    EXPECT_EQ(USBConnect(nullptr), 1U);
    EXPECT_EQ(std::string(DevTable[0].DevName), path.substr(0, 511));
    USBDisconnect();
    host.hid.Unplug(path);
  }
}

TEST_F(ConnectFaultsTest, AShorterPathLeavesNothingOfTheLongerOneBefore) {
  const std::string longer(300, 'p');
  Plug(Reader::Plain(), longer);
  EXPECT_EQ(USBConnect(nullptr), 1U);
  host.hid.Unplug(longer);
  Plug(Reader::Plain(), "short");
  EXPECT_EQ(USBConnect(nullptr), 1U);
  EXPECT_EQ(getDevName_char(4), 't');
  EXPECT_EQ(getDevName_char(5), 0);
  EXPECT_STREQ(DevTable[0].DevName, "short");
}

TEST_F(ConnectFaultsTest, TheTableHoldsAHundredAndTwentySevenDevices) {
  for (int i = 0; i < 130; ++i) Plug(Reader::Plain(), "reader-" + std::to_string(i));
  EXPECT_EQ(USBConnect(nullptr), 1U);
  EXPECT_EQ(GetDevCnt(), 127);
  EXPECT_EQ(SetActDev(126), 1U);
  EXPECT_EQ(SetActDev(127), 0U);
  EXPECT_STREQ(DevTable[126].DevName, "reader-126");
  EXPECT_EQ(host.hid.OpenHandles(), 127U);
  USBDisconnect();
  EXPECT_EQ(host.hid.OpenHandles(), 0U);
}

}  // namespace
}  // namespace tavlyn::test
