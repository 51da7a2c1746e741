#include "sim/carriers/virtual_com_ports.h"

#include <algorithm>
#include <utility>

namespace tavlyn::sim {

VirtualComPort::~VirtualComPort() {
  Event event{EventKind::kClosePort};
  event.text = closedQuietly ? name + " quietly" : name;
  transcript_.Add(std::move(event));
  if (onClosed) onClosed();
}

void VirtualComPort::SetTimeouts(const platform::ComTimeouts& set) {
  timeouts = set;
  Event event{EventKind::kTimeouts};
  for (const std::uint32_t value :
       {set.readInterval, set.readMultiplier, set.readConstant, set.writeMultiplier, set.writeConstant}) {
    event.text += (event.text.empty() ? "" : " ") + std::to_string(value);
  }
  transcript_.Add(std::move(event));
}

std::uint32_t VirtualComPort::Read(std::span<std::uint8_t> bytes) {
  std::size_t count = std::min(bytes.size(), toRead.size());
  const auto end = toRead.begin() + static_cast<std::ptrdiff_t>(count);
  std::copy(toRead.begin(), end, bytes.begin());
  toRead.erase(toRead.begin(), end);
  if (device_ != nullptr) count += device_->Take(bytes.subspan(count));
  transcript_.Add(BytesEvent(EventKind::kRead, bytes.first(count)));
  if (count == bytes.size()) return static_cast<std::uint32_t>(count);
  if (onTimeout) onTimeout();
  if (clock != nullptr) {
    const std::uint64_t total = timeouts.readConstant + std::uint64_t{timeouts.readMultiplier} * bytes.size();
    clock->tick += count == 0 ? total : std::min<std::uint64_t>(total, timeouts.readInterval);
  }
  return static_cast<std::uint32_t>(count);
}

std::uint32_t VirtualComPort::Write(std::span<const std::uint8_t> bytes) {
  const auto moved = bytes.first(std::min<std::size_t>(bytes.size(), writeLimit.value_or(UINT32_MAX)));
  written.insert(written.end(), moved.begin(), moved.end());
  transcript_.Add(BytesEvent(EventKind::kWrite, moved));
  if (device_ != nullptr) device_->Receive(moved);
  return static_cast<std::uint32_t>(moved.size());
}

void VirtualComPort::DropInput() {
  toRead.clear();
  Bytes scratch(64);
  while (device_ != nullptr && device_->Take(scratch) != 0) {
  }
}

void VirtualComPort::PurgeInput() {
  transcript_.Add({EventKind::kPurge});
  DropInput();
}

void VirtualComPort::Flush() {
  transcript_.Add({EventKind::kFlush});
  DropInput();
}

void VirtualComPorts::Reset() {
  present.clear();
  virtualNumbers.clear();
  inUse.clear();
  onTimeout = nullptr;
  clock = nullptr;
  opened.clear();
  scans = 0;
}

std::unique_ptr<platform::ComPort> VirtualComPorts::Open(std::uint16_t number, const platform::ComLine& line,
                                                         const platform::ComTimeouts& timeouts) {
  const auto at = present.find(number);
  Event event{EventKind::kOpenPort};
  event.ok = at != present.end() && !inUse.contains(number);
  event.text = "COM" + std::to_string(number);
  transcript_.Add(event);
  if (!event.ok) return nullptr;
  opened.push_back({number, line, timeouts});
  auto port = at->second != nullptr ? std::make_unique<VirtualComPort>(transcript_, *at->second)
                                    : std::make_unique<VirtualComPort>(transcript_);
  inUse.insert(number);
  port->name = event.text;
  port->timeouts = timeouts;
  port->onTimeout = onTimeout;
  port->clock = clock;
  port->onClosed = [this, number] { inUse.erase(number); };
  return port;
}

void VirtualComPorts::FindVirtual(platform::PortFlags flags) {
  ++scans;
  for (const std::uint16_t number : virtualNumbers) flags[number] = 1;
}

}  // namespace tavlyn::sim
