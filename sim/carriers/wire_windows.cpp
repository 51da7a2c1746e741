#include <cstdlib>
#include <cstring>

#include "sim/carriers/wire.h"

namespace tavlyn::sim::wire {
namespace {

constexpr net::Ip kLoopback{127, 0, 0, 1};
constexpr char kLoopbackText[] = "127.0.0.1:";

}  // namespace

net::Socket Connect(const char* name) {
  if (std::strncmp(name, kLoopbackText, sizeof kLoopbackText - 1) != 0) return net::kNone;
  WSADATA data;
  if (WSAStartup(MAKEWORD(2, 2), &data) != 0) return net::kNone;
  const auto port = static_cast<std::uint16_t>(std::atoi(name + sizeof kLoopbackText - 1));
  const sockaddr_in address = net::AddressOf(kLoopback, port);
  net::Socket made = socket(AF_INET, SOCK_STREAM, 0);
  if (connect(made, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) net::Close(made);
  // Each request is one small message whose answer is awaited, so nothing must delay it.
  const BOOL on = TRUE;
  setsockopt(made, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on), sizeof on);
  return made;
}

net::Socket Listen(std::string& folder, std::string& name) {
  folder.clear();
  const net::Socket made = net::Open(net::Kind::kStream, kLoopback, 0);
  if (made != net::kNone) name = kLoopbackText + std::to_string(net::PortOf(made));
  return made;
}

net::Socket Accept(net::Socket listening) { return net::Accept(listening); }

}  // namespace tavlyn::sim::wire
