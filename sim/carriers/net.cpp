// What is the same on both systems.
#include "sim/carriers/net.h"

#include <cstring>

namespace tavlyn::sim::net {
namespace {

constexpr int kLongestDatagram = 512;

}  // namespace

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

bool ReceiveDatagram(Socket socket, Datagram& datagram) {
  datagram.bytes.resize(kLongestDatagram);
  sockaddr_in from{};
  socklen_t size = sizeof from;
  const auto count = recvfrom(socket, reinterpret_cast<char*>(datagram.bytes.data()), kLongestDatagram, 0,
                              reinterpret_cast<sockaddr*>(&from), &size);
  if (count < 0) return false;
  datagram.bytes.resize(static_cast<std::size_t>(count));
  std::memcpy(datagram.ip.data(), &from.sin_addr, datagram.ip.size());
  datagram.port = ntohs(from.sin_port);
  return true;
}

}  // namespace tavlyn::sim::net
