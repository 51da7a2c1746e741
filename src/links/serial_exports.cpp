// Exports that move raw bytes through the active device's port.
#include <array>

#include "api.h"
#include "core/state.h"
#include "links/com_search.h"
#include "links/serial_port.h"

using namespace tavlyn;

namespace {

using CharBuffer = std::array<std::uint8_t, 1024>;

// The active device's open port, or null.
SerialPort* OpenPort() {
  if (ActDev < 0) return nullptr;
  SerialPort* port = EntryOfActDev().pSerialPort;
  return port != nullptr && port->IsOpen() ? port : nullptr;
}

using Reader = std::uint32_t (SerialPort::*)(std::span<std::uint8_t>);

std::uint32_t ReadInto(Reader read, std::uint8_t* buffer, std::uint32_t length) {
  SerialPort* port = buffer != nullptr && length > 0 ? OpenPort() : nullptr;
  return port != nullptr ? (port->*read)({buffer, length}) : 0;
}

// Index -1 fetches, the others hand out.
std::uint32_t ReadChar(Reader read, CharBuffer& bytes, std::int16_t index) {
  if (index == -1) {
    bytes.fill(0);
    return ReadInto(read, bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  }
  if (index < 0 || static_cast<std::size_t>(index) >= bytes.size()) return 0;
  return static_cast<std::uint32_t>(static_cast<std::int8_t>(bytes[static_cast<std::size_t>(index)]));
}

}  // namespace

std::uint32_t ReadSerialPort(std::uint8_t* buffer, std::uint32_t length) {
  return ReadInto(&SerialPort::Read, buffer, length);
}

std::uint32_t QuickReadSerialPort(std::uint8_t* buffer, std::uint32_t length) {
  return ReadInto(&SerialPort::QuickRead, buffer, length);
}

std::uint32_t WriteSerialPort(const char* buffer, std::uint32_t length) {
  SerialPort* port = buffer != nullptr && length > 0 ? OpenPort() : nullptr;
  if (port == nullptr) return 0;
  const std::uint32_t written = port->Write({reinterpret_cast<const std::uint8_t*>(buffer), length});
  port->Flush();
  return written;
}

void SetSerialTimeouts(std::uint32_t /*interval*/, std::uint32_t /*multiplier*/, std::uint32_t /*constant*/) {
  // The quick set whatever was asked for, and it stays.
  SerialPort* port = OpenPort();
  if (port != nullptr && !port->HasUsbHandle()) port->UseQuickTimeouts();
}

std::uint32_t readSerialPort_char(std::int16_t index) {
  return ReadChar(&SerialPort::Read, Buffers.portRead, index);
}

std::uint32_t quickReadSerialPort_char(std::int16_t index) {
  return ReadChar(&SerialPort::QuickRead, Buffers.portQuickRead, index);
}

void SetBaudRate(std::uint32_t baud) { DefaultBaud = baud; }
