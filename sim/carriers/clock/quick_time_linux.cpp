// Time that only waiting advances: a sleep costs nothing and is added to the clock, a poll that times out has
// taken exactly its time-out, and while programs work the clock stands still, however busy the machine is.
// Linked into a test program or preloaded into others. Processes that find the file named by
// TAVLYN_QUICK_CLOCK share its clock; what a simulator does by the clock then happens while the program that
// it serves sleeps.
//
// A program that sleeps so that another process can answer checks for the answer next. If there is none yet,
// a check of a socket waits until the simulator that shares the clock has looked and found nothing left to
// do; any other check really waits for as long as the program slept, and then for the simulator too.
#include <dlfcn.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <pthread.h>
#include <semaphore.h>
#include <sys/epoll.h>
#include <sys/mman.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <utility>

#include "sim/carriers/clock/quick_time.h"

namespace {

constexpr std::int64_t kSecond = 1'000'000'000;
constexpr std::int64_t kMillisecond = 1'000'000;
constexpr std::int64_t kStart = 1000 * kSecond;  // not 0, which programs take as never

using Time = std::atomic<std::int64_t>;
using Count = std::atomic<std::uint32_t>;
static_assert(Time::is_always_lock_free && sizeof(Time) == sizeof(std::int64_t));
static_assert(Count::is_always_lock_free);

// The file begins with it; who makes the file fills it with zeros.
struct Shared {
  Time passed{0};
  Count simulators{0};
  Count simulator{0};  // the process of the one that waited last
  Count asked{0};      // whether there is anything left to do
  Count answered{0};   // the newest question that was answered: nothing
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

// Whether this is tavlynsim with devices: others of its commands ask one.
bool IsSimulator() {
  if (std::strcmp(program_invocation_short_name, "tavlynsim") != 0) return false;
  char line[512] = {};
  const int file = open("/proc/self/cmdline", O_RDONLY | O_CLOEXEC);
  const ssize_t size = file < 0 ? 0 : read(file, line, sizeof line - 1);
  if (file >= 0) close(file);
  const std::size_t first = std::strlen(line) + 1;
  if (size <= 0 || first >= sizeof line) return false;
  return std::strcmp(line + first, "run") == 0 || std::strcmp(line + first, "serve") == 0;
}

Count counted{0};  // this process, once it counts as a simulator; a fork does not

void CountSimulator() {
  const auto process = static_cast<std::uint32_t>(getpid());
  if (counted.exchange(process) != process) ++shared->simulators;
  shared->simulator = process;
}

// Without the file, whose simulator has ended, the clock is this process's own.
__attribute__((constructor)) void ShareClock() {
  const char* name = std::getenv("TAVLYN_QUICK_CLOCK");
  const int file = name == nullptr ? -1 : open(name, O_RDWR | O_CLOEXEC);
  if (file < 0) return;
  void* mapped = mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  close(file);
  if (mapped == MAP_FAILED) return;
  shared = static_cast<Shared*>(mapped);
  simulates = IsSimulator();
  if (simulates) CountSimulator();
}

__attribute__((destructor)) void LeaveClock() {
  if (simulates && counted == static_cast<std::uint32_t>(getpid())) --shared->simulators;
}

// One that was killed is counted no more.
bool IsOneSimulatorThere() {
  if (shared->simulators != 1) return false;
  if (kill(static_cast<pid_t>(shared->simulator.load()), 0) == 0 || errno != ESRCH) return true;
  shared->simulators = 0;
  return false;
}

int ReallyPoll(pollfd* polled, nfds_t count, const timespec* limit) {
  return static_cast<int>(syscall(SYS_ppoll, polled, count, limit, nullptr, 0));
}

// A simulator's wait: time passes in the others' waits, or here, when nobody else has let it pass.
int WaitAndTell(pollfd* polled, nfds_t count, int milliseconds) {
  CountSimulator();
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
  if (simulates || !IsOneSimulatorThere()) return false;
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

template <typename Function>
Function* Next(Function*, const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

// Other waits than sleeps take as long as they do; then the clock is where they wanted it.
template <typename Wait>
int WaitUntil(std::int64_t end, int timedOut, Wait wait) {
  const int status = wait();
  if (status == timedOut) PassUntil(end);
  return status;
}

// The machine's time that is as far ahead as a moment of this clock.
timespec Machine(const timespec& moment) {
  timespec now{};
  syscall(SYS_clock_gettime, CLOCK_MONOTONIC, &now);
  return Timespec(
      std::max<std::int64_t>(Nanoseconds(now) + Nanoseconds(moment) - kStart - shared->passed, 0));
}

// Far from the real time of any year.
bool IsOfThisClock(const timespec& moment) { return moment.tv_sec < 1'000'000'000; }

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

int usleep(useconds_t microseconds) {
  const timespec wanted = Timespec(std::int64_t{microseconds} * 1000);
  return nanosleep(&wanted, nullptr);
}

unsigned sleep(unsigned seconds) {
  const timespec wanted = Timespec(seconds * kSecond);
  return nanosleep(&wanted, nullptr) == 0 ? 0 : seconds;
}

// What checked programs call.
int __poll_chk(pollfd* polled, nfds_t count, int milliseconds, std::size_t) {
  return poll(polled, count, milliseconds);
}

int epoll_wait(int descriptor, epoll_event* events, int most, int milliseconds) {
  const std::int64_t end = shared->passed + std::max(milliseconds, 0) * kMillisecond;
  return WaitUntil(end, 0, [&] {
    return static_cast<int>(syscall(SYS_epoll_pwait, descriptor, events, most, milliseconds, nullptr, 8));
  });
}

int select(int most, fd_set* __restrict in, fd_set* __restrict out, fd_set* __restrict bad,
           timeval* __restrict length) {
  const std::int64_t end =
      shared->passed + (length == nullptr ? 0 : length->tv_sec * kSecond + length->tv_usec * 1000);
  return WaitUntil(end, 0, [&] { return Next(&select, "select")(most, in, out, bad, length); });
}

int sem_clockwait(sem_t* __restrict semaphore, clockid_t clock, const timespec* __restrict moment) {
  const auto next = Next(&sem_clockwait, "sem_clockwait");
  if (clock != CLOCK_MONOTONIC) return next(semaphore, clock, moment);
  const timespec machine = Machine(*moment);
  const int status = next(semaphore, clock, &machine);
  if (status != 0 && errno == ETIMEDOUT) PassUntil(Nanoseconds(*moment) - kStart);
  return status;
}

int pthread_cond_clockwait(pthread_cond_t* __restrict condition, pthread_mutex_t* __restrict mutex,
                           clockid_t clock, const timespec* __restrict moment) {
  const auto next = Next(&pthread_cond_clockwait, "pthread_cond_clockwait");
  if (clock != CLOCK_MONOTONIC) return next(condition, mutex, clock, moment);
  const timespec machine = Machine(*moment);
  return WaitUntil(Nanoseconds(*moment) - kStart, ETIMEDOUT,
                   [&] { return next(condition, mutex, clock, &machine); });
}

int pthread_cond_timedwait(pthread_cond_t* __restrict condition, pthread_mutex_t* __restrict mutex,
                           const timespec* __restrict moment) {
  const auto next = Next(&pthread_cond_timedwait, "pthread_cond_timedwait");
  if (!IsOfThisClock(*moment)) return next(condition, mutex, moment);
  const timespec machine = Machine(*moment);
  return WaitUntil(Nanoseconds(*moment) - kStart, ETIMEDOUT,
                   [&] { return next(condition, mutex, &machine); });
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
