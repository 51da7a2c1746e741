#include "links/serial_port.h"

#include <array>

#include "links/link_socket.h"

namespace tavlyn {

bool SerialPort::IsOpen() const { return LinkIsOpen() || port_ != nullptr; }

void SerialPort::Close() {
  if (LinkIsOpen()) {
    LinkClose();
  } else {
    port_.reset();
  }
}

std::uint32_t SerialPort::Read(std::span<std::uint8_t> bytes) {
  if (LinkIsOpen()) return static_cast<std::uint32_t>(LinkRecv(bytes));
  return port_ != nullptr ? port_->Read(bytes) : 0;
}

std::uint32_t SerialPort::Write(std::span<const std::uint8_t> bytes) {
  if (LinkIsOpen()) return static_cast<std::uint32_t>(LinkSend(bytes));
  return port_ != nullptr ? port_->Write(bytes) : 0;
}

void SerialPort::ClearInput() {
  if (LinkIsOpen()) {
    std::array<std::uint8_t, 128> scratch;
    LinkRecv(scratch);
  } else if (port_ != nullptr) {
    port_->PurgeInput();
  }
}

void SerialPort::Flush() {
  if (!LinkIsOpen() && port_ != nullptr) port_->Flush();
}

}  // namespace tavlyn
