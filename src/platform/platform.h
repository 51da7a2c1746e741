// What the library asks of an operating system, in terms of what it needs. Each interface has one
// implementation per system (linux/, windows/) and a simulated one in sim/ that runs in virtual time; which
// one is linked decides what TheHost() returns. Nothing above this folder knows the
// difference but the entry points of each system (core/front/load_*.cpp).
//
// The parts of the host live as long as the process and are never destroyed, so that the library can use
// them in its last steps; hence their destructors are neither virtual nor public.
//
// Unless a member says otherwise: it may be called from any thread, it does not block, it throws nothing
// that a caller has to handle, and it keeps no pointer that it was given.
#pragma once

#include <array>
#include <cstdint>
#include <ctime>
#include <memory>
#include <span>

#include "platform/path.h"

namespace tavlyn::platform {

// An open device, socket or port. A value is never used twice, and closing one that is closed already does
// nothing: copies of a table entry may outlive what they name.
using Handle = std::uint64_t;
inline constexpr Handle kNoHandle = ~Handle{0};

class Clock {
 public:
  // Milliseconds since some fixed moment. When it starts again from 0, times noted before that count as long
  // past.
  virtual std::uint64_t Tick() = 0;
  // Blocks for that long, signals notwithstanding.
  virtual void Sleep(std::uint32_t milliseconds) = 0;
  // Enclose many pauses of the calling thread, so that they are prepared only once. To be called under the
  // lock only, and not nested.
  virtual void BeginPauses() {}
  virtual void EndPauses() {}
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
  // until kEnd, EndWalk. BeginWalk returns false when nothing can be listed. One walk at a time. A path is
  // valid until the next Member or EndWalk.
  virtual bool BeginWalk(HidClass cls) = 0;
  virtual WalkStep Member(int index, const char*& path) = 0;
  virtual void EndWalk() = 0;

  // True when the system knows the IDs without opening the path.
  virtual bool ListedIds(const char* path, HidIds& ids) = 0;

  // kNoHandle when the path cannot be opened. kOverlapped is for the device whose input reports are drained.
  virtual Handle Open(const char* path, OpenMode mode) = 0;
  virtual void Close(Handle device) = 0;

  virtual HidIds Attributes(Handle device) = 0;  // zeros when they are not known
  virtual UsageMatch TopUsage(Handle device, HidUsage wanted) = 0;

  // Both block until the device has answered or the system has given up on it.
  virtual bool GetFeature(Handle device, std::span<std::uint8_t> report) = 0;
  virtual bool SetFeature(Handle device, std::span<const std::uint8_t> report) = 0;

  // Takes one queued input report and drops the rest of the queue, without waiting. kNothing also for a
  // number that is not an open handle; kGone when the device has been unplugged.
  virtual Drain DrainInput(Handle device, std::span<std::uint8_t> report) = 0;

 protected:
  ~HidSystem() = default;
};

struct Address {
  std::array<std::uint8_t, 4> ip{};  // first octet first
  std::uint16_t port = 0;
};

// Network 0, where no host is; some systems would take it for the local host.
constexpr bool IsNowhere(std::array<std::uint8_t, 4> ip) { return ip[0] == 0; }

// Sockets with the Berkeley calls. Results are those of the system: a count or 0, negative for failure. A
// destination in network 0 or, over TCP, port 0 fails at once.
class Sockets {
 public:
  virtual bool Startup() = 0;    // before any other call; repeating it is harmless
  virtual Handle OpenTcp() = 0;  // kNoHandle on failure
  virtual Handle OpenUdp() = 0;
  virtual std::int32_t Connect(Handle socket, Address peer) = 0;  // blocks until there is an answer
  virtual void SetBroadcast(Handle socket) = 0;
  virtual void SetNonBlocking(Handle socket) = 0;
  virtual void SetReceiveTimeout(Handle socket, std::uint32_t milliseconds) = 0;
  virtual std::int32_t Send(Handle socket, std::span<const std::uint8_t> bytes) = 0;
  virtual std::int32_t Recv(Handle socket, std::span<std::uint8_t> bytes) = 0;
  virtual std::int32_t SendTo(Handle socket, std::span<const std::uint8_t> bytes, Address peer) = 0;
  virtual std::int32_t RecvFrom(Handle socket, std::span<std::uint8_t> bytes, Address& peer) = 0;
  virtual std::int32_t Close(Handle socket) = 0;
  virtual bool HostAddress(std::array<std::uint8_t, 4>& ip) = 0;  // the first one; may ask a name server

 protected:
  ~Sockets() = default;
};

// Milliseconds. A read ends when its bytes are in, when the line was silent for interval after a byte, or
// when multiplier times the bytes asked for plus constant have passed; 0 switches a limit off, except that
// interval all ones with multiplier and constant 0 returns at once with what is there.
struct ComTimeouts {
  std::uint32_t readInterval = 0;
  std::uint32_t readMultiplier = 0;
  std::uint32_t readConstant = 0;
  std::uint32_t writeMultiplier = 0;
  std::uint32_t writeConstant = 0;
};

// Always eight data bits and no flow control. parity: 0 none, 1 odd, 2 even; stopBits: 0 one, 2 two.
struct ComLine {
  std::uint32_t baud = 9600;
  std::uint8_t parity = 0;
  std::uint8_t stopBits = 0;
};

// An open serial port. Destroying it drops DTR and closes it.
class ComPort {
 public:
  virtual ~ComPort() = default;
  // Both return the number of bytes moved and wait as the time-outs say. A read that fails may return 0
  // although bytes were moved before the failure.
  virtual std::uint32_t Read(std::span<std::uint8_t> bytes) = 0;
  virtual std::uint32_t Write(std::span<const std::uint8_t> bytes) = 0;
  virtual void SetTimeouts(const ComTimeouts& timeouts) = 0;
  virtual void PurgeInput() = 0;
  // Waits until everything written has left, then drops what has arrived.
  virtual void Flush() = 0;
  // Closes the port and leaves DTR as it is.
  virtual void CloseQuietly() = 0;
};

inline constexpr std::uint16_t kHighestCom = 256;
// One for each number; index 0 is unused.
using PortFlags = std::span<std::uint8_t, kHighestCom + 1>;

// The USB identity of the maker's virtual ports: this vendor, products 2300 to 23FF.
inline constexpr std::uint16_t kPortVendor = 0x7A31;
inline constexpr std::uint8_t kPortFamily = 0x23;

class ComPorts {
 public:
  // Opens the port exclusively, with empty queues and DTR raised; null when that fails.
  virtual std::unique_ptr<ComPort> Open(std::uint16_t number, const ComLine& line,
                                        const ComTimeouts& timeouts) = 0;
  // Sets flags[number], 1 to kHighestCom, for the ports that belong to that USB identity or to PCMCIA cards.
  virtual void FindVirtual(PortFlags flags) = 0;

 protected:
  ~ComPorts() = default;
};

// libusb-0.1, bound by name. What is not bound fails with -1.
class Libusb {
 public:
  // Tests that the library file can be trusted, loads it, binds it, calls usb_init. False when one of the
  // first two failed.
  virtual bool Load() = 0;
  virtual std::int32_t FindBusses() = 0;
  virtual std::int32_t FindDevices() = 0;
  // Opens the first device with these IDs that opens.
  virtual Handle Open(HidIds ids) = 0;
  virtual void Close(Handle device) = 0;
  // Deliberately asks for the library's error text after each claim and drops it.
  virtual std::int32_t ClaimInterface(Handle device, std::int32_t number) = 0;
  virtual std::int32_t ReleaseInterface(Handle device, std::int32_t number) = 0;
  virtual std::int32_t SetConfiguration(Handle device, std::int32_t configuration) = 0;
  virtual std::int32_t BulkRead(Handle device, std::int32_t endpoint, std::span<std::uint8_t> bytes,
                                std::int32_t timeout) = 0;
  virtual std::int32_t BulkWrite(Handle device, std::int32_t endpoint, std::span<const std::uint8_t> bytes,
                                 std::int32_t timeout) = 0;

 protected:
  ~Libusb() = default;
};

class Places {
 public:
  virtual bool EnvironmentIsSet(const char* name) = 0;
  // Path of the trace file; its folder is created if that is possible.
  virtual Path TraceFile() = 0;
  // The current folder with a separator at its end; empty when it is not known.
  virtual Path CurrentFolder() = 0;

 protected:
  ~Places() = default;
};

struct Host {
  Clock& clock;
  RecursiveMutex& mutex;
  HidSystem& hid;
  Sockets& sockets;
  ComPorts& ports;
  Libusb& usb;
  Places& places;
};

Host& TheHost();

}  // namespace tavlyn::platform
