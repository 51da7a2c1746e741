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

std::string ReadAll(int descriptor) {
  std::string text;
  std::array<char, 4096> room{};
  for (pollfd one{descriptor, POLLIN, 0}; poll(&one, 1, 0) > 0;) {
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

Script::Script(std::vector<Step> steps) : steps_(steps.begin(), steps.end()) {}

sim::DueTime Script::NextDue() const {
  return steps_.empty() ? sim::DueTime() : start_ + Milliseconds(steps_.front().at);
}

void Script::Serve() {
  while (!steps_.empty() && *NextDue() <= Clock::now()) {
    const Step step = std::move(steps_.front());
    steps_.pop_front();
    step.act();
  }
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
