// A device whose answers are the fuzzer's bytes, one after the other; after the last it refuses everything.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "sim/devices/device.h"

namespace tavlyn::fuzz {

class AnyDevice : public sim::HidDevice {
 public:
  // refusals: it refuses once in 16 + refusals exchanges, and never with bit 7.
  AnyDevice(sim::HidIdentity identity, std::uint8_t refusals, std::span<const std::uint8_t> answers)
      : identity_(std::move(identity)), refusals_(refusals), answers_(answers) {}

  [[nodiscard]] const sim::HidIdentity& Identity() const override { return identity_; }
  bool SetFeature(std::span<const std::uint8_t> /*payload*/) override { return !Refuses(); }
  bool GetFeature(std::span<std::uint8_t> payload) override {
    if (Refuses()) return false;
    Take(payload);
    return true;
  }
  bool TakeInput(std::vector<std::uint8_t>& report) override {
    if (answers_.empty()) return false;
    report.resize(std::size_t{answers_.front()} % 80);
    answers_ = answers_.subspan(1);
    Take(report);
    return !report.empty();
  }
  [[nodiscard]] bool Present() const override { return true; }

 protected:
  bool Refuses() {
    if (answers_.empty()) return true;
    ++exchanges_;
    return (refusals_ & 0x80) == 0 && exchanges_ % (16U + refusals_) == 0;
  }
  void Take(std::span<std::uint8_t> bytes) {
    const std::size_t count = std::min(bytes.size(), answers_.size());
    std::ranges::copy(answers_.first(count), bytes.begin());
    answers_ = answers_.subspan(count);
  }

 private:
  sim::HidIdentity identity_;
  unsigned refusals_;
  unsigned exchanges_ = 0;
  std::span<const std::uint8_t> answers_;
};

}  // namespace tavlyn::fuzz
