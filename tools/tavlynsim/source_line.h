// A line of the source as a model that a carrier can serve.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

#include "sim/source.h"

namespace tavlyn::sim {

class SourceLine final : public ByteDevice {
 public:
  SourceLine(Source& source, Key key) : source_(source), key_(key) {}

  [[nodiscard]] Key GetKey() const { return key_; }
  void Receive(std::span<const std::uint8_t> bytes) override { source_.SendBytes(key_, bytes); }
  std::size_t Take(std::span<std::uint8_t> bytes) override {
    taken_.resize(bytes.size());
    source_.TakeBytes(key_, taken_);
    std::ranges::copy(taken_, bytes.begin());
    return taken_.size();
  }
  void Silence() override { source_.Silence(key_); }
  bool TakeCut() override { return source_.TakeCut(key_) == Outcome::kDone; }

 private:
  Source& source_;
  Key key_;
  std::vector<std::uint8_t> taken_;
};

}  // namespace tavlyn::sim
