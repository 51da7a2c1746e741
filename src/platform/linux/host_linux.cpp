// The host that the shared library runs on.
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

}  // namespace

Host& TheHost() { return host; }

}  // namespace tavlyn::platform
