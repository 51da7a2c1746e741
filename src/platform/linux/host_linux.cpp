// The host that the shared library runs on, and the moments of its load and unload.
#include "core/front/load.h"
#include "platform/linux/parts.h"

namespace tavlyn::platform {
namespace {

constinit LinuxClock clockPart;
constinit LinuxMutex mutexPart;
constinit LinuxHid hidPart;
constinit LinuxSockets socketsPart;
constinit LinuxComPorts portsPart;
constinit LinuxLibusb usbPart;
constinit LinuxPlaces placesPart;
constinit Host host{clockPart, mutexPart, hidPart, socketsPart, portsPart, usbPart, placesPart};

__attribute__((constructor)) void Attach() { Load(); }
__attribute__((destructor)) void Detach() { Unload(); }

}  // namespace

Host& TheHost() { return host; }

}  // namespace tavlyn::platform
