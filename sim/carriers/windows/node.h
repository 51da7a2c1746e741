// Gives a simulated HID interface a path that CreateFileA opens: a symbolic link among the kernel's device
// names to a named pipe of this process. Both end with the process. Input reports travel over the pipe;
// feature reports do not (the stand-in HID.DLL takes them).
//
// A program that opens a device for reading or writing has it exclusively, as with share mode 0, because the
// share mode cannot be seen here: the link then leads to a pipe that admits only handles without access.
#pragma once

#include <windows.h>

#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "sim/devices/device.h"

namespace tavlyn::sim {

// A named pipe, with ends ready to be opened.
class Pipe {
 public:
  // The name is the one below the pipe folder, with a leading backslash.
  Pipe(std::wstring name, DWORD directions) : name_(std::move(name)), directions_(directions) {}
  ~Pipe();
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  [[nodiscard]] const std::wstring& Name() const { return name_; }
  [[nodiscard]] bool Owns(HANDLE handle) const;
  // Removes the ends that programs have closed, and keeps some ready to be opened.
  void Tend();
  [[nodiscard]] std::vector<HANDLE> Open() const;

 private:
  std::wstring name_;
  DWORD directions_;
  std::vector<HANDLE> ends_;
};

class Node {
 public:
  explicit Node(const HidIdentity& identity);
  ~Node();
  Node(const Node&) = delete;
  Node& operator=(const Node&) = delete;

  // Empty if the interface is not of that class.
  [[nodiscard]] const std::string& HidPath() const { return hidPath_; }
  [[nodiscard]] const std::string& KeyboardPath() const { return keyboardPath_; }
  // Whether an open handle leads here.
  [[nodiscard]] bool Owns(HANDLE handle) const;
  // To be called for each handle that a program uses: one with access keeps others out until it is closed.
  void Note(HANDLE handle);

  // To be called often: notes what programs have closed.
  void Tend();
  [[nodiscard]] bool IsOpen() const { return !pipe_.Open().empty(); }
  // To everyone who has the path open.
  void Deliver(std::span<const std::uint8_t> inputReport);

 private:
  // Points the paths at one pipe or the other.
  void LinkAll();
  void Link(const std::string& path, const Pipe& pipe);
  void Unlink();

  int serial_;
  Pipe pipe_;
  Pipe withoutAccess_;
  std::string hidPath_;
  std::string keyboardPath_;
  std::vector<HANDLE> links_;
  std::vector<HANDLE> holders_;  // the programs' handles that have access
};

}  // namespace tavlyn::sim
