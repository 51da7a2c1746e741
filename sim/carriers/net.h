// This machine's sockets under one set of names, as far as carriers need them. Nothing here waits unless it
// says so, and nothing raises SIGPIPE.
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

// In the form that the system's own calls take.
sockaddr_in AddressOf(const Ip& ip, std::uint16_t port);

enum class Kind { kStream, kDatagram };

// Bound to the address; a stream socket listens. kNone on failure; Problem says why.
Socket Open(Kind kind, const Ip& ip, std::uint16_t port);
[[nodiscard]] std::uint16_t PortOf(Socket bound);
// kNone if nobody is there.
Socket Accept(Socket listening);
// Sets it to kNone, which it may already be.
void Close(Socket& socket);

// The count; kLater if there is nothing to take, or no room; kOver if the other side has hung up.
inline constexpr int kLater = -1;
inline constexpr int kOver = -2;
int Receive(Socket socket, std::span<std::uint8_t> bytes);
int Send(Socket socket, std::span<const std::uint8_t> bytes);

struct Datagram {
  std::vector<std::uint8_t> bytes;
  Ip ip{};
  std::uint16_t port = 0;  // of the sender
};
// False if none is there.
bool ReceiveDatagram(Socket socket, Datagram& datagram);
void SendDatagram(Socket socket, const Datagram& to);

// Waits as poll() does, for that many milliseconds, below 0 without end. False if it could not wait.
bool Poll(std::vector<pollfd>& polled, int milliseconds);

// Why the last Open failed.
std::string Problem();

}  // namespace tavlyn::sim::net
