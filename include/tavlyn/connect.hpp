/// @file
/// From a selection to devices.
#ifndef TAVLYN_CONNECT_HPP
#define TAVLYN_CONNECT_HPP

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "connection.hpp"
#include "device.hpp"
#include "reader.hpp"

namespace tavlyn {

/// All devices of a kind, wherever the selection says. A configuration is read when it is needed, unless the
/// connect has read it.
template <class Device = reader>
std::vector<Device> connect_all(const selection& where = {}) {
  const auto session = std::make_shared<detail::session>(Device::kind, where);
  std::vector<Device> devices;
  for (std::int16_t index = 0; index < session->count(); ++index) {
    devices.emplace_back(detail::handle(session, index));
  }
  return devices;
}

namespace detail {

inline bool fits(const device& one, int place, const selection& which) {
  return (!which.serial() || one.serial_number() == *which.serial()) &&
         (!which.luid() || one.luid() == *which.luid()) && (!which.index() || place == *which.index());
}

inline handle choose(const std::shared_ptr<session>& from, const selection& which) {
  std::vector<handle> found;
  for (std::int16_t index = 0; index < from->count(); ++index) {
    const handle one(from, index);
    if (fits(device(one), index, which)) found.push_back(one);
  }
  const bool is_named = which.serial() || which.luid();
  const std::string what = which.serial() ? "this serial number" : which.luid() ? "this LUID" : "this index";
  if (found.empty()) throw error(error_word(), "no " + name_of(from->product()) + " has " + what);
  if (is_named && found.size() > 1) throw error(error_word(), "several devices have " + what);
  return found.front();
}

}  // namespace detail

/// One device, whose configuration has been read: `auto reader = tavlyn::connect();`,
/// `auto sensor = tavlyn::connect<tavlyn::sonar>();`. Throws error, with the word 0 if there is none.
template <class Device = reader>
Device connect(const selection& which = {}) {
  const detail::handle chosen = detail::choose(std::make_shared<detail::session>(Device::kind, which), which);
  chosen.require_read();
  return Device(chosen);
}

}  // namespace tavlyn

#endif
