// The one bulk USB device, reached through libusb-0.1, as a byte carrier.
#pragma once

#include <cstdint>
#include <span>

#include "platform/platform.h"

namespace tavlyn {

// Loads libusb when that is possible and lets it look for devices again.
void RefreshLibusb();

// The device, claimed, configured and emptied; kNoHandle when there is none.
platform::Handle OpenLibusbDevice();
void CloseLibusbDevice(platform::Handle device);

// Bytes delivered. What a bulk read brought beyond the bytes asked for is counted and comes back as zeros at
// the next read: a device's answers never run into each other, so no byte that matters is lost.
std::int32_t LibusbRead(platform::Handle device, std::span<std::uint8_t> bytes);
void LibusbWrite(platform::Handle device, std::span<const std::uint8_t> bytes);
void LibusbDrain(platform::Handle device);

}  // namespace tavlyn
