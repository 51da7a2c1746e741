/// @file
/// Magnetic-stripe readers.
#ifndef TAVLYN_MAGSTRIPE_HPP
#define TAVLYN_MAGSTRIPE_HPP

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "device.hpp"
#include "stream.hpp"

namespace tavlyn {

/// A track of a swipe.
struct track {
  int number;
  /// Six bits a character on track 1, four on the others.
  std::vector<std::uint8_t> raw;
  /// The LRC is the last character.
  std::string text;
};

/// The tracks that are not empty.
using swipe = std::vector<track>;

/// A magnetic-stripe reader.
class magstripe : public device {
 public:
  static constexpr product_kind kind = product_kind::magstripe;
  using device::device;

  /// The swipe that waits in the reader, and makes room for the next.
  std::optional<swipe> read_swipe() const;
  /// Each swipe, and those that wait.
  stream<swipe> swipes(std::chrono::milliseconds timeout = forever) const;

  /// Sends what the calls of api/magstripe.h have changed.
  void commit() const {
    own().require_read();
    own().require([] { return WriteCfg(); });
  }
  /// Reads the configuration; changes that were not sent are lost.
  void reload() const { own().read(); }

 private:
  static track fetch(int number);
};

inline track magstripe::fetch(int number) {
  constexpr std::uint8_t count_bits = 127;
  const auto which = static_cast<std::uint16_t>(number);
  track found{number, {}, {}};
  // Either fetch returns the count, then so many characters.
  const std::uint8_t* raw = sorbaneGetTrackData(which, 0);
  if (raw != nullptr) found.raw.assign(raw + 1, raw + 1 + (raw[0] & count_bits));
  const std::uint8_t* text = sorbaneGetTrackData(which, 1);
  if (text != nullptr) found.text.assign(text + 1, text + 1 + (text[0] & count_bits));
  const error_word word(GetLastLibErr());
  if (word != error_word() || found.raw.size() != found.text.size()) throw error(word);
  return found;
}

inline std::optional<swipe> magstripe::read_swipe() const {
  return with([&]() -> std::optional<swipe> {
    own().clear_word();
    const bool waits = sorbaneIsDataAvailable() != 0;
    if (GetLastLibErr() != 0) throw error(error_word(GetLastLibErr()));
    if (!waits) return std::nullopt;
    swipe tracks;
    for (int number = 1; number <= 3; ++number) {
      track one = fetch(number);
      if (!one.text.empty()) tracks.push_back(one);
    }
    sorbaneClearDataAvailable();
    return tracks;
  });
}

inline stream<swipe> magstripe::swipes(std::chrono::milliseconds timeout) const {
  constexpr std::chrono::milliseconds pause{100};
  return stream<swipe>([own = *this, end = detail::end_of(timeout), pause] {
    return detail::await<swipe>(end, pause, [&] { return own.read_swipe(); });
  });
}

}  // namespace tavlyn

#endif
