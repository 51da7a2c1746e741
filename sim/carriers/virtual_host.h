// The simulated operating system of the unit tests: every interface of platform.h in virtual time, scripted
// by public fields, with a transcript of all that the library did. platform::TheHost() gives this one.
#pragma once

#include <cstdint>
#include <ctime>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
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
  std::tm localTime{};            // stands still: 2024-03-05 06:07:08 unless set
  std::function<void()> onSleep;  // behind each sleep: what arrives late

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

// One peer, scripted. Datagrams go to onDatagram, whose replies recvfrom and recv then bring to the sockets
// of UDP; all others carry the one stream.
class VirtualSockets final : public platform::Sockets {
 public:
  explicit VirtualSockets(Transcript& transcript) : transcript_(transcript) {}
  bool starts = true;
  bool opens = true;
  std::function<bool(platform::Address)> accepts;  // unset: every connection fails
  struct Datagram {
    platform::Address from;
    Bytes bytes;
  };
  std::function<std::vector<Datagram>(platform::Address to, const Bytes&)> onDatagram;
  std::deque<Datagram> datagrams;
  std::optional<std::array<std::uint8_t, 4>> hostAddress;
  // A device at the other end of the connection; its bytes come before toReceive.
  ByteDevice* device = nullptr;

  // Results of recv in turn: bytes, or none for a failure of -1. With nothing left each recv fails.
  std::deque<std::optional<Bytes>> toReceive;
  std::vector<Bytes> sent;
  std::optional<std::int32_t> sendResult;  // unset: the count
  std::int32_t closeResult = 0;

  void Reset();
  bool Startup() override { return starts; }
  platform::Handle OpenTcp() override { return OpenSocket("tcp"); }
  platform::Handle OpenUdp() override;
  std::int32_t Connect(platform::Handle socket, platform::Address peer) override;
  void SetBroadcast(platform::Handle socket) override { NoteOption(socket, "broadcast"); }
  void SetNonBlocking(platform::Handle socket) override { NoteOption(socket, "nonblocking"); }
  void SetReceiveTimeout(platform::Handle socket, std::uint32_t milliseconds) override {
    NoteOption(socket, "timeout " + std::to_string(milliseconds));
  }
  std::int32_t Send(platform::Handle socket, std::span<const std::uint8_t> bytes) override;
  std::int32_t Recv(platform::Handle socket, std::span<std::uint8_t> bytes) override;
  std::int32_t SendTo(platform::Handle socket, std::span<const std::uint8_t> bytes,
                      platform::Address peer) override;
  std::int32_t RecvFrom(platform::Handle socket, std::span<std::uint8_t> bytes,
                        platform::Address& peer) override;
  std::int32_t Close(platform::Handle socket) override;
  bool HostAddress(std::array<std::uint8_t, 4>& ip) override;

 private:
  platform::Handle OpenSocket(const char* protocol);
  void NoteOption(platform::Handle socket, std::string text);
  bool TakeScripted(std::span<std::uint8_t> bytes, Bytes& taken);

  Transcript& transcript_;
  platform::Handle last_ = 1000;
  std::set<platform::Handle> udp_;
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

// A serial port with a device, or a script, at its other end. A test that wants its waits to pass sets clock.
class VirtualComPort final : public platform::ComPort {
 public:
  VirtualComPort(Transcript& transcript, ByteDevice& device) : transcript_(transcript), device_(&device) {}
  explicit VirtualComPort(Transcript& transcript) : transcript_(transcript) {}
  VirtualComPort(const VirtualComPort&) = delete;
  VirtualComPort& operator=(const VirtualComPort&) = delete;
  ~VirtualComPort() override;

  std::string name = "COM";
  VirtualClock* clock = nullptr;  // moved by what a Read that comes short has waited
  std::function<void()> onClosed;

  std::deque<std::uint8_t> toRead;  // comes before anything of the device
  Bytes written;
  std::optional<std::uint32_t> writeLimit;  // bytes that a Write moves at most
  std::function<void()> onTimeout;          // a Read came short

  platform::ComTimeouts timeouts;
  bool closedQuietly = false;

  std::uint32_t Read(std::span<std::uint8_t> bytes) override;
  std::uint32_t Write(std::span<const std::uint8_t> bytes) override;
  void SetTimeouts(const platform::ComTimeouts& set) override;
  void PurgeInput() override;
  void Flush() override;
  void CloseQuietly() override { closedQuietly = true; }

 private:
  void DropInput();

  Transcript& transcript_;
  ByteDevice* device_ = nullptr;
};

// The COM ports of the system: those that have a device, or none at their other end. Each can be opened once
// at a time.
class VirtualComPorts final : public platform::ComPorts {
 public:
  explicit VirtualComPorts(Transcript& transcript) : transcript_(transcript) {}
  std::map<std::uint16_t, ByteDevice*> present;  // null: opens, and nothing ever answers
  std::set<std::uint16_t> virtualNumbers;
  std::set<std::uint16_t> inUse;
  // Of the ports opened from now on.
  std::function<void()> onTimeout;
  VirtualClock* clock = nullptr;

  struct Opened {
    std::uint16_t number;
    platform::ComLine line;
    platform::ComTimeouts timeouts;
  };
  std::vector<Opened> opened;
  int scans = 0;

  void Reset();
  std::unique_ptr<platform::ComPort> Open(std::uint16_t number, const platform::ComLine& line,
                                          const platform::ComTimeouts& timeouts) override;
  void FindVirtual(std::span<std::uint8_t, 257> flags) override;

 private:
  Transcript& transcript_;
};

// libusb-0.1 with at most one device. A system without the library leaves no events.
class VirtualLibusb final : public platform::Libusb {
 public:
  explicit VirtualLibusb(Transcript& transcript) : transcript_(transcript) {}
  bool loads = false;
  std::int32_t busses = 1;
  bool present = false;
  std::int32_t claimResult = 0;
  std::deque<Bytes> toRead;                 // one entry for each bulk read; an empty one fails
  std::optional<std::int32_t> writeResult;  // unset: the count
  ByteDevice* device = nullptr;
  int loadsAsked = 0;
  int openHandles = 0;

  struct Transfer {
    bool in;
    std::int32_t endpoint;
    std::size_t bytes;
    std::int32_t timeout;
    bool operator==(const Transfer&) const = default;
  };
  std::vector<Transfer> transfers;

  void Reset();
  bool Load() override;
  std::int32_t FindBusses() override;
  std::int32_t FindDevices() override;
  platform::Handle Open(platform::HidIds ids) override;
  void Close(platform::Handle device) override;
  std::int32_t ClaimInterface(platform::Handle device, std::int32_t number) override;
  std::int32_t ReleaseInterface(platform::Handle device, std::int32_t number) override;
  std::int32_t SetConfiguration(platform::Handle device, std::int32_t configuration) override;
  std::int32_t BulkRead(platform::Handle device, std::int32_t endpoint, std::span<std::uint8_t> bytes,
                        std::int32_t timeout) override;
  std::int32_t BulkWrite(platform::Handle device, std::int32_t endpoint, std::span<const std::uint8_t> bytes,
                         std::int32_t timeout) override;

 private:
  void Note(std::string text);

  Transcript& transcript_;
  platform::Handle last_ = 2000;
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
  VirtualComPorts ports{transcript};
  VirtualLibusb usb{transcript};
  VirtualPlaces places;

  // An empty, well-behaved system; handles count from 1 again.
  void Reset();
  [[nodiscard]] std::vector<std::string> Misuses() const;
};

}  // namespace tavlyn::sim
