// Why a device cannot be reached: on USB, on a serial port, or behind an adapter.
#pragma once

#include <optional>
#include <string>

#include "tools/tavlynctl/link.h"
#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

// Throws Failure if nothing accepts a connection at the address: the library would wait for minutes. A whole
// network is left to the library.
void RequirePeer(const Link& link);

// Why no reader was found on a port or at an address.
std::optional<Failure> ReachProblem(const Link& link);

// What the system knows.

// Which known USB devices the user may not open, or which one another program holds, and what to do about it;
// empty if there is none.
std::string PermissionProblem();

enum class PortState { kMissing, kForbidden, kHeld, kFree };

struct Port {
  PortState state;
  std::string text;  // what is wrong with it
};
Port LookAtPort(unsigned number);

enum class Peer { kTakes, kRefuses, kSilent, kUnreachable };

// Connects, and closes the connection.
Peer TryPeer(const Ip& ip, std::uint16_t port);
// The programs on this machine that have a connection there: "name (process 12)"; empty if none.
std::string HoldersOfPeer(const Ip& ip, std::uint16_t port);

}  // namespace tavlyn::ctl
