// The parts of the host, which host.cpp puts together. Each system has them in files of the same names, in
// linux/ or windows/, as objects of classes that nothing else sees.
#pragma once

#include <type_traits>

#include "platform/platform.h"

namespace tavlyn::platform {

// The type that each of these objects is declared with: a part with anything to do at the end of the process
// does not compile.
template <typename Part>
requires std::is_trivially_destructible_v<Part>
using NeverDestroyed = Part;

Clock& TheClock();
RecursiveMutex& TheMutex();
HidSystem& TheHid();
Sockets& TheSockets();
ComPorts& TheComPorts();
Libusb& TheLibusb();
Places& ThePlaces();

// Closes sockets that the library no longer knows of; a step of an unload.
void CloseLostSockets();

}  // namespace tavlyn::platform
