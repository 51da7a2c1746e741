#include "links/probe.h"

#include "links/serial_port.h"

namespace tavlyn {

SerialPort& ClosedPort(tsDevEntry& entry) {
  if (entry.pSerialPort != nullptr) {
    entry.pSerialPort->Close();
  } else {
    entry.pSerialPort = new SerialPort;
  }
  return *entry.pSerialPort;
}

void DropPort(tsDevEntry& entry) {
  if (entry.pSerialPort == nullptr) return;
  entry.pSerialPort->Close();
  entry.pSerialPort->Release();
  delete entry.pSerialPort;
  entry.pSerialPort = nullptr;
}

}  // namespace tavlyn
