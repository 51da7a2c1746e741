#include "tools/tavlynctl/reach/reach.h"

namespace tavlyn::ctl {
namespace {

std::string PeerText(const Link& link) { return Dotted(link.ip) + ":" + std::to_string(link.tcpPort); }

std::optional<Failure> HeldPeer(const Link& link) {
  const std::string holders = HoldersOfPeer(link.ip, link.tcpPort);
  if (holders.empty()) return std::nullopt;
  return Failure(kNoPermission, PeerText(link) + " is held by " + holders);
}

const char* ProblemOf(Peer peer) {
  switch (peer) {
    case Peer::kRefuses: return " refuses the connection; is the TCP port right?";
    case Peer::kSilent: return " does not answer; is the address right, and the adapter on?";
    case Peer::kUnreachable: return " cannot be reached from this machine's networks";
    case Peer::kTakes: break;
  }
  return nullptr;
}

bool IsWholeNetwork(const Link& link) { return link.ip[3] == 0; }

// The ports that may hide a reader; if none exists, the first missing one.
std::optional<Failure> PortProblem(const Link& link) {
  std::string hidden;
  std::string absent;
  bool anyThere = false;
  for (unsigned number = link.firstPort; number <= link.lastPort; ++number) {
    const Port port = LookAtPort(number);
    if (port.state == PortState::kMissing) {
      if (absent.empty()) absent = port.text;
      continue;
    }
    anyThere = true;
    if (port.state != PortState::kFree) hidden += (hidden.empty() ? "" : "; ") + port.text;
  }
  if (!hidden.empty()) return Failure(kNoPermission, hidden);
  if (anyThere) return std::nullopt;
  const std::string none = link.firstPort == link.lastPort ? "" : "there is no port " + Where(link) + ": ";
  return Failure(kNoDevice, none + absent);
}

}  // namespace

void RequirePeer(const Link& link) {
  if (link.kind != LinkKind::kEthernet || IsWholeNetwork(link)) return;
  const char* problem = ProblemOf(TryPeer(link.ip, link.tcpPort));
  if (problem == nullptr) return;
  if (const auto held = HeldPeer(link)) throw Failure(*held);
  throw Failure(kNoDevice, PeerText(link) + problem);
}

std::optional<Failure> ReachProblem(const Link& link) {
  if (link.kind == LinkKind::kSerial) return PortProblem(link);
  if (link.kind != LinkKind::kEthernet || IsWholeNetwork(link)) return std::nullopt;
  if (auto held = HeldPeer(link)) return held;
  return Failure(kNoDevice,
                 PeerText(link) +
                     " takes the connection, but no reader answers; an adapter serves one program at a "
                     "time, which may run on another machine");
}

}  // namespace tavlyn::ctl
