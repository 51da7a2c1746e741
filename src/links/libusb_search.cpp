#include "links/libusb_search.h"

#include <cstdio>

#include "links/libusb_pipe.h"
#include "links/serial_port.h"

namespace tavlyn {

bool SearchLibusb(const Probe& probe) {
  tsDevEntry* entry = NextEntry();
  const platform::Handle device = entry != nullptr ? OpenLibusbDevice() : platform::kNoHandle;
  if (device == platform::kNoHandle) return false;
  SerialPort* port = ClosedPort(*entry);
  if (port == nullptr) {
    CloseLibusbDevice(device);
    return false;
  }
  entry->LinkKind = kBySerialPort;
  port->SetUsbHandle(device);
  port->UseNormalTimeouts();
  shared.ActDev = shared.DevCnt;
  if (!port->Open() || !probe.answers()) {
    CloseAndDropPort(*entry);
    return false;
  }
  entry->bFound = 1;
  std::snprintf(entry->DevName, sizeof entry->DevName, "/USB/Velmar/Corvane");
  Count(*entry, probe.kind);
  return true;
}

}  // namespace tavlyn
