// What the library asks of an operating system, in the terms of its need. Each interface has one
// implementation per system (linux/, windows/) and a simulated one in sim/ that runs in virtual time;
// which one is linked decides what TheHost() gives. Nothing above this folder knows the difference.
//
// The five parts of the host live as long as the process and are never destroyed, so that the library can use
// them in its last steps; hence their destructors are neither virtual nor public.
//
// Unless a member says otherwise: it may be called from any thread, it does not block, it throws nothing
// that a caller has to handle, and it keeps no pointer that it was given.
#pragma once

#include <cstdint>
#include <ctime>
#include <span>
#include <string>

namespace tavlyn::platform {

// An open device, socket or port. A value is never handed out twice, and closing one that is closed
// already does nothing: copies of a table entry may outlive what they name.
using Handle = std::uint64_t;
inline constexpr Handle kNoHandle = ~Handle{0};

class Clock {
 public:
  // Milliseconds since some fixed moment; never runs backward.
  virtual std::uint64_t Tick() = 0;
  // Blocks for that long, signals notwithstanding.
  virtual void Sleep(std::uint32_t milliseconds) = 0;
  virtual std::tm LocalTime() = 0;

 protected:
  ~Clock() = default;
};

// The one lock of the library: the same thread may take it again.
class RecursiveMutex {
 public:
  virtual void Create() = 0;
  virtual void Lock() = 0;  // blocks without a limit
  virtual void Unlock() = 0;
  virtual void Close() = 0;

 protected:
  ~RecursiveMutex() = default;
};

enum class HidClass { kHid, kKeyboard };
enum class OpenMode { kShared, kOverlapped };
enum class WalkStep { kEnd, kSkip, kPath };
enum class UsageMatch { kUnreadable, kNo, kYes };
enum class Drain { kNothing, kDrained, kGone };

struct HidIds {
  std::uint16_t vid = 0;
  std::uint16_t pid = 0;
};

struct HidUsage {
  std::uint16_t page = 0;
  std::uint16_t usage = 0;
};

// HID devices. A report is handed over with its report ID in byte 0.
class HidSystem {
 public:
  // Binds the system's HID libraries; without them every other member fails quietly.
  virtual bool Load() = 0;
  virtual void Unload() = 0;

  // A walk over the present interfaces of a class, in a stable order: BeginWalk, Member(0), Member(1), …
  // until kEnd, EndWalk. BeginWalk false: nothing can be listed. One walk at a time.
  virtual bool BeginWalk(HidClass cls) = 0;
  virtual WalkStep Member(int index, std::string& path) = 0;
  virtual void EndWalk() = 0;

  // True when the system can tell, without opening the path, whose device it is.
  virtual bool ListedIds(const char* path, HidIds& ids) = 0;

  // kNoHandle when the path cannot be opened. kOverlapped is for the device whose input reports are drained.
  virtual Handle Open(const char* path, OpenMode mode) = 0;
  virtual void Close(Handle device) = 0;

  virtual HidIds Attributes(Handle device) = 0;  // zeros when the device does not tell
  virtual UsageMatch TopUsage(Handle device, HidUsage wanted) = 0;

  // Both block until the device has answered or the system has given up on it.
  virtual bool GetFeature(Handle device, std::span<std::uint8_t> report) = 0;
  virtual bool SetFeature(Handle device, std::span<const std::uint8_t> report) = 0;

  // Takes one queued input report and drops the rest of the queue; waits for nothing.
  virtual Drain DrainInput(Handle device, std::span<std::uint8_t> report) = 0;

 protected:
  ~HidSystem() = default;
};

// The TCP socket of the Ethernet link, non-blocking from the start. Results are those of the system's
// send, recv and close: a count, or negative for failure.
class Sockets {
 public:
  virtual std::int32_t Send(Handle socket, std::span<const std::uint8_t> bytes) = 0;
  virtual std::int32_t Recv(Handle socket, std::span<std::uint8_t> bytes) = 0;
  virtual std::int32_t Close(Handle socket) = 0;

 protected:
  ~Sockets() = default;
};

// An open serial port.
class ComPort {
 public:
  virtual ~ComPort() = default;
  // Both give the count of bytes moved; Read waits as the port's time-outs say.
  virtual std::uint32_t Read(std::span<std::uint8_t> bytes) = 0;
  virtual std::uint32_t Write(std::span<const std::uint8_t> bytes) = 0;
  virtual void PurgeInput() = 0;
  // Waits until everything written has left, then drops what has arrived.
  virtual void Flush() = 0;
};

class Places {
 public:
  virtual bool EnvironmentIsSet(const char* name) = 0;
  // Path of the trace file; its folder has been made if that was possible.
  virtual std::string TraceFile() = 0;
  // The current folder with its closing separator; empty when it cannot be told.
  virtual std::string CurrentFolder() = 0;

 protected:
  ~Places() = default;
};

struct Host {
  Clock& clock;
  RecursiveMutex& mutex;
  HidSystem& hid;
  Sockets& sockets;
  Places& places;
};

Host& TheHost();

}  // namespace tavlyn::platform
