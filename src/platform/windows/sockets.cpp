#include <winsock2.h>

#include "platform/handle_table.h"
#include "platform/windows/backend.h"

namespace tavlyn::platform {
namespace {

class SystemSockets final : public Sockets {
 public:
  std::int32_t Send(Handle socket, std::span<const std::uint8_t> bytes) override {
    const auto native = sockets_.Find(socket);
    if (!native) return SOCKET_ERROR;
    return ::send(*native, reinterpret_cast<const char*>(bytes.data()), static_cast<int>(bytes.size()), 0);
  }

  std::int32_t Recv(Handle socket, std::span<std::uint8_t> bytes) override {
    const auto native = sockets_.Find(socket);
    if (!native) return SOCKET_ERROR;
    return ::recv(*native, reinterpret_cast<char*>(bytes.data()), static_cast<int>(bytes.size()), 0);
  }

  std::int32_t Close(Handle socket) override {
    const auto native = sockets_.Remove(socket);
    if (!native) return SOCKET_ERROR;
    return ::closesocket(*native);
  }

 private:
  HandleTable<SOCKET> sockets_;
};

}  // namespace

Sockets& WindowsSockets() {
  static SystemSockets sockets;
  return sockets;
}

}  // namespace tavlyn::platform
