#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "tests/boundary/far_end.h"
#include "tests/boundary/library.h"

namespace tavlyn::boundary {
namespace {

namespace fs = std::filesystem;

constexpr int kForever = -1;
constexpr int kFrameBytes = 5;

int Checked(int result, const char* what) {
  if (result < 0) throw std::runtime_error(std::string(what) + ": " + std::strerror(errno));
  return result;
}

// True when the first of them is readable or has hung up; false when `stop` is readable or the time is over.
bool WaitFor(int descriptor, int stop, int milliseconds) {
  pollfd both[2] = {{descriptor, POLLIN, 0}, {stop, POLLIN, 0}};
  return poll(both, 2, milliseconds) > 0 && both[1].revents == 0 && both[0].revents != 0;
}

sockaddr_in Native(Ip ip, std::uint16_t port) {
  sockaddr_in native{};
  native.sin_family = AF_INET;
  native.sin_port = htons(port);
  std::memcpy(&native.sin_addr, ip.data(), ip.size());
  return native;
}

Descriptor Bound(int type, Ip ip, std::uint16_t port) {
  Descriptor bound(Checked(socket(AF_INET, type | SOCK_CLOEXEC, 0), "socket"));
  const sockaddr_in native = Native(ip, port);
  Checked(bind(bound.get(), reinterpret_cast<const sockaddr*>(&native), sizeof native), "bind");
  return bound;
}

std::uint16_t PortOf(int bound) {
  sockaddr_in native{};
  socklen_t size = sizeof native;
  Checked(getsockname(bound, reinterpret_cast<sockaddr*>(&native), &size), "getsockname");
  return ntohs(native.sin_port);
}

}  // namespace

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
  std::swap(number_, other.number_);
  return *this;
}

void Descriptor::Close() {
  if (number_ >= 0) close(number_);
  number_ = -1;
}

int OpenDescriptors() {
  return static_cast<int>(std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator()));
}

void Pause(Milliseconds length) { poll(nullptr, 0, static_cast<int>(length.count())); }

bool Readable(int descriptor, Milliseconds limit) {
  pollfd one{descriptor, POLLIN, 0};
  return poll(&one, 1, static_cast<int>(limit.count())) > 0 && one.revents != 0;
}

std::string ReadUntilSilence(int descriptor, Milliseconds silence) {
  std::string text;
  std::array<char, 4096> room{};
  while (Readable(descriptor, silence)) {
    const ssize_t count = read(descriptor, room.data(), room.size());
    if (count <= 0) break;
    text.append(room.data(), static_cast<std::size_t>(count));
  }
  return text;
}

void Send(int descriptor, const std::string& text) {
  if (write(descriptor, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
    throw std::runtime_error("the far end cannot write");
  }
}

void Answering::TakeByte(std::uint8_t) {
  if (++taken_ < kFrameBytes) return;
  taken_ = 0;
  Send(answer_);
}

void Flooding::TakeByte(std::uint8_t) {
  if (!spoken_) Flood(1'000'000);
  spoken_ = true;
}

Thread::Thread(std::function<void(int stop)> run) {
  int ends[2];
  Checked(pipe2(ends, O_CLOEXEC), "pipe");
  stopRead_ = Descriptor(ends[0]);
  stopWrite_ = Descriptor(ends[1]);
  thread_ = std::thread(std::move(run), ends[0]);
}

Thread::~Thread() {
  stopWrite_.Close();
  thread_.join();
}

PortFolder::PortFolder() {
  std::string name = "/tmp/tavlyn-ports-XXXXXX";
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for ports");
  folder_ = name;
  fs::permissions(folder_, fs::perms(0755));
  SetVariable("TAVLYNAPI_PORT_DIR", folder_.c_str());
}

PortFolder::~PortFolder() {
  SetVariable("TAVLYNAPI_PORT_DIR", nullptr);
  fs::remove_all(folder_);
}

std::string PortFolder::PathOf(int number) const { return folder_ + "/com" + std::to_string(number); }

Descriptor PortFolder::AddPort(int number) {
  Descriptor far(Checked(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC), "posix_openpt"));
  Checked(grantpt(far.get()), "grantpt");
  Checked(unlockpt(far.get()), "unlockpt");
  std::array<char, 64> name{};
  Checked(-ptsname_r(far.get(), name.data(), name.size()), "ptsname");
  // One near end stays open: without any the far end reads as hung up.
  Descriptor near(Checked(open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC), name.data()));
  termios settings{};
  Checked(tcgetattr(near.get(), &settings), "tcgetattr");
  cfmakeraw(&settings);
  Checked(tcsetattr(near.get(), TCSANOW, &settings), "tcsetattr");
  kept_[number] = std::move(near);
  AddFile(number, name.data());
  return far;
}

void PortFolder::AddFile(int number, const std::string& target) {
  fs::remove(PathOf(number));
  fs::create_symlink(target, PathOf(number));
}

PortDevice::PortDevice(PortFolder& folder, int number, sim::ByteDevice& device, sim::LineManner manner)
    : port_(device, folder.PathOf(number)),
      kept_(Checked(open(folder.PathOf(number).c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC), "port")),
      attendant_({&port_}) {
  With([&] { port_.Manner() = manner; });
}

TcpDevice::TcpDevice(Ip ip, sim::ByteDevice& device, sim::LineManner manner, sim::MacAddress mac)
    : adapter_(device, {mac, ip}, 0), attendant_({&adapter_}) {
  if (!adapter_.IsPlugged()) throw std::runtime_error("no adapter");
  With([&] { adapter_.Manner() = manner; });
}

DeafPort::DeafPort(Ip ip) : listener_(Bound(SOCK_STREAM, ip, 0)), port_(PortOf(listener_.get())) {
  Checked(listen(listener_.get(), SOMAXCONN), "listen");
}

std::uint16_t ClosedTcpPort(Ip ip) {
  const Descriptor bound = Bound(SOCK_STREAM, ip, 0);
  return PortOf(bound.get());
}

UdpPeer::UdpPeer(Ip ip, std::uint16_t port, Answer answer, Milliseconds after)
    : socket_(Bound(SOCK_DGRAM, ip, port)), thread_([this, answer, after](int stop) {
        while (WaitFor(socket_.get(), stop, kForever)) {
          Bytes datagram(512);
          sockaddr_in from{};
          socklen_t size = sizeof from;
          const ssize_t count = recvfrom(socket_.get(), datagram.data(), datagram.size(), 0,
                                         reinterpret_cast<sockaddr*>(&from), &size);
          if (count < 0) continue;
          datagram.resize(static_cast<std::size_t>(count));
          ++received_;
          Pause(after);
          for (const Bytes& one : answer(datagram)) {
            sendto(socket_.get(), one.data(), one.size(), 0, reinterpret_cast<const sockaddr*>(&from), size);
          }
        }
      }) {}

}  // namespace tavlyn::boundary
