// The one bulk USB device, reached through libusb-0.1, as a byte carrier.
#pragma once

#include <cstdint>
#include <span>

#include "platform/platform.h"

namespace tavlyn {

// Loads libusb if that is possible and lets it look for devices again.
void RefreshLibusb();

// The device, claimed, configured and emptied; kNoHandle when there is none.
platform::Handle OpenLibusbDevice();
void CloseLibusbDevice(platform::Handle device);

// Returns the number of bytes delivered. Bytes that a bulk read brought beyond those asked for are only
// counted, and the next read delivers zeros for them: a device's answers never run into each other, so no
// byte that matters is lost.
std::int32_t LibusbRead(platform::Handle device, std::span<std::uint8_t> bytes);
void LibusbWrite(platform::Handle device, std::span<const std::uint8_t> bytes);
void LibusbDrain(platform::Handle device);

}  // namespace tavlyn
