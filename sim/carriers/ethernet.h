// An Ethernet adapter on this machine's loopback network: its TCP port, and the two UDP ports on which it
// answers searches for adapters. A network of many adapters is many addresses of 127.0.0.0/8.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "sim/carriers/net.h"
#include "sim/carriers/served.h"
#include "sim/devices/ethernet_adapter.h"

namespace tavlyn::sim {

// Serves one connection at a time, as real adapters do, and the next one after that is closed. When the
// device cuts the line the connection is closed.
class EthernetCarrier final : public Served {
 public:
  // stream: what the connection leads to, usually an EthernetAdapter. port 0 takes a free one. Plugs the
  // adapter in; IsPlugged says whether that worked.
  EthernetCarrier(ByteDevice& stream, AdapterIdentity identity, std::uint16_t port);
  ~EthernetCarrier() override { Unplug(); }
  EthernetCarrier(const EthernetCarrier&) = delete;
  EthernetCarrier& operator=(const EthernetCarrier&) = delete;

  // False on failure; Problem says why.
  bool Plug();
  [[nodiscard]] const std::string& Problem() const { return problem_; }
  // Connections are refused, open ones are cut, and datagrams are not answered.
  void Unplug();
  [[nodiscard]] bool IsPlugged() const { return listening_ != net::kNone; }
  [[nodiscard]] bool IsConnected() const { return client_ != net::kNone; }
  [[nodiscard]] std::uint16_t Port() const { return port_; }

  LineManner& Manner() override { return line_.manner; }

  void AddTo(std::vector<pollfd>& polled) const override;
  [[nodiscard]] std::optional<Clock::time_point> NextDue() const override;
  void Serve() override;

 private:
  struct Answering {
    std::uint16_t port;
    net::Socket socket;
  };

  void Accept();
  void Disconnect();
  // False if the other side has hung up.
  bool TakeBytes();
  bool GiveBytes();
  void AnswerOn(const Answering& answering) const;

  PacedLine line_;
  AdapterIdentity identity_;
  std::uint16_t port_;
  net::Socket listening_ = net::kNone;
  std::array<Answering, 2> answering_ = {{{kDiscoveryPort, net::kNone}, {kQueryPort, net::kNone}}};
  net::Socket client_ = net::kNone;
  std::string problem_;
  bool full_ = false;  // the connection does not yet accept bytes that are due
};

}  // namespace tavlyn::sim
