// What the library costs a process: memory when it is loaded, what is left after it is unloaded, and the
// system calls of a connect with nothing attached.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <ctime>
#include <fstream>
#include <functional>
#include <set>
#include <string>

#include "tests/boundary/far_end.h"
#include "tests/boundary/library.h"
#include "tests/boundary/loader.h"

namespace {

int pauses = 0;
bool notesSlack = false;
std::set<int> slackOfPauses;

}  // namespace

// Replaces libc's pauses for the library: they take no time and make no system call.
extern "C" int nanosleep(const timespec* /*wanted*/, timespec* /*left*/) {
  ++pauses;
  if (notesSlack) slackOfPauses.insert(prctl(PR_GET_TIMERSLACK));
  return 0;
}

namespace tavlyn::boundary {
namespace {

// Of a connect that sweeps twice over 254 addresses.
constexpr int kSweptAddresses = 2 * 254;

// Of files, in this process.
long Mappings() {
  std::ifstream maps("/proc/self/maps");
  return std::count(std::istreambuf_iterator<char>(maps), {}, '/');
}

std::size_t Allocated() {
  const auto info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

// The system calls of a process that does only this; -1 if it did not finish.
int SystemCallsOf(const std::function<void()>& work) {
  const pid_t child = fork();
  if (child == 0) {
    if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(1);
    raise(SIGSTOP);
    work();
    _exit(testing::Test::HasFailure() ? 1 : 0);
  }
  int status = 0;
  int stops = 0;
  waitpid(child, &status, 0);
  ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
  while (WIFSTOPPED(status)) {
    if (WSTOPSIG(status) == (SIGTRAP | 0x80)) ++stops;
    ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
    waitpid(child, &status, 0);
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? stops / 2 : -1;
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)  // these need memory of their own
// kB of this process that are not backed by a file.
long OwnMemory() {
  std::ifstream rollup("/proc/self/smaps_rollup");
  std::string word;
  while (rollup >> word) {
    if (word != "Anonymous:") continue;
    long size = 0;
    rollup >> size;
    return size;
  }
  throw std::runtime_error("the system does not tell the size of this process");
}

TEST(Load, TakesLittleMemory) {
  ASSERT_NE(LoadStandin(), nullptr);
  OwnMemory();
  const long before = OwnMemory();
  void* library = LoadByName(TAVLYN_LIBRARY);
  const long taken = OwnMemory() - before;
  ASSERT_NE(library, nullptr);
  std::printf("memory taken by a load: %ld kB\n", taken);
  EXPECT_LT(taken, 100);
  Unload(library);
}
#endif

TEST(Load, AThousandTimesLeaveNothing) {
  constexpr int kLoads = 1000;
  ChooseTraceFile();
  SetVariable("TAVLYNAPI_LOGGING", "1");
  const auto once = [] {
    const Library library;
    library.Standin("plug reader");
    CALL(library, SetDevTypeSrch)(0);
    EXPECT_EQ(CALL(library, USBConnect)(nullptr), 1U);
    library.Standin("reset");
  };
  const auto isLoaded = [] {
    void* library = dlopen(TAVLYN_LIBRARY, RTLD_NOW | RTLD_NOLOAD);
    if (library != nullptr) dlclose(library);
    return library != nullptr;
  };
  for (int time = 0; time < 10; ++time) once();
  const long mappings = Mappings();
  const int handles = OpenHandles();
  const std::size_t memory = Allocated();
  for (int time = 0; time < kLoads; ++time) once();
  EXPECT_FALSE(isLoaded()) << "it would leave nothing because it was never unloaded";
  // malloc counts its caches as used; a leak in every load would be more than this.
  EXPECT_LT(Allocated(), memory + std::size_t{16} * kLoads);
  EXPECT_EQ(Mappings(), mappings);
  EXPECT_EQ(OpenHandles(), handles);
  SetVariable("TAVLYNAPI_LOGGING", nullptr);
}

class NothingAttachedLoad : public testing::Test {
 protected:
  void SetUp() override {
    library_.Standin("reset");
    CALL(library_, SetConnectProduct)(7);
  }
  void Connect() const { EXPECT_EQ(CALL(library_, USBConnect)(nullptr), 0U); }

  PortFolder ports_;
  Library library_;
};

TEST_F(NothingAttachedLoad, AConnectAsksTheSystemForASocketAtEachAddressAndForLittleElse) {
  const int calls = SystemCallsOf([&] { Connect(); });
  std::printf("system calls of a connect besides its pauses: %d\n", calls);
  // Two sockets are made and closed, one of them may ask all.
  constexpr int kCallsOfAnAddress = 5;
  constexpr int kOthers = 200;  // also a sanitizer's
  EXPECT_GE(calls, kSweptAddresses);
  EXPECT_LE(calls, kSweptAddresses * kCallsOfAnAddress + kOthers);
}

TEST_F(NothingAttachedLoad, EveryPauseIsPunctualAndTheThreadKeepsItsOwnTimerSlack) {
  constexpr unsigned long kSlack = 70'000;
  ASSERT_EQ(prctl(PR_SET_TIMERSLACK, kSlack), 0);
  notesSlack = true;
  pauses = 0;
  Connect();
  notesSlack = false;
  EXPECT_EQ(pauses, kSweptAddresses);
  EXPECT_EQ(slackOfPauses, std::set<int>{1});
  EXPECT_EQ(prctl(PR_GET_TIMERSLACK), static_cast<int>(kSlack));
}

}  // namespace
}  // namespace tavlyn::boundary
