#include "reader/fa_frames.h"

#include <span>

#include "core/pause.h"
#include "core/state.h"
#include "links/serial_port.h"

namespace tavlyn::reader {
namespace {

constexpr std::uint32_t kPause = 50;
constexpr std::uint32_t kSocketStore = 500;
constexpr std::uint32_t kBeforeWhole = 10;
constexpr std::uint32_t kAfterWhole = 2;
constexpr std::uint32_t kAfterFailedWhole = 10;

// Counts are compared signed: a failed socket read is -1, not a huge count.
bool Read(SerialPort& port, std::span<std::uint8_t> bytes, std::size_t shown = kAllShown) {
  if (bytes.empty()) return true;
  return static_cast<std::int32_t>(port.Read(bytes, shown)) >= static_cast<std::int32_t>(bytes.size());
}

bool Write(SerialPort& port, std::span<const std::uint8_t> bytes, std::size_t shown) {
  return static_cast<std::int32_t>(port.Write(bytes, shown)) >= static_cast<std::int32_t>(bytes.size());
}

bool WriteCla(SerialPort& port, const FaFrame& frame) { return port.Write({&frame.cla, 1}) == 1; }

// Clears the status and returns the open port, or null.
SerialPort* Begin(FaFrame& frame) {
  frame.sw1 = frame.sw2 = 0;
  shared.reader.StatusWord = 0;
  SerialPort* port = EntryOfActDev().pSerialPort;
  if (port == nullptr || !port->IsOpen()) return nullptr;
  port->Flush();
  return port;
}

SerialPort* SendHeader(FaFrame& frame) {
  SerialPort* port = Begin(frame);
  if (port == nullptr) return nullptr;
  if (port->IsOverTcp()) port->ClearInput();
  if (!WriteCla(*port, frame)) return nullptr;
  // The reader's receiver needs this pause after the class byte.
  if (!port->IsOverTcp()) Pause(kPause);
  return Write(*port, std::span(frame.header).first(frame.sent), frame.headerShown) ? port : nullptr;
}

// Whether the echo came. Any other byte is SW1 of a refusal, after which exactly one more is read, however
// many follow.
bool ReadEcho(SerialPort& port, FaFrame& frame) {
  std::uint8_t echo = 0;
  if (!Read(port, {&echo, 1})) return false;
  if (echo == frame.header[0]) return true;
  frame.data[0] = echo;
  shared.reader.StatusWord = static_cast<std::uint32_t>(echo) << 8;
  frame.data[1] = 0;
  Read(port, std::span(frame.data).subspan(1, 1));
  shared.reader.StatusWord += frame.data[1];
  return false;
}

bool TakeStatus(FaFrame& frame, std::span<const std::uint8_t, 2> status) {
  frame.sw1 = status[0];
  frame.sw2 = status[1];
  shared.reader.StatusWord = static_cast<std::uint32_t>(status[0]) << 8 | status[1];
  return shared.reader.StatusWord == 0x9000;
}

bool ReadStatus(SerialPort& port, FaFrame& frame) {
  std::array<std::uint8_t, 2> status{};
  return Read(port, status) && TakeStatus(frame, status);
}

}  // namespace

bool FaSendStatus(FaFrame& frame) {
  SerialPort* port = Begin(frame);
  return port != nullptr && WriteCla(*port, frame) &&
         Write(*port, std::span(frame.header).first(4), frame.headerShown) && ReadStatus(*port, frame);
}

bool FaRecvData(FaFrame& frame) {
  SerialPort* port = SendHeader(frame);
  if (port == nullptr) return false;
  if (port->IsOverTcp()) Pause(kPause);
  return ReadEcho(*port, frame) &&
         Read(*port, std::span(frame.data).first(frame.expected), frame.dataShown) &&
         ReadStatus(*port, frame);
}

bool FaSendData(FaFrame& frame) {
  SerialPort* port = SendHeader(frame);
  if (port == nullptr || !ReadEcho(*port, frame)) return false;
  if (!Write(*port, std::span(frame.data).first(frame.P3()), frame.dataShown)) return false;
  if (port->IsOverTcp()) Pause(kSocketStore);
  return ReadStatus(*port, frame);
}

bool FaRecvBare(FaFrame& frame) {
  SerialPort* port = SendHeader(frame);
  return port != nullptr && ReadEcho(*port, frame) &&
         Read(*port, std::span(frame.data).first(frame.expected), frame.dataShown);
}

bool FaRecvWhole(FaFrame& frame) {
  SerialPort* port = SendHeader(frame);
  if (port == nullptr) return false;
  Pause(kBeforeWhole);
  const std::span<std::uint8_t> whole = std::span(frame.data).first(frame.expected);
  if (!Read(*port, whole) || whole[0] != frame.header[0]) return false;
  const bool good = TakeStatus(frame, whole.last<2>());
  Pause(good ? kAfterWhole : kAfterFailedWhole);
  return good;
}

bool FaXfer(const Command& command, FaFrame& frame) {
  switch (command.routine) {
    case Fa::kRecvData: return FaRecvData(frame);
    case Fa::kSendData: return FaSendData(frame);
    case Fa::kRecvBare: return FaRecvBare(frame);
    case Fa::kRecvWhole: return FaRecvWhole(frame);
    case Fa::kSendStatus: return FaSendStatus(frame);
    case Fa::kNone: break;
  }
  return false;
}

}  // namespace tavlyn::reader
