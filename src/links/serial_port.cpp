#include "links/serial_port.h"

#include <algorithm>
#include <cstring>

#include "core/pause.h"
#include "links/libusb_pipe.h"
#include "links/link_socket.h"

namespace tavlyn {
namespace {

constexpr std::uint32_t kBeforeFlush = 10;
constexpr std::uint32_t kAfterPiece = 1;

}  // namespace

bool SerialPort::Open() {
  if (hUsb != platform::kNoHandle) return true;
  if (bSocketMode) return LinkConnect({IpAddr, wPortNum}) == 0;
  if (port_ != nullptr) return false;
  port_ = platform::TheHost().ports.Open(wPortNum, line_, timeouts_);
  return port_ != nullptr;
}

void SerialPort::CloseUsb() {
  CloseLibusbDevice(hUsb);
  hUsb = platform::kNoHandle;
}

bool SerialPort::Close() {
  if (hUsb != platform::kNoHandle) {
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
  if (hUsb != platform::kNoHandle) {
    CloseUsb();
  } else if (port_ != nullptr) {
    port_->CloseQuietly();
    port_.reset();
  }
}

bool SerialPort::IsOpen() const { return hUsb != platform::kNoHandle || LinkIsOpen() || port_ != nullptr; }

std::uint32_t SerialPort::Read(std::span<std::uint8_t> bytes) {
  if (hUsb != platform::kNoHandle) {
    std::ranges::fill(bytes, std::uint8_t{0});
    return static_cast<std::uint32_t>(std::max(LibusbRead(hUsb, bytes), 0));
  }
  if (LinkIsOpen()) return static_cast<std::uint32_t>(LinkRecv(bytes));
  return port_ != nullptr ? port_->Read(bytes) : 0;
}

std::uint32_t SerialPort::QuickRead(std::span<std::uint8_t> bytes) {
  if (hUsb != platform::kNoHandle) return 0;
  if (LinkIsOpen()) return Read(bytes);
  if (bytes.empty() || port_ == nullptr) return 0;
  const platform::ComTimeouts saved = timeouts_;
  UseQuickTimeouts();
  const std::uint32_t got = Read(bytes);
  timeouts_ = saved;
  port_->SetTimeouts(timeouts_);
  return got;
}

std::uint32_t SerialPort::Write(std::span<const std::uint8_t> bytes) {
  if (hUsb != platform::kNoHandle) {
    LibusbWrite(hUsb, bytes);
    return static_cast<std::uint32_t>(bytes.size());
  }
  if (LinkIsOpen()) return static_cast<std::uint32_t>(LinkSend(bytes));
  return port_ != nullptr ? port_->Write(bytes) : 0;
}

void SerialPort::WriteText(const char* text) {
  if (hUsb != platform::kNoHandle) return;
  for (std::size_t left = std::strlen(text); left > 0;) {
    const std::size_t piece = left >= 3 ? 2 : left;
    const std::span<const std::uint8_t> bytes(reinterpret_cast<const std::uint8_t*>(text), piece);
    if (LinkIsOpen()) {
      LinkSendNow(bytes);
    } else {
      Write(bytes);
    }
    Pause(kAfterPiece);
    text += piece;
    left -= piece;
  }
}

void SerialPort::ClearInput() {
  if (hUsb != platform::kNoHandle) {
    LibusbDrain(hUsb);
  } else if (LinkIsOpen()) {
    std::array<std::uint8_t, 128> scratch;
    LinkRecv(scratch);
  } else if (port_ != nullptr) {
    port_->PurgeInput();
  }
}

void SerialPort::Flush() {
  if (hUsb == platform::kNoHandle && !LinkIsOpen() && port_ != nullptr) port_->Flush();
}

void SerialPort::DrainFlush() {
  if (hUsb != platform::kNoHandle) return;
  Pause(kBeforeFlush);
  Flush();
}

void SerialPort::SetPortNum(std::int32_t number) {
  if (bSocketMode) {
    wPortNum = static_cast<std::uint16_t>(number);
  } else {
    wPortNum = number >= 1 && number <= platform::kHighestCom ? static_cast<std::uint16_t>(number)
                                                              : std::uint16_t{1};
  }
}

void SerialPort::SetLine(const platform::ComLine& line) {
  if (hUsb == platform::kNoHandle) line_ = line;
}

void SerialPort::SetIpAddr(std::array<std::uint8_t, 4> address) {
  IpAddr = address;
  bSocketMode = true;
}

void SerialPort::SetReadTimeouts(std::uint32_t interval, std::uint32_t multiplier, std::uint32_t constant) {
  timeouts_.readInterval = interval;
  timeouts_.readMultiplier = multiplier;
  timeouts_.readConstant = constant;
  if (port_ != nullptr && hUsb == platform::kNoHandle) port_->SetTimeouts(timeouts_);
}

void SerialPort::UseNormalTimeouts() { SetReadTimeouts(750, 3, 500); }
void SerialPort::UseFastTimeouts() { SetReadTimeouts(11, 3, 100); }
void SerialPort::UseQuickTimeouts() { SetReadTimeouts(100, 1, 10); }

}  // namespace tavlyn
