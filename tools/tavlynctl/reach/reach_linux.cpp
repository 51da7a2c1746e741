#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>

#include "platform/linux/com_paths.h"
#include "tools/descriptor_linux.h"
#include "tools/tavlynctl/reach/nodes_linux.h"
#include "tools/tavlynctl/reach/reach.h"

namespace tavlyn::ctl {
namespace {

constexpr int kConnectLimit = 4000;  // milliseconds; a lost first packet is sent again after one second

// Held against everyone, or against root by the lock that this library takes too.
bool IsHeld(const std::string& node) {
  const Descriptor port(open(node.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  if (port.Number() < 0) return errno == EBUSY;
  return flock(port.Number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

Peer Outcome(int error) {
  if (error == 0) return Peer::kTakes;
  if (error == ECONNREFUSED) return Peer::kRefuses;
  return error == ETIMEDOUT ? Peer::kSilent : Peer::kUnreachable;
}

}  // namespace

Port LookAtPort(unsigned number) {
  const std::string node = platform::ComPath(static_cast<std::uint16_t>(number)).c_str();
  const std::string name = "COM" + std::to_string(number) + " (" + node + ")";
  if (access(node.c_str(), F_OK) != 0 && errno != EACCES) {
    return {PortState::kMissing, name + " does not exist; docs/linux.md says which file a port is"};
  }
  if (IsForbidden(node)) {
    return {PortState::kForbidden, "this user may not open " + name + ", " + ModeOf(node) +
                                       "; join that group, or ask the owner for the right"};
  }
  if (!IsHeld(node)) return {PortState::kFree, ""};
  const std::string holders = HoldersOf(node);
  return {PortState::kHeld, name + " is held by " + (holders.empty() ? "another program" : holders)};
}

Peer TryPeer(const Ip& ip, std::uint16_t port) {
  const Descriptor tried(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  sockaddr_in peer{};
  peer.sin_family = AF_INET;
  peer.sin_port = htons(port);
  std::memcpy(&peer.sin_addr, ip.data(), ip.size());
  if (connect(tried.Number(), reinterpret_cast<const sockaddr*>(&peer), sizeof peer) == 0)
    return Peer::kTakes;
  if (errno != EINPROGRESS) return Outcome(errno);
  pollfd one{tried.Number(), POLLOUT, 0};
  if (poll(&one, 1, kConnectLimit) <= 0) return Peer::kSilent;
  int error = 0;
  socklen_t size = sizeof error;
  getsockopt(tried.Number(), SOL_SOCKET, SO_ERROR, &error, &size);
  return Outcome(error);
}

// "0: 0100007F:0016 0500007F:2711 01 …": local and remote end, the state, and in the tenth column the inode.
std::string HoldersOfPeer(const Ip& ip, std::uint16_t port) {
  constexpr unsigned kEstablished = 1;
  std::uint32_t wanted = 0;
  std::memcpy(&wanted, ip.data(), ip.size());
  std::ifstream table("/proc/net/tcp");
  for (std::string line; std::getline(table, line);) {
    unsigned remote = 0;
    unsigned remotePort = 0;
    unsigned state = 0;
    unsigned long inode = 0;
    if (std::sscanf(line.c_str(), "%*d: %*x:%*x %x:%x %x %*s %*s %*s %*s %*s %lu", &remote, &remotePort,
                    &state, &inode) != 4) {
      continue;
    }
    if (remote != wanted || remotePort != port || state != kEstablished) continue;
    std::string holders = HoldersOfLink("socket:[" + std::to_string(inode) + "]");
    return holders.empty() ? "another program" : holders;
  }
  return {};
}

}  // namespace tavlyn::ctl
