// An Ethernet adapter of this machine's loopback network: its TCP port, and the two UDP ports on which it
// answers those who look for adapters. A network of many adapters is many addresses of 127.0.0.0/8.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "sim/carriers/net.h"
#include "sim/carriers/served.h"
#include "sim/devices/ethernet_adapter.h"

namespace tavlyn::sim {

// One connection at a time, as the adapters have it; the next one is served once that is closed. When the
// device cuts the line the connection is closed, and the next may come.
class EthernetCarrier final : public Served {
 public:
  // stream: what the connection leads to, mostly an EthernetAdapter. port 0: one that is free. Plugs the
  // adapter in; IsPlugged tells whether that worked.
  EthernetCarrier(ByteDevice& stream, AdapterIdentity identity, std::uint16_t port);
  ~EthernetCarrier() override { Unplug(); }
  EthernetCarrier(const EthernetCarrier&) = delete;
  EthernetCarrier& operator=(const EthernetCarrier&) = delete;

  // False: Problem tells why.
  bool Plug();
  [[nodiscard]] const std::string& Problem() const { return problem_; }
  // Connections are refused, what is open is cut, and nothing answers datagrams.
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
  // False: the other side has hung up.
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
  bool full_ = false;  // bytes are due that the connection does not take yet
};

}  // namespace tavlyn::sim
