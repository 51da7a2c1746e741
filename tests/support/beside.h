// Benches whose devices come after another card reader, which has entry 0: whatever a test does, neither that
// reader nor its entry is touched.
#pragma once

#include <memory>
#include <utility>

#include "api.h"
#include "tests/support/entry0.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {

class BesideReader : public Bench {
 protected:
  void TearDown() override {
    ExpectOtherUntouched();
    other_.reset();
    Bench::TearDown();
  }
  // As on the bench itself; its entry is the active one, and everything has been read.
  std::shared_ptr<sim::Reader> Connected(std::shared_ptr<sim::Reader> reader) {
    if (other_ == nullptr) Plug(other_ = sim::Reader::Plus(3), "other");
    Bench::Connected(reader);
    Settle();
    return reader;
  }
  void Reconnect() {
    ExpectOtherUntouched();
    EXPECT_EQ(USBDisconnect(), 1U);
    ConnectAgain();
  }
  void ConnectAgain() {
    EXPECT_EQ(USBConnect(nullptr), 1U);
    Settle();
  }
  static tsDevEntry& Entry() { return EntryOfActDev(); }

 private:
  void Settle() {
    EXPECT_EQ(SetActDev(static_cast<std::int16_t>(GetDevCnt() - 1)), 1U);
    EXPECT_EQ(ReadCfg(), 1U);
    LetTimePass();
    ForgetTraffic();
    entry0_.Note();
    exchanges_ = other_->faults.Exchanges();
  }
  void ExpectOtherUntouched() const {
    if (other_ == nullptr) return;
    entry0_.ExpectAsNoted();
    EXPECT_EQ(other_->faults.Exchanges(), exchanges_) << "the other reader was asked";
  }

  std::shared_ptr<sim::Reader> other_;
  int exchanges_ = 0;
  Entry0 entry0_;
};

class BesideLine : public SerialBench {
 protected:
  void SetUp() override {
    SerialBench::SetUp();
    AddLine(other_);
    entry0_.Note();
  }
  void TearDown() override {
    entry0_.ExpectAsNoted();
    EXPECT_FALSE(other_.reached) << "bytes went to the other reader";
    SerialBench::TearDown();
  }

 private:
  struct Other final : sim::ByteDevice {
    void Receive(std::span<const std::uint8_t> /*bytes*/) override { reached = true; }
    std::size_t Take(std::span<std::uint8_t> /*bytes*/) override { return 0; }
    bool reached = false;
  };

  Other other_;
  Entry0 entry0_;
};

}  // namespace tavlyn::test
