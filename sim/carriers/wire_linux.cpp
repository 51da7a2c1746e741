#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "sim/carriers/wire.h"

namespace tavlyn::sim::wire {
namespace {

constexpr timeval kPatience{1, 0};

template <typename Attach>
int OpenSocket(const char* path, Attach attach) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::size_t length = std::strlen(path);
  if (length >= sizeof address.sun_path) return net::kNone;
  std::memcpy(address.sun_path, path, length + 1);
  const int made = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (made < 0 || attach(made, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return made;
  close(made);
  return net::kNone;
}

}  // namespace

net::Socket Connect(const char* name) {
  return OpenSocket(
      name, [](int made, const sockaddr* address, socklen_t size) { return connect(made, address, size); });
}

net::Socket Listen(std::string& folder, std::string& name) {
  std::error_code none;
  std::string made = (std::filesystem::temp_directory_path(none) / "tavlynsim-XXXXXX").string();
  if (mkdtemp(made.data()) == nullptr) return net::kNone;
  folder = made;
  name = folder + "/socket";
  constexpr int kWaiting = 16;
  return OpenSocket(name.c_str(), [](int socket, const sockaddr* address, socklen_t size) {
    return bind(socket, address, size) == 0 ? listen(socket, kWaiting) : -1;
  });
}

net::Socket Accept(net::Socket listening) {
  const int client = accept4(listening, nullptr, nullptr, SOCK_CLOEXEC);
  if (client < 0) return net::kNone;
  setsockopt(client, SOL_SOCKET, SO_RCVTIMEO, &kPatience, sizeof kPatience);
  setsockopt(client, SOL_SOCKET, SO_SNDTIMEO, &kPatience, sizeof kPatience);
  return client;
}

}  // namespace tavlyn::sim::wire
