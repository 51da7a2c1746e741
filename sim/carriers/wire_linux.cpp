#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "sim/carriers/wire.h"

namespace tavlyn::sim::wire {
namespace {

template <typename Attach>
int OpenSocket(const char* path, Attach attach) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::size_t length = std::strlen(path);
  errno = ENAMETOOLONG;
  if (length >= sizeof address.sun_path) return net::kNone;
  std::memcpy(address.sun_path, path, length + 1);
  const int made = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (made < 0 || attach(made, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return made;
  const int reason = errno;
  close(made);
  errno = reason;
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
  return ListenAt(name.c_str());
}

// The mode that the socket has when it gets its name is that of the file.
net::Socket ListenAt(const char* path) {
  constexpr int kWaiting = 128;
  return OpenSocket(path, [](int socket, const sockaddr* address, socklen_t size) {
    const bool bound = fchmod(socket, S_IRUSR | S_IWUSR) == 0 && bind(socket, address, size) == 0;
    return bound ? listen(socket, kWaiting) : -1;
  });
}

net::Socket Accept(net::Socket listening) {
  const int client = accept4(listening, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
  return client < 0 ? net::kNone : client;
}

}  // namespace tavlyn::sim::wire
