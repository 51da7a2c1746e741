/// @file
/// Sonar sensors.
#ifndef TAVLYN_SONAR_HPP
#define TAVLYN_SONAR_HPP

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>

#include "config.hpp"
#include "device.hpp"
#include "stream.hpp"

namespace tavlyn {

/// What a sensor sees.
struct distance {
  int inches;
  /// Somebody is within the accepted range.
  bool present;
  /// As the sensor sent it.
  std::uint16_t status;
};

/// A sonar sensor.
class sonar : public device {
 public:
  static constexpr product_kind kind = product_kind::sonar;
  using device::device;

  /// It takes a quarter of a second.
  distance range() const {
    std::array<std::uint16_t, 5> words{};
    own().require([&] { return GetObjRangeInfo(words.data()); });
    return {words[0], words[1] != 0, words[4]};
  }
  /// One measurement after the other.
  stream<distance> ranges(std::chrono::milliseconds timeout = forever) const {
    return stream<distance>([own = *this, end = detail::end_of(timeout)]() -> std::optional<distance> {
      if (clock::now() >= end) return std::nullopt;
      return detail::await<distance>(end, {}, [&] { return std::optional(own.range()); });
    });
  }
  /// Whether somebody is there: at first, and each change.
  stream<bool> presence(std::chrono::milliseconds timeout = forever) const {
    const auto last = std::make_shared<std::optional<bool>>();
    return stream<bool>([own = *this, last, end = detail::end_of(timeout)] {
      return detail::await<bool>(end, {}, [&]() -> std::optional<bool> {
        const bool now = own.range().present;
        if (*last == now) return std::nullopt;
        *last = now;
        return now;
      });
    });
  }

  sonar_config config() const { return {own(), 0}; }
  /// The sensor sends no keys, or sends them again.
  void halt_keystrokes(bool halt = true) const {
    own().require([&] { return HaltKBSends(halt ? 1 : 0); });
  }
};

}  // namespace tavlyn

#endif
