#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "tests/boundary/bare_port.h"

namespace tavlyn::boundary {
int Checked(int result, const char* what) {
  if (result < 0) throw std::runtime_error(std::string(what) + ": " + std::strerror(errno));
  return result;
}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
  std::swap(number_, other.number_);
  return *this;
}

void Descriptor::Close() {
  if (number_ >= 0) close(number_);
  number_ = -1;
}

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

BarePort AddPort(PortFolder& folder, int number) {
  Descriptor far(Checked(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC), "posix_openpt"));
  Checked(grantpt(far.get()), "grantpt");
  Checked(unlockpt(far.get()), "unlockpt");
  std::array<char, 64> name{};
  Checked(-ptsname_r(far.get(), name.data(), name.size()), "ptsname");
  Descriptor near(Checked(open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC), name.data()));
  termios settings{};
  Checked(tcgetattr(near.get(), &settings), "tcgetattr");
  cfmakeraw(&settings);
  Checked(tcsetattr(near.get(), TCSANOW, &settings), "tcsetattr");
  folder.AddFile(number, name.data());
  return {std::move(far), std::move(near)};
}

}  // namespace tavlyn::boundary
