// The sockets of this machine under one set of names, as far as carriers need them. None of it waits unless
// it says so, and none raises SIGPIPE.
#pragma once

#ifdef _WIN32
#include <winsock2.h>

// winsock2.h has to come first.
#include <ws2tcpip.h>
#else
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#endif

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tavlyn::sim::net {

using Socket = decltype(pollfd::fd);
inline constexpr Socket kNone = static_cast<Socket>(-1);

using Ip = std::array<std::uint8_t, 4>;

// As the system's own calls take it.
sockaddr_in AddressOf(const Ip& ip, std::uint16_t port);

enum class Kind { kStream, kDatagram };

// Bound to the address; of a stream one that listens. kNone: Problem tells why.
Socket Open(Kind kind, const Ip& ip, std::uint16_t port);
[[nodiscard]] std::uint16_t PortOf(Socket bound);
// kNone: nobody is there.
Socket Accept(Socket listening);
// Sets it to kNone; one that is so already stays so.
void Close(Socket& socket);

// The count; kLater: nothing to take, or no room; kOver: the other side has hung up.
inline constexpr int kLater = -1;
inline constexpr int kOver = -2;
int Receive(Socket socket, std::span<std::uint8_t> bytes);
int Send(Socket socket, std::span<const std::uint8_t> bytes);

struct Datagram {
  std::vector<std::uint8_t> bytes;
  Ip ip{};
  std::uint16_t port = 0;  // of who sent it
};
// False: none is there.
bool ReceiveDatagram(Socket socket, Datagram& datagram);
void SendDatagram(Socket socket, const Datagram& to);

// Waits as poll() does; the times in milliseconds, below 0 without end. False: nothing can be told of any.
bool Poll(std::vector<pollfd>& polled, int milliseconds);

// Why the last Open failed.
std::string Problem();

}  // namespace tavlyn::sim::net
