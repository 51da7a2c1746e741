// The library with one more family: it is searched after the others and dispatched to, and no file of src/
// knows it.
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>

#include "api.h"
#include "core/product.h"
#include "core/state.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

class Toy : public sim::HidDevice {
 public:
  [[nodiscard]] const sim::HidIdentity& Identity() const override { return identity_; }
  bool SetFeature(std::span<const std::uint8_t> payload) override {
    command_ = payload[0];
    return true;
  }
  bool GetFeature(std::span<std::uint8_t> payload) override {
    constexpr std::array<std::uint8_t, 8> kIdReply = {24, 0xAB, 0xCD, 0xEF};
    constexpr std::array<std::uint8_t, 8> kCfgReply = {77};
    std::ranges::copy(command_ == 'I' ? kIdReply : kCfgReply, payload.begin());
    return true;
  }
  bool TakeInput(std::vector<std::uint8_t>& /*report*/) override { return false; }
  [[nodiscard]] bool Present() const override { return true; }

 private:
  sim::HidIdentity identity_{.vid = 0x1234, .pid = 0x5678, .usages = {{1, 0}}};
  std::uint8_t command_ = 0;
};

class FourthFamily : public Bench {
 protected:
  void SetUp() override {
    Bench::SetUp();
    SetUnsupportedProductErrorCode(kUnsupported);
    SetDevTypeSrch(kUsb);
    Plug(std::make_shared<Toy>(), "toy");
  }
};

TEST_F(FourthFamily, IsFoundAfterTheOthersAndRead) {
  ForgetTraffic();
  std::uint32_t did = 0;
  EXPECT_EQ(USBConnect(&did), 1U);
  Lines walks = host.transcript.Lines();
  std::erase_if(walks, [](const std::string& line) { return !line.starts_with("walk"); });
  EXPECT_EQ(walks, (Lines{"walk hid", "walk keyboard", "walk keyboard", "walk hid"}));
  EXPECT_EQ(GetDevCnt(), 1);
  EXPECT_EQ(GetProduct(), kToy);
  EXPECT_EQ(did, 77U);
}

TEST_F(FourthFamily, WaitsForTheOthers) {
  Plug(sim::Reader::Plain());
  EXPECT_EQ(USBConnect(nullptr), 1U);
  EXPECT_EQ(GetDevCnt(), 1);
  EXPECT_EQ(GetProduct(), kReader);
}

TEST_F(FourthFamily, IsLeftOutByItsBitOfTheMask) {
  SetConnectProduct(~kToy);
  EXPECT_EQ(USBConnect(nullptr), 0U);
}

TEST_F(FourthFamily, ReadsItsIdAndBeeps) {
  ASSERT_EQ(USBConnect(nullptr), 1U);
  LetTimePass();
  ForgetTraffic();
  std::array<std::uint8_t, 4> id{};
  EXPECT_EQ(GetActiveID(id.data(), 4), 24);
  EXPECT_EQ(id, (std::array<std::uint8_t, 4>{0xAB, 0xCD, 0xEF, 0}));
  EXPECT_EQ(BeepNow(2, 1), 1U);
  ExpectTraffic({"set 49", "get 18 AB CD EF", "set 42 02 01"});
}

TEST_F(FourthFamily, AnswersTheUnsupportedValueForWhatItLacks) {
  ASSERT_EQ(USBConnect(nullptr), 1U);
  LetTimePass();
  ForgetTraffic();
  std::array<std::uint8_t, 8> id{};
  EXPECT_EQ(GetActiveID32(id.data(), 8), kUnsupported);
  EXPECT_EQ(WriteCfg(), kUnsupported);
  EXPECT_EQ(ResetFactoryDflts(), kUnsupported);
  EXPECT_EQ(WriteDevCfgToFile("never"), kUnsupported);
  EXPECT_EQ(GetQueuedID(0, 0), kUnsupported);
  EXPECT_EQ(ChkAddArrival("toy"), kUnsupported);
  tsTimeParms times{};
  EXPECT_EQ(GetTimeParms(&times), kUnsupported);
  EXPECT_EQ(static_cast<std::uint16_t>(getTimeParms_iUSBKeyPrsTm()), kUnsupported);
  EXPECT_EQ(ComDisconnect(), kUnsupported);
  EXPECT_STREQ(GetVidPidVendorName(), "");
  ExpectTraffic({});
}

}  // namespace
}  // namespace tavlyn::test
