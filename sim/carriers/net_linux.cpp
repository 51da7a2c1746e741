#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "sim/carriers/net.h"

namespace tavlyn::sim::net {
namespace {

int Outcome(ssize_t count, bool endsAtZero) {
  if (count > 0 || (count == 0 && !endsAtZero)) return static_cast<int>(count);
  return count < 0 && errno == EAGAIN ? kLater : kOver;
}

}  // namespace

Socket Open(Kind kind, const Ip& ip, std::uint16_t port) {
  const bool streams = kind == Kind::kStream;
  const int made = socket(AF_INET, (streams ? SOCK_STREAM : SOCK_DGRAM) | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (made < 0) return kNone;
  const int on = 1;
  // A lingering earlier connection must not block the port. Datagram ports are not shared.
  if (streams) setsockopt(made, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  const sockaddr_in address = AddressOf(ip, port);
  constexpr int kWaiting = 1024;
  const bool bound = bind(made, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  if (bound && (!streams || listen(made, kWaiting) == 0)) return made;
  const int reason = errno;
  close(made);
  errno = reason;
  return kNone;
}

Socket Accept(Socket listening) {
  const int accepted = accept4(listening, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
  const int on = 1;
  if (accepted >= 0) setsockopt(accepted, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  return accepted < 0 ? kNone : accepted;
}

void Close(Socket& socket) {
  if (socket != kNone) close(socket);
  socket = kNone;
}

int Receive(Socket socket, std::span<std::uint8_t> bytes) {
  ssize_t count = 0;
  do {
    count = recv(socket, bytes.data(), bytes.size(), 0);
  } while (count < 0 && errno == EINTR);
  return Outcome(count, true);
}

int Send(Socket socket, std::span<const std::uint8_t> bytes) {
  ssize_t count = 0;
  do {
    count = send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
  } while (count < 0 && errno == EINTR);
  return Outcome(count, false);
}

void SendDatagram(Socket socket, const Datagram& to) {
  const sockaddr_in peer = AddressOf(to.ip, to.port);
  sendto(socket, to.bytes.data(), to.bytes.size(), MSG_NOSIGNAL, reinterpret_cast<const sockaddr*>(&peer),
         sizeof peer);
}

bool Poll(std::vector<pollfd>& polled, int milliseconds) {
  return poll(polled.data(), polled.size(), milliseconds) >= 0;
}

std::string Problem() { return std::strerror(errno); }

}  // namespace tavlyn::sim::net
