// The kernel turns this thread's system calls into signals, whose handler makes them in the end; only while
// somebody watches, because a signal costs more than most calls.
#include "tests/boundary/failing_system_linux.h"

#include <sys/prctl.h>
#include <sys/syscall.h>
#include <ucontext.h>
#include <unistd.h>

#include <array>
#include <bitset>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "tests/boundary/calls.h"
#include "tests/boundary/passing.h"

namespace tavlyn::boundary {
namespace {

constexpr SystemWay kSystemWays[] = {
    {SYS_openat, "open", Mishap::kError, EMFILE},
    {SYS_openat, "open", Mishap::kError, EACCES},
    {SYS_newfstatat, "stat", Mishap::kError, EIO},
    {SYS_read, "read", Mishap::kError, EIO},
    {SYS_read, "read", Mishap::kError, EINTR, true},
    {SYS_read, "read", Mishap::kError, EAGAIN, true},
    {SYS_read, "read", Mishap::kShort, 0, true},
    {SYS_read, "read", Mishap::kNothing},
    {SYS_write, "write", Mishap::kError, EIO},
    {SYS_write, "write", Mishap::kError, ENOSPC},
    {SYS_write, "write", Mishap::kError, EINTR, true},
    {SYS_write, "write", Mishap::kError, EAGAIN, true},
    {SYS_write, "write", Mishap::kShort, 0, true},
    {SYS_close, "close", Mishap::kError, EIO},
    {SYS_close, "close", Mishap::kError, EINTR},
    {SYS_lseek, "seek", Mishap::kError, EIO},
    {SYS_poll, "poll", Mishap::kError, EINTR, true},
    {SYS_poll, "poll", Mishap::kError, ENOMEM},
    {SYS_flock, "flock", Mishap::kError, EWOULDBLOCK},
    {SYS_ioctl, "ioctl", Mishap::kError, EIO},
    {SYS_ioctl, "ioctl", Mishap::kError, EINTR},
    {SYS_fcntl, "fcntl", Mishap::kError, EINVAL},
    {SYS_socket, "socket", Mishap::kError, EMFILE},
    {SYS_setsockopt, "setsockopt", Mishap::kError, EINVAL},
    {SYS_connect, "connect", Mishap::kError, ECONNREFUSED},
    {SYS_connect, "connect", Mishap::kError, ETIMEDOUT},
    {SYS_connect, "connect", Mishap::kError, EINTR, true},
    {SYS_sendto, "send", Mishap::kError, EPIPE},
    {SYS_sendto, "send", Mishap::kError, EAGAIN},
    {SYS_sendto, "send", Mishap::kShort},
    {SYS_recvfrom, "receive", Mishap::kError, ECONNRESET},
    {SYS_recvfrom, "receive", Mishap::kError, EAGAIN},
    {SYS_recvfrom, "receive", Mishap::kShort},
    {SYS_recvfrom, "receive", Mishap::kNothing},
};

// More than any operation needs: one that makes so many calls does not end.
constexpr std::size_t kMostCalls = 200'000;

// Whether calls become signals; the kernel looks.
volatile char turned = SYSCALL_DISPATCH_FILTER_ALLOW;
std::array<long, kMostCalls> calls;
std::size_t count = 0;
std::size_t failing = 0;
const SystemWay* how = nullptr;

// Whether the call that comes now is to fail.
bool IsTheOne(long call) {
  if (count == kMostCalls) {
    std::fputs("no end\n", stderr);
    std::abort();
  }
  calls[count++] = call;
  return count == failing && how->call == call;
}

#ifdef __x86_64__

// A descriptor is closed all the same; a connect that is interrupted goes on; and a socket that stayed
// blocking, which no system leaves so, would wait forever.
bool TakesPlaceAllTheSame(long call) {
  return call == SYS_close || call == SYS_fcntl || (call == SYS_connect && how->error == EINTR);
}

// The program has its own poll, which asks by itself whether it is to fail.
bool IsWatched(long call) {
  static const std::bitset<512> watched = [] {
    std::bitset<512> listed;
    for (const SystemWay& way : kSystemWays) listed.set(static_cast<std::size_t>(way.call));
    return listed.reset(SYS_poll);
  }();
  return watched.test(static_cast<std::size_t>(call));
}

// With the result as the kernel gives it.
long Make(long call, const greg_t* registers) {
  const int kept = errno;
  const long result = syscall(call, registers[REG_RDI], registers[REG_RSI], registers[REG_RDX],
                              registers[REG_R10], registers[REG_R8], registers[REG_R9]);
  const long shown = result == -1 ? -errno : result;
  errno = kept;
  return shown;
}

void Catch(int /*signal*/, siginfo_t* caught, void* context) {
  turned = SYSCALL_DISPATCH_FILTER_ALLOW;
  greg_t* registers = static_cast<ucontext_t*>(context)->uc_mcontext.gregs;
  const long call = caught->si_syscall;
  const bool fails = IsWatched(call) && IsTheOne(call);
  const bool isShort = fails && how->mishap == Mishap::kShort;
  if (isShort && registers[REG_RDX] > 1) registers[REG_RDX] = 1;
  if (!fails || isShort || TakesPlaceAllTheSame(call)) registers[REG_RAX] = Make(call, registers);
  if (fails && !isShort) registers[REG_RAX] = how->mishap == Mishap::kNothing ? 0 : -how->error;
  turned = SYSCALL_DISPATCH_FILTER_BLOCK;
}

// As the kernel knows it.
struct KernelAction {
  void* handler;
  unsigned long flags;
  std::uintptr_t restorer;
  std::uint64_t mask;
};

// The call with which the C library returns from a handler has to pass: it is in the few bytes that the
// kernel is told.
bool TurnCalls() {
  struct sigaction action {};
  action.sa_sigaction = Catch;
  action.sa_flags = SA_SIGINFO | SA_NODEFER;
  sigaction(SIGSYS, &action, nullptr);
  KernelAction installed{};
  constexpr unsigned long kBytes = 16;
  return syscall(SYS_rt_sigaction, SIGSYS, nullptr, &installed, sizeof installed.mask) == 0 &&
         prctl(PR_SET_SYSCALL_USER_DISPATCH, PR_SYS_DISPATCH_ON, installed.restorer, kBytes, &turned) == 0;
}

#else

bool TurnCalls() { return false; }

#endif

}  // namespace

std::span<const SystemWay> SystemWays() { return kSystemWays; }

bool SystemCanFail() {
  static const bool can = TurnCalls();
  return can;
}

void WatchSystem(std::size_t call, const SystemWay* way) {
  count = 0;
  failing = call;
  how = way;
  waitFailure = [] { return IsTheOne(SYS_poll) ? how->error : 0; };
  farEndsBegin = [] { turned = SYSCALL_DISPATCH_FILTER_ALLOW; };
  farEndsEnd = [] { turned = SYSCALL_DISPATCH_FILTER_BLOCK; };
  turned = SYSCALL_DISPATCH_FILTER_BLOCK;
}

std::span<const long> UnwatchSystem() {
  turned = SYSCALL_DISPATCH_FILTER_ALLOW;
  waitFailure = nullptr;
  farEndsBegin = farEndsEnd = nullptr;
  return std::span(calls).first(count);
}

}  // namespace tavlyn::boundary
