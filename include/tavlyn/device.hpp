/// @file
/// What all devices have.
#ifndef TAVLYN_DEVICE_HPP
#define TAVLYN_DEVICE_HPP

#include <array>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

#include "connection.hpp"
#include "files.hpp"
#include "values.hpp"

namespace tavlyn {

/// Objects of the same device are alike. When the last object of a connect is gone, its devices are closed.
class device {
 public:
  explicit device(detail::handle handle) : handle_(std::move(handle)) {}

  /// Makes the device active and calls what is given, such as a call of api.h that has no name here. No other
  /// thread that uses this header reaches the library in the meantime.
  template <class Calls>
  auto with(Calls&& calls) const {
    return handle_.on_active(calls);
  }

  product_kind product() const { return handle_.product(); }
  /// Empty for all but card readers.
  std::string serial_number() const {
    return of_reader([] { return GetSerialNumber(); });
  }
  std::uint16_t luid() const {
    return with([] { return static_cast<std::uint16_t>(GetLUID()); });
  }
  /// Empty for a sonar sensor.
  std::string part_number() const {
    if (product() == product_kind::sonar) return {};
    return with([] { return detail::text_of(getPartNumberString()); });
  }
  /// The version; empty for all but card readers.
  std::string firmware() const {
    return of_reader([] { return GetFullFWVersion(); });
  }

  /// Saves the configuration as a text file.
  void save(const std::string& path) const {
    handle_.require_read();
    detail::save_file(path, [&] { handle_.require([&] { return WriteDevCfgToFile(path.c_str()); }); });
  }
  /// Loads such a file and sends what differs.
  void load(const std::string& path) const {
    handle_.require_read();
    detail::load_file(path, [&] { handle_.require([&] { return ReadDevCfgFmFile(path.c_str()); }); });
    if (product() != product_kind::reader)
      handle_.require([] { return WriteCfg(); });  // a reader has it already
  }

  using reply = std::array<std::uint8_t, 8>;

  /// One to five beeps, or one or two long ones; a sensor has no beeper.
  void beep(int count = 1, bool is_long = false) const {
    if (count < 1 || count > (is_long ? 2 : 5)) throw std::out_of_range("1 to 5 beeps, or 1 or 2 long ones");
    handle_.require([&] { return BeepNow(static_cast<std::uint8_t>(count), is_long ? 1 : 0); });
  }

  /// Sends a command of up to eight bytes.
  reply raw(bytes command) const {
    if (command.empty() || command.size() > reply().size()) {
      throw std::out_of_range("a command has 1 to 8 bytes");
    }
    return with([&] {
      handle_.clear_word();
      send(command);
      if (GetLastLibErr() != 0) throw error(error_word(GetLastLibErr()));
      reply received{};
      const std::uint16_t first = GetDevType() == 0 ? 1 : 0;  // a report has its ID before them
      for (std::uint16_t at = 0; at < received.size(); ++at) {
        received[at] = GetRawPayload_index(static_cast<std::uint16_t>(first + at));
      }
      return received;
    });
  }

 protected:
  const detail::handle& own() const { return handle_; }

 private:
  template <class Call>
  std::string of_reader(Call&& call) const {
    if (product() != product_kind::reader) return {};
    return with([&] { return detail::text_of(call()); });
  }
  static void send(bytes command) {
    SetRawPayload_index(0, 0);
    std::uint32_t result = 0;
    for (std::int16_t at = 0; at < 8; ++at) {
      const auto place = static_cast<std::size_t>(at);
      result = SetRawPayload_index(static_cast<std::int16_t>(at + 1),
                                   place < command.size() ? command[place] : std::uint8_t{0});
    }
    if (result != 1) throw error(error_word(GetLastLibErr()));
  }

  detail::handle handle_;
};

}  // namespace tavlyn

#endif
