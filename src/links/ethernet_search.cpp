#include "links/ethernet_search.h"

#include <cstdio>

#include "links/link_socket.h"
#include "links/serial_port.h"

namespace tavlyn {
namespace {

constexpr std::uint8_t kFirstHost = 1;
constexpr std::uint8_t kLastHost = 254;

struct Peer {
  IpAddress asked;  // as passed in: DevName shows it even when a range is scanned
  std::uint8_t fourth;
  std::uint16_t port;
};

void Found(tsDevEntry& entry, const Peer& peer, std::uint32_t kind) {
  const auto& mac = entry.DevMacAddr;
  const auto& ip = peer.asked;
  entry.DevIpAddr = {ip[0], ip[1], ip[2], peer.fourth};
  entry.bFound = 1;
  std::snprintf(entry.DevName, sizeof entry.DevName,
                "MAC:%02X:%02X:%02X:%02X:%02X:%02X TCP/IP:%d.%d.%d.%d;Port:%d", mac[0], mac[1], mac[2],
                mac[3], mac[4], mac[5], ip[0], ip[1], ip[2], ip[3], peer.port);
  Count(entry, kind);
}

bool TryXport(tsDevEntry& entry, const Peer& peer, const Probe& probe) {
  SerialPort* port = ClosedPort(entry);
  if (port == nullptr) return false;
  entry.LinkKind = kBySerialPort;
  port->SetIpAddr({peer.asked[0], peer.asked[1], peer.asked[2], peer.fourth});
  port->SetPortNum(peer.port);
  port->SetLine({9600, 0, 0});
  port->UseNormalTimeouts();
  FetchMacAddr(peer.asked, entry.DevMacAddr);
  if (!port->Open()) return false;
  shared.ActDev = shared.DevCnt;
  if (!probe.answers()) {
    CloseAndDropPort(entry);
    return false;
  }
  Found(entry, peer, probe.kind);
  return true;
}

// Every pass connects to the address passed in; the running octet shows in DevIpAddr alone.
bool TryTunnel(tsDevEntry& entry, const Peer& peer, const Probe& probe) {
  CloseAndDropPort(entry);
  shared.link.TunnelLink = 1;
  entry.LinkKind = kByReports;
  FetchMacAddr(peer.asked, entry.DevMacAddr);
  // A connection that fails deliberately leaves the flag set.
  if (LinkConnect({peer.asked, peer.port}) != 0) return false;
  shared.ActDev = shared.DevCnt;
  if (!probe.answers()) {
    shared.link.TunnelLink = 0;
    LinkClose();
    return false;
  }
  Found(entry, peer, probe.kind);
  return true;
}

using Try = bool (*)(tsDevEntry&, const Peer&, const Probe&);

bool Sweep(IpAddress address, std::uint16_t port, const Probe& probe, Try attempt) {
  const bool whole = address[3] == 0;
  const unsigned last = whole ? kLastHost : address[3];
  bool found = false;
  for (unsigned fourth = whole ? kFirstHost : address[3]; fourth <= last; ++fourth) {
    tsDevEntry* entry = NextEntry();
    if (entry == nullptr) break;
    found = attempt(*entry, {address, static_cast<std::uint8_t>(fourth), port}, probe) || found;
  }
  return found;
}

}  // namespace

bool XportConnect(IpAddress address, std::uint16_t port, const Probe& probe) {
  return Sweep(address, port, probe, TryXport);
}

bool TunnelConnect(IpAddress address, std::uint16_t port, const Probe& probe) {
  return Sweep(address, port, probe, TryTunnel);
}

}  // namespace tavlyn
