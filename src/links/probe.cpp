#include "links/probe.h"

#include <new>

#include "links/serial_port.h"

namespace tavlyn {

SerialPort* PortOf(tsDevEntry& entry) {
  if (entry.pSerialPort == nullptr) entry.pSerialPort = new (std::nothrow) SerialPort;
  return entry.pSerialPort;
}

SerialPort* ClosedPort(tsDevEntry& entry) {
  if (entry.pSerialPort != nullptr) entry.pSerialPort->Close();
  return PortOf(entry);
}

void Count(tsDevEntry& entry, std::uint32_t kind) {
  entry.ProductKind = kind;
  entry.VidPidRow = -1;
  ++shared.DevCnt;
}

void CloseAndDropPort(tsDevEntry& entry) {
  if (entry.pSerialPort != nullptr) entry.pSerialPort->Close();
  ReleasePort(entry);
}

void ReleasePort(tsDevEntry& entry) {
  if (entry.pSerialPort == nullptr) return;
  entry.pSerialPort->Release();
  delete entry.pSerialPort;
  entry.pSerialPort = nullptr;
}

}  // namespace tavlyn
