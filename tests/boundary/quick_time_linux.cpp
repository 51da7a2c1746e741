// Time that only waiting advances: a sleep costs nothing and is added to the clock, a poll that times out has
// taken exactly its time-out, and while programs work the clock stands still, however busy the machine is.
// Linked into a test program or preloaded into others. Processes that find the file named by
// TAVLYN_QUICK_CLOCK share its clock; what a simulator does by the clock then happens while the program that
// it serves sleeps.
//
// A program that sleeps so that another process can answer checks for the answer next. If there is none yet,
// a check of a socket waits until the simulator that shares the clock has looked and found nothing left to
// do; any other check really waits for as long as the program slept, and then for the simulator too.
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <utility>

#include "tests/boundary/quick_time.h"

namespace {

constexpr std::int64_t kSecond = 1'000'000'000;
constexpr std::int64_t kMillisecond = 1'000'000;
constexpr std::int64_t kStart = 1000 * kSecond;  // not 0, which programs take as never

using Time = std::atomic<std::int64_t>;
using Count = std::atomic<std::uint32_t>;
static_assert(Time::is_always_lock_free && sizeof(Time) == sizeof(std::int64_t));
static_assert(Count::is_always_lock_free);

// The file begins with it; tests/boundary/program_linux.cpp makes it.
struct Shared {
  Time passed{0};
  Count simulators{0};
  Count asked{0};     // whether there is anything left to do
  Count answered{0};  // the newest question that was answered: nothing
};

Shared own;
Shared* shared = &own;
bool simulates = false;

constexpr std::int64_t kMostOwed = 250 * kMillisecond;
thread_local std::int64_t owed = 0;  // real time owed to the process that is to answer

// Whoever answers in this process does it in a wait, at once.
void (*answerNow)() = nullptr;
thread_local bool answering = false;

std::int64_t Nanoseconds(const timespec& time) { return time.tv_sec * kSecond + time.tv_nsec; }

timespec Timespec(std::int64_t time) {
  return {static_cast<std::time_t>(time / kSecond), static_cast<long>(time % kSecond)};
}

void PassUntil(std::int64_t moment) {
  std::int64_t now = shared->passed;
  while (now < moment && !shared->passed.compare_exchange_weak(now, moment)) {
  }
}

__attribute__((constructor)) void ShareClock() {
  const char* name = std::getenv("TAVLYN_QUICK_CLOCK");
  if (name == nullptr) return;
  const int file = open(name, O_RDWR | O_CLOEXEC);
  void* mapped = mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  close(file);
  if (mapped == MAP_FAILED) std::abort();
  shared = static_cast<Shared*>(mapped);
  simulates = std::strcmp(program_invocation_short_name, "tavlynsim") == 0;
  if (simulates) ++shared->simulators;
}

__attribute__((destructor)) void LeaveClock() {
  if (simulates) --shared->simulators;
}

int ReallyPoll(pollfd* polled, nfds_t count, const timespec* limit) {
  return static_cast<int>(syscall(SYS_ppoll, polled, count, limit, nullptr, 0));
}

// A simulator's wait: time passes in the others' waits, or here, when nobody else has let it pass.
int WaitAndTell(pollfd* polled, nfds_t count, int milliseconds) {
  const std::int64_t end = shared->passed + milliseconds * kMillisecond;
  const auto isOver = [&] { return milliseconds >= 0 && shared->passed >= end; };
  for (std::int64_t waited = 0; milliseconds < 0 || waited <= milliseconds; ++waited) {
    std::uint32_t asked = 0;
    do {
      asked = shared->asked;
      const timespec limit = Timespec(milliseconds != 0 && shared->answered == asked ? kMillisecond : 0);
      const int ready = ReallyPoll(polled, count, &limit);
      if (ready != 0 || isOver()) return ready;
    } while (shared->answered.exchange(asked) != asked);
  }
  PassUntil(end);
  return 0;
}

// True when a simulator had nothing left to do after this was called; false if there is none to ask.
bool HasSimulatorRested() {
  if (simulates || shared->simulators != 1) return false;
  constexpr std::int64_t kStep = kMillisecond / 10;
  constexpr std::int64_t kMostSteps = 10 * kSecond / kStep;  // it may have been killed
  const std::uint32_t question = ++shared->asked;
  for (std::int64_t step = 0; step < kMostSteps; ++step) {
    if (static_cast<std::int32_t>(shared->answered - question) >= 0) return true;
    const timespec pause = Timespec(kStep);
    ReallyPoll(nullptr, 0, &pause);
  }
  return false;
}

// Whether an answer that is not there now will not come.
bool IsAnswered() {
  if (answerNow == nullptr || answering) return answering;
  answering = true;
  answerNow();
  answering = false;
  return true;
}

// How much longer a check may take.
std::int64_t TakeOwed() { return std::exchange(owed, 0); }

// A receive that does not wait, except for the time owed.
template <typename Receive>
ssize_t ReceiveOwed(int socket, Receive receive) {
  const ssize_t count = receive();
  const std::int64_t owedNow = TakeOwed();
  if (count >= 0 || errno != EAGAIN) return count;
  if (IsAnswered() || (owedNow != 0 && HasSimulatorRested())) return receive();
  const timespec limit = Timespec(owedNow);
  pollfd one{socket, POLLIN, 0};
  ReallyPoll(&one, 1, &limit);
  return receive();
}

}  // namespace

extern "C" {

int nanosleep(const timespec* wanted, timespec* left) {
  shared->passed += Nanoseconds(*wanted);
  owed = std::min(owed + Nanoseconds(*wanted), kMostOwed);
  if (left != nullptr) *left = {};
  return 0;
}

int clock_gettime(clockid_t clock, timespec* now) {
  if (clock != CLOCK_MONOTONIC) return static_cast<int>(syscall(SYS_clock_gettime, clock, now));
  *now = Timespec(kStart + shared->passed);
  return 0;
}

int clock_nanosleep(clockid_t clock, int flags, const timespec* wanted, timespec* left) {
  timespec now{};
  if ((flags & TIMER_ABSTIME) != 0) clock_gettime(clock, &now);
  const timespec pause = Timespec(std::max<std::int64_t>(Nanoseconds(*wanted) - Nanoseconds(now), 0));
  return nanosleep(&pause, left);
}

int poll(pollfd* polled, nfds_t count, int milliseconds) {
  if (simulates) return WaitAndTell(polled, count, milliseconds);
  const std::int64_t length = std::max(milliseconds, 0) * kMillisecond;
  const std::int64_t end = shared->passed + length;
  const std::int64_t owedToo = TakeOwed();
  const timespec limit = Timespec(IsAnswered() ? 0 : length + owedToo);
  int ready = ReallyPoll(polled, count, milliseconds < 0 ? nullptr : &limit);
  // For a moment neither side has what a terminal carries: it may be on its way to the simulator, then back.
  const timespec carried = Timespec(10 * kMillisecond);
  for (int way = 0; way < 2 && ready == 0 && length + owedToo != 0 && HasSimulatorRested(); ++way) {
    ready = ReallyPoll(polled, count, &carried);
  }
  if (ready == 0) PassUntil(end);
  return ready;
}

// Small pieces would otherwise wait for an acknowledgement, which takes real time.
int connect(int descriptor, const sockaddr* peer, socklen_t size) {
  const int on = 1;
  setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  return static_cast<int>(syscall(SYS_connect, descriptor, peer, size));
}

ssize_t recv(int socket, void* bytes, size_t size, int flags) {
  return ReceiveOwed(socket,
                     [&] { return syscall(SYS_recvfrom, socket, bytes, size, flags, nullptr, nullptr); });
}

ssize_t recvfrom(int socket, void* bytes, size_t size, int flags, sockaddr* peer, socklen_t* length) {
  return ReceiveOwed(socket, [&] { return syscall(SYS_recvfrom, socket, bytes, size, flags, peer, length); });
}
}

namespace tavlyn::boundary {

void TakeItsTime() {}

void AnswerInWaits(void (*answer)()) { answerNow = answer; }

void PassQuickly(std::chrono::milliseconds length) {
  shared->passed += std::chrono::nanoseconds(length).count();
}

}  // namespace tavlyn::boundary
