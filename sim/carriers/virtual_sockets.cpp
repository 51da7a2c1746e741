#include "sim/carriers/virtual_sockets.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace tavlyn::sim {
namespace {

constexpr platform::Handle kFirstSocket = 1000;

std::string AddressText(platform::Address address) {
  char text[32];
  std::snprintf(text, sizeof text, "%d.%d.%d.%d:%d", address.ip[0], address.ip[1], address.ip[2],
                address.ip[3], address.port);
  return text;
}

}  // namespace

void VirtualSockets::Reset() {
  starts = opens = true;
  accepts = nullptr;
  onDatagram = nullptr;
  datagrams.clear();
  hostAddress.reset();
  device = nullptr;
  toReceive.clear();
  sent.clear();
  sendResult.reset();
  closeResult = 0;
  last_ = kFirstSocket;
  udp_.clear();
}

platform::Handle VirtualSockets::OpenSocket(const char* protocol) {
  Event event{EventKind::kSocket};
  event.ok = opens;
  event.handle = opens ? ++last_ : 0;
  event.text = protocol;
  transcript_.Add(event);
  return opens ? last_ : platform::kNoHandle;
}

platform::Handle VirtualSockets::OpenUdp() {
  const platform::Handle socket = OpenSocket("udp");
  udp_.insert(socket);
  return socket;
}

void VirtualSockets::NoteOption(platform::Handle socket, std::string text) {
  Event event{EventKind::kOption};
  event.handle = socket;
  event.text = std::move(text);
  transcript_.Add(std::move(event));
}

std::int32_t VirtualSockets::Connect(platform::Handle socket, platform::Address peer) {
  Event event{EventKind::kConnect};
  event.handle = socket;
  event.ok = !platform::IsNowhere(peer.ip) && peer.port != 0 && accepts && accepts(peer);
  event.text = AddressText(peer);
  transcript_.Add(event);
  return event.ok ? 0 : -1;
}

std::int32_t VirtualSockets::SendTo(platform::Handle socket, std::span<const std::uint8_t> bytes,
                                    platform::Address peer) {
  const std::int32_t result =
      platform::IsNowhere(peer.ip) ? -1 : sendResult.value_or(static_cast<std::int32_t>(bytes.size()));
  Event event = BytesEvent(EventKind::kSendTo, bytes);
  event.handle = socket;
  event.ok = result >= 0;
  event.text = AddressText(peer);
  transcript_.Add(event);
  if (event.ok && onDatagram) {
    for (Datagram& reply : onDatagram(peer, event.bytes)) datagrams.push_back(std::move(reply));
  }
  return result;
}

std::int32_t VirtualSockets::RecvFrom(platform::Handle socket, std::span<std::uint8_t> bytes,
                                      platform::Address& peer) {
  Event event{EventKind::kRecv};
  event.handle = socket;
  event.ok = !datagrams.empty();
  if (event.ok) {
    const Datagram next = std::move(datagrams.front());
    datagrams.pop_front();
    peer = next.from;
    const std::size_t count = std::min(next.bytes.size(), bytes.size());
    std::copy_n(next.bytes.begin(), count, bytes.begin());
    event.bytes.assign(next.bytes.begin(), next.bytes.begin() + static_cast<std::ptrdiff_t>(count));
  }
  transcript_.Add(event);
  return event.ok ? static_cast<std::int32_t>(event.bytes.size()) : -1;
}

bool VirtualSockets::HostAddress(std::array<std::uint8_t, 4>& ip) {
  if (hostAddress) ip = *hostAddress;
  return hostAddress.has_value();
}

std::int32_t VirtualSockets::Send(platform::Handle socket, std::span<const std::uint8_t> bytes) {
  const std::int32_t result = sendResult.value_or(static_cast<std::int32_t>(bytes.size()));
  Event event = BytesEvent(EventKind::kSend, bytes);
  event.handle = socket;
  event.ok = result >= 0;
  sent.push_back(event.bytes);
  if (event.ok && device != nullptr) device->Receive(bytes);
  transcript_.Add(std::move(event));
  return result;
}

// What the device or the script has next.
bool VirtualSockets::TakeScripted(std::span<std::uint8_t> bytes, Bytes& taken) {
  if (device != nullptr) {
    const std::size_t count = device->Take(bytes);
    taken.assign(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
    if (count != 0) return true;
  }
  if (toReceive.empty()) return false;
  const std::optional<Bytes> next = std::move(toReceive.front());
  toReceive.pop_front();
  if (!next) return false;
  const std::size_t count = std::min(next->size(), bytes.size());
  std::copy_n(next->begin(), count, bytes.begin());
  taken.assign(next->begin(), next->begin() + static_cast<std::ptrdiff_t>(count));
  return true;
}

std::int32_t VirtualSockets::Recv(platform::Handle socket, std::span<std::uint8_t> bytes) {
  if (udp_.contains(socket)) {
    platform::Address ignored;
    return RecvFrom(socket, bytes, ignored);
  }
  Event event{EventKind::kRecv};
  event.handle = socket;
  event.ok = TakeScripted(bytes, event.bytes);
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

}  // namespace tavlyn::sim
