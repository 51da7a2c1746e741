// What the library asked of the simulated system, in order.
#pragma once

#include <cstdint>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "sim/devices/faults.h"

namespace tavlyn::sim {

enum class EventKind {
  kSleep,
  kMutex,  // text: create, lock, unlock, close
  kLoad,   // the HID libraries
  kUnload,
  kWalk,  // text: hid, keyboard
  kOpen,  // text: path; handle: the new one
  kClose,
  kAttributes,
  kUsage,
  kSet,
  kGet,
  kDrain,
  kSend,  // socket
  kRecv,
  kCloseSocket,
  kConnect,    // text: the peer
  kSendTo,     // text: the peer
  kSocket,     // text: tcp, udp; handle: the new one
  kOption,     // text: broadcast, nonblocking, timeout n
  kOpenPort,   // text: COMn
  kClosePort,  // text: COMn, then "quietly" if DTR stayed on
  kTimeouts,   // text: the port's five time-outs
  kUsb,        // text: the libusb call
  kWrite,      // serial port, bulk device
  kRead,
  kPurge,
  kFlush,
};

struct Event {
  EventKind kind{};
  bool ok = true;
  std::uint64_t handle = 0;
  std::uint32_t milliseconds = 0;
  std::uint8_t reportId = 0;
  Bytes bytes{};  // payload of a report, without its ID; bytes sent or received
  std::string text{};

  // As tests and people read it: "sleep 80", "open reader-1 -> 1", "set 1 8C 04 07", "get 1 refused".
  // Trailing zeros of reports are left out; a report ID other than 0 is shown as "[1]".
  [[nodiscard]] std::string Line() const;
};

// Bytes that went over a line, a socket or a pipe.
Event BytesEvent(EventKind kind, std::span<const std::uint8_t> bytes);
// A report, which may be empty: its ID and its payload.
Event ReportEvent(EventKind kind, std::uint64_t handle, std::span<const std::uint8_t> report);

// Bytes as "8C 04 07"; trailing zeros beyond the first byte may be left out.
std::string HexText(const Bytes& bytes);
std::string TrimmedHexText(Bytes bytes);

class Transcript {
 public:
  bool keeps = true;  // off: what is added is dropped, for runs of which nobody reads it

  void Add(Event event);
  void Clear();
  [[nodiscard]] std::vector<Event> Events() const;
  [[nodiscard]] std::vector<std::string> Lines() const;

 private:
  mutable std::mutex mutex_;
  std::vector<Event> events_;
};

}  // namespace tavlyn::sim
