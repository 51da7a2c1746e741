// A sensor on the bench that answers each fetch with the next of its replies, and a table entry for it.
#pragma once

#include <cstdint>
#include <deque>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "api.h"
#include "core/state.h"
#include "tests/support/bench.h"
#include "tests/support/entry0.h"

namespace tavlyn::test {

class ScriptedSensor final : public sim::HidDevice {
 public:
  ScriptedSensor() {
    identity.vid = 0x18C8;
    identity.pid = 0x2BFA;
    identity.usages = {{1, 6}};
  }

  sim::HidIdentity identity;
  std::deque<sim::Bytes> replies;  // with none left a fetch returns zeros
  std::optional<int> refusesFrom;  // the exchange from which on it refuses everything, counted from 0

  [[nodiscard]] const sim::HidIdentity& Identity() const override { return identity; }
  bool SetFeature(std::span<const std::uint8_t> /*payload*/) override { return !Refuses(); }
  bool GetFeature(std::span<std::uint8_t> payload) override {
    if (Refuses()) return false;
    std::ranges::fill(payload, std::uint8_t{0});
    if (replies.empty()) return true;
    std::ranges::copy(replies.front(), payload.begin());
    replies.pop_front();
    return true;
  }
  bool TakeInput(std::vector<std::uint8_t>& /*report*/) override { return false; }
  [[nodiscard]] bool Present() const override { return true; }

  [[nodiscard]] int Exchanges() const { return exchanges_; }
  void Restart(std::optional<int> refuse = {}) {
    exchanges_ = 0;
    refusesFrom = refuse;
  }

 private:
  bool Refuses() { return exchanges_++ >= refusesFrom.value_or(std::numeric_limits<int>::max()); }

  int exchanges_ = 0;
};

// What a full read fetches: pages that differ in every byte, including the discarded one before page 1.
inline std::deque<sim::Bytes> FullReplies() {
  return {{0x85, 75, 16, 49, 125, 5, 6, 7},     {0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE},
          {0xF2, 3, 11, 12, 13, 14, 15, 16},    {0xA1, 22, 23, 24, 25, 26, 27, 28},
          {0x36, 255, 31, 32, 33, 34, 35, 36},  {0xB2, 0xC3, 43, 44, 45, 46, 47, 48},
          {0xD7, 51, 52, 53, 0xF4, 55, 56, 57}, {0x34, 0x12, 0x78, 0x56, 0xFA, 0xFB, 0xFC, 0xFD}};
}

inline Lines Asked(const std::string& request) { return {"set " + request, "sleep 250", "get"}; }
inline Lines Stored(const std::string& request, const std::string& page) {
  return {"set " + request, "sleep 250", "set " + page};
}
inline Lines FullRead() {
  return Join({Asked("80"),
               {"get", "sleep 250", "get"},
               Asked("82"),
               Asked("83"),
               Asked("84"),
               Asked("85"),
               Asked("8A")});
}

class SonarBench : public Bench {
 protected:
  // An open and active entry that was never read, after that of another sensor, which does not change.
  void SetUp() override {
    Bench::SetUp();
    Add(other_, "other");
    entry0_.Note();
    sensor = std::make_shared<ScriptedSensor>();
    Add(sensor, "device-1");
    LetTimePass();
    ForgetTraffic();
  }
  void TearDown() override {
    entry0_.ExpectAsNoted();
    EXPECT_EQ(other_->Exchanges(), 0) << "the other sensor was asked";
    Bench::TearDown();
  }

  // Brings the records of FullReplies into the mirror.
  void Read() {
    sensor->Restart();
    sensor->replies = FullReplies();
    EXPECT_EQ(ReadCfg(), 1U);
    LetTimePass();
    ForgetTraffic();
  }

  static tsDevEntry& Entry() { return EntryOfActDev(); }
  static tsSonarBlock& Block() { return EntryOfActDev().SonarBlock; }
  static unsigned Dirty() {
    const tsSonarBlock& block = Block();
    return (block.bSonarChanged != 0 ? 1U : 0U) | (block.bWalkAwayChanged != 0 ? 2U : 0U) |
           (block.bWalkUpChanged != 0 ? 4U : 0U) | (block.bIdleChanged != 0 ? 8U : 0U);
  }
  static void SetDirty(unsigned dirty) {
    Block().bSonarChanged = dirty & 1;
    Block().bWalkAwayChanged = dirty >> 1 & 1;
    Block().bWalkUpChanged = dirty >> 2 & 1;
    Block().bIdleChanged = dirty >> 3 & 1;
  }

  std::shared_ptr<ScriptedSensor> sensor;

 private:
  void Add(std::shared_ptr<ScriptedSensor> added, const std::string& path) {
    Plug(std::move(added), path);
    shared.ActDev = shared.DevCnt++;
    Entry().ProductKind = kSonar;
    Entry().hDev = host.hid.Open(path.c_str(), platform::OpenMode::kShared);
  }

  std::shared_ptr<ScriptedSensor> other_ = std::make_shared<ScriptedSensor>();
  Entry0 entry0_;
};

}  // namespace tavlyn::test
