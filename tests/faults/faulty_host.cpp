#include "tests/faults/faulty_host.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <span>
#include <utility>

namespace tavlyn::faults {
namespace {

using platform::Address;
using platform::Drain;
using platform::Handle;
using platform::kNoHandle;

using Room = std::span<std::uint8_t>;
using Bytes = std::span<const std::uint8_t>;

// So often the library sends a report that is refused.
constexpr int kAttempts = 6;

// More than any operation needs: one that makes so many calls does not end.
constexpr std::size_t kMostCalls = 100'000;

Trouble& Now() { return Trouble::Instance(); }
bool Fails(const char* name, unsigned ways) { return Now().Fails(name, ways); }
Way How() { return Now().How(); }

void Invert(Room bytes) {
  for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(~byte);
}

// What becomes of an answer of that many bytes on a stream.
std::size_t Spoiled(Room answer, std::size_t room) {
  if (How() == kOneByte || How() == kShort) return std::min<std::size_t>(answer.size(), 1);
  if (How() == kGarbled) Invert(answer);
  return How() == kSilent ? 0 : std::min(answer.size() + (How() == kLong ? 1 : 0), room);
}

class FaultyHid final : public platform::HidSystem {
 public:
  explicit FaultyHid(HidSystem& good) : good_(good) {}

  bool Load() override { return good_.Load(); }
  void Unload() override { good_.Unload(); }
  bool BeginWalk(platform::HidClass cls) override { return !Fails("walk", kRefused) && good_.BeginWalk(cls); }
  platform::WalkStep Member(int index, const char*& path) override {
    if (!Fails("member", kRefused | kSilent | kGone)) return good_.Member(index, path);
    return How() == kSilent ? platform::WalkStep::kSkip : platform::WalkStep::kEnd;
  }
  void EndWalk() override { good_.EndWalk(); }
  bool ListedIds(const char* path, platform::HidIds& ids) override {
    if (!Fails("listed", kRefused | kSilent | kGone)) return good_.ListedIds(path, ids);
    ids = {};
    return How() != kRefused;
  }
  Handle Open(const char* path, platform::OpenMode mode) override {
    return Fails("open", kRefused | kGone) ? kNoHandle : good_.Open(path, mode);
  }
  void Close(Handle device) override { good_.Close(device); }
  platform::HidIds Attributes(Handle device) override {
    return Fails("attributes", kRefused | kGone) ? platform::HidIds{} : good_.Attributes(device);
  }
  platform::UsageMatch TopUsage(Handle device, platform::HidUsage wanted) override {
    if (!Fails("usage", kRefused | kSilent | kGone)) return good_.TopUsage(device, wanted);
    if (How() == kSilent) return platform::UsageMatch::kNo;
    ++Now().lost;
    return platform::UsageMatch::kUnreadable;
  }
  // A report cannot be longer than what it is fetched into.
  bool GetFeature(Handle device, Room report) override {
    if (!Fails("get", kRefused | kSilent | kShort | kOneByte | kGarbled | kGone))
      return good_.GetFeature(device, report);
    std::vector<std::uint8_t> answer(report.begin(), report.end());
    if (How() == kRefused || How() == kGone || !good_.GetFeature(device, answer)) return false;
    std::size_t count = How() == kSilent ? 1 : How() == kOneByte ? 2 : answer.size();
    if (How() == kShort) --count;
    if (How() == kGarbled) Invert(Room(answer).subspan(1));
    std::copy_n(answer.begin(), std::min(count, report.size()), report.begin());
    return true;
  }
  bool SetFeature(Handle device, Bytes report) override {
    if (!Fails("set", kRefused | kLost | kGone | kStuck)) return good_.SetFeature(device, report);
    return How() == kLost;
  }
  Drain DrainInput(Handle device, Room report) override {
    if (!Fails("drain", kRefused | kGone)) return good_.DrainInput(device, report);
    return How() == kGone ? Drain::kGone : Drain::kNothing;
  }

 private:
  HidSystem& good_;
};

class FaultySockets final : public platform::Sockets {
 public:
  explicit FaultySockets(Sockets& good) : good_(good) {}

  bool Startup() override { return !Fails("startup", kRefused) && good_.Startup(); }
  Handle OpenTcp() override { return Fails("socket", kRefused) ? kNoHandle : Opened(good_.OpenTcp()); }
  Handle OpenUdp() override { return Fails("socket", kRefused) ? kNoHandle : Opened(good_.OpenUdp()); }
  std::int32_t Connect(Handle socket, Address peer) override {
    return Fails("connect", kRefused | kGone) ? -1 : good_.Connect(socket, peer);
  }
  void SetBroadcast(Handle socket) override { good_.SetBroadcast(socket); }
  void SetNonBlocking(Handle socket) override { good_.SetNonBlocking(socket); }
  void SetReceiveTimeout(Handle socket, std::uint32_t milliseconds) override {
    good_.SetReceiveTimeout(socket, milliseconds);
  }
  std::int32_t Send(Handle socket, Bytes bytes) override {
    if (!Fails("send", kRefused | kLost | kShort | kGone)) return good_.Send(socket, bytes);
    if (How() == kShort) return good_.Send(socket, bytes.first(bytes.size() / 2));
    return How() == kLost ? static_cast<std::int32_t>(bytes.size()) : -1;
  }
  // 0 is the end of the stream.
  std::int32_t Recv(Handle socket, Room bytes) override {
    if (!Fails("recv", kRefused | kSilent | kOneByte | kLong | kGarbled | kGone))
      return good_.Recv(socket, bytes);
    if (How() == kRefused || How() == kGone) return -1;
    return After(good_.Recv(socket, bytes), bytes);
  }
  std::int32_t SendTo(Handle socket, Bytes bytes, Address peer) override {
    if (!Fails("sendto", kRefused | kLost | kShort)) return good_.SendTo(socket, bytes, peer);
    if (How() == kRefused) return -1;
    return static_cast<std::int32_t>(How() == kShort ? bytes.size() - 1 : bytes.size());
  }
  std::int32_t RecvFrom(Handle socket, Room bytes, Address& peer) override {
    if (!Fails("recvfrom", kRefused | kSilent | kOneByte | kLong | kGarbled))
      return good_.RecvFrom(socket, bytes, peer);
    return How() == kRefused ? -1 : After(good_.RecvFrom(socket, bytes, peer), bytes);
  }
  std::int32_t Close(Handle socket) override {
    --Now().sockets;
    return good_.Close(socket);
  }
  bool HostAddress(std::array<std::uint8_t, 4>& ip) override {
    return !Fails("address", kRefused) && good_.HostAddress(ip);
  }

 private:
  static Handle Opened(Handle socket) {
    ++Now().sockets;
    return socket;
  }
  static std::int32_t After(std::int32_t result, Room bytes) {
    if (result <= 0) return result;
    return static_cast<std::int32_t>(Spoiled(bytes.first(static_cast<std::size_t>(result)), bytes.size()));
  }

  Sockets& good_;
};

class FaultyPort final : public platform::ComPort {
 public:
  explicit FaultyPort(std::unique_ptr<ComPort> good) : good_(std::move(good)) {}

  std::uint32_t Read(Room bytes) override {
    if (!Fails("read", kSilent | kOneByte | kLong | kGarbled | kGone)) {
      const std::size_t surplus = std::min<std::size_t>(std::exchange(surplus_, 0), bytes.size());
      if (surplus != 0) bytes[0] = kSurplus;
      return static_cast<std::uint32_t>(surplus) + good_->Read(bytes.subspan(surplus));
    }
    const std::uint32_t count = How() == kGone ? 0 : good_->Read(bytes);
    if (How() == kLong) surplus_ = 1;
    return static_cast<std::uint32_t>(Spoiled(bytes.first(count), count));
  }
  std::uint32_t Write(Bytes bytes) override {
    if (!Fails("write", kRefused | kLost | kShort | kGone)) return good_->Write(bytes);
    if (How() == kShort) return good_->Write(bytes.first(bytes.size() / 2));
    return How() == kLost ? static_cast<std::uint32_t>(bytes.size()) : 0;
  }
  void SetTimeouts(const platform::ComTimeouts& timeouts) override { good_->SetTimeouts(timeouts); }
  void PurgeInput() override {
    surplus_ = 0;
    good_->PurgeInput();
  }
  void Flush() override {
    surplus_ = 0;
    good_->Flush();
  }
  void CloseQuietly() override { good_->CloseQuietly(); }

 private:
  static constexpr std::uint8_t kSurplus = 0x5A;

  std::unique_ptr<ComPort> good_;
  std::size_t surplus_ = 0;
};

class FaultyPorts final : public platform::ComPorts {
 public:
  explicit FaultyPorts(ComPorts& good) : good_(good) {}

  std::unique_ptr<platform::ComPort> Open(std::uint16_t number, const platform::ComLine& line,
                                          const platform::ComTimeouts& timeouts) override {
    if (Fails("open port", kRefused | kGone)) return nullptr;
    auto port = good_.Open(number, line, timeouts);
    return port == nullptr ? nullptr : std::make_unique<FaultyPort>(std::move(port));
  }
  void FindVirtual(platform::PortFlags flags) override { good_.FindVirtual(flags); }

 private:
  ComPorts& good_;
};

class FaultyLibusb final : public platform::Libusb {
 public:
  explicit FaultyLibusb(Libusb& good) : good_(good) {}

  bool Load() override { return !Fails("load usb", kRefused) && good_.Load(); }
  std::int32_t FindBusses() override { return Fails("busses", kRefused) ? -1 : good_.FindBusses(); }
  std::int32_t FindDevices() override { return Fails("devices", kRefused) ? -1 : good_.FindDevices(); }
  Handle Open(platform::HidIds ids) override {
    return Fails("open usb", kRefused | kGone) ? kNoHandle : good_.Open(ids);
  }
  void Close(Handle device) override { good_.Close(device); }
  std::int32_t ClaimInterface(Handle device, std::int32_t number) override {
    return Fails("claim", kRefused | kGone) ? -1 : good_.ClaimInterface(device, number);
  }
  std::int32_t ReleaseInterface(Handle device, std::int32_t number) override {
    return Fails("release", kRefused | kGone) ? -1 : good_.ReleaseInterface(device, number);
  }
  std::int32_t SetConfiguration(Handle device, std::int32_t number) override {
    return Fails("configuration", kRefused | kGone) ? -1 : good_.SetConfiguration(device, number);
  }
  std::int32_t BulkRead(Handle device, std::int32_t endpoint, Room bytes, std::int32_t timeout) override {
    if (!Fails("bulk read", kRefused | kSilent | kOneByte | kLong | kGarbled | kGone))
      return good_.BulkRead(device, endpoint, bytes, timeout);
    if (How() == kRefused || How() == kGone) return -1;
    const std::int32_t got = good_.BulkRead(device, endpoint, bytes, timeout);
    if (got <= 0) return got;
    return static_cast<std::int32_t>(Spoiled(bytes.first(static_cast<std::size_t>(got)), bytes.size()));
  }
  std::int32_t BulkWrite(Handle device, std::int32_t endpoint, Bytes bytes, std::int32_t timeout) override {
    if (!Fails("bulk write", kRefused | kLost | kShort | kGone))
      return good_.BulkWrite(device, endpoint, bytes, timeout);
    if (How() == kShort) return good_.BulkWrite(device, endpoint, bytes.first(bytes.size() / 2), timeout);
    return How() == kLost ? static_cast<std::int32_t>(bytes.size()) : -1;
  }

 private:
  Libusb& good_;
};

}  // namespace

Trouble& Trouble::Instance() {
  static Trouble trouble;
  return trouble;
}

void Trouble::Begin() {
  calls_.clear();
  at_ = 0;
  gone_ = false;
  stuck_ = 0;
}

void Trouble::Begin(std::size_t call, Way way) {
  Begin();
  at_ = call;
  armed_ = way;
}

bool Trouble::Fails(const char* name, unsigned ways) {
  if (calls_.size() > kMostCalls) {
    std::fprintf(stderr, "no end after call %zu failed in way %u, at %s\n", at_, armed_, name);
    std::abort();
  }
  calls_.push_back(ways);
  if (gone_ && (ways & kGone) != 0) {
    way_ = kGone;
    return true;
  }
  if (stuck_ > 0 && (ways & kStuck) != 0) {
    --stuck_;
    return true;
  }
  if (calls_.size() != at_ || (ways & armed_) == 0) return false;
  way_ = armed_;
  gone_ = way_ == kGone;
  stuck_ = way_ == kStuck ? kAttempts - 1 : 0;
  return true;
}

}  // namespace tavlyn::faults

namespace tavlyn::platform {

Host& TheHost() {
  auto& simulated = sim::VirtualHost::Instance();
  static faults::FaultyHid hid(simulated.hid);
  static faults::FaultySockets sockets(simulated.sockets);
  static faults::FaultyPorts ports(simulated.ports);
  static faults::FaultyLibusb usb(simulated.usb);
  static Host host{simulated.clock, simulated.mutex, hid, sockets, ports, usb, simulated.places};
  return host;
}

}  // namespace tavlyn::platform
