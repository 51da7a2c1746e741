// Time that runs TAVLYN_TIME_SPEED times as fast: preloaded into programs, all of which have the same clocks.
// What a program reads of a clock is ahead of the machine's, and what it waits for comes as much sooner.
#include <dlfcn.h>
#include <poll.h>
#include <pthread.h>
#include <semaphore.h>
#include <sys/epoll.h>
#include <sys/select.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/timerfd.h>
#include <threads.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

constexpr std::int64_t kSecond = 1'000'000'000;
constexpr std::int64_t kMillisecond = 1'000'000;
constexpr std::size_t kMaskBytes = 8;  // of a set of signals, to the kernel

// "10 MONOTONIC REALTIME": the speed, and what the machine's clocks were when it began.
double speed = 1;
std::int64_t monotonicStart = 0;
std::int64_t realStart = 0;

std::int64_t Nanoseconds(const timespec& time) { return time.tv_sec * kSecond + time.tv_nsec; }

timespec Timespec(std::int64_t time) {
  time = std::max<std::int64_t>(time, 0);
  return {static_cast<std::time_t>(time / kSecond), static_cast<long>(time % kSecond)};
}

__attribute__((constructor)) void TakeSpeed() {
  const char* text = std::getenv("TAVLYN_TIME_SPEED");
  if (text == nullptr) return;
  long long monotonic = 0;
  long long real = 0;
  double wanted = 1;
  if (std::sscanf(text, "%lf %lld %lld", &wanted, &monotonic, &real) != 3 || !(wanted > 0)) return;
  speed = wanted;
  monotonicStart = monotonic;
  realStart = real;
}

bool IsReal(clockid_t clock) { return clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE; }

// Processor time stays what it is.
bool IsFast(clockid_t clock) {
  return IsReal(clock) || clock == CLOCK_MONOTONIC || clock == CLOCK_MONOTONIC_RAW ||
         clock == CLOCK_MONOTONIC_COARSE || clock == CLOCK_BOOTTIME;
}

std::int64_t StartOf(clockid_t clock) { return IsReal(clock) ? realStart : monotonicStart; }

std::int64_t Sooner(std::int64_t length) {
  return static_cast<std::int64_t>(std::ceil(static_cast<double>(length) / speed));
}

std::int64_t Lengthened(std::int64_t length) {
  return static_cast<std::int64_t>(static_cast<double>(length) * speed);
}

std::int64_t Fast(clockid_t clock, std::int64_t machine) {
  const std::int64_t start = StartOf(clock);
  return start + Lengthened(machine - start);
}

// The machine's time at which a fast clock shows this one.
timespec Machine(clockid_t clock, const timespec& fast) {
  const std::int64_t start = StartOf(clock);
  return Timespec(start + Sooner(Nanoseconds(fast) - start));
}

timespec Shortened(const timespec& length) { return Timespec(Sooner(Nanoseconds(length))); }

std::int64_t FastNow(clockid_t clock) {
  timespec now{};
  syscall(SYS_clock_gettime, clock, &now);
  return Fast(clock, Nanoseconds(now));
}

template <typename Function>
Function* Next(Function*, const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

// A condition may be on either clock; a time in its future tells which. The clocks are decades apart.
clockid_t ClockOf(const timespec& moment) {
  const std::int64_t time = Nanoseconds(moment);
  const std::int64_t toReal = std::abs(time - FastNow(CLOCK_REALTIME));
  return toReal < std::abs(time - FastNow(CLOCK_MONOTONIC)) ? CLOCK_REALTIME : CLOCK_MONOTONIC;
}

int FastPoll(pollfd* polled, nfds_t count, const timespec* length, const sigset_t* mask) {
  timespec shortened{};
  if (length != nullptr) shortened = Shortened(*length);
  return static_cast<int>(
      syscall(SYS_ppoll, polled, count, length != nullptr ? &shortened : nullptr, mask, kMaskBytes));
}

int FastSelect(int most, fd_set* in, fd_set* out, fd_set* bad, const timespec* length, const sigset_t* mask) {
  timespec shortened{};
  if (length != nullptr) shortened = Shortened(*length);
  const auto original = Next(&pselect, "pselect");
  return original(most, in, out, bad, length != nullptr ? &shortened : nullptr, mask);
}

// At least a millisecond: a wait is not made a question.
int ShortenedMs(int milliseconds) {
  return milliseconds <= 0
             ? milliseconds
             : static_cast<int>((Sooner(milliseconds * kMillisecond) + kMillisecond - 1) / kMillisecond);
}

timeval Timeval(std::int64_t time) {
  return {static_cast<std::time_t>(time / kSecond), static_cast<suseconds_t>(time % kSecond / 1000)};
}

std::int64_t Nanoseconds(const timeval& time) { return time.tv_sec * kSecond + time.tv_usec * 1000; }

// At least a microsecond, unless it is none: that would end a timer.
timeval Shortened(const timeval& length) { return Timeval(Sooner(Nanoseconds(length)) + 999); }

// No time ends a timer, whatever the flags say.
itimerspec SoonerTimer(const itimerspec& wanted, bool isMoment) {
  itimerspec sooner{Shortened(wanted.it_interval), Shortened(wanted.it_value)};
  if (isMoment && Nanoseconds(wanted.it_value) != 0)
    sooner.it_value = Machine(ClockOf(wanted.it_value), wanted.it_value);
  return sooner;
}

void Lengthen(itimerspec* timer) {
  if (timer == nullptr) return;
  for (timespec* time : {&timer->it_interval, &timer->it_value})
    *time = Timespec(Lengthened(Nanoseconds(*time)));
}

void Lengthen(itimerval* timer) {
  if (timer == nullptr) return;
  for (timeval* time : {&timer->it_interval, &timer->it_value})
    *time = Timeval(Lengthened(Nanoseconds(*time)));
}

}  // namespace

extern "C" {

int clock_gettime(clockid_t clock, timespec* now) {
  const int status = static_cast<int>(syscall(SYS_clock_gettime, clock, now));
  if (status == 0 && IsFast(clock)) *now = Timespec(Fast(clock, Nanoseconds(*now)));
  return status;
}

std::time_t time(std::time_t* now) {
  const std::time_t seconds = FastNow(CLOCK_REALTIME) / kSecond;
  if (now != nullptr) *now = seconds;
  return seconds;
}

int gettimeofday(timeval* __restrict now, void* __restrict) {
  *now = Timeval(FastNow(CLOCK_REALTIME));
  return 0;
}

int timespec_get(timespec* now, int base) {
  if (base != TIME_UTC) return 0;
  *now = Timespec(FastNow(CLOCK_REALTIME));
  return base;
}

int clock_nanosleep(clockid_t clock, int flags, const timespec* wanted, timespec* left) {
  if (!IsFast(clock)) return syscall(SYS_clock_nanosleep, clock, flags, wanted, left) == 0 ? 0 : errno;
  const bool isMoment = (flags & TIMER_ABSTIME) != 0;
  const timespec sooner = isMoment ? Machine(clock, *wanted) : Shortened(*wanted);
  const int before = errno;
  const int status = syscall(SYS_clock_nanosleep, clock, flags, &sooner, left) == 0 ? 0 : errno;
  errno = before;
  if (status == EINTR && !isMoment && left != nullptr) {
    *left = Timespec(Lengthened(Nanoseconds(*left)));
  }
  return status;
}

int nanosleep(const timespec* wanted, timespec* left) {
  const int status = clock_nanosleep(CLOCK_MONOTONIC, 0, wanted, left);
  if (status == 0) return 0;
  errno = status;
  return -1;
}

unsigned sleep(unsigned seconds) {
  timespec left{static_cast<std::time_t>(seconds), 0};
  return nanosleep(&left, &left) == 0 ? 0 : static_cast<unsigned>(left.tv_sec);
}

int usleep(useconds_t microseconds) {
  const timespec wanted = Timespec(std::int64_t{microseconds} * 1000);
  return nanosleep(&wanted, nullptr);
}

int poll(pollfd* polled, nfds_t count, int milliseconds) {
  const timespec length = Timespec(milliseconds * kMillisecond);
  return FastPoll(polled, count, milliseconds < 0 ? nullptr : &length, nullptr);
}

int ppoll(pollfd* polled, nfds_t count, const timespec* length, const sigset_t* mask) {
  return FastPoll(polled, count, length, mask);
}

// What checked programs call.
int __poll_chk(pollfd* polled, nfds_t count, int milliseconds, std::size_t) {
  return poll(polled, count, milliseconds);
}

int __ppoll_chk(pollfd* polled, nfds_t count, const timespec* length, const sigset_t* mask, std::size_t) {
  return FastPoll(polled, count, length, mask);
}

int select(int most, fd_set* __restrict in, fd_set* __restrict out, fd_set* __restrict bad,
           timeval* __restrict length) {
  timespec wanted{};
  if (length != nullptr) wanted = Timespec(Nanoseconds(*length));
  return FastSelect(most, in, out, bad, length != nullptr ? &wanted : nullptr, nullptr);
}

int pselect(int most, fd_set* __restrict in, fd_set* __restrict out, fd_set* __restrict bad,
            const timespec* __restrict length, const sigset_t* __restrict mask) {
  return FastSelect(most, in, out, bad, length, mask);
}

int epoll_wait(int descriptor, epoll_event* events, int most, int milliseconds) {
  return static_cast<int>(
      syscall(SYS_epoll_pwait, descriptor, events, most, ShortenedMs(milliseconds), nullptr, kMaskBytes));
}

int epoll_pwait(int descriptor, epoll_event* events, int most, int milliseconds, const sigset_t* mask) {
  return static_cast<int>(
      syscall(SYS_epoll_pwait, descriptor, events, most, ShortenedMs(milliseconds), mask, kMaskBytes));
}

int epoll_pwait2(int descriptor, epoll_event* events, int most, const timespec* length,
                 const sigset_t* mask) {
  timespec shortened{};
  if (length != nullptr) shortened = Shortened(*length);
  return static_cast<int>(syscall(SYS_epoll_pwait2, descriptor, events, most,
                                  length != nullptr ? &shortened : nullptr, mask, kMaskBytes));
}

int sem_timedwait(sem_t* __restrict semaphore, const timespec* __restrict moment) {
  const timespec sooner = Machine(CLOCK_REALTIME, *moment);
  return Next(&sem_timedwait, "sem_timedwait")(semaphore, &sooner);
}

int sem_clockwait(sem_t* __restrict semaphore, clockid_t clock, const timespec* __restrict moment) {
  const timespec sooner = Machine(clock, *moment);
  return Next(&sem_clockwait, "sem_clockwait")(semaphore, clock, &sooner);
}

int pthread_cond_timedwait(pthread_cond_t* __restrict condition, pthread_mutex_t* __restrict mutex,
                           const timespec* __restrict moment) {
  const timespec sooner = Machine(ClockOf(*moment), *moment);
  return Next(&pthread_cond_timedwait, "pthread_cond_timedwait")(condition, mutex, &sooner);
}

int pthread_cond_clockwait(pthread_cond_t* __restrict condition, pthread_mutex_t* __restrict mutex,
                           clockid_t clock, const timespec* __restrict moment) {
  const timespec sooner = Machine(clock, *moment);
  return Next(&pthread_cond_clockwait, "pthread_cond_clockwait")(condition, mutex, clock, &sooner);
}

// The locks that are waited for until a moment, on the clock of the day or on one that is named.
#define UNTIL(name, Lock)                                              \
  int name(Lock* __restrict lock, const timespec* __restrict moment) { \
    const timespec sooner = Machine(CLOCK_REALTIME, *moment);          \
    return Next(&name, #name)(lock, &sooner);                          \
  }
#define UNTIL_BY(name, Lock)                                                            \
  int name(Lock* __restrict lock, clockid_t clock, const timespec* __restrict moment) { \
    const timespec sooner = Machine(clock, *moment);                                    \
    return Next(&name, #name)(lock, clock, &sooner);                                    \
  }
UNTIL(pthread_mutex_timedlock, pthread_mutex_t)
UNTIL(pthread_rwlock_timedrdlock, pthread_rwlock_t)
UNTIL(pthread_rwlock_timedwrlock, pthread_rwlock_t)
UNTIL(mtx_timedlock, mtx_t)
UNTIL_BY(pthread_mutex_clocklock, pthread_mutex_t)
UNTIL_BY(pthread_rwlock_clockrdlock, pthread_rwlock_t)
UNTIL_BY(pthread_rwlock_clockwrlock, pthread_rwlock_t)
#undef UNTIL
#undef UNTIL_BY

int cnd_timedwait(cnd_t* __restrict condition, mtx_t* __restrict mutex, const timespec* __restrict moment) {
  const timespec sooner = Machine(CLOCK_REALTIME, *moment);
  return Next(&cnd_timedwait, "cnd_timedwait")(condition, mutex, &sooner);
}

int thrd_sleep(const timespec* wanted, timespec* left) {
  const int status = clock_nanosleep(CLOCK_MONOTONIC, 0, wanted, left);
  if (status == 0) return 0;
  return status == EINTR ? -1 : -2;
}

int sigtimedwait(const sigset_t* __restrict signals, siginfo_t* __restrict got,
                 const timespec* __restrict length) {
  timespec shortened{};
  if (length != nullptr) shortened = Shortened(*length);
  return Next(&sigtimedwait, "sigtimedwait")(signals, got, length != nullptr ? &shortened : nullptr);
}

int timerfd_settime(int descriptor, int flags, const itimerspec* wanted, itimerspec* before) {
  const itimerspec sooner = SoonerTimer(*wanted, (flags & TFD_TIMER_ABSTIME) != 0);
  const int status = Next(&timerfd_settime, "timerfd_settime")(descriptor, flags, &sooner, before);
  if (status == 0) Lengthen(before);
  return status;
}

int timerfd_gettime(int descriptor, itimerspec* now) {
  const int status = Next(&timerfd_gettime, "timerfd_gettime")(descriptor, now);
  if (status == 0) Lengthen(now);
  return status;
}

int timer_settime(timer_t timer, int flags, const itimerspec* __restrict wanted,
                  itimerspec* __restrict before) {
  const itimerspec sooner = SoonerTimer(*wanted, (flags & TIMER_ABSTIME) != 0);
  const int status = Next(&timer_settime, "timer_settime")(timer, flags, &sooner, before);
  if (status == 0) Lengthen(before);
  return status;
}

int timer_gettime(timer_t timer, itimerspec* now) {
  const int status = Next(&timer_gettime, "timer_gettime")(timer, now);
  if (status == 0) Lengthen(now);
  return status;
}

// The others are of processor time.
int setitimer(__itimer_which_t which, const itimerval* __restrict wanted, itimerval* __restrict before) {
  const bool isFast = which == ITIMER_REAL && wanted != nullptr;
  itimerval sooner{};
  if (isFast) sooner = {Shortened(wanted->it_interval), Shortened(wanted->it_value)};
  const int status = Next(&setitimer, "setitimer")(which, isFast ? &sooner : wanted, before);
  if (status == 0 && isFast) Lengthen(before);
  return status;
}

int getitimer(__itimer_which_t which, itimerval* now) {
  const int status = Next(&getitimer, "getitimer")(which, now);
  if (status == 0 && which == ITIMER_REAL) Lengthen(now);
  return status;
}

unsigned alarm(unsigned seconds) {
  const itimerval wanted{{0, 0}, Timeval(seconds * kSecond)};
  itimerval before{};
  setitimer(ITIMER_REAL, &wanted, &before);
  return static_cast<unsigned>((Nanoseconds(before.it_value) + kSecond - 1) / kSecond);
}
}
