// The byte carrier of every device with LinkKind 1. Which carrier moves the bytes is chosen anew on each
// call: the socket while it is open, else the COM port.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "platform/platform.h"

namespace tavlyn {

class SerialPort {
 public:
  explicit SerialPort(std::unique_ptr<platform::ComPort> port) : port_(std::move(port)) {}

  [[nodiscard]] bool IsOpen() const;
  void Close();

  // Counts of bytes moved; a socket's failure shows as 0xFFFFFFFF.
  std::uint32_t Read(std::span<std::uint8_t> bytes);
  std::uint32_t Write(std::span<const std::uint8_t> bytes);
  // Drops what has arrived.
  void ClearInput();
  // Waits for the output of a COM port and drops its input.
  void Flush();

  // The device is reached over TCP; its frames are paced differently.
  bool bSocketMode = false;

 private:
  std::unique_ptr<platform::ComPort> port_;
};

}  // namespace tavlyn
