#include "tests/boundary/far_end.h"

#include <array>
#include <stdexcept>
#include <utility>

namespace tavlyn::boundary {
namespace {

namespace net = sim::net;

constexpr int kFrameBytes = 5;

net::Socket Opened(net::Kind kind, const Ip& ip, std::uint16_t port) {
  const net::Socket socket = net::Open(kind, ip, port);
  if (socket == net::kNone) throw std::runtime_error("no socket: " + net::Problem());
  return socket;
}

}  // namespace

void Answering::TakeByte(std::uint8_t) {
  if (++taken_ < kFrameBytes) return;
  taken_ = 0;
  Send(answer_);
}

void Flooding::TakeByte(std::uint8_t) {
  if (!spoken_) Flood(1'000'000);
  spoken_ = true;
}

TcpDevice::TcpDevice(Ip ip, sim::ByteDevice& device, sim::LineManner manner, sim::MacAddress mac)
    : adapter_(device, {mac, ip}, 0), attended_({&adapter_}) {
  if (!adapter_.IsPlugged()) throw std::runtime_error(adapter_.Problem());
  With([&] { adapter_.Manner() = manner; });
}

DeafPort::DeafPort(Ip ip)
    : listening_(Opened(net::Kind::kStream, ip, 0)),
      attended_(std::make_unique<Attended>(std::vector<sim::Served*>{this})) {}

DeafPort::~DeafPort() {
  attended_.reset();
  net::Close(client_);
  net::Close(listening_);
}

void DeafPort::AddTo(std::vector<pollfd>& polled) const {
  polled.push_back({client_ != net::kNone ? client_ : listening_, POLLIN, 0});
}

void DeafPort::Serve() {
  if (client_ == net::kNone) client_ = net::Accept(listening_);
  std::array<std::uint8_t, 256> heard{};
  int count = 0;
  while (client_ != net::kNone && (count = net::Receive(client_, heard)) > 0) continue;
  if (client_ != net::kNone && count == net::kOver) net::Close(client_);
}

std::uint16_t ClosedTcpPort(Ip ip) {
  net::Socket bound = Opened(net::Kind::kStream, ip, 0);
  const std::uint16_t port = net::PortOf(bound);
  net::Close(bound);
  return port;
}

UdpPeer::UdpPeer(Ip ip, std::uint16_t port, Answer answer, Milliseconds after)
    : answer_(std::move(answer)),
      manner_{.delay = after},
      socket_(Opened(net::Kind::kDatagram, ip, port)),
      attended_(std::make_unique<Attended>(std::vector<sim::Served*>{this})) {}

UdpPeer::~UdpPeer() {
  attended_.reset();
  net::Close(socket_);
}

sim::DueTime UdpPeer::NextDue() const { return pending_.empty() ? sim::DueTime() : pending_.front().due; }

void UdpPeer::Serve() {
  net::Datagram datagram;
  while (net::ReceiveDatagram(socket_, datagram)) {
    const auto due = Clock::now() + manner_.delay;
    for (Bytes& one : answer_(datagram.bytes)) {
      pending_.push_back({due, {std::move(one), datagram.ip, datagram.port}});
    }
  }
  for (; !pending_.empty() && pending_.front().due <= Clock::now(); pending_.pop_front()) {
    net::SendDatagram(socket_, pending_.front().datagram);
  }
}

}  // namespace tavlyn::boundary
