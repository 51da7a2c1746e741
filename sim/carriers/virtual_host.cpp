#include "sim/carriers/virtual_host.h"

#include <algorithm>
#include <utility>

namespace tavlyn::sim {
namespace {

constexpr std::uint64_t kFirstTick = 1'000'000;

Event BytesEvent(EventKind kind, std::span<const std::uint8_t> bytes) {
  Event event{kind};
  event.bytes.assign(bytes.begin(), bytes.end());
  return event;
}

}  // namespace

void VirtualClock::Reset() {
  tick = kFirstTick;
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
  toReceive.clear();
  sent.clear();
  sendResult.reset();
  closeResult = 0;
}

std::int32_t VirtualSockets::Send(platform::Handle socket, std::span<const std::uint8_t> bytes) {
  const std::int32_t result = sendResult.value_or(static_cast<std::int32_t>(bytes.size()));
  Event event = BytesEvent(EventKind::kSend, bytes);
  event.handle = socket;
  event.ok = result >= 0;
  sent.push_back(event.bytes);
  transcript_.Add(std::move(event));
  return result;
}

std::int32_t VirtualSockets::Recv(platform::Handle socket, std::span<std::uint8_t> bytes) {
  Event event{EventKind::kRecv};
  event.handle = socket;
  event.ok = false;
  if (!toReceive.empty()) {
    const std::optional<Bytes> next = std::move(toReceive.front());
    toReceive.pop_front();
    if (next) {
      const std::size_t count = std::min(next->size(), bytes.size());
      std::copy_n(next->begin(), count, bytes.begin());
      event.bytes.assign(next->begin(), next->begin() + static_cast<std::ptrdiff_t>(count));
      event.ok = true;
    }
  }
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

std::uint32_t VirtualComPort::Read(std::span<std::uint8_t> bytes) {
  std::size_t count = std::min(bytes.size(), toRead.size());
  const auto end = toRead.begin() + static_cast<std::ptrdiff_t>(count);
  std::copy(toRead.begin(), end, bytes.begin());
  toRead.erase(toRead.begin(), end);
  if (device_ != nullptr) count += device_->Take(bytes.subspan(count));
  transcript_.Add(BytesEvent(EventKind::kRead, bytes.first(count)));
  if (count < bytes.size() && onTimeout) onTimeout();
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

VirtualHost& VirtualHost::Instance() {
  static VirtualHost host;
  return host;
}

void VirtualHost::Reset() {
  clock.Reset();
  mutex.Reset();
  hid.Reset();
  sockets.Reset();
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
  static Host host{simulated.clock, simulated.mutex, simulated.hid, simulated.sockets, simulated.places};
  return host;
}

}  // namespace tavlyn::platform
