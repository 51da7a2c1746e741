// The Windows implementation of each interface, for the one place that puts them together.
#pragma once

#include "platform/platform.h"

namespace tavlyn::platform {

Clock& WindowsClock();
RecursiveMutex& WindowsMutex();
HidSystem& WindowsHid();
Sockets& WindowsSockets();
ComPorts& WindowsComPorts();
Libusb& WindowsLibusb();
Places& WindowsPlaces();

// Those that the library no longer knows of; a step of an unload.
void CloseLostSockets();

}  // namespace tavlyn::platform
