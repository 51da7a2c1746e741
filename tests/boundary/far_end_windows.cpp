#include <winsock2.h>

// winsock2.h has to come first.
#include <windows.h>

#include <array>
#include <stdexcept>

#include "sim/carriers/paced_line.h"
#include "tests/boundary/far_end.h"

namespace tavlyn::boundary {
namespace {

constexpr char kFarEnd[] = "\\\\.\\COM12";
// Nothing can be polled here, so the port is looked at time and again.
constexpr Milliseconds kLook{1};

class FarEnd final : public sim::Served {
 public:
  FarEnd(int number, sim::ByteDevice& device) : line_(device) {
    if (number != kDevicePort) throw std::runtime_error("there is one cable alone");
    port_ = CreateFileA(kFarEnd, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (port_ == INVALID_HANDLE_VALUE) throw std::runtime_error("no far end of the cable");
    // What does not fit is tried again.
    COMMTIMEOUTS atOnce{};
    atOnce.ReadIntervalTimeout = MAXDWORD;
    atOnce.WriteTotalTimeoutConstant = 50;
    SetCommTimeouts(port_, &atOnce);
    PurgeComm(port_, PURGE_RXCLEAR | PURGE_TXCLEAR);
  }
  ~FarEnd() override { CloseHandle(port_); }
  FarEnd(const FarEnd&) = delete;
  FarEnd& operator=(const FarEnd&) = delete;

  sim::LineManner& Manner() override { return line_.manner; }
  void AddTo(std::vector<pollfd>&) const override {}
  [[nodiscard]] sim::DueTime NextDue() const override { return Clock::now() + kLook; }

  void Serve() override {
    std::array<std::uint8_t, 4096> heard{};
    DWORD count = 0;
    while (ReadFile(port_, heard.data(), heard.size(), &count, nullptr) && count > 0) {
      line_.Receive({heard.data(), count}, Clock::now());
    }
    for (auto bytes = line_.Due(Clock::now()); !bytes.empty(); bytes = line_.Due(Clock::now())) {
      if (!WriteFile(port_, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr) || count == 0) {
        return;
      }
      line_.Sent(count, Clock::now());
    }
  }

 private:
  sim::PacedLine line_;
  HANDLE port_;
};

}  // namespace

const std::uint16_t kDevicePort = 9;

int OpenHandles() {
  DWORD count = 0;
  GetProcessHandleCount(GetCurrentProcess(), &count);
  return static_cast<int>(count);
}

// Under Wine one server ends all waits, and now and then it is late for each.
int Latest(int expected) { return 2 * expected + 1000; }

void Pause(Milliseconds length) { Sleep(static_cast<DWORD>(length.count())); }

PortFolder::PortFolder() = default;
PortFolder::~PortFolder() = default;

PortDevice::PortDevice(PortFolder&, int number, sim::ByteDevice& device, sim::LineManner manner)
    : port_(std::make_unique<FarEnd>(number, device)), attendant_({port_.get()}) {
  With([&] { port_->Manner() = manner; });
}

}  // namespace tavlyn::boundary
