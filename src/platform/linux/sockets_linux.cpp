#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "platform/handle_table.h"
#include "platform/linux/parts.h"

namespace tavlyn::platform {
namespace {

constinit HandleTable<int> openSockets;

int DescriptorOf(Handle handle) { return openSockets.Find(handle).value_or(-1); }

Handle OpenSocket(int type) {
  const int descriptor = socket(AF_INET, type | SOCK_CLOEXEC, 0);
  return descriptor >= 0 ? openSockets.Add(descriptor, close) : kNoHandle;
}

sockaddr_in Native(Address address) {
  sockaddr_in native{};
  native.sin_family = AF_INET;
  native.sin_port = htons(address.port);
  std::memcpy(&native.sin_addr, address.ip.data(), address.ip.size());
  return native;
}

// A connect that a signal interrupted goes on by itself; its end is waited for.
int ConnectFully(int descriptor, const sockaddr_in& native) {
  int result = connect(descriptor, reinterpret_cast<const sockaddr*>(&native), sizeof native);
  while (result != 0 && errno == EINTR) {
    result = connect(descriptor, reinterpret_cast<const sockaddr*>(&native), sizeof native);
    if (result != 0 && errno == EISCONN) return 0;
  }
  return result;
}

}  // namespace

Handle LinuxSockets::OpenTcp() { return OpenSocket(SOCK_STREAM); }
Handle LinuxSockets::OpenUdp() { return OpenSocket(SOCK_DGRAM); }

std::int32_t LinuxSockets::Connect(Handle socket, Address peer) {
  if (IsNowhere(peer.ip) || peer.port == 0) return -1;
  return ConnectFully(DescriptorOf(socket), Native(peer));
}

void LinuxSockets::SetBroadcast(Handle socket) {
  const int on = 1;
  setsockopt(DescriptorOf(socket), SOL_SOCKET, SO_BROADCAST, &on, sizeof on);
}

void LinuxSockets::SetNonBlocking(Handle socket) {
  const int descriptor = DescriptorOf(socket);
  fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL, 0) | O_NONBLOCK);
}

void LinuxSockets::SetReceiveTimeout(Handle socket, std::uint32_t milliseconds) {
  const timeval limit{static_cast<time_t>(milliseconds / 1000),
                      static_cast<suseconds_t>(milliseconds % 1000 * 1000)};
  setsockopt(DescriptorOf(socket), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
}

std::int32_t LinuxSockets::Send(Handle socket, std::span<const std::uint8_t> bytes) {
  return static_cast<std::int32_t>(send(DescriptorOf(socket), bytes.data(), bytes.size(), MSG_NOSIGNAL));
}

std::int32_t LinuxSockets::Recv(Handle socket, std::span<std::uint8_t> bytes) {
  return static_cast<std::int32_t>(recv(DescriptorOf(socket), bytes.data(), bytes.size(), 0));
}

std::int32_t LinuxSockets::SendTo(Handle socket, std::span<const std::uint8_t> bytes, Address peer) {
  if (IsNowhere(peer.ip)) return -1;
  const sockaddr_in native = Native(peer);
  return static_cast<std::int32_t>(sendto(DescriptorOf(socket), bytes.data(), bytes.size(), MSG_NOSIGNAL,
                                          reinterpret_cast<const sockaddr*>(&native), sizeof native));
}

std::int32_t LinuxSockets::RecvFrom(Handle socket, std::span<std::uint8_t> bytes, Address& peer) {
  sockaddr_in native{};
  socklen_t size = sizeof native;
  const auto got = static_cast<std::int32_t>(recvfrom(DescriptorOf(socket), bytes.data(), bytes.size(), 0,
                                                      reinterpret_cast<sockaddr*>(&native), &size));
  if (got >= 0) {
    std::memcpy(peer.ip.data(), &native.sin_addr, peer.ip.size());
    peer.port = ntohs(native.sin_port);
  }
  return got;
}

std::int32_t LinuxSockets::Close(Handle socket) {
  const auto descriptor = openSockets.Remove(socket);
  return descriptor ? close(*descriptor) : 0;
}

void LinuxSockets::CloseLost() {
  while (const auto descriptor = openSockets.RemoveNewest()) close(*descriptor);
}

bool LinuxSockets::HostAddress(std::array<std::uint8_t, 4>& ip) {
  char name[100];
  if (gethostname(name, sizeof name) != 0) return false;
  name[sizeof name - 1] = '\0';
  addrinfo wanted{};
  wanted.ai_family = AF_INET;
  addrinfo* found = nullptr;
  if (getaddrinfo(name, nullptr, &wanted, &found) != 0 || found == nullptr) return false;
  std::memcpy(ip.data(), &reinterpret_cast<const sockaddr_in*>(found->ai_addr)->sin_addr, ip.size());
  freeaddrinfo(found);
  return true;
}

}  // namespace tavlyn::platform
