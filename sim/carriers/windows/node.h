// What makes a simulated HID interface a path that CreateFileA opens: a symbolic link in the kernel's device
// names that leads to a named pipe of this process. Both end with the process. Feature reports do not travel
// over the pipe (the stand-in HID.DLL takes them); input reports do.
#pragma once

#include <windows.h>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "sim/devices/device.h"

namespace tavlyn::sim {

class Node {
 public:
  explicit Node(const HidIdentity& identity);
  ~Node();
  Node(const Node&) = delete;
  Node& operator=(const Node&) = delete;

  // Empty when the interface is not of that class.
  [[nodiscard]] const std::string& HidPath() const { return hidPath_; }
  [[nodiscard]] const std::string& KeyboardPath() const { return keyboardPath_; }
  // Whether an open handle leads here.
  [[nodiscard]] bool Owns(HANDLE handle) const;

  // Clears away the pipe ends whose programs have closed, and keeps some ready for the next to open.
  void Tend();
  [[nodiscard]] bool IsOpen() const;
  // To everyone who has the path open.
  void Deliver(std::span<const std::uint8_t> inputReport);

 private:
  void Link(const std::string& path);

  std::wstring pipe_;  // its name below the pipe folder, with a leading backslash
  std::string hidPath_;
  std::string keyboardPath_;
  std::vector<HANDLE> links_;
  std::vector<HANDLE> ends_;
};

}  // namespace tavlyn::sim
