// The other ends of real wires: devices on COM ports, TCP and UDP peers on the loopback network. Each is
// served (attended.h) until it is destroyed.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "sim/carriers/ethernet.h"
#include "sim/devices/faulty_line.h"
#include "tests/boundary/attended.h"
#include "tests/boundary/open_handles.h"

namespace tavlyn::boundary {

using Bytes = std::vector<std::uint8_t>;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

// A sleep that is not counted as one of the library's.
void Pause(Milliseconds length);

// Bytes from no device model: the same answer to every frame of five bytes.
class Answering final : public sim::FaultyLine {
 public:
  explicit Answering(Bytes answer) : answer_(std::move(answer)) {}
  void Silence() override { taken_ = 0; }

 private:
  void TakeByte(std::uint8_t byte) override;

  Bytes answer_;
  int taken_ = 0;
};

// Answers the first byte with a million.
class Flooding final : public sim::FaultyLine {
 private:
  void TakeByte(std::uint8_t byte) override;

  bool spoken_ = false;
};

// Where a device can be connected on either system.
extern const std::uint16_t kDevicePort;

// Where COM ports are, while it lives. On Windows they are the system's own: the device's is one end of a
// cable whose other end is COM12.
class PortFolder {
 public:
  PortFolder();
  ~PortFolder();
  PortFolder(const PortFolder&) = delete;
  PortFolder& operator=(const PortFolder&) = delete;

  // Does not exist on Windows.
  void AddFile(int number, const std::string& target);
  [[nodiscard]] std::string PathOf(int number) const;

 private:
  std::string folder_;
};

// A device on a COM port.
class PortDevice {
 public:
  PortDevice(PortFolder& folder, int number, sim::ByteDevice& device, sim::LineManner manner = {});

  // Runs a function while the device is left alone.
  void With(const std::function<void()>& function) { attended_.With(function); }

 private:
  std::unique_ptr<sim::Served> port_;
  std::shared_ptr<void> kept_;  // what has to stay open with it
  Attended attended_;
};

// Moves this process and its children to a network of their own. False if they stay in the machine's.
bool LeaveForOwnNetwork();

using Ip = std::array<std::uint8_t, 4>;

// Whoever answers an adapter's query is identified by its address. Under Wine, datagrams from other loopback
// addresses are sent from this one.
inline constexpr Ip kTrueSender{127, 0, 0, 1};

// A device behind an Ethernet adapter on the loopback network.
class TcpDevice {
 public:
  TcpDevice(Ip ip, sim::ByteDevice& device, sim::LineManner manner = {},
            sim::MacAddress mac = sim::kWedgeMac);
  [[nodiscard]] std::uint16_t Port() const { return adapter_.Port(); }

  void With(const std::function<void()>& function) { attended_.With(function); }

 private:
  sim::EthernetCarrier adapter_;
  Attended attended_;
};

// A TCP port that accepts connections, one after the other, but never answers.
class DeafPort final : private sim::Served {
 public:
  explicit DeafPort(Ip ip);
  ~DeafPort() override;
  DeafPort(const DeafPort&) = delete;
  DeafPort& operator=(const DeafPort&) = delete;
  [[nodiscard]] std::uint16_t Port() const { return sim::net::PortOf(listening_); }

 private:
  sim::LineManner& Manner() override { return manner_; }
  void AddTo(std::vector<pollfd>& polled) const override;
  [[nodiscard]] sim::DueTime NextDue() const override { return {}; }
  void Serve() override;

  sim::LineManner manner_;
  sim::net::Socket listening_;
  sim::net::Socket client_ = sim::net::kNone;
  std::unique_ptr<Attended> attended_;
};

// A TCP port on which nobody listens.
std::uint16_t ClosedTcpPort(Ip ip);

// Answers datagrams at one address and port.
class UdpPeer final : private sim::Served {
 public:
  // Returns the datagrams that answer one; they are sent after a while.
  using Answer = std::function<std::vector<Bytes>(const Bytes& datagram)>;
  UdpPeer(Ip ip, std::uint16_t port, Answer answer, Milliseconds after = Milliseconds(0));
  ~UdpPeer() override;
  UdpPeer(const UdpPeer&) = delete;
  UdpPeer& operator=(const UdpPeer&) = delete;

 private:
  struct Pending {
    Clock::time_point due;
    sim::net::Datagram datagram;
  };

  sim::LineManner& Manner() override { return manner_; }
  void AddTo(std::vector<pollfd>& polled) const override { polled.push_back({socket_, POLLIN, 0}); }
  [[nodiscard]] sim::DueTime NextDue() const override;
  void Serve() override;

  Answer answer_;
  sim::LineManner manner_;
  sim::net::Socket socket_;
  std::deque<Pending> pending_;
  std::unique_ptr<Attended> attended_;
};

}  // namespace tavlyn::boundary
