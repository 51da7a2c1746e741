// The other ends of real wires: a folder of COM ports that are pseudo-terminals, TCP and UDP peers on the
// loopback network. Each talks in a thread of its own until it is destroyed.
#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "sim/carriers/attendant.h"
#include "sim/carriers/ethernet.h"
#include "sim/carriers/pseudo_terminal.h"
#include "sim/devices/faulty_line.h"

namespace tavlyn::boundary {

using Bytes = std::vector<std::uint8_t>;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

// A descriptor that is closed with its owner.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  ~Descriptor() { Close(); }
  Descriptor(Descriptor&& other) noexcept : number_(other.number_) { other.number_ = -1; }
  Descriptor& operator=(Descriptor&& other) noexcept;
  [[nodiscard]] int get() const { return number_; }
  void Close();

 private:
  int number_;
};

int OpenDescriptors();

// How long something takes, in milliseconds.
template <typename Call>
int TimeOf(Call call) {
  const auto start = Clock::now();
  call();
  return static_cast<int>(std::chrono::duration_cast<Milliseconds>(Clock::now() - start).count());
}

// A sleep that is not counted as one of the library's.
void Pause(Milliseconds length);
// Waits for something to read, or the end.
bool Readable(int descriptor, Milliseconds limit);
// What comes until the line was silent for that long.
std::string ReadUntilSilence(int descriptor, Milliseconds silence);
void Send(int descriptor, const std::string& text);

// Bytes that no device made: the same answer to every frame, which is five bytes.
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

// Runs something in a thread until it is destroyed; the descriptor that it is given becomes readable then.
class Thread {
 public:
  explicit Thread(std::function<void(int stop)> run);
  ~Thread();
  Thread(const Thread&) = delete;
  Thread& operator=(const Thread&) = delete;

 private:
  Descriptor stopRead_;
  Descriptor stopWrite_;
  std::thread thread_;
};

// A folder of COM ports, as long as it lives.
class PortFolder {
 public:
  PortFolder();
  ~PortFolder();
  PortFolder(const PortFolder&) = delete;
  PortFolder& operator=(const PortFolder&) = delete;

  // The far end of a new pseudo-terminal that is COM n, without echo. The near end can be opened time and
  // again.
  Descriptor AddPort(int number);
  void AddFile(int number, const std::string& target);
  [[nodiscard]] std::string PathOf(int number) const;

 private:
  std::string folder_;
  std::map<int, Descriptor> kept_;
};

// A device on a COM port.
class PortDevice {
 public:
  PortDevice(PortFolder& folder, int number, sim::ByteDevice& device, sim::LineManner manner = {});

  // Runs a function while the device is left alone.
  template <typename Function>
  void With(Function function) {
    attendant_.With(function);
  }

 private:
  sim::PseudoTerminal port_;
  Descriptor kept_;
  sim::Attendant attendant_;
};

using Ip = std::array<std::uint8_t, 4>;

// A device behind an Ethernet adapter of the loopback network.
class TcpDevice {
 public:
  TcpDevice(Ip ip, sim::ByteDevice& device, sim::LineManner manner = {},
            sim::MacAddress mac = sim::kWedgeMac);
  [[nodiscard]] std::uint16_t Port() const { return adapter_.Port(); }

  template <typename Function>
  void With(Function function) {
    attendant_.With(function);
  }

 private:
  sim::EthernetCarrier adapter_;
  sim::Attendant attendant_;
};

// A TCP port whose connections nobody looks at, for thousands of them.
class DeafPort {
 public:
  explicit DeafPort(Ip ip);
  [[nodiscard]] std::uint16_t Port() const { return port_; }

 private:
  Descriptor listener_;
  std::uint16_t port_;
};

// A TCP port at which nobody listens.
std::uint16_t ClosedTcpPort(Ip ip);

// Answers datagrams at one address and port.
class UdpPeer {
 public:
  // Gives the datagrams that answer one; they go out after a while.
  using Answer = std::function<std::vector<Bytes>(const Bytes& datagram)>;
  UdpPeer(Ip ip, std::uint16_t port, Answer answer, Milliseconds after = Milliseconds(0));
  [[nodiscard]] int Received() const { return received_; }

 private:
  Descriptor socket_;
  std::atomic<int> received_ = 0;
  Thread thread_;
};

}  // namespace tavlyn::boundary
