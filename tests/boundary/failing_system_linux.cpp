// A filter of the kernel turns the calls into signals, except for those that come from the function with
// which the signal handler makes them in the end.
#include "tests/boundary/failing_system_linux.h"

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <ucontext.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>

#include "tests/boundary/calls.h"
#include "tests/boundary/passing.h"

#ifdef __x86_64__
// long TavlynSystemCall(long call, long a, long b, long c, long d, long e, long f)
asm(R"(
  .text
  .globl TavlynSystemCall
TavlynSystemCall:
  mov %rdi, %rax
  mov %rsi, %rdi
  mov %rdx, %rsi
  mov %rcx, %rdx
  mov %r8, %r10
  mov %r9, %r8
  mov 8(%rsp), %r9
  syscall
  .globl TavlynSystemCallEnd
TavlynSystemCallEnd:
  ret
)");
extern "C" long TavlynSystemCall(long call, long a, long b, long c, long d, long e, long f);
extern "C" char TavlynSystemCallEnd;
#endif

#ifdef __SANITIZE_ADDRESS__
// The search for leaks makes system calls of its own where they cannot be caught.
extern "C" const char* __asan_default_options() { return "detect_leaks=0"; }
#endif

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

bool watching = false;
std::array<long, kMostCalls> calls;
std::size_t count = 0;
std::size_t failing = 0;
const SystemWay* how = nullptr;

// Whether the call that comes now is to fail. Those of the far ends are not the library's.
bool IsTheOne(long call) {
  if (!watching || FarEndsAreAtWork()) return false;
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

void Catch(int /*signal*/, siginfo_t* caught, void* context) {
  greg_t* registers = static_cast<ucontext_t*>(context)->uc_mcontext.gregs;
  const long call = caught->si_syscall;
  const bool fails = IsTheOne(call);
  const bool isShort = fails && how->mishap == Mishap::kShort;
  if (isShort && registers[REG_RDX] > 1) registers[REG_RDX] = 1;
  if (!fails || isShort || TakesPlaceAllTheSame(call)) {
    registers[REG_RAX] = TavlynSystemCall(call, registers[REG_RDI], registers[REG_RSI], registers[REG_RDX],
                                          registers[REG_R10], registers[REG_R8], registers[REG_R9]);
  }
  if (fails && !isShort) registers[REG_RAX] = how->mishap == Mishap::kNothing ? 0 : -how->error;
}

constexpr std::uint32_t LowHalf(std::uintptr_t address) { return static_cast<std::uint32_t>(address); }

bool Filter() {
  struct sigaction action {};
  action.sa_sigaction = Catch;
  action.sa_flags = SA_SIGINFO | SA_NODEFER;
  sigaction(SIGSYS, &action, nullptr);
  const auto begin = reinterpret_cast<std::uintptr_t>(TavlynSystemCall);
  const auto end = reinterpret_cast<std::uintptr_t>(&TavlynSystemCallEnd);
  constexpr unsigned kAddress = offsetof(seccomp_data, instruction_pointer);
  std::array<sock_filter, 8 + 2 * std::size(kSystemWays)> filter{};
  std::size_t used = 0;
  const auto add = [&](sock_filter step) { filter.at(used++) = step; };
  // What comes from that function passes; the kernel shows the address after the call.
  add(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, kAddress));
  add(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, LowHalf(end), 0, 3));
  add(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, kAddress + 4));
  add(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, LowHalf(begin >> 32U), 0, 1));
  add(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
  add(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)));
  for (const SystemWay& way : kSystemWays) {
    if (way.call == SYS_poll) continue;  // replaced in this program
    add(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint32_t>(way.call), 0, 1));
    add(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_TRAP));
  }
  add(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
  const sock_fprog program{static_cast<unsigned short>(used), filter.data()};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

#else

bool Filter() { return false; }

#endif

}  // namespace

std::span<const SystemWay> SystemWays() { return kSystemWays; }

bool SystemCanFail() {
  static const bool can = Filter();
  return can;
}

void WatchSystem(std::size_t call, const SystemWay* way) {
  count = 0;
  failing = call;
  how = way;
  waitFailure = [] { return IsTheOne(SYS_poll) ? how->error : 0; };
  watching = true;
}

std::span<const long> UnwatchSystem() {
  watching = false;
  return std::span(calls).first(count);
}

}  // namespace tavlyn::boundary
