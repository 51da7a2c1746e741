// Finding HID device paths and deciding which are ours.
#pragma once

#include <cstdint>

#include "core/product.h"
#include "platform/platform.h"

namespace tavlyn {

// Called for each path that is ours, with the row of VidPidTable that matched, or -1.
using HidCallback = void (*)(const char* path, std::int32_t row);

// Walks the present interfaces, at most 127, for devices of the identity. False when they could not be
// listed.
bool EnumerateHid(const UsbIdentity& identity, HidCallback callback);

// row, unless null, is written only for identities that the VID/PID table extends.
bool UsbDriver_IsDevOurs(const char* path, const UsbIdentity& identity, std::int32_t* row);

platform::Handle OpenDevice(const char* path);
// For the device whose input reports are drained before an ID read.
platform::Handle OpenDeviceOverlapped(const char* path);
void CloseDevice(platform::Handle device);

}  // namespace tavlyn
