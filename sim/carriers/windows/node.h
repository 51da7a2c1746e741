// What makes a simulated HID interface a path that CreateFileA opens: a symbolic link in the kernel's device
// names that leads to a named pipe of this process. Both end with the process. Feature reports do not travel
// over the pipe (the stand-in HID.DLL takes them); input reports do.
//
// Whoever may read or write has a device for himself, as with share mode 0, which nothing tells from others:
// the link then leads to a pipe that only handles without access are let into.
#pragma once

#include <windows.h>

#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "sim/devices/device.h"

namespace tavlyn::sim {

// A named pipe, with ends ready for whoever opens it.
class Pipe {
 public:
  // The name is the one below the pipe folder, with a leading backslash.
  Pipe(std::wstring name, DWORD directions) : name_(std::move(name)), directions_(directions) {}
  ~Pipe();
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  [[nodiscard]] const std::wstring& Name() const { return name_; }
  [[nodiscard]] bool Owns(HANDLE handle) const;
  // Clears away the ends whose programs have closed, and keeps some ready for the next to open.
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

  // Empty when the interface is not of that class.
  [[nodiscard]] const std::string& HidPath() const { return hidPath_; }
  [[nodiscard]] const std::string& KeyboardPath() const { return keyboardPath_; }
  // Whether an open handle leads here.
  [[nodiscard]] bool Owns(HANDLE handle) const;
  // To be told of each handle that a program uses: one with access keeps others out until it is closed.
  void Note(HANDLE handle);

  // To be called often: notes what programs have closed.
  void Tend();
  [[nodiscard]] bool IsOpen() const { return !pipe_.Open().empty(); }
  // To everyone who has the path open.
  void Deliver(std::span<const std::uint8_t> inputReport);

 private:
  // Leads the paths to the one pipe or the other.
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
