#include "links/serial_port.h"

#include <algorithm>
#include <cstring>

#include "api.h"
#include "core/pause.h"
#include "core/state.h"
#include "links/libusb_pipe.h"
#include "links/link_socket.h"

namespace tavlyn {
namespace {

constexpr std::uint32_t kBeforeFlush = 10;
constexpr std::uint32_t kAfterPiece = 1;

}  // namespace

bool SerialPort::Open() {
  if (HasUsbHandle()) return true;
  if (overTcp_) return LinkConnect({address_, number_}) == 0;
  if (port_ != nullptr) return false;
  port_ = platform::TheHost().ports.Open(number_, line_, timeouts_);
  return port_ != nullptr;
}

void SerialPort::CloseUsb() {
  CloseLibusbDevice(usb_);
  usb_ = platform::kNoHandle;
}

bool SerialPort::Close() {
  if (HasUsbHandle()) {
    CloseUsb();
    return true;
  }
  if (LinkIsOpen()) {
    LinkClose();
    return true;
  }
  const bool wasOpen = port_ != nullptr;
  port_.reset();
  return wasOpen;
}

void SerialPort::Release() {
  if (HasUsbHandle()) {
    CloseUsb();
  } else if (port_ != nullptr) {
    port_->CloseQuietly();
    port_.reset();
  }
}

bool SerialPort::IsOpen() const { return HasUsbHandle() || LinkIsOpen() || port_ != nullptr; }

std::uint32_t SerialPort::Fetch(std::span<std::uint8_t> bytes) {
  if (HasUsbHandle()) {
    std::ranges::fill(bytes, std::uint8_t{0});
    return static_cast<std::uint32_t>(std::max(LibusbRead(usb_, bytes), 0));
  }
  if (LinkIsOpen()) return static_cast<std::uint32_t>(LinkRecv(bytes));
  return port_ != nullptr ? port_->Read(bytes) : 0;
}

std::uint32_t SerialPort::Read(std::span<std::uint8_t> bytes, std::size_t shown) {
  const std::uint32_t got = Fetch(bytes);
  if (IsOpen()) {
    LogWire(EntryOfActDev().ProductKind, Direction::kReceived, bytes.first(got <= bytes.size() ? got : 0),
            shown);
  }
  return got;
}

std::uint32_t SerialPort::QuickRead(std::span<std::uint8_t> bytes, std::size_t shown) {
  if (HasUsbHandle()) return 0;
  if (LinkIsOpen()) return Read(bytes, shown);
  if (bytes.empty() || port_ == nullptr) return 0;
  const platform::ComTimeouts saved = timeouts_;
  UseQuickTimeouts();
  const std::uint32_t got = Read(bytes, shown);
  timeouts_ = saved;
  port_->SetTimeouts(timeouts_);
  return got;
}

std::uint32_t SerialPort::Send(std::span<const std::uint8_t> bytes) {
  if (HasUsbHandle()) {
    LibusbWrite(usb_, bytes);
    return static_cast<std::uint32_t>(bytes.size());
  }
  if (LinkIsOpen()) return static_cast<std::uint32_t>(LinkSend(bytes));
  return port_ != nullptr ? port_->Write(bytes) : 0;
}

std::uint32_t SerialPort::Write(std::span<const std::uint8_t> bytes, std::size_t shown) {
  if (IsOpen()) LogWire(EntryOfActDev().ProductKind, Direction::kSent, bytes, shown);
  return Send(bytes);
}

void SerialPort::WriteText(const char* text) {
  if (HasUsbHandle()) return;
  const std::size_t length = std::strlen(text);
  LogWire(EntryOfActDev().ProductKind, Direction::kSent,
          {reinterpret_cast<const std::uint8_t*>(text), length});
  for (std::size_t left = length; left > 0;) {
    const std::size_t piece = left >= 3 ? 2 : left;
    const std::span<const std::uint8_t> bytes(reinterpret_cast<const std::uint8_t*>(text), piece);
    if (LinkIsOpen()) {
      LinkSendNow(bytes);
    } else {
      Send(bytes);
    }
    Pause(kAfterPiece);
    text += piece;
    left -= piece;
  }
}

void SerialPort::ClearInput() {
  if (HasUsbHandle()) {
    LibusbDrain(usb_);
  } else if (LinkIsOpen()) {
    std::array<std::uint8_t, 128> scratch;
    LinkRecv(scratch);
  } else if (port_ != nullptr) {
    port_->PurgeInput();
  }
}

void SerialPort::Flush() {
  if (!HasUsbHandle() && !LinkIsOpen() && port_ != nullptr) port_->Flush();
}

void SerialPort::DrainFlush() {
  if (HasUsbHandle()) return;
  Pause(kBeforeFlush);
  Flush();
}

void SerialPort::SetPortNum(std::int32_t number) {
  if (overTcp_) {
    number_ = static_cast<std::uint16_t>(number);
  } else {
    number_ = number >= 1 && number <= platform::kHighestCom ? static_cast<std::uint16_t>(number)
                                                             : std::uint16_t{1};
  }
}

void SerialPort::SetLine(const platform::ComLine& line) {
  if (!HasUsbHandle()) line_ = line;
}

void SerialPort::SetIpAddr(std::array<std::uint8_t, 4> address) {
  address_ = address;
  overTcp_ = true;
}

void SerialPort::SetReadTimeouts(std::uint32_t interval, std::uint32_t multiplier, std::uint32_t constant) {
  timeouts_.readInterval = interval;
  timeouts_.readMultiplier = multiplier;
  timeouts_.readConstant = constant;
  if (port_ != nullptr && !HasUsbHandle()) port_->SetTimeouts(timeouts_);
}

void SerialPort::UseNormalTimeouts() { SetReadTimeouts(750, 3, 500); }
void SerialPort::UseFastTimeouts() { SetReadTimeouts(11, 3, 100); }
void SerialPort::UseQuickTimeouts() { SetReadTimeouts(100, 1, 10); }

}  // namespace tavlyn

using namespace tavlyn;

namespace {

using CharBuffer = std::array<std::uint8_t, 1024>;

// What programs send and read here by themselves may be keys, and is not shown.

// The active device's open port, or null.
SerialPort* OpenPort() {
  if (shared.ActDev < 0) return nullptr;
  SerialPort* port = EntryOfActDev().pSerialPort;
  return port != nullptr && port->IsOpen() ? port : nullptr;
}

using ReadRoutine = std::uint32_t (SerialPort::*)(std::span<std::uint8_t>, std::size_t);

std::uint32_t ReadInto(ReadRoutine read, std::uint8_t* buffer, std::uint32_t length) {
  SerialPort* port = buffer != nullptr && length > 0 ? OpenPort() : nullptr;
  return port != nullptr ? (port->*read)({buffer, length}, kNoneShown) : 0;
}

// Index -1 fetches the bytes, any other index returns one of them.
std::uint32_t ReadChar(ReadRoutine read, CharBuffer& bytes, std::int16_t index) {
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
  const std::uint32_t written =
      port->Write({reinterpret_cast<const std::uint8_t*>(buffer), length}, kNoneShown);
  port->Flush();
  return written;
}

void SetSerialTimeouts(std::uint32_t /*interval*/, std::uint32_t /*multiplier*/, std::uint32_t /*constant*/) {
  // Deliberately sets the quick time-outs, whatever was asked for, and they stay.
  SerialPort* port = OpenPort();
  if (port != nullptr && !port->HasUsbHandle()) port->UseQuickTimeouts();
}

std::uint32_t readSerialPort_char(std::int16_t index) {
  return ReadChar(&SerialPort::Read, shared.buffers.portRead, index);
}

std::uint32_t quickReadSerialPort_char(std::int16_t index) {
  return ReadChar(&SerialPort::QuickRead, shared.buffers.portQuickRead, index);
}
