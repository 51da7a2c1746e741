// The report descriptor that a simulated HID device has, wherever the kernel asks it for one.
#pragma once

#include <cstdint>
#include <vector>

#include "sim/devices/device.h"

namespace tavlyn::sim {

bool IsKeyboard(const Usage& usage);

std::vector<std::uint8_t> ReportDescriptor(const HidIdentity& identity);

}  // namespace tavlyn::sim
