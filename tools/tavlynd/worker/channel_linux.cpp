#include <poll.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

#include "tools/tavlynd/worker/channel.h"

namespace tavlyn::agent {
namespace {

constexpr std::size_t kTakenAtOnce = 65536;
constexpr unsigned kTimeToEnd = 30;  // s

// After the command the end of the standard input is noticed. The alarm ends a process that never gets there.
void EndSoon(int) { alarm(kTimeToEnd); }

}  // namespace

Channel::Channel() {
  std::signal(SIGPIPE, SIG_IGN);
  prctl(PR_SET_PDEATHSIG, SIGHUP);
  // The parent may have gone before that.
  pollfd input{STDIN_FILENO, POLLIN, 0};
  if (poll(&input, 1, 0) > 0 && (input.revents & POLLHUP) != 0) throw ParentGone();
}

Command::Command() { std::signal(SIGHUP, EndSoon); }
Command::~Command() { std::signal(SIGHUP, SIG_DFL); }

void Channel::Say(const Json& said) {
  const std::string line = LineOf(said);
  for (std::size_t done = 0; done < line.size();) {
    const ssize_t count = write(STDOUT_FILENO, line.data() + done, line.size() - done);
    if (count < 0 && errno != EINTR) throw ParentGone();
    if (count > 0) done += static_cast<std::size_t>(count);
  }
}

std::string Channel::Received(std::chrono::milliseconds longest) {
  pollfd input{STDIN_FILENO, POLLIN, 0};
  if (poll(&input, 1, static_cast<int>(longest.count())) <= 0) return {};
  std::array<char, kTakenAtOnce> bytes;
  const ssize_t count = read(STDIN_FILENO, bytes.data(), bytes.size());
  if (count == 0 || (count < 0 && errno != EINTR)) throw ParentGone();
  return {bytes.data(), count > 0 ? static_cast<std::size_t>(count) : 0};
}

std::optional<Json> Channel::Take(std::chrono::milliseconds longest) {
  if (auto held = lines_.Next()) return held;
  if (!lines_.Add(Received(longest))) throw ParentGone();
  return lines_.Next();
}

}  // namespace tavlyn::agent
