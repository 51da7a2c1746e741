// A program that ends without unloading the library: exit_program polling COUNT, exit_program watched It ends
// with status 0: in the first case while another thread polls a reader, after COUNT polls; in the second,
// with 1 if the library still asks anything of the system.
#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <thread>

#include "sim/carriers/clock/quick_time.h"
#include "tests/boundary/imports_windows.h"
#include "tests/boundary/library.h"

namespace tavlyn::boundary {
namespace {

std::atomic<int> polls{0};

void Poll(const Library& library) {
  std::array<std::uint8_t, 32> id{};
  for (;; ++polls) CALL(library, GetActiveID)(id.data(), id.size());
}

void EndWithOne() { TerminateProcess(GetCurrentProcess(), 1); }

// Functions that wait for a lock, close something of other libraries, or lead into one of them.
constexpr const char* kNoLongerAsked[] = {
    "AcquireSRWLockExclusive", "WaitForSingleObject", "CloseHandle", "FreeLibrary", "closesocket", "fputs"};

int End(int count, char** words) {
  SetVariable("TAVLYNAPI_LOGGING", "1");
  const auto* library = new Library;
  TakeItsTime();
  library->Standin("plug reader");
  CALL(*library, SetDevTypeSrch)(0);
  if (CALL(*library, USBConnect)(nullptr) != 1) return 2;
  if (count == 3 && std::strcmp(words[1], "polling") == 0) {
    std::thread(Poll, std::ref(*library)).detach();
    while (polls < std::atoi(words[2])) std::this_thread::yield();
    return 0;
  }
  for (const char* name : kNoLongerAsked) {
    if (!Replace(GetModuleHandleA(TAVLYN_LIBRARY), {name, reinterpret_cast<void*>(EndWithOne)})) return 3;
  }
  return 0;
}

}  // namespace
}  // namespace tavlyn::boundary

int main(int count, char** words) { return tavlyn::boundary::End(count, words); }
