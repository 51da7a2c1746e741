#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "tools/tavlynd/service.h"

namespace tavlyn::agent {
namespace {

int toldAt = -1;
int heardAt = -1;

// A pipe in place of a blocked signal: what is blocked stays so in every program that is started.
void Note(int number) {
  const int before = errno;
  const auto sign = static_cast<char>(number);
  const ssize_t written = write(toldAt, &sign, 1);
  static_cast<void>(written);  // so many are there that the loop turns anyway
  errno = before;
}

std::string Variable(const char* name) {
  const char* value = std::getenv(name);
  std::string text = value == nullptr ? "" : value;
  unsetenv(name);
  return text;
}

}  // namespace

Signals::Signals() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) return;
  heardAt = ends[0];
  toldAt = ends[1];
  struct sigaction action {};
  action.sa_handler = Note;
  action.sa_flags = SA_RESTART;
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) sigaction(number, &action, nullptr);
  std::signal(SIGPIPE, SIG_IGN);
}

int Signals::Descriptor() const { return heardAt; }

int Signals::Next() const {
  char sign = 0;
  return read(heardAt, &sign, 1) == 1 ? sign : 0;
}

Manager::Manager() : place_(Variable("NOTIFY_SOCKET")) {
  const std::string interval = Variable("WATCHDOG_USEC");
  const std::string process = Variable("WATCHDOG_PID");
  std::int64_t microseconds = 0;
  std::from_chars(interval.data(), interval.data() + interval.size(), microseconds);
  if (process.empty() || process == std::to_string(getpid())) every_ = microseconds / 2000;
  if (!place_.empty()) socket_ = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
}

Manager::~Manager() {
  if (socket_ >= 0) close(socket_);
}

// A name that begins with @ is in no folder; its first byte is zero.
void Manager::Send(const std::string& lines) const {
  sockaddr_un address{};
  if (socket_ < 0 || place_.size() >= sizeof address.sun_path) return;
  address.sun_family = AF_UNIX;
  std::memcpy(address.sun_path, place_.data(), place_.size());
  if (place_.front() == '@') address.sun_path[0] = '\0';
  const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + place_.size());
  sendto(socket_, lines.data(), lines.size(), MSG_NOSIGNAL, reinterpret_cast<const sockaddr*>(&address),
         size);
}

void Manager::Ready(const std::string& status) const { Send("READY=1\nSTATUS=" + status + "\n"); }

void Manager::Reloading() const {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  const std::int64_t microseconds = std::int64_t{now.tv_sec} * 1'000'000 + now.tv_nsec / 1000;
  Send("RELOADING=1\nMONOTONIC_USEC=" + std::to_string(microseconds) + "\n");
}

void Manager::Stopping() const { Send("STOPPING=1\n"); }

void Manager::TendWatchdog(std::int64_t now) {
  if (every_ == 0 || now - last_ < every_ / 2) return;
  last_ = now;
  Send("WATCHDOG=1\n");
}

std::string HostName() {
  char name[256] = {};
  return gethostname(name, sizeof name - 1) == 0 ? name : "";
}

std::int64_t SteadyMs() {
  timespec now{};
  clock_gettime(CLOCK_BOOTTIME, &now);
  return std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1'000'000;
}

}  // namespace tavlyn::agent
