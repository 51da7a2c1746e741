#include "sim/carriers/net.h"

namespace tavlyn::sim::net {
namespace {

constexpr int kAddressBytes = sizeof(sockaddr_in);

// Once, before the first socket.
void StartUp() {
  static const int started = [] {
    WSADATA data;
    return WSAStartup(MAKEWORD(2, 2), &data);
  }();
  static_cast<void>(started);
}

void DoNotWait(Socket socket) {
  u_long on = 1;
  ioctlsocket(socket, static_cast<long>(FIONBIO), &on);
}

// The commands that tavlynsim starts must not keep its ports.
void DoNotInherit(Socket socket) {
  SetHandleInformation(reinterpret_cast<HANDLE>(socket), HANDLE_FLAG_INHERIT, 0);
}

int Outcome(int count, bool endsAtZero) {
  if (count > 0 || (count == 0 && !endsAtZero)) return count;
  return count < 0 && WSAGetLastError() == WSAEWOULDBLOCK ? kLater : kOver;
}

}  // namespace

Socket Open(Kind kind, const Ip& ip, std::uint16_t port) {
  StartUp();
  const bool streams = kind == Kind::kStream;
  const Socket made = socket(AF_INET, streams ? SOCK_STREAM : SOCK_DGRAM, 0);
  if (made == kNone) return kNone;
  DoNotInherit(made);
  DoNotWait(made);
  const sockaddr_in address = AddressOf(ip, port);
  constexpr int kWaiting = 1024;
  const bool bound = bind(made, reinterpret_cast<const sockaddr*>(&address), kAddressBytes) == 0;
  if (bound && (!streams || listen(made, kWaiting) == 0)) return made;
  const int reason = WSAGetLastError();
  closesocket(made);
  WSASetLastError(reason);
  return kNone;
}

Socket Accept(Socket listening) {
  const Socket accepted = accept(listening, nullptr, nullptr);
  if (accepted == kNone) return kNone;
  DoNotInherit(accepted);
  DoNotWait(accepted);
  const BOOL on = TRUE;
  setsockopt(accepted, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on), sizeof on);
  return accepted;
}

void Close(Socket& socket) {
  if (socket != kNone) closesocket(socket);
  socket = kNone;
}

int Receive(Socket socket, std::span<std::uint8_t> bytes) {
  return Outcome(recv(socket, reinterpret_cast<char*>(bytes.data()), static_cast<int>(bytes.size()), 0),
                 true);
}

int Send(Socket socket, std::span<const std::uint8_t> bytes) {
  const auto* chars = reinterpret_cast<const char*>(bytes.data());
  return Outcome(send(socket, chars, static_cast<int>(bytes.size()), 0), false);
}

void SendDatagram(Socket socket, const Datagram& to) {
  const sockaddr_in peer = AddressOf(to.ip, to.port);
  sendto(socket, reinterpret_cast<const char*>(to.bytes.data()), static_cast<int>(to.bytes.size()), 0,
         reinterpret_cast<const sockaddr*>(&peer), kAddressBytes);
}

bool Poll(std::vector<pollfd>& polled, int milliseconds) {
  StartUp();
  return WSAPoll(polled.data(), static_cast<ULONG>(polled.size()), milliseconds) != SOCKET_ERROR;
}

std::string Problem() {
  char text[256];
  const auto number = static_cast<DWORD>(WSAGetLastError());
  DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, number,
                                0, text, sizeof text, nullptr);
  while (length > 0 && (text[length - 1] == '\n' || text[length - 1] == '\r')) --length;
  return length > 0 ? std::string(text, length) : "error " + std::to_string(number);
}

}  // namespace tavlyn::sim::net
