#include <algorithm>
#include <array>
#include <stdexcept>

#include "sim/paced_line.h"
#include "tests/boundary/cable_windows.h"
#include "tests/boundary/far_end.h"
#include "tests/boundary/passing.h"

namespace tavlyn::boundary {
namespace {

constexpr char kFarEnd[] = "\\\\.\\COM12";
// Of a pseudo-terminal's 4095.
constexpr DWORD kCableHolds = 2048;

class FarEnd final : public sim::Served {
 public:
  FarEnd(int number, sim::ByteDevice& device) : line_(device) {
    if (number != kDevicePort) throw std::runtime_error("there is one cable alone");
    port_ = CreateFileA(kFarEnd, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (port_ == INVALID_HANDLE_VALUE) throw std::runtime_error("no far end of the cable");
    COMMTIMEOUTS atOnce{};
    atOnce.ReadIntervalTimeout = MAXDWORD;
    SetCommTimeouts(port_, &atOnce);
    cable.farEnd = port_;
  }
  ~FarEnd() override {
    Hear();
    cable.farEnd = INVALID_HANDLE_VALUE;
    CloseHandle(port_);
  }
  FarEnd(const FarEnd&) = delete;
  FarEnd& operator=(const FarEnd&) = delete;

  sim::LineManner& Manner() override { return line_.manner; }
  void AddTo(std::vector<pollfd>&) const override {}
  [[nodiscard]] sim::DueTime NextDue() const override {
    return cable.toNear < kCableHolds ? line_.NextDue() : sim::DueTime();
  }

  void Serve() override {
    Hear();
    while (cable.toNear < kCableHolds) {
      const auto due = line_.Due(Clock::now());
      const auto bytes = due.first(std::min<std::size_t>(due.size(), kCableHolds - cable.toNear));
      DWORD count = 0;
      if (bytes.empty()) return;
      WriteFile(port_, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr);
      line_.Sent(count, Clock::now());
      cable.toNear += count;
    }
  }

 private:
  void Hear() {
    std::array<std::uint8_t, 4096> room{};
    while (cable.toFar > 0) {
      line_.Receive({room.data(), TakeArriving(port_, cable.toFar, room)}, Clock::now());
    }
  }

  sim::PacedLine line_;
  HANDLE port_;
};

}  // namespace

const std::uint16_t kDevicePort = 9;

void Pause(Milliseconds length) {
  PassUntil(Now() + length, [] { return false; });
}

PortFolder::PortFolder() = default;
PortFolder::~PortFolder() = default;

PortDevice::PortDevice(PortFolder&, int number, sim::ByteDevice& device, sim::LineManner manner)
    : port_(std::make_unique<FarEnd>(number, device)), attended_({port_.get()}) {
  With([&] { port_->Manner() = manner; });
}

}  // namespace tavlyn::boundary
