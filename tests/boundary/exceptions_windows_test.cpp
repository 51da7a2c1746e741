// Exceptions from other compilers, in foreign code that the library calls. The process continues, and the
// library does not stay locked.
#include <winsock2.h>

// winsock2.h has to come first.
#include <windows.h>

#include <string>

#include "tests/boundary/loader.h"
#include "tests/boundary/reader_usb.h"

namespace tavlyn::boundary {
namespace {

constexpr DWORD kVisualCpp = 0xE06D7363;
constexpr DWORD kExceptions[] = {kVisualCpp, EXCEPTION_ACCESS_VIOLATION};

class SystemExceptions : public ReaderUsb {
 protected:
  void TearDown() override {
    Raise("", 0);
    SetVariable("TAVLYNAPI_LOGGING", nullptr);
    ReaderUsb::TearDown();
  }

  // From now on the system's installers do this in the call of that name.
  static void Raise(const char* call, DWORD code) {
    void* setup = GetModuleHandleA("setupapi.dll");
    reinterpret_cast<void (*)(const char*, unsigned)>(FindSymbol(setup, "tavlyn_standin_raise"))(call, code);
  }

  static DWORD WINAPI Call(void* function) { return reinterpret_cast<decltype(&USBDisconnect)>(function)(); }

  void ExpectUnlocked() const {
    auto disconnect = CALL(*library_, USBDisconnect);
    HANDLE thread = CreateThread(nullptr, 0, Call, reinterpret_cast<void*>(disconnect), 0, nullptr);
    EXPECT_EQ(WaitForSingleObject(thread, 60'000), WAIT_OBJECT_0) << "the library is locked";
    CloseHandle(thread);
  }
};

TEST_F(SystemExceptions, ACallThatAnInstallerEndsHasFailed) {
  Do("plug reader");
  for (const DWORD code : kExceptions) {
    for (const char* call : {"class", "interface", "length", "detail"}) {
      SCOPED_TRACE(std::string(call) + " " + std::to_string(code));
      Raise(call, code);
      EXPECT_EQ(Connect(), 0u);
      ExpectUnlocked();
    }
    Raise("destroy", code);
    EXPECT_EQ(Connect(), 1u);
    ExpectUnlocked();
    Raise("", 0);
    EXPECT_EQ(Connect(), 1u);
  }
}

DWORD markersEnd = 0;
int marks = 0;

void EndingMarker(const char* /*line*/, std::uint64_t /*length*/) {
  ++marks;
  if (markersEnd == EXCEPTION_ACCESS_VIOLATION) *static_cast<volatile int*>(nullptr) = 0;
  RaiseException(markersEnd, 0, 0, nullptr);
}

TEST_F(SystemExceptions, AMarkerFunctionMayEndInOne) {
  SetVariable("TAVLYNAPI_LOGGING", "1");
  ASSERT_EQ(CALL(*library_, SetMarkerFunction)(EndingMarker), 1u);
  Do("plug reader");
  for (const DWORD code : kExceptions) {
    markersEnd = code;
    marks = 0;
    EXPECT_EQ(Connect(), 1u);
    EXPECT_EQ(marks, 7);
    ExpectUnlocked();
  }
}

}  // namespace
}  // namespace tavlyn::boundary
