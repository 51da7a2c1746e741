// Only sockets can be polled here, so a socket sends a datagram to itself.
#include "sim/carriers/waker.h"

namespace tavlyn::sim {
namespace {

constexpr net::Ip kSelf{127, 0, 0, 1};

}  // namespace

Waker::Waker() : polled_(net::Open(net::Kind::kDatagram, kSelf, 0)) {}

Waker::~Waker() { net::Close(polled_); }

void Waker::Wake() const { net::SendDatagram(polled_, {{0}, kSelf, net::PortOf(polled_)}); }

void Waker::Clear() const {
  net::Datagram datagram;
  while (net::ReceiveDatagram(polled_, datagram)) continue;
}

}  // namespace tavlyn::sim
