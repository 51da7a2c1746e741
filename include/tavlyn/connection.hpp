/// @file
/// Connecting, and the lock under which every call is made.
#ifndef TAVLYN_CONNECTION_HPP
#define TAVLYN_CONNECTION_HPP

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "../api.h"
#include "values.hpp"

namespace tavlyn {

using clock = std::chrono::steady_clock;

enum class product_kind : std::uint32_t { reader = 1, magstripe = 2, sonar = 4 };

/// Where to search, on USB if nothing is said, and which device to take, the first if nothing is said:
/// `selection().serial("0400123456")`, `selection().com(3)`.
class selection {
 public:
  /// The device with this serial number; only card readers have one.
  selection& serial(std::string number) {
    serial_ = std::move(number);
    return *this;
  }
  /// The device with this logical unit ID.
  selection& luid(std::uint16_t number) {
    luid_ = number;
    return *this;
  }
  /// The device at this place, from 0; the system decides which that is.
  selection& index(int place) {
    index_ = place;
    return *this;
  }
  /// A reader on this COM port.
  selection& com(std::uint16_t port) {
    com_ = port;
    return *this;
  }
  /// A reader behind the adapter at this address; a connect takes eight seconds.
  selection& ip(std::array<std::uint8_t, 4> address, std::uint16_t port) {
    ip_ = std::pair(address, port);
    return *this;
  }

  const std::optional<std::string>& serial() const { return serial_; }
  const std::optional<std::uint16_t>& luid() const { return luid_; }
  const std::optional<int>& index() const { return index_; }
  const std::optional<std::uint16_t>& com() const { return com_; }
  const std::optional<std::pair<std::array<std::uint8_t, 4>, std::uint16_t>>& ip() const { return ip_; }

 private:
  std::optional<std::string> serial_;
  std::optional<std::uint16_t> luid_;
  std::optional<int> index_;
  std::optional<std::uint16_t> com_;
  std::optional<std::pair<std::array<std::uint8_t, 4>, std::uint16_t>> ip_;
};

namespace detail {

/// The library has one active device for the whole process: whoever makes one active holds this.
inline std::recursive_mutex library_mutex;

inline std::string name_of(product_kind product) {
  if (product == product_kind::magstripe) return "magstripe reader";
  return product == product_kind::sonar ? "sonar sensor" : "reader";
}

inline error nothing_found(product_kind product, const selection& where) {
  if (where.com()) return {error_word(), "no reader answers on COM" + std::to_string(*where.com())};
  if (where.ip()) {
    std::string place = ":" + std::to_string(where.ip()->second);
    for (std::size_t at = 4; at-- > 0;) {
      place.insert(0, (at == 0 ? "" : ".") + std::to_string(where.ip()->first[at]));
    }
    return {error_word(), "no reader answers at " + place};
  }
  return {error_word(), "no " + name_of(product) + " is plugged in"};
}

inline std::string text_of(const char* text) { return text == nullptr ? std::string() : text; }

/// A connect, whose devices stay open as long as the object. There is one at a time: the library has one
/// table of devices, which the next connect empties.
class session {
 public:
  session(product_kind product, const selection& where) : product_(product) {
    if (where.com() && where.ip()) throw std::invalid_argument("a COM port or an address, not both");
    const std::lock_guard<std::recursive_mutex> lock(library_mutex);
    if (GetDevCnt() > 0) throw error(error_word(), "the devices of an earlier connect are still in use");
    SetConnectProduct(static_cast<std::uint32_t>(product));
    const bool whole = search(where) == 1;
    if (GetDevCnt() == 0) {
      USBDisconnect();
      throw nothing_found(product, where);
    }
    is_read_.resize(static_cast<std::size_t>(GetDevCnt()));
    for (std::int16_t index = 0; index < GetDevCnt(); ++index)
      is_read_[place(index)] = whole && has_all(index);
    used_.assign(is_read_.size(), clock::now());
  }
  ~session() {
    const std::lock_guard<std::recursive_mutex> lock(library_mutex);
    USBDisconnect();
  }
  session(const session&) = delete;
  session& operator=(const session&) = delete;

  product_kind product() const { return product_; }
  std::int16_t count() const { return static_cast<std::int16_t>(is_read_.size()); }
  bool is_read(std::int16_t index) const { return is_read_[place(index)]; }
  void set_read(std::int16_t index, bool read) { is_read_[place(index)] = read; }
  clock::time_point used(std::int16_t index) const { return used_[place(index)]; }
  void set_used(std::int16_t index) { used_[place(index)] = clock::now(); }

 private:
  static std::uint32_t search(const selection& where) {
    if (where.com()) {
      SetComSrchRange(*where.com(), *where.com());
      return ComConnect(nullptr);
    }
    if (where.ip()) {
      const auto& [address, port] = *where.ip();
      SetIpPort(address[0], address[1], address[2], address[3], port);
    }
    SetDevTypeSrch(where.ip() ? 2 : 0);
    return USBConnect(nullptr);
  }
  /// Of a plus reader after the first a connect reads one configuration only.
  static bool has_all(std::int16_t index) {
    SetActDev(index);
    return index == 0 || GetMaxConfig() == 0;
  }
  static std::size_t place(std::int16_t index) { return static_cast<std::size_t>(index); }

  product_kind product_;
  std::vector<bool> is_read_;
  std::vector<clock::time_point> used_;  // when calls on the device ended
};

/// One device of a session.
class handle {
 public:
  handle(std::shared_ptr<session> from, std::int16_t index) : session_(std::move(from)), index_(index) {}

  product_kind product() const { return session_->product(); }

  /// Makes the device active for a call, or several.
  template <class Calls>
  auto on_active(Calls&& calls) const {
    const std::lock_guard<std::recursive_mutex> lock(library_mutex);
    SetActDev(index_);
    const use in_use{*this};
    return calls();
  }
  /// The same when the device was left alone for so long. Only the end of the wait, should another thread
  /// have used the device in the meantime, is under the lock.
  template <class Calls>
  auto on_rested(std::chrono::milliseconds pause, Calls&& calls) const {
    const auto end = [&] {
      const std::lock_guard<std::recursive_mutex> lock(library_mutex);
      return session_->used(index_) + pause;
    };
    std::this_thread::sleep_until(end());
    const std::lock_guard<std::recursive_mutex> lock(library_mutex);
    std::this_thread::sleep_until(end());
    return on_active(calls);
  }

  /// A call that returns 1 unless it fails.
  template <class Call>
  void require(Call&& call) const {
    on_active([&] {
      clear_word();
      if (call() != 1) throw error(error_word(GetLastLibErr()));
    });
  }

  /// Reads the configuration unless that was done.
  void require_read() const {
    if (!on_active([&] { return session_->is_read(index_); })) read();
  }
  void read() const {
    on_active([&] {
      session_->set_read(index_, ReadCfg() == 1);
      if (!session_->is_read(index_)) throw error(error_word(GetLastLibErr()));
    });
  }

  /// Some calls leave the word as it was, or add to it; a record get that succeeds clears it.
  void clear_word() const {
    if (product() == product_kind::magstripe) {
      sorbaneSetActiveID(0, 0, 0, 0);  // which is refused, and clears the word as well
    } else if (product() == product_kind::sonar) {
      tsSonarParms parameters{};
      GetSonarParms(&parameters);
    } else {
      tsCfgFlags flags{};
      if (session_->is_read(index_)) GetFlags(&flags);
    }
  }

 private:
  /// Notes its end.
  struct use {
    const handle& used;
    ~use() { used.session_->set_used(used.index_); }
  };

  std::shared_ptr<session> session_;
  std::int16_t index_;
};

}  // namespace detail
}  // namespace tavlyn

#endif
