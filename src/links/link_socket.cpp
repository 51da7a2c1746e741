#include "links/link_socket.h"

#include <algorithm>

#include "core/pause.h"
#include "core/state.h"

namespace tavlyn {
namespace {

constexpr std::uint32_t kBeforeRecv = 30;
constexpr std::uint32_t kBetweenRecvs = 20;
constexpr std::uint32_t kAfterSend = 20;
constexpr int kRecvs = 5;

}  // namespace

// cppcheck-suppress passedByValue ; an address is six bytes long
std::int32_t LinkConnect(platform::Address peer) {
  platform::Sockets& sockets = platform::TheHost().sockets;
  if (LinkIsOpen()) sockets.Close(shared.link.LinkSocket);
  shared.link.LinkSocket = platform::kNoHandle;
  if (!sockets.Startup()) return -1;
  shared.link.LinkSocket = sockets.OpenTcp();
  if (!LinkIsOpen()) return -2;
  if (sockets.Connect(shared.link.LinkSocket, peer) != 0) {
    LinkClose();
    return -3;
  }
  sockets.SetNonBlocking(shared.link.LinkSocket);
  return 0;
}

std::int32_t LinkRecv(std::span<std::uint8_t> buffer) {
  if (!LinkIsOpen()) return 0;
  platform::Host& host = platform::TheHost();
  std::ranges::fill(buffer, std::uint8_t{0});
  Pause(kBeforeRecv);
  // want shrinks while got grows, so the loop deliberately ends once half of the request has arrived:
  // adapters send a reply in one piece, and callers compare the last piece with the full length.
  std::size_t want = buffer.size();
  std::size_t got = 0;
  std::int32_t last = 0;
  for (int pass = 0; pass < kRecvs && got < want; ++pass) {
    Pause(kBetweenRecvs);
    last = host.sockets.Recv(shared.link.LinkSocket, buffer.subspan(got, want));
    if (last > 0) {
      got += static_cast<std::size_t>(last);
      want -= static_cast<std::size_t>(last);
    }
  }
  return last;
}

std::int32_t LinkSendNow(std::span<const std::uint8_t> bytes) {
  return LinkIsOpen() ? platform::TheHost().sockets.Send(shared.link.LinkSocket, bytes) : 0;
}

std::int32_t LinkSend(std::span<const std::uint8_t> bytes) {
  if (!LinkIsOpen()) return 0;
  const std::int32_t sent = LinkSendNow(bytes);
  Pause(kAfterSend);
  return sent;
}

std::int32_t LinkClose() {
  if (!LinkIsOpen()) return 0;
  const std::int32_t result = platform::TheHost().sockets.Close(shared.link.LinkSocket);
  if (result == 0) shared.link.LinkSocket = platform::kNoHandle;
  return result;
}

void CloseTunnel() {
  if (shared.link.TunnelLink == 0) return;
  LinkClose();
  shared.link.TunnelLink = 0;
}

}  // namespace tavlyn
