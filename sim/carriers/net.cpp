// What both systems do alike.
#include "sim/carriers/net.h"

#include <cstring>

namespace tavlyn::sim::net {

sockaddr_in AddressOf(const Ip& ip, std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  std::memcpy(&address.sin_addr, ip.data(), ip.size());
  return address;
}

std::uint16_t PortOf(Socket bound) {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  getsockname(bound, reinterpret_cast<sockaddr*>(&address), &size);
  return ntohs(address.sin_port);
}

}  // namespace tavlyn::sim::net
