#include <winsock2.h>

// winsock2.h has to come first.
#include <windows.h>

#include <cstring>

#include "tools/tavlynctl/reach/reach.h"

namespace tavlyn::ctl {
namespace {

constexpr long kConnectLimit = 4;  // seconds; a lost first packet is sent again after one

class Winsock {
 public:
  Winsock() {
    WSADATA data{};
    WSAStartup(MAKEWORD(2, 2), &data);
  }
  ~Winsock() { WSACleanup(); }
  Winsock(const Winsock&) = delete;
  Winsock& operator=(const Winsock&) = delete;
};

Peer Outcome(int error) {
  if (error == 0) return Peer::kTakes;
  if (error == WSAECONNREFUSED) return Peer::kRefuses;
  return error == WSAETIMEDOUT ? Peer::kSilent : Peer::kUnreachable;
}

Peer EndOf(SOCKET tried) {
  fd_set done;
  fd_set failed;
  FD_ZERO(&done);
  FD_ZERO(&failed);
  FD_SET(tried, &done);
  FD_SET(tried, &failed);
  timeval limit{kConnectLimit, 0};
  if (select(0, nullptr, &done, &failed, &limit) <= 0) return Peer::kSilent;
  int error = 0;
  int size = sizeof error;
  getsockopt(tried, SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&error), &size);
  return Outcome(error);
}

Peer Connect(SOCKET tried, const sockaddr_in& peer) {
  u_long on = 1;
  ioctlsocket(tried, static_cast<long>(FIONBIO), &on);
  if (connect(tried, reinterpret_cast<const sockaddr*>(&peer), sizeof peer) == 0) return Peer::kTakes;
  const int error = WSAGetLastError();
  return error == WSAEWOULDBLOCK ? EndOf(tried) : Outcome(error);
}

}  // namespace

// On Windows every user may open these devices.
std::string PermissionProblem() { return {}; }

// A port that is open cannot be opened again; Windows does not say who has it open.
Port LookAtPort(unsigned number) {
  const std::string name = "COM" + std::to_string(number);
  HANDLE port = CreateFileA(("\\\\.\\" + name).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                            OPEN_EXISTING, 0, nullptr);
  if (port != INVALID_HANDLE_VALUE) {
    CloseHandle(port);
    return {PortState::kFree, ""};
  }
  switch (GetLastError()) {
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION: return {PortState::kHeld, name + " is held by another program"};
    case ERROR_FILE_NOT_FOUND: return {PortState::kMissing, name + " does not exist"};
    default: return {PortState::kFree, ""};
  }
}

Peer TryPeer(const Ip& ip, std::uint16_t port) {
  const Winsock winsock;
  sockaddr_in peer{};
  peer.sin_family = AF_INET;
  peer.sin_port = htons(port);
  std::memcpy(&peer.sin_addr, ip.data(), ip.size());
  const SOCKET tried = socket(AF_INET, SOCK_STREAM, 0);
  const Peer outcome = Connect(tried, peer);
  closesocket(tried);
  return outcome;
}

std::string HoldersOfPeer(const Ip& /*ip*/, std::uint16_t /*port*/) { return {}; }

}  // namespace tavlyn::ctl
