/// @file
/// Card readers.
#ifndef TAVLYN_READER_HPP
#define TAVLYN_READER_HPP

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "config.hpp"
#include "device.hpp"
#include "files.hpp"
#include "stream.hpp"

namespace tavlyn {

/// A card that came or went.
struct card_event {
  bool arrived;
  card_id card;
};

/// A card reader.
class reader : public device {
 public:
  static constexpr product_kind kind = product_kind::reader;
  using device::device;

  /// The card on the reader. It takes a quarter of a second if the reader was just in use.
  std::optional<card_id> read_card() const;
  /// Each card that is laid on the reader, and the one that is there.
  stream<card_id> cards(std::chrono::milliseconds timeout = forever) const;
  /// The same, and each card that goes.
  stream<card_event> events(std::chrono::milliseconds timeout = forever) const;

  /// The configuration, of a plus reader one of several.
  reader_config config(int index = 0) const { return {own(), index}; }
  /// save() with a trailer, by which load_secure() notices damage.
  void save_secure(const std::string& path) const {
    own().require_read();
    detail::save_file(path, [&] {
      own().require([&] { return WriteDevCfgToSecureFile(path.c_str()); });
      own().require([&] { return CheckTamperedFile(path.c_str(), 0); });
    });
  }
  /// load() of a file whose trailer matches.
  void load_secure(const std::string& path) const {
    own().require_read();
    detail::load_file(path, [&] { own().require([&] { return ReadDevCfgFromSecureFile(path.c_str()); }); });
  }

  int volume() const;
  void volume(int value) const {
    if (value < 0 || value > 255) throw std::out_of_range("a volume is 0 to 255");
    own().require([&] { return SetBeeperVolume(static_cast<std::uint16_t>(value)); });
  }
  /// Until the reader loses power.
  void leds(bool red, bool green) const { set_leds(true, red, green); }
  /// The reader has its LEDs for itself again.
  void release_leds() const { set_leds(false, false, false); }
  /// Like leds().
  void relay(bool on) const;

 private:
  /// Nothing if there is no card.
  std::optional<card_id> ask() const;
  void set_leds(bool control, bool red, bool green) const;
  template <class Record, class Get, class Set, class Change>
  void set_outputs(Get get, Set set, Change&& change) const;
};

namespace detail {

/// A reader that was used less than 235 ms ago is not asked: the library repeats the last card, of any
/// reader. Some systems count time in steps of 16 ms.
inline constexpr std::chrono::milliseconds card_pause{255};

/// An ID may have been fetched just before the card came, and the number of its bits just after that.
inline bool is_doubtful(const std::optional<card_id>& card) {
  if (!card) return false;
  const bytes id = card->bytes();
  return std::all_of(id.begin(), id.end(), [](std::uint8_t byte) { return byte == 0; });
}

/// Which cards came and went, by what is on the reader again and again.
class card_changes {
 public:
  void take(const std::optional<card_id>& now) {
    const std::optional<card_id> doubted = std::exchange(doubted_, std::nullopt);
    if (!doubted && is_doubtful(now) && now != on_) {
      doubted_ = now;
      return;
    }
    if (!now && doubted) change(doubted);
    change(now);
  }
  std::optional<card_event> next() {
    if (events_.empty()) return std::nullopt;
    const card_event first = events_.front();
    events_.erase(events_.begin());
    return first;
  }

 private:
  void change(const std::optional<card_id>& now) {
    if (now == on_) return;
    if (on_) events_.push_back({false, *on_});
    if (now) events_.push_back({true, *now});
    on_ = now;
  }

  std::optional<card_id> on_;
  std::optional<card_id> doubted_;
  std::vector<card_event> events_;
};

}  // namespace detail

inline std::optional<card_id> reader::ask() const {
  return own().on_rested(detail::card_pause, []() -> std::optional<card_id> {
    std::array<std::uint8_t, card_id::most_bytes> id{};
    const std::uint16_t bits = GetActiveID32(id.data(), static_cast<std::int16_t>(id.size()));
    if (GetLastLibErr() != 0) throw error(error_word(GetLastLibErr()));
    if (bits == 0) return std::nullopt;
    return card_id(bits, id);
  });
}

inline std::optional<card_id> reader::read_card() const {
  const std::optional<card_id> card = ask();
  return detail::is_doubtful(card) ? ask() : card;
}

inline stream<card_event> reader::events(std::chrono::milliseconds timeout) const {
  const auto changes = std::make_shared<detail::card_changes>();
  return stream<card_event>([own = *this, changes, end = detail::end_of(timeout)] {
    if (std::optional<card_event> waiting = changes->next()) return waiting;
    return detail::await<card_event>(end, detail::card_pause, [&] {
      changes->take(own.ask());
      return changes->next();
    });
  });
}

inline stream<card_id> reader::cards(std::chrono::milliseconds timeout) const {
  const auto changes = std::make_shared<detail::card_changes>();
  return stream<card_id>([own = *this, changes, end = detail::end_of(timeout)] {
    return detail::await<card_id>(end, detail::card_pause, [&]() -> std::optional<card_id> {
      changes->take(own.ask());
      while (const std::optional<card_event> event = changes->next()) {
        if (event->arrived) return event->card;
      }
      return std::nullopt;
    });
  });
}

inline int reader::volume() const {
  constexpr std::uint32_t none = 65535;
  return with([&] {
    own().clear_word();
    const std::uint32_t value = GetBeeperVolume();
    if (value == none) throw error(error_word(GetLastLibErr()));
    return static_cast<int>(value);
  });
}

template <class Record, class Get, class Set, class Change>
void reader::set_outputs(Get get, Set set, Change&& change) const {
  own().require_read();
  with([&] {
    Record record{};
    own().require([&] { return get(&record); });
    change(record);
    record.bVolatile = 1;
    own().require([&] { return set(&record); });
    // What is sent at once has its failure in the word alone.
    if (GetLastLibErr() != 0) throw error(error_word(GetLastLibErr()));
  });
}

inline void reader::set_leds(bool control, bool red, bool green) const {
  set_outputs<tsLEDCtrl>(GetLEDCtrl, SetLEDCtrl, [&](tsLEDCtrl& leds) {
    leds.bAppCtrlsLED = control;
    leds.iRedLEDState = red;
    leds.iGrnLEDState = green;
  });
}

inline void reader::relay(bool on) const {
  set_outputs<tsBprRlyCtrl>(GetBprRlyCtrl, SetBprRlyCtrl,
                            [&](tsBprRlyCtrl& outputs) { outputs.iRelayState = on; });
}

}  // namespace tavlyn

#endif
