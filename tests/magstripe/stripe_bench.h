// A magnetic-stripe reader on the bench that answers from a table: command text to reply text.
#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "api.h"
#include "core/state.h"
#include "tests/support/bench.h"
#include "tests/support/entry0.h"

namespace tavlyn::test {

class StripeScript final : public sim::HidDevice {
 public:
  std::map<std::string, std::string> replies;  // a command without one is answered "R"
  std::set<std::string> lost;                  // these get no reply
  std::set<std::string> refused;               // these cannot be sent
  Lines commands;                              // texts of all packets that were sent

  StripeScript() {
    identity_.vid = 0x7A31;
    identity_.pid = 0x1000;
    identity_.usages = {{1, 6}};
    identity_.featureBytes = 24;
  }
  [[nodiscard]] const sim::HidIdentity& Identity() const override { return identity_; }
  bool SetFeature(std::span<const std::uint8_t> payload) override {
    command_.assign(payload.begin(), std::ranges::find(payload.first(23), 0));
    if (refused.contains(command_)) return false;
    commands.push_back(command_);
    return true;
  }
  bool GetFeature(std::span<std::uint8_t> payload) override {
    if (lost.contains(command_)) return false;
    const auto known = replies.find(command_);
    const std::string reply = known != replies.end() ? known->second : "R";
    std::copy_n(reply.begin(), std::min(reply.size(), payload.size()), payload.begin());
    return true;
  }
  bool TakeInput(std::vector<std::uint8_t>& /*report*/) override { return false; }
  [[nodiscard]] bool Present() const override { return true; }

 private:
  sim::HidIdentity identity_;
  std::string command_;
};

class StripeBench : public Bench {
 protected:
  std::shared_ptr<StripeScript> stripe = std::make_shared<StripeScript>();

  void SetUp() override {
    Bench::SetUp();
    other_->replies = stripe->replies = {{"QRZ", "RRZSTRIPE-1"}, {"QSV", "RSV12345678"}};
    Plug(other_, "other");
    Plug(stripe, "stripe");
    SetDevTypeSrch(0);
    SetConnectProduct(2);
    ASSERT_EQ(USBConnect(nullptr), 1U);
    ASSERT_EQ(SetActDev(1), 1U);
    Forget();
    other_->commands.clear();
    entry0_.Note();
  }
  void TearDown() override {
    entry0_.ExpectAsNoted();
    EXPECT_EQ(other_->commands, Lines{}) << "the other reader was asked";
    Bench::TearDown();
  }

  void Forget() {
    LetTimePass();
    ForgetTraffic();
    stripe->commands.clear();
  }
  // Compares with the texts sent since the last call.
  void ExpectCommands(const Lines& expected, int line = __builtin_LINE()) {
    EXPECT_EQ(Difference(expected, stripe->commands), "") << "from line " << line;
    stripe->commands.clear();
  }

  static tsDevEntry& Entry() { return EntryOfActDev(); }
  static tsSorbaneCfg& Cfg() { return EntryOfActDev().SorbaneBlock.Cfg; }

 private:
  // In entry 0; it does not change.
  std::shared_ptr<StripeScript> other_ = std::make_shared<StripeScript>();
  Entry0 entry0_;
};

}  // namespace tavlyn::test
