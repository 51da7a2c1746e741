// One exchange with a device model, without the library in between.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>

#include "sim/devices/device.h"
#include "sim/devices/faults.h"

namespace tavlyn::test {

// Payloads are padded with zeros to the report's length.
bool Set(sim::HidDevice& device, std::initializer_list<std::uint8_t> payload);
// The reply as trimmed text ("8C 06 03"), or "refused".
std::string Get(sim::HidDevice& device);
// Command and fetch; "refused" if either was.
std::string Ask(sim::HidDevice& device, std::initializer_list<std::uint8_t> command);
// Command and data report.
bool Store(sim::HidDevice& device, std::initializer_list<std::uint8_t> command,
           std::initializer_list<std::uint8_t> data);
// Bytes in, all that comes back as text ("01 90 00"); empty when the device stays silent.
std::string Talk(sim::ByteDevice& device, std::initializer_list<std::uint8_t> bytes);

}  // namespace tavlyn::test
