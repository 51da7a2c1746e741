// A process that ends with the library in it.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

namespace tavlyn::boundary {
namespace {

// This many take some 20 seconds.
constexpr int kExits = 150;
constexpr DWORD kHangs = 60'000;

// The status that it ends with.
DWORD StatusOf(std::string words) {
  words.insert(0, std::string(EXIT_PROGRAM) + " ");
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  if (!CreateProcessA(nullptr, words.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                      &process)) {
    ADD_FAILURE() << words << ": " << GetLastError();
    return 0;
  }
  DWORD status = 0;
  if (WaitForSingleObject(process.hProcess, kHangs) != WAIT_OBJECT_0) {
    TerminateProcess(process.hProcess, 1);
    ADD_FAILURE() << words << " does not end";
  }
  GetExitCodeProcess(process.hProcess, &status);
  CloseHandle(process.hProcess);
  CloseHandle(process.hThread);
  return status;
}

TEST(Exit, NothingIsAskedOfTheSystemAnyMore) { EXPECT_EQ(StatusOf("watched"), 0U); }

TEST(Exit, EndsWhileAnotherThreadPolls) {
  for (int time = 0; time < kExits && !HasFailure(); ++time) {
    EXPECT_EQ(StatusOf("polling " + std::to_string(time)), 0U);
  }
}

}  // namespace
}  // namespace tavlyn::boundary
