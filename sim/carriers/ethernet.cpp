#include "sim/carriers/ethernet.h"

namespace tavlyn::sim {

// cppcheck-suppress passedByValue ; it is a few bytes long
EthernetCarrier::EthernetCarrier(ByteDevice& stream, AdapterIdentity identity, std::uint16_t port)
    : line_(stream), identity_(identity), port_(port) {
  Plug();
}

bool EthernetCarrier::Plug() {
  if (IsPlugged()) return true;
  listening_ = net::Open(net::Kind::kStream, identity_.ip, port_);
  bool ready = IsPlugged();
  for (Answering& one : answering_) {
    if (ready) one.socket = net::Open(net::Kind::kDatagram, identity_.ip, one.port);
    ready = ready && one.socket != net::kNone;
  }
  if (ready) {
    port_ = net::PortOf(listening_);
    return true;
  }
  problem_ = net::Problem();
  Unplug();
  return false;
}

void EthernetCarrier::Unplug() {
  Disconnect();
  net::Close(listening_);
  for (Answering& one : answering_) net::Close(one.socket);
}

void EthernetCarrier::Disconnect() {
  if (!IsConnected()) return;
  net::Close(client_);
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
  client_ = net::Accept(listening_);
}

bool EthernetCarrier::TakeBytes() {
  std::array<std::uint8_t, 512> bytes;
  for (;;) {
    const int count = net::Receive(client_, bytes);
    if (count < 0) return count == net::kLater;
    line_.Receive(std::span(bytes).first(static_cast<std::size_t>(count)), Clock::now());
  }
}

bool EthernetCarrier::GiveBytes() {
  full_ = false;
  for (auto due = line_.Due(Clock::now()); !due.empty(); due = line_.Due(Clock::now())) {
    const int count = net::Send(client_, due);
    full_ = count == net::kLater;
    if (count <= 0) return full_;
    line_.Sent(static_cast<std::size_t>(count), Clock::now());
  }
  return true;
}

void EthernetCarrier::AnswerOn(const Answering& answering) const {
  net::Datagram datagram;
  while (net::ReceiveDatagram(answering.socket, datagram)) {
    const auto answer = AnswerDatagram(identity_, answering.port, datagram.bytes);
    if (!answer) continue;
    datagram.bytes.assign(answer->begin(), answer->end());
    net::SendDatagram(answering.socket, datagram);
  }
}

}  // namespace tavlyn::sim
