// The other ends of real wires: a folder of COM ports that are pseudo-terminals, TCP and UDP peers on the
// loopback network. Each talks in a thread of its own until it is destroyed.
#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <limits>
#include <map>
#include <span>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "sim/devices/device.h"

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

// How a far end hands out what its device answers.
struct Manner {
  std::size_t piece = std::numeric_limits<std::size_t>::max();  // bytes in one go
  Milliseconds before{0};                                       // each piece
  std::size_t closesAfter = std::numeric_limits<std::size_t>::max();
};

// Bytes that no device made.
class Answering final : public sim::ByteDevice {
 public:
  // Answers every frame, which is five bytes.
  explicit Answering(Bytes answer) : answer_(std::move(answer)) {}
  void Receive(std::span<const std::uint8_t> bytes) override;
  std::size_t Take(std::span<std::uint8_t> bytes) override;

 private:
  Bytes answer_;
  std::size_t taken_ = 0;
  std::deque<std::uint8_t> out_;
};

// Never stops talking once it was spoken to.
class Flooding final : public sim::ByteDevice {
 public:
  void Receive(std::span<const std::uint8_t> bytes) override { spoken_ = spoken_ || !bytes.empty(); }
  std::size_t Take(std::span<std::uint8_t> bytes) override;

 private:
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

// Moves bytes between a descriptor and a device until the other side is gone or `stop` is readable.
void Serve(int descriptor, int stop, sim::ByteDevice& device, const Manner& manner);

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
  PortDevice(PortFolder& folder, int number, sim::ByteDevice& device, Manner manner = {});

 private:
  Descriptor far_;
  Thread thread_;
};

using Ip = std::array<std::uint8_t, 4>;

// A device behind a TCP port of the loopback network that the system chose, one connection at a time.
class TcpDevice {
 public:
  TcpDevice(sim::ByteDevice& device, Manner manner = {}, Ip ip = {127, 0, 0, 1});
  [[nodiscard]] std::uint16_t Port() const { return port_; }
  [[nodiscard]] int Accepted() const { return accepted_; }

 private:
  Descriptor listener_;
  std::uint16_t port_ = 0;
  std::atomic<int> accepted_ = 0;
  Thread thread_;
};

// A TCP port at which nobody listens.
std::uint16_t ClosedTcpPort();

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
