// One scripted peer. Datagrams go to onDatagram, whose replies the UDP sockets then receive; all other
// sockets carry the one stream.
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "sim/devices/device.h"
#include "sim/transcript.h"

namespace tavlyn::sim {

class VirtualSockets final : public platform::Sockets {
 public:
  explicit VirtualSockets(Transcript& transcript) : transcript_(transcript) {}
  bool starts = true;
  bool opens = true;
  std::function<bool(platform::Address)> accepts;  // unset: every connection fails
  struct Datagram {
    platform::Address from;
    Bytes bytes;
  };
  std::function<std::vector<Datagram>(platform::Address to, const Bytes&)> onDatagram;
  std::deque<Datagram> datagrams;
  std::optional<std::array<std::uint8_t, 4>> hostAddress;
  // A device at the other end of the connection; its bytes come before toReceive.
  ByteDevice* device = nullptr;

  // Results of recv in turn: bytes, or none for a failure of -1. When they have run out each recv fails.
  std::deque<std::optional<Bytes>> toReceive;
  std::vector<Bytes> sent;
  std::optional<std::int32_t> sendResult;  // unset: the count
  std::int32_t closeResult = 0;

  void Reset();
  bool Startup() override { return starts; }
  platform::Handle OpenTcp() override { return OpenSocket("tcp"); }
  platform::Handle OpenUdp() override;
  std::int32_t Connect(platform::Handle socket, platform::Address peer) override;
  void SetBroadcast(platform::Handle socket) override { NoteOption(socket, "broadcast"); }
  void SetNonBlocking(platform::Handle socket) override { NoteOption(socket, "nonblocking"); }
  void SetReceiveTimeout(platform::Handle socket, std::uint32_t milliseconds) override {
    NoteOption(socket, "timeout " + std::to_string(milliseconds));
  }
  std::int32_t Send(platform::Handle socket, std::span<const std::uint8_t> bytes) override;
  std::int32_t Recv(platform::Handle socket, std::span<std::uint8_t> bytes) override;
  std::int32_t SendTo(platform::Handle socket, std::span<const std::uint8_t> bytes,
                      platform::Address peer) override;
  std::int32_t RecvFrom(platform::Handle socket, std::span<std::uint8_t> bytes,
                        platform::Address& peer) override;
  std::int32_t Close(platform::Handle socket) override;
  bool HostAddress(std::array<std::uint8_t, 4>& ip) override;

 private:
  platform::Handle OpenSocket(const char* protocol);
  void NoteOption(platform::Handle socket, std::string text);
  bool TakeScripted(std::span<std::uint8_t> bytes, Bytes& taken);

  Transcript& transcript_;
  platform::Handle last_ = 1000;
  std::set<platform::Handle> udp_;
};

}  // namespace tavlyn::sim
