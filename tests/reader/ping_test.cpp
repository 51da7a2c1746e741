// Ping: how long a device takes to answer.
#include "api.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

// Answers like a reader, after a while of virtual time.
class SlowReader final : public sim::HidDevice {
 public:
  explicit SlowReader(std::shared_ptr<Reader> reader) : reader_(std::move(reader)) {}
  std::uint64_t takes = 0;

  [[nodiscard]] const sim::HidIdentity& Identity() const override { return reader_->Identity(); }
  bool SetFeature(std::span<const std::uint8_t> payload) override { return reader_->SetFeature(payload); }
  bool GetFeature(std::span<std::uint8_t> payload) override {
    sim::VirtualHost::Instance().clock.tick += takes;
    return reader_->GetFeature(payload);
  }
  bool TakeInput(std::vector<std::uint8_t>& report) override { return reader_->TakeInput(report); }
  [[nodiscard]] bool Present() const override { return reader_->Present(); }

 private:
  std::shared_ptr<Reader> reader_;
};

class PingReports : public Bench {
 protected:
  std::shared_ptr<Reader> reader = Reader::Plain();
  std::shared_ptr<SlowReader> slow = std::make_shared<SlowReader>(reader);

  void SetUp() override {
    Bench::SetUp();
    Plug(slow);
    SetDevTypeSrch(0);
    SetConnectProduct(1);
    ASSERT_EQ(USBConnect(nullptr), 1U);
    LetTimePass();
    ForgetTraffic();
  }
};

TEST_F(PingReports, TellsTheTicksBetween1And65535) {
  EntryOfActDev().LastLibErr = 5;
  EXPECT_EQ(Ping(), 1U) << "no time at all counts as 1";
  ExpectTraffic({"set 8A", "get 01 00 31 74"});
  for (const std::uint64_t takes : {1U, 2U, 300U, 65534U, 65535U}) {
    slow->takes = takes;
    EXPECT_EQ(Ping(), takes);
  }
  for (const std::uint64_t takes : {65536U, 70000U, 200000U}) {
    slow->takes = takes;
    EXPECT_EQ(Ping(), 65535U);
  }
  EXPECT_EQ(GetLastLibErr(), 5U) << "not cleared";
}

TEST_F(PingReports, AFailureTellsTheTickAtItsStart) {
  host.clock.tick = 1234567;
  reader->faults.RefuseReply({0x8A}, 1);
  slow->takes = 50;
  EXPECT_EQ(Ping(), 1234567U);
  reader->faults.RefuseCommand({0x8A});
  host.clock.tick = 2345678;
  EXPECT_EQ(Ping(), 2345678U);
  EXPECT_EQ(Slept(), 480U);
}

TEST_F(PingReports, WithoutADeviceOfTheKindNothingIsTouched) {
  host.clock.tick = 1234567;
  for (const std::uint32_t kind : {0U, kSonar, 3U}) {
    EntryOfActDev().ProductKind = kind;
    EXPECT_EQ(Ping(), 1234567U) << kind;
  }
  EntryOfActDev().ProductKind = kReader;
  shared.DevCnt = 0;
  EXPECT_EQ(Ping(), 1234567U);
  shared.DevCnt = 1;
  ExpectTraffic({});
}

TEST_F(PingReports, ATickBeyond32BitsTellsItsLowHalf) {
  host.clock.tick = 0x1'0000'0000U + 77;
  shared.DevCnt = 0;
  EXPECT_EQ(Ping(), 77U);
  shared.DevCnt = 1;
  host.clock.tick = 0xFFFF'FFFFU;
  slow->takes = 3;
  EXPECT_EQ(Ping(), 3U) << "over the wrap of the tick";
}

class PingFa : public SerialBench {};

TEST_F(PingFa, AsksTheFixedProbeAndOnceMore) {
  AddReader(Reader::Plain());
  EXPECT_EQ(Ping(), 50U) << "the pause after the class byte counts";
  const Lines good = FrameLines("04 ED ED 04", {"read 04", "read 01 00 31 74", "read 90 00"});
  ExpectTraffic(good);
  line->faults.RefuseCommand({0x04, 0xED}, 1);
  EXPECT_EQ(Ping(), 100U);
  ExpectTraffic(Join({FrameLines("04 ED ED 04", {"read 6D", "read 00"}), good}));
  const std::uint64_t start = host.clock.tick;
  line->faults.RefuseReply({0x04, 0xED}, 2);
  EXPECT_EQ(Ping(), start);
  ExpectTraffic(Times(2, FrameLines("04 ED ED 04", {"read"})));
  EXPECT_EQ(Entry().LastLibErr, 0U);
}

}  // namespace
}  // namespace tavlyn::test
