#include <cstring>

#include "platform/handle_table.h"
#include "platform/parts.h"
#include "platform/windows/system.h"

namespace tavlyn::platform {
namespace {

sockaddr_in ToNative(Address address) {
  sockaddr_in native{};
  native.sin_family = AF_INET;
  native.sin_port = htons(address.port);
  std::memcpy(&native.sin_addr, address.ip.data(), address.ip.size());
  return native;
}

char* Chars(std::span<std::uint8_t> bytes) { return reinterpret_cast<char*>(bytes.data()); }

const char* Chars(std::span<const std::uint8_t> bytes) { return reinterpret_cast<const char*>(bytes.data()); }

int Size(std::span<const std::uint8_t> bytes) { return static_cast<int>(bytes.size()); }

constexpr DWORD kTellUnreachable = IOC_IN | IOC_VENDOR | 12;  // SIO_UDP_CONNRESET, which older headers lack

// Not inheritable, so that programs that the application starts do not hold it open.
SOCKET OpenOwn(int type, int protocol) {
  return WSASocketW(AF_INET, type, protocol, nullptr, 0, WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT);
}

// Otherwise the next receive would fail when a host answers that nothing listens on that port.
void IgnoreUnreachable(SOCKET datagrams) {
  BOOL off = FALSE;
  DWORD none = 0;
  WSAIoctl(datagrams, kTellUnreachable, &off, sizeof off, nullptr, 0, &none, nullptr, nullptr);
}

// A datagram that is too long is cut, which is not a failure.
int Received(int result, std::span<const std::uint8_t> room) {
  return result < 0 && WSAGetLastError() == WSAEMSGSIZE ? Size(room) : result;
}

class SystemSockets final : public Sockets {
 public:
  void CloseLost() {
    while (const auto native = sockets_.RemoveNewest()) ::closesocket(*native);
  }

  bool Startup() override {
    WSADATA data;
    return WSAStartup(MAKEWORD(2, 0), &data) == 0;
  }

  Handle OpenTcp() override { return Add(OpenOwn(SOCK_STREAM, IPPROTO_TCP)); }
  Handle OpenUdp() override {
    const SOCKET native = OpenOwn(SOCK_DGRAM, IPPROTO_UDP);
    IgnoreUnreachable(native);
    return Add(native);
  }

  // Windows itself refuses network 0 and port 0; Wine passes them to a system that takes them for the local
  // host.
  std::int32_t Connect(Handle socket, Address peer) override {
    if (IsNowhere(peer.ip) || peer.port == 0) return SOCKET_ERROR;
    const sockaddr_in native = ToNative(peer);
    return ::connect(Native(socket), reinterpret_cast<const sockaddr*>(&native), sizeof native);
  }

  // A value of one byte is enough.
  void SetBroadcast(Handle socket) override {
    const char on = 1;
    ::setsockopt(Native(socket), SOL_SOCKET, SO_BROADCAST, &on, sizeof on);
  }

  void SetNonBlocking(Handle socket) override {
    u_long on = 1;
    ::ioctlsocket(Native(socket), static_cast<long>(FIONBIO), &on);
  }

  void SetReceiveTimeout(Handle socket, std::uint32_t milliseconds) override {
    const DWORD limit = milliseconds;
    ::setsockopt(Native(socket), SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&limit),
                 sizeof limit);
  }

  std::int32_t Send(Handle socket, std::span<const std::uint8_t> bytes) override {
    return ::send(Native(socket), Chars(bytes), Size(bytes), 0);
  }

  std::int32_t Recv(Handle socket, std::span<std::uint8_t> bytes) override {
    return Received(::recv(Native(socket), Chars(bytes), Size(bytes), 0), bytes);
  }

  std::int32_t SendTo(Handle socket, std::span<const std::uint8_t> bytes, Address peer) override {
    if (IsNowhere(peer.ip)) return SOCKET_ERROR;
    const sockaddr_in native = ToNative(peer);
    return ::sendto(Native(socket), Chars(bytes), Size(bytes), 0, reinterpret_cast<const sockaddr*>(&native),
                    sizeof native);
  }

  std::int32_t RecvFrom(Handle socket, std::span<std::uint8_t> bytes, Address& peer) override {
    sockaddr_in native{};
    int size = sizeof native;
    const int got = Received(
        ::recvfrom(Native(socket), Chars(bytes), Size(bytes), 0, reinterpret_cast<sockaddr*>(&native), &size),
        bytes);
    if (got >= 0) {
      std::memcpy(peer.ip.data(), &native.sin_addr, peer.ip.size());
      peer.port = ntohs(native.sin_port);
    }
    return got;
  }

  std::int32_t Close(Handle socket) override {
    const auto native = sockets_.Remove(socket);
    return native ? ::closesocket(*native) : 0;
  }

  bool HostAddress(std::array<std::uint8_t, 4>& ip) override {
    char name[100];
    if (::gethostname(name, sizeof name) != 0) return false;
    const hostent* host = ::gethostbyname(name);
    if (host == nullptr || host->h_addr_list[0] == nullptr) return false;
    std::memcpy(ip.data(), host->h_addr_list[0], ip.size());
    return true;
  }

 private:
  Handle Add(SOCKET native) {
    return native == INVALID_SOCKET ? kNoHandle : sockets_.Add(native, ::closesocket);
  }
  SOCKET Native(Handle socket) { return sockets_.Find(socket).value_or(INVALID_SOCKET); }

  HandleTable<SOCKET> sockets_;
};

constinit NeverDestroyed<SystemSockets> socketsPart;

}  // namespace

Sockets& TheSockets() { return socketsPart; }

void CloseLostSockets() { socketsPart.CloseLost(); }

}  // namespace tavlyn::platform
