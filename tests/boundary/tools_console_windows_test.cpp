// How tavlynctl and tavlynsim react to their console, and what they recognise as one.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "tests/boundary/begun_windows.h"
#include "tests/boundary/imports_windows.h"
#include "tools/terminal.h"

namespace tavlyn::boundary {
namespace {

constexpr int kEndedByCtrlC = static_cast<int>(0xC000013A);

// This test's own console, which the programs that it starts share.
class ToolsOnConsole : public testing::Test {
 protected:
  void SetUp() override {
    FreeConsole();
    ASSERT_TRUE(AllocConsole());
    ASSERT_TRUE(SetConsoleCtrlHandler(Survive, TRUE));
  }
  void TearDown() override {
    SetConsoleCtrlHandler(Survive, FALSE);
    FreeConsole();
  }

  static void PressCtrlC() { EXPECT_TRUE(GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0)); }

  // Does in a program what the system does when its console has an event. The result is the thread's.
  static HANDLE Happen(DWORD pid, DWORD event) {
    HANDLE process = OpenProcess(PROCESS_ALL_ACCESS, FALSE, pid);
    const auto routine = reinterpret_cast<LPTHREAD_START_ROUTINE>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("kernelbase.dll"), "CtrlRoutine")));
    HANDLE thread = CreateRemoteThread(process, nullptr, 0, routine,
                                       reinterpret_cast<void*>(std::uintptr_t{event}), 0, nullptr);
    CloseHandle(process);
    return thread;
  }

  static DWORD ResultOf(HANDLE thread) {
    WaitForSingleObject(thread, INFINITE);
    DWORD result = 0;
    GetExitCodeThread(thread, &result);
    CloseHandle(thread);
    return result;
  }

 private:
  static BOOL WINAPI Survive(DWORD) { return TRUE; }
};

constexpr const char* kWaits = "watching ";

TEST_F(ToolsOnConsole, CtrlCEndsAWatchInOrder) {
  const Begun watch(kSim + " run --device sonar -- " + kCtl + " range --watch");
  ASSERT_TRUE(watch.Tells(kWaits));
  PressCtrlC();
  EXPECT_EQ(watch.End().status, 0);
}

TEST_F(ToolsOnConsole, CtrlBreakEndsASimulation) {
  const Begun simulator(kSim + " serve --ethernet 127.0.0.74:10001");
  ASSERT_TRUE(simulator.Tells("127.0.0.74"));
  ResultOf(Happen(simulator.Pid(), CTRL_BREAK_EVENT));
  EXPECT_EQ(simulator.End().status, 0);
}

// Windows ends a program whose console is closed as soon as its handler returns, before the program has
// cleaned up: so the program ends the handler's thread.
TEST_F(ToolsOnConsole, AClosedConsoleLeavesTimeForAnOrderlyEnd) {
  const Begun simulator(kSim + " serve --ethernet 127.0.0.75:10001");
  ASSERT_TRUE(simulator.Tells("127.0.0.75"));
  const Begun watch(kCtl + " --ip 127.0.0.75:10001 watch");
  ASSERT_TRUE(watch.Tells(kWaits));
  EXPECT_EQ(ResultOf(Happen(watch.Pid(), CTRL_CLOSE_EVENT)), 0u);
  EXPECT_EQ(watch.End().status, 0);
  EXPECT_EQ(ResultOf(Happen(simulator.Pid(), CTRL_CLOSE_EVENT)), 0u);
  EXPECT_EQ(simulator.End().status, 0);
}

TEST_F(ToolsOnConsole, ASecondCtrlCEndsTheSimulatorWhateverItsCommandDoes) {
  const Begun simulator(kSim + " run -- " STUBBORN);
  ASSERT_TRUE(simulator.Tells("here"));
  int pressed = 0;
  do {
    PressCtrlC();
    ++pressed;
  } while (!simulator.EndsWithin(100) && pressed < 600);
  EXPECT_LE(2, pressed);
  EXPECT_TRUE(simulator.EndsWithin(0));
  EXPECT_EQ(simulator.End().status, kEndedByCtrlC);
}

// Replaces this program's standard output by a handle.
bool IsTerminal(HANDLE stream) {
  HANDLE before = GetStdHandle(STD_OUTPUT_HANDLE);
  SetStdHandle(STD_OUTPUT_HANDLE, stream);
  const bool terminal = OutputIsTerminal();
  SetStdHandle(STD_OUTPUT_HANDLE, before);
  CloseHandle(stream);
  return terminal;
}

HANDLE Opened(const char* name) {
  return CreateFileA(name, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                     OPEN_EXISTING, 0, nullptr);
}

bool PipeIsTerminal(const std::string& name) {
  const std::string path = "\\\\.\\pipe\\" + name;
  HANDLE server = CreateNamedPipeA(path.c_str(), PIPE_ACCESS_DUPLEX, PIPE_TYPE_BYTE, 1, 0, 0, 0, nullptr);
  const bool terminal = IsTerminal(Opened(path.c_str()));
  CloseHandle(server);
  return terminal;
}

TEST(ToolsAndStreams, NulIsNoTerminal) { EXPECT_FALSE(IsTerminal(Opened("NUL"))); }

TEST(ToolsAndStreams, TerminalsOfMsysAndCygwinAreKnownByTheirPipes) {
  EXPECT_TRUE(PipeIsTerminal("msys-1888ae32e00d56aa-pty0-to-master"));
  EXPECT_TRUE(PipeIsTerminal("cygwin-e022582115c10879-pty12-from-master"));
  EXPECT_FALSE(PipeIsTerminal("msys-1888ae32e00d56aa-1234-pipe-nt-0x1"));
  EXPECT_FALSE(PipeIsTerminal("some-pty0-to-master"));
  EXPECT_FALSE(PipeIsTerminal("msys-" + std::string(240, 'p')));
}

// Wine's console without a screen has no code page.
UINT shownAs = 437;

UINT WINAPI ShownAs() { return shownAs; }
BOOL WINAPI ShowAs(UINT page) {
  shownAs = page;
  return TRUE;
}

TEST(ToolsAndStreams, AConsoleShowsAllLanguages) {
  HMODULE program = GetModuleHandleA(nullptr);
  ASSERT_TRUE(Replace(program, {"GetConsoleOutputCP", reinterpret_cast<void*>(ShownAs)}));
  ASSERT_TRUE(Replace(program, {"SetConsoleOutputCP", reinterpret_cast<void*>(ShowAs)}));
  ShowAllLanguages();
  EXPECT_EQ(shownAs, UINT{CP_UTF8});
}

}  // namespace
}  // namespace tavlyn::boundary
