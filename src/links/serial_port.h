// The byte carrier of every device with LinkKind 1. Which of its three carriers moves the bytes is chosen
// anew on each call and always tested in this order: the libusb device, the socket while it is open, the COM
// port.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>

#include "core/wire.h"
#include "platform/allocated.h"
#include "platform/platform.h"

namespace tavlyn {

class SerialPort : public platform::Allocated {
 public:
  SerialPort() = default;
  explicit SerialPort(std::unique_ptr<platform::ComPort> port) : port_(std::move(port)) {}

  // False for a COM port that is open already, which then stays open.
  bool Open();
  // False when it was not open.
  bool Close();
  // Gives up the port before the object is deleted: DTR stays as it is, and the socket is left alone.
  void Release();
  [[nodiscard]] bool IsOpen() const;

  // These return the number of bytes moved: 0xFFFFFFFF when the socket fails, and for a libusb write always
  // the number asked for. The trace shows no more than the first bytes.
  std::uint32_t Read(std::span<std::uint8_t> bytes, std::size_t shown = kAllShown);
  // Uses short time-outs for this one read.
  std::uint32_t QuickRead(std::span<std::uint8_t> bytes, std::size_t shown = kAllShown);
  std::uint32_t Write(std::span<const std::uint8_t> bytes, std::size_t shown = kAllShown);
  // For slow line parsers: two characters at a time with a pause after each pair.
  void WriteText(const char* text);
  // Drops what has arrived.
  void ClearInput();
  // Waits for the output of a COM port and drops its input.
  void Flush();
  // Flush after a pause.
  void DrainFlush();

  // These change a closed port's settings; the time-outs reach an open one too.
  void SetPortNum(std::int32_t number);
  void SetLine(const platform::ComLine& line);
  void SetIpAddr(std::array<std::uint8_t, 4> address);
  void SetUsbHandle(platform::Handle device) { usb_ = device; }
  void UseNormalTimeouts();
  void UseFastTimeouts();
  void UseQuickTimeouts();

  [[nodiscard]] bool HasUsbHandle() const { return usb_ != platform::kNoHandle; }
  [[nodiscard]] std::uint16_t PortNum() const { return number_; }
  [[nodiscard]] platform::ComTimeouts Timeouts() const { return timeouts_; }

  // The device is reached over TCP; its frames are paced differently. Once true, always true.
  [[nodiscard]] bool IsOverTcp() const { return overTcp_; }

 private:
  std::uint32_t Fetch(std::span<std::uint8_t> bytes);
  std::uint32_t Send(std::span<const std::uint8_t> bytes);
  void SetReadTimeouts(std::uint32_t interval, std::uint32_t multiplier, std::uint32_t constant);
  void CloseUsb();

  std::unique_ptr<platform::ComPort> port_;
  bool overTcp_ = false;
  std::uint16_t number_ = 1;  // the COM number or the TCP port
  std::array<std::uint8_t, 4> address_{};
  platform::Handle usb_ = platform::kNoHandle;
  platform::ComLine line_;
  platform::ComTimeouts timeouts_{250, 5, 300, 50, 500};
};

}  // namespace tavlyn
