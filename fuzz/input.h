// The fuzzer's bytes, which are taken off one after the other; zeros come after the last.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>

#include "fuzz/require.h"

namespace tavlyn::fuzz {

class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : left_(data, size) {}

  [[nodiscard]] bool IsEmpty() const { return left_.empty(); }
  std::uint8_t Byte() {
    const auto taken = Take(1);
    return taken.empty() ? std::uint8_t{0} : taken.front();
  }
  // Low byte first.
  std::uint16_t Word() {
    const unsigned low = Byte();
    return static_cast<std::uint16_t>(low | static_cast<unsigned>(Byte()) << 8);
  }
  // Fewer when there are no more.
  std::span<const std::uint8_t> Take(std::size_t most) {
    const auto taken = left_.first(std::min(most, left_.size()));
    left_ = left_.subspan(taken.size());
    return taken;
  }
  std::span<const std::uint8_t> Rest() { return Take(left_.size()); }
  // Up to the next such byte, which is dropped.
  std::string_view Text(char end) {
    const std::string_view all = TextOf(left_.data(), left_.size());
    const std::string_view text = all.substr(0, all.find(end));
    Take(text.size() + 1);
    return text;
  }

 private:
  std::span<const std::uint8_t> left_;
};

}  // namespace tavlyn::fuzz
