#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "sim/carriers/ethernet.h"

namespace tavlyn::sim {
namespace {

int OpenSocket(int kind, const AdapterIdentity& identity, std::uint16_t port) {
  const int made = socket(AF_INET, kind | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (made < 0) return -1;
  const int on = 1;
  // A connection of before that still lingers keeps no one from the port. Datagrams are not shared.
  if (kind == SOCK_STREAM) setsockopt(made, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  std::memcpy(&address.sin_addr, identity.ip.data(), identity.ip.size());
  constexpr int kWaiting = 4;
  const bool bound = bind(made, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  if (bound && (kind != SOCK_STREAM || listen(made, kWaiting) == 0)) return made;
  const int reason = errno;
  close(made);
  errno = reason;
  return -1;
}

std::uint16_t PortOf(int bound) {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  getsockname(bound, reinterpret_cast<sockaddr*>(&address), &size);
  return ntohs(address.sin_port);
}

void Shut(int& socket) {
  if (socket >= 0) close(socket);
  socket = -1;
}

}  // namespace

EthernetCarrier::EthernetCarrier(ByteDevice& stream, AdapterIdentity identity, std::uint16_t port)
    : line_(stream), identity_(identity), port_(port) {
  Plug();
}

bool EthernetCarrier::Plug() {
  if (IsPlugged()) return true;
  listening_ = OpenSocket(SOCK_STREAM, identity_, port_);
  bool ready = IsPlugged();
  for (Answering& one : answering_) {
    if (ready) one.socket = OpenSocket(SOCK_DGRAM, identity_, one.port);
    ready = ready && one.socket >= 0;
  }
  if (ready) {
    port_ = PortOf(listening_);
    return true;
  }
  const int reason = errno;
  Unplug();
  errno = reason;
  return false;
}

void EthernetCarrier::Unplug() {
  Disconnect();
  Shut(listening_);
  for (Answering& one : answering_) Shut(one.socket);
}

void EthernetCarrier::Disconnect() {
  if (!IsConnected()) return;
  Shut(client_);
  full_ = false;
  line_.Hangup();
}

void EthernetCarrier::AddTo(std::vector<pollfd>& polled) const {
  if (!IsPlugged()) return;
  for (const Answering& one : answering_) polled.push_back({one.socket, POLLIN, 0});
  if (IsConnected()) {
    polled.push_back({client_, static_cast<short>(full_ ? POLLIN | POLLOUT : POLLIN), 0});
  } else {
    polled.push_back({listening_, POLLIN, 0});
  }
}

std::optional<EthernetCarrier::Clock::time_point> EthernetCarrier::NextDue() const {
  return IsConnected() && !full_ ? line_.NextDue() : std::nullopt;
}

void EthernetCarrier::Serve() {
  if (!IsPlugged()) return;
  for (const Answering& one : answering_) AnswerOn(one);
  Accept();
  if (IsConnected() && (!TakeBytes() || !GiveBytes() || line_.TakeCut())) {
    Disconnect();
    Accept();
  }
}

void EthernetCarrier::Accept() {
  if (IsConnected()) return;
  client_ = accept4(listening_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
  const int on = 1;
  if (IsConnected()) setsockopt(client_, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

bool EthernetCarrier::TakeBytes() {
  std::array<std::uint8_t, 512> bytes;
  for (;;) {
    const ssize_t count = recv(client_, bytes.data(), bytes.size(), 0);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return count < 0 && errno == EAGAIN;
    line_.Receive(std::span(bytes).first(static_cast<std::size_t>(count)), Clock::now());
  }
}

bool EthernetCarrier::GiveBytes() {
  full_ = false;
  for (auto due = line_.Due(Clock::now()); !due.empty(); due = line_.Due(Clock::now())) {
    const ssize_t count = send(client_, due.data(), due.size(), MSG_NOSIGNAL);
    if (count < 0 && errno == EINTR) continue;
    full_ = count < 0 && errno == EAGAIN;
    if (count <= 0) return full_;
    line_.Sent(static_cast<std::size_t>(count), Clock::now());
  }
  return true;
}

void EthernetCarrier::AnswerOn(const Answering& answering) const {
  std::array<std::uint8_t, 512> datagram;
  sockaddr_in from{};
  auto* const peer = reinterpret_cast<sockaddr*>(&from);
  for (;;) {
    socklen_t size = sizeof from;
    const ssize_t count = recvfrom(answering.socket, datagram.data(), datagram.size(), 0, peer, &size);
    if (count < 0) return;
    const auto asked = std::span(datagram).first(static_cast<std::size_t>(count));
    const auto answer = AnswerDatagram(identity_, answering.port, asked);
    if (answer) sendto(answering.socket, answer->data(), answer->size(), MSG_NOSIGNAL, peer, size);
  }
}

}  // namespace tavlyn::sim
