// The command-line tool as its user runs it: a process that watches for cards and prints what it reads.
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <chrono>
#include <csignal>
#include <string>

#include "sim/devices/reader.h"
#include "tests/kernel/bus.h"
#include "tests/kernel/checks.h"
#include "tests/kernel/sections.h"

namespace tavlyn::kernel {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr seconds kWatchLimit{60};
constexpr milliseconds kCardTime{1500};

struct Watch {
  pid_t process = -1;
  int output = -1;
};

Watch StartWatch(const char* toolPath) {
  std::array<int, 2> pipeEnds{};
  if (pipe(pipeEnds.data()) != 0) return {};
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, pipeEnds[1], STDOUT_FILENO);
  posix_spawn_file_actions_addclose(&actions, pipeEnds[0]);
  // A line for a card that comes and one for a card that goes.
  std::array<std::string, 4> words{"tavlynctl", "watch", "--count", "4"};
  std::array<char*, 5> argv{words[0].data(), words[1].data(), words[2].data(), words[3].data(), nullptr};
  Watch watch;
  if (posix_spawn(&watch.process, toolPath, &actions, nullptr, argv.data(), environ) != 0) watch.process = -1;
  posix_spawn_file_actions_destroy(&actions);
  close(pipeEnds[1]);
  watch.output = pipeEnds[0];
  return watch;
}

// False once the other side has closed its end.
bool ReadFor(int output, milliseconds time, std::string& text) {
  const auto end = Clock::now() + time;
  while (Clock::now() < end) {
    pollfd polled{output, POLLIN, 0};
    if (poll(&polled, 1, 50) <= 0) continue;
    std::array<char, 512> piece{};
    const ssize_t count = read(output, piece.data(), piece.size());
    if (count <= 0) return false;
    text.append(piece.data(), static_cast<std::size_t>(count));
  }
  return true;
}

// The digits of a text, however they are grouped.
std::string Digits(const std::string& text) {
  std::string digits;
  for (const char c : text) {
    if (std::isxdigit(static_cast<unsigned char>(c)) != 0) {
      digits += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
  }
  return digits;
}

}  // namespace

void WatchChecks(const char* toolPath) {
  // Both read the same from either end.
  const std::array<sim::Bytes, 2> cards{sim::Bytes{0xA5, 0xA5, 0xA5, 0xA5},
                                        sim::Bytes{0xC3, 0xC3, 0xC3, 0xC3}};
  Bus bus;
  const auto reader = sim::Reader::Plain();
  const Plugged plugged(bus, *reader);
  const Watch watch = StartWatch(toolPath);
  Check(watch.process > 0, "the tool starts");
  if (watch.process <= 0) return;

  std::string printed;
  bool running = true;
  const auto end = Clock::now() + kWatchLimit;
  for (std::size_t turn = 0; running && Clock::now() < end; ++turn) {
    bus.Locked([&] { reader->PutCard(cards[turn % cards.size()], 32); });
    running = ReadFor(watch.output, kCardTime, printed);
    bus.Locked([&] { reader->TakeCard(); });
    running = running && ReadFor(watch.output, kCardTime, printed);
  }
  if (running) kill(watch.process, SIGKILL);
  int status = 0;
  waitpid(watch.process, &status, 0);
  close(watch.output);

  (void)std::fputs(printed.c_str(), stdout);
  Check(WIFEXITED(status) && WEXITSTATUS(status) == 0, "the tool ends by itself behind the second card");
  Check(Digits(printed).find("a5a5a5a5") != std::string::npos, "it printed the first card");
  Check(Digits(printed).find("c3c3c3c3") != std::string::npos, "it printed the second card");
}

}  // namespace tavlyn::kernel
