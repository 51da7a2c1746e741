// The simulated operating system of the unit tests: every interface of platform.h in virtual time, scripted
// by public fields, with a transcript of all that the library did. platform::TheHost() gives this one.
#pragma once

#include <cstdint>
#include <ctime>
#include <deque>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "sim/carriers/transcript.h"
#include "sim/carriers/virtual_hid.h"
#include "sim/devices/device.h"

namespace tavlyn::sim {

class VirtualClock final : public platform::Clock {
 public:
  explicit VirtualClock(Transcript& transcript) : transcript_(transcript) { Reset(); }
  std::uint64_t tick = 0;
  std::tm localTime{};  // stands still: 2024-03-05 06:07:08 unless set

  void Reset();
  std::uint64_t Tick() override { return tick; }
  void Sleep(std::uint32_t milliseconds) override;
  std::tm LocalTime() override { return localTime; }

 private:
  Transcript& transcript_;
};

class VirtualMutex final : public platform::RecursiveMutex {
 public:
  explicit VirtualMutex(Transcript& transcript) : transcript_(transcript) {}
  void Reset();
  [[nodiscard]] bool Exists() const { return exists_; }
  [[nodiscard]] int Depth() const { return depth_; }  // locks held and not yet given back
  [[nodiscard]] const std::vector<std::string>& Misuses() const { return misuses_; }

  void Create() override;
  void Lock() override;
  void Unlock() override;
  void Close() override;

 private:
  void Note(const char* what);

  Transcript& transcript_;
  std::recursive_mutex mutex_;
  bool exists_ = false;
  int depth_ = 0;
  std::vector<std::string> misuses_;
};

class VirtualSockets final : public platform::Sockets {
 public:
  explicit VirtualSockets(Transcript& transcript) : transcript_(transcript) {}
  // Results of recv in turn: bytes, or none for a failure of -1. With nothing left each recv fails.
  std::deque<std::optional<Bytes>> toReceive;
  std::vector<Bytes> sent;
  std::optional<std::int32_t> sendResult;  // unset: the count
  std::int32_t closeResult = 0;

  void Reset();
  std::int32_t Send(platform::Handle socket, std::span<const std::uint8_t> bytes) override;
  std::int32_t Recv(platform::Handle socket, std::span<std::uint8_t> bytes) override;
  std::int32_t Close(platform::Handle socket) override;

 private:
  Transcript& transcript_;
};

class VirtualPlaces final : public platform::Places {
 public:
  std::set<std::string, std::less<>> environment;  // the variables that are set
  std::string traceFile;
  std::optional<std::string> currentFolder;  // unset: the process's own

  void Reset();
  bool EnvironmentIsSet(const char* name) override { return environment.contains(name); }
  std::string TraceFile() override { return traceFile; }
  std::string CurrentFolder() override;
};

// A serial port with a device, or a script, at its other end. A test that wants its waits to pass sets
// onTimeout.
class VirtualComPort final : public platform::ComPort {
 public:
  VirtualComPort(Transcript& transcript, ByteDevice& device) : transcript_(transcript), device_(&device) {}
  explicit VirtualComPort(Transcript& transcript) : transcript_(transcript) {}

  std::deque<std::uint8_t> toRead;  // comes before anything of the device
  Bytes written;
  std::optional<std::uint32_t> writeLimit;  // bytes that a Write moves at most
  std::function<void()> onTimeout;          // a Read came short

  std::uint32_t Read(std::span<std::uint8_t> bytes) override;
  std::uint32_t Write(std::span<const std::uint8_t> bytes) override;
  void PurgeInput() override;
  void Flush() override;

 private:
  void DropInput();

  Transcript& transcript_;
  ByteDevice* device_ = nullptr;
};

class VirtualHost {
 public:
  // The one that platform::TheHost() gives.
  static VirtualHost& Instance();

  Transcript transcript;
  VirtualClock clock{transcript};
  VirtualMutex mutex{transcript};
  VirtualHid hid{transcript};
  VirtualSockets sockets{transcript};
  VirtualPlaces places;

  // An empty, well-behaved system; handles count from 1 again.
  void Reset();
  [[nodiscard]] std::vector<std::string> Misuses() const;
};

}  // namespace tavlyn::sim
