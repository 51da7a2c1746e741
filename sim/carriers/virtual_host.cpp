#include "sim/carriers/virtual_host.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace tavlyn::sim {
namespace {

constexpr std::uint64_t kFirstTick = 1'000'000;
constexpr platform::Handle kFirstSocket = 1000;

std::string AddressText(platform::Address address) {
  char text[32];
  std::snprintf(text, sizeof text, "%d.%d.%d.%d:%d", address.ip[0], address.ip[1], address.ip[2],
                address.ip[3], address.port);
  return text;
}

Event BytesEvent(EventKind kind, std::span<const std::uint8_t> bytes) {
  Event event{kind};
  event.bytes.assign(bytes.begin(), bytes.end());
  return event;
}

}  // namespace

void VirtualClock::Reset() {
  tick = kFirstTick;
  onSleep = nullptr;
  localTime = {};
  localTime.tm_year = 2024 - 1900;
  localTime.tm_mon = 2;
  localTime.tm_mday = 5;
  localTime.tm_hour = 6;
  localTime.tm_min = 7;
  localTime.tm_sec = 8;
}

void VirtualClock::Sleep(std::uint32_t milliseconds) {
  Event event{EventKind::kSleep};
  event.milliseconds = milliseconds;
  transcript_.Add(event);
  tick += milliseconds;
  if (onSleep) onSleep();
}

void VirtualMutex::Note(const char* what) {
  Event event{EventKind::kMutex};
  event.text = what;
  transcript_.Add(event);
}

void VirtualMutex::Reset() {
  while (depth_ > 0) {
    --depth_;
    mutex_.unlock();
  }
  exists_ = false;
  misuses_.clear();
}

void VirtualMutex::Create() {
  if (exists_) misuses_.emplace_back("a mutex created twice");
  exists_ = true;
  Note("create");
}

void VirtualMutex::Lock() {
  mutex_.lock();
  if (!exists_) misuses_.emplace_back("a lock taken without a mutex");
  ++depth_;
  Note("lock");
}

void VirtualMutex::Unlock() {
  if (depth_ == 0) {
    misuses_.emplace_back("a lock given back that was not held");
    return;
  }
  --depth_;
  Note("unlock");
  mutex_.unlock();
}

void VirtualMutex::Close() {
  if (!exists_) misuses_.emplace_back("a mutex closed that does not exist");
  exists_ = false;
  Note("close");
}

void VirtualSockets::Reset() {
  starts = opens = true;
  accepts = nullptr;
  onDatagram = nullptr;
  datagrams.clear();
  hostAddress.reset();
  device = nullptr;
  toReceive.clear();
  sent.clear();
  sendResult.reset();
  closeResult = 0;
  last_ = kFirstSocket;
  udp_.clear();
}

platform::Handle VirtualSockets::OpenSocket(const char* protocol) {
  Event event{EventKind::kSocket};
  event.ok = opens;
  event.handle = opens ? ++last_ : 0;
  event.text = protocol;
  transcript_.Add(event);
  return opens ? last_ : platform::kNoHandle;
}

platform::Handle VirtualSockets::OpenUdp() {
  const platform::Handle socket = OpenSocket("udp");
  udp_.insert(socket);
  return socket;
}

void VirtualSockets::NoteOption(platform::Handle socket, std::string text) {
  Event event{EventKind::kOption};
  event.handle = socket;
  event.text = std::move(text);
  transcript_.Add(std::move(event));
}

std::int32_t VirtualSockets::Connect(platform::Handle socket, platform::Address peer) {
  Event event{EventKind::kConnect};
  event.handle = socket;
  event.ok = !platform::IsNowhere(peer.ip) && peer.port != 0 && accepts && accepts(peer);
  event.text = AddressText(peer);
  transcript_.Add(event);
  return event.ok ? 0 : -1;
}

std::int32_t VirtualSockets::SendTo(platform::Handle socket, std::span<const std::uint8_t> bytes,
                                    platform::Address peer) {
  const std::int32_t result =
      platform::IsNowhere(peer.ip) ? -1 : sendResult.value_or(static_cast<std::int32_t>(bytes.size()));
  Event event = BytesEvent(EventKind::kSendTo, bytes);
  event.handle = socket;
  event.ok = result >= 0;
  event.text = AddressText(peer);
  transcript_.Add(event);
  if (event.ok && onDatagram) {
    for (Datagram& reply : onDatagram(peer, event.bytes)) datagrams.push_back(std::move(reply));
  }
  return result;
}

std::int32_t VirtualSockets::RecvFrom(platform::Handle socket, std::span<std::uint8_t> bytes,
                                      platform::Address& peer) {
  Event event{EventKind::kRecv};
  event.handle = socket;
  event.ok = !datagrams.empty();
  if (event.ok) {
    const Datagram next = std::move(datagrams.front());
    datagrams.pop_front();
    peer = next.from;
    const std::size_t count = std::min(next.bytes.size(), bytes.size());
    std::copy_n(next.bytes.begin(), count, bytes.begin());
    event.bytes.assign(next.bytes.begin(), next.bytes.begin() + static_cast<std::ptrdiff_t>(count));
  }
  transcript_.Add(event);
  return event.ok ? static_cast<std::int32_t>(event.bytes.size()) : -1;
}

bool VirtualSockets::HostAddress(std::array<std::uint8_t, 4>& ip) {
  if (hostAddress) ip = *hostAddress;
  return hostAddress.has_value();
}

std::int32_t VirtualSockets::Send(platform::Handle socket, std::span<const std::uint8_t> bytes) {
  const std::int32_t result = sendResult.value_or(static_cast<std::int32_t>(bytes.size()));
  Event event = BytesEvent(EventKind::kSend, bytes);
  event.handle = socket;
  event.ok = result >= 0;
  sent.push_back(event.bytes);
  if (event.ok && device != nullptr) device->Receive(bytes);
  transcript_.Add(std::move(event));
  return result;
}

// What a device or the script has next.
bool VirtualSockets::TakeScripted(std::span<std::uint8_t> bytes, Bytes& taken) {
  if (device != nullptr) {
    const std::size_t count = device->Take(bytes);
    taken.assign(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
    if (count != 0) return true;
  }
  if (toReceive.empty()) return false;
  const std::optional<Bytes> next = std::move(toReceive.front());
  toReceive.pop_front();
  if (!next) return false;
  const std::size_t count = std::min(next->size(), bytes.size());
  std::copy_n(next->begin(), count, bytes.begin());
  taken.assign(next->begin(), next->begin() + static_cast<std::ptrdiff_t>(count));
  return true;
}

std::int32_t VirtualSockets::Recv(platform::Handle socket, std::span<std::uint8_t> bytes) {
  if (udp_.contains(socket)) {
    platform::Address ignored;
    return RecvFrom(socket, bytes, ignored);
  }
  Event event{EventKind::kRecv};
  event.handle = socket;
  event.ok = TakeScripted(bytes, event.bytes);
  transcript_.Add(event);
  return event.ok ? static_cast<std::int32_t>(event.bytes.size()) : -1;
}

std::int32_t VirtualSockets::Close(platform::Handle socket) {
  Event event{EventKind::kCloseSocket};
  event.handle = socket;
  event.ok = closeResult == 0;
  transcript_.Add(event);
  return closeResult;
}

void VirtualPlaces::Reset() {
  environment.clear();
  traceFile.clear();
  currentFolder.reset();
}

std::string VirtualPlaces::CurrentFolder() {
  if (currentFolder) return *currentFolder;
  std::error_code failure;
  const auto folder = std::filesystem::current_path(failure);
  return failure ? std::string() : (folder / "").string();
}

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

void VirtualComPorts::FindVirtual(std::span<std::uint8_t, 257> flags) {
  ++scans;
  for (const std::uint16_t number : virtualNumbers) flags[number] = 1;
}

void VirtualLibusb::Reset() {
  loads = present = false;
  busses = 1;
  claimResult = 0;
  toRead.clear();
  device = nullptr;
  loadsAsked = openHandles = 0;
  transfers.clear();
  writeResult.reset();
}

void VirtualLibusb::Note(std::string text) {
  if (!loads) return;
  Event event{EventKind::kUsb};
  event.text = std::move(text);
  transcript_.Add(std::move(event));
}

bool VirtualLibusb::Load() {
  ++loadsAsked;
  Note("load");
  return loads;
}

std::int32_t VirtualLibusb::FindBusses() {
  Note("busses");
  return loads ? busses : -1;
}

std::int32_t VirtualLibusb::FindDevices() {
  Note("devices");
  return loads ? 1 : -1;
}

platform::Handle VirtualLibusb::Open(platform::HidIds ids) {
  Note("open");
  if (!loads || !present || ids.vid != 0x171B || ids.pid != 0x1004) return platform::kNoHandle;
  ++openHandles;
  return ++last_;
}

void VirtualLibusb::Close(platform::Handle /*device*/) {
  Note("close");
  --openHandles;
}

std::int32_t VirtualLibusb::ClaimInterface(platform::Handle /*device*/, std::int32_t number) {
  Note("claim " + std::to_string(number));
  return claimResult;
}

std::int32_t VirtualLibusb::ReleaseInterface(platform::Handle /*device*/, std::int32_t number) {
  Note("release " + std::to_string(number));
  return 0;
}

std::int32_t VirtualLibusb::SetConfiguration(platform::Handle /*device*/, std::int32_t configuration) {
  Note("configuration " + std::to_string(configuration));
  return 0;
}

std::int32_t VirtualLibusb::BulkRead(platform::Handle /*handle*/, std::int32_t endpoint,
                                     std::span<std::uint8_t> bytes, std::int32_t timeout) {
  transfers.push_back({true, endpoint, bytes.size(), timeout});
  Event event{EventKind::kRead};
  if (!toRead.empty()) {
    event.bytes = std::move(toRead.front());
    toRead.pop_front();
    event.bytes.resize(std::min(event.bytes.size(), bytes.size()));
    std::ranges::copy(event.bytes, bytes.begin());
  } else if (device != nullptr) {
    event.bytes.resize(device->Take(bytes));
    std::copy_n(bytes.begin(), event.bytes.size(), event.bytes.begin());
  }
  event.ok = !event.bytes.empty();
  transcript_.Add(event);
  return event.ok ? static_cast<std::int32_t>(event.bytes.size()) : -1;
}

std::int32_t VirtualLibusb::BulkWrite(platform::Handle /*handle*/, std::int32_t endpoint,
                                      std::span<const std::uint8_t> bytes, std::int32_t timeout) {
  transfers.push_back({false, endpoint, bytes.size(), timeout});
  transcript_.Add(BytesEvent(EventKind::kWrite, bytes));
  if (device != nullptr) device->Receive(bytes);
  return writeResult.value_or(static_cast<std::int32_t>(bytes.size()));
}

VirtualHost& VirtualHost::Instance() {
  static VirtualHost host;
  return host;
}

void VirtualHost::Reset() {
  clock.Reset();
  mutex.Reset();
  hid.Reset();
  sockets.Reset();
  ports.Reset();
  usb.Reset();
  places.Reset();
  transcript.Clear();
}

std::vector<std::string> VirtualHost::Misuses() const {
  std::vector<std::string> all = hid.Misuses();
  all.insert(all.end(), mutex.Misuses().begin(), mutex.Misuses().end());
  return all;
}

}  // namespace tavlyn::sim

namespace tavlyn::platform {

Host& TheHost() {
  auto& simulated = sim::VirtualHost::Instance();
  static Host host{simulated.clock, simulated.mutex, simulated.hid,   simulated.sockets,
                   simulated.ports, simulated.usb,   simulated.places};
  return host;
}

}  // namespace tavlyn::platform
