#include <sys/socket.h>
#include <unistd.h>

#include "platform/linux/parts.h"

namespace tavlyn::platform {

std::int32_t LinuxSockets::Send(Handle socket, std::span<const std::uint8_t> bytes) {
  return static_cast<std::int32_t>(send(static_cast<int>(socket), bytes.data(), bytes.size(), MSG_NOSIGNAL));
}

std::int32_t LinuxSockets::Recv(Handle socket, std::span<std::uint8_t> bytes) {
  return static_cast<std::int32_t>(recv(static_cast<int>(socket), bytes.data(), bytes.size(), 0));
}

std::int32_t LinuxSockets::Close(Handle socket) { return close(static_cast<int>(socket)); }

}  // namespace tavlyn::platform
