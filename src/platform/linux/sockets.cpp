#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "platform/handle_table.h"
#include "platform/parts.h"

namespace tavlyn::platform {
namespace {

sockaddr_in ToNative(Address address) {
  sockaddr_in native{};
  native.sin_family = AF_INET;
  native.sin_port = htons(address.port);
  std::memcpy(&native.sin_addr, address.ip.data(), address.ip.size());
  return native;
}

// A connect that a signal interrupts goes on in the background; this waits for its end.
int ConnectFully(int descriptor, const sockaddr_in& native) {
  int result = connect(descriptor, reinterpret_cast<const sockaddr*>(&native), sizeof native);
  while (result != 0 && errno == EINTR) {
    result = connect(descriptor, reinterpret_cast<const sockaddr*>(&native), sizeof native);
    if (result != 0 && errno == EISCONN) return 0;
  }
  return result;
}

class SystemSockets final : public Sockets {
 public:
  void CloseLost() {
    while (const auto native = sockets_.RemoveNewest()) close(*native);
  }

  bool Startup() override { return true; }
  Handle OpenTcp() override { return Add(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)); }
  Handle OpenUdp() override { return Add(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)); }

  std::int32_t Connect(Handle socket, Address peer) override {
    if (IsNowhere(peer.ip) || peer.port == 0) return -1;
    return ConnectFully(Native(socket), ToNative(peer));
  }

  void SetBroadcast(Handle socket) override {
    const int on = 1;
    setsockopt(Native(socket), SOL_SOCKET, SO_BROADCAST, &on, sizeof on);
  }

  // A socket of the library's has no other flags: asking for them could fail, and it would wait forever.
  void SetNonBlocking(Handle socket) override { fcntl(Native(socket), F_SETFL, O_NONBLOCK); }

  void SetReceiveTimeout(Handle socket, std::uint32_t milliseconds) override {
    const timeval limit{static_cast<time_t>(milliseconds / 1000),
                        static_cast<suseconds_t>(milliseconds % 1000 * 1000)};
    setsockopt(Native(socket), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
  }

  std::int32_t Send(Handle socket, std::span<const std::uint8_t> bytes) override {
    return static_cast<std::int32_t>(send(Native(socket), bytes.data(), bytes.size(), MSG_NOSIGNAL));
  }

  std::int32_t Recv(Handle socket, std::span<std::uint8_t> bytes) override {
    return static_cast<std::int32_t>(recv(Native(socket), bytes.data(), bytes.size(), 0));
  }

  std::int32_t SendTo(Handle socket, std::span<const std::uint8_t> bytes, Address peer) override {
    if (IsNowhere(peer.ip)) return -1;
    const sockaddr_in native = ToNative(peer);
    return static_cast<std::int32_t>(sendto(Native(socket), bytes.data(), bytes.size(), MSG_NOSIGNAL,
                                            reinterpret_cast<const sockaddr*>(&native), sizeof native));
  }

  std::int32_t RecvFrom(Handle socket, std::span<std::uint8_t> bytes, Address& peer) override {
    sockaddr_in native{};
    socklen_t size = sizeof native;
    const auto got = static_cast<std::int32_t>(
        recvfrom(Native(socket), bytes.data(), bytes.size(), 0, reinterpret_cast<sockaddr*>(&native), &size));
    if (got >= 0) {
      std::memcpy(peer.ip.data(), &native.sin_addr, peer.ip.size());
      peer.port = ntohs(native.sin_port);
    }
    return got;
  }

  std::int32_t Close(Handle socket) override {
    const auto native = sockets_.Remove(socket);
    return native ? close(*native) : 0;
  }

  bool HostAddress(std::array<std::uint8_t, 4>& ip) override {
    char name[100];
    if (gethostname(name, sizeof name) != 0) return false;
    name[sizeof name - 1] = '\0';
    addrinfo wanted{};
    wanted.ai_family = AF_INET;
    addrinfo* found = nullptr;
    if (getaddrinfo(name, nullptr, &wanted, &found) != 0) return false;
    std::memcpy(ip.data(), &reinterpret_cast<const sockaddr_in*>(found->ai_addr)->sin_addr, ip.size());
    freeaddrinfo(found);
    return true;
  }

 private:
  Handle Add(int native) { return native >= 0 ? sockets_.Add(native, close) : kNoHandle; }
  int Native(Handle socket) { return sockets_.Find(socket).value_or(-1); }

  HandleTable<int> sockets_;
};

constinit NeverDestroyed<SystemSockets> socketsPart;

}  // namespace

Sockets& TheSockets() { return socketsPart; }

void CloseLostSockets() { socketsPart.CloseLost(); }

}  // namespace tavlyn::platform
