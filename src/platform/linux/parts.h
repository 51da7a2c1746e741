// The Linux implementations of the platform's interfaces.
#pragma once

#include <limits.h>
#include <pthread.h>

#include <string>

#include "platform/libusb_calls.h"
#include "platform/platform.h"

namespace tavlyn::platform {

class LinuxClock final : public Clock {
 public:
  std::uint64_t Tick() override;
  void Sleep(std::uint32_t milliseconds) override;
  void BeginPauses() override;
  void EndPauses() override;
  std::tm LocalTime() override;
};

class LinuxMutex final : public RecursiveMutex {
 public:
  void Create() override;
  void Lock() override;
  void Unlock() override;
  void Close() override;

 private:
  pthread_mutex_t mutex_ = PTHREAD_RECURSIVE_MUTEX_INITIALIZER_NP;
};

// HID through libhidapi-hidraw, bound at run time. One listed path is one interface with all the top-level
// usages listed for it.
class LinuxHid final : public HidSystem {
 public:
  bool Load() override;
  void Unload() override;
  bool BeginWalk(HidClass cls) override;
  WalkStep Member(int index, const char*& path) override;
  void EndWalk() override;
  bool ListedIds(const char* path, HidIds& ids) override;
  Handle Open(const char* path, OpenMode mode) override;
  void Close(Handle device) override;
  HidIds Attributes(Handle device) override;
  UsageMatch TopUsage(Handle device, HidUsage wanted) override;
  bool GetFeature(Handle device, std::span<std::uint8_t> report) override;
  bool SetFeature(Handle device, std::span<const std::uint8_t> report) override;
  Drain DrainInput(Handle device, std::span<std::uint8_t> report) override;

 private:
  struct State;
  State* state_ = nullptr;  // from Load to Unload
};

class LinuxSockets final : public Sockets {
 public:
  bool Startup() override { return true; }
  Handle OpenTcp() override;
  Handle OpenUdp() override;
  std::int32_t Connect(Handle socket, Address peer) override;
  void SetBroadcast(Handle socket) override;
  void SetNonBlocking(Handle socket) override;
  void SetReceiveTimeout(Handle socket, std::uint32_t milliseconds) override;
  std::int32_t SendTo(Handle socket, std::span<const std::uint8_t> bytes, Address peer) override;
  std::int32_t RecvFrom(Handle socket, std::span<std::uint8_t> bytes, Address& peer) override;
  bool HostAddress(std::array<std::uint8_t, 4>& ip) override;
  std::int32_t Send(Handle socket, std::span<const std::uint8_t> bytes) override;
  std::int32_t Recv(Handle socket, std::span<std::uint8_t> bytes) override;
  std::int32_t Close(Handle socket) override;
  // What some searches leave open, at the end of the library.
  static void CloseLost();
};

// COM n is the file com<n> in the folder that TAVLYNAPI_PORT_DIR names; without it /dev/tavlyn/com<n>, else
// /dev/ttyS<n-1>.
class LinuxComPorts final : public ComPorts {
 public:
  std::unique_ptr<ComPort> Open(std::uint16_t number, const ComLine& line,
                                const ComTimeouts& timeouts) override;
  void FindVirtual(PortFlags flags) override;
};

class LinuxLibusb final : public LibusbCalls<PATH_MAX + 1> {
 public:
  bool Load() override;
};

// Without links; empty when there is nothing of that name.
Path RealPath(const Path& path);

class LinuxPlaces final : public Places {
 public:
  bool EnvironmentIsSet(const char* name) override;
  Path TraceFile() override;
  Path CurrentFolder() override;
};

}  // namespace tavlyn::platform
