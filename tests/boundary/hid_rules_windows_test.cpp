// The rules of Windows for talking to a HID device, and what other programs can do to one that is open.
#include <winsock2.h>

// winsock2.h has to come before it.
#include <windows.h>

// windows.h has to come first.
#include <hidsdi.h>

#include <array>
#include <functional>
#include <string>
#include <utility>

#include "tests/boundary/imports_windows.h"
#include "tests/boundary/reader_usb.h"

namespace tavlyn::boundary {
namespace {

constexpr char kKelda[] = "plug plus:2@7A31:3BFB";
constexpr char kInput[] = "input 010000000000000000";
constexpr DWORD kBoth = GENERIC_READ | GENERIC_WRITE;

template <typename Function>
Function* OfHid(const char* name) {
  return Original<Function>("hid.dll", name);
}

// Another program's handle on a device. It asks for the device's identity at once, as programs do.
class Other {
 public:
  Other(const std::string& path, DWORD access)
      : handle_(CreateFileA(path.c_str(), access, 0, nullptr, OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr)) {
    HIDD_ATTRIBUTES attributes{};
    attributes.Size = sizeof attributes;
    knows_ = OfHid<decltype(HidD_GetAttributes)>("HidD_GetAttributes")(handle_, &attributes) != FALSE;
  }
  ~Other() {
    if (handle_ != INVALID_HANDLE_VALUE) CloseHandle(handle_);
  }
  Other(const Other&) = delete;
  Other& operator=(const Other&) = delete;

  [[nodiscard]] bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE && knows_; }
  [[nodiscard]] HANDLE Native() const { return handle_; }

 private:
  HANDLE handle_;
  bool knows_ = false;
};

// What happens when the library cancels a read, after its beginning. The result is CancelIo's.
std::function<BOOL(HANDLE)> callOff;

BOOL WINAPI CallOff(HANDLE device) { return callOff(device); }

// A pipe whose other end is gone has an error of its own.
BOOL WINAPI ReadDevice(HANDLE device, void* bytes, DWORD size, DWORD* count, OVERLAPPED* overlapped) {
  if (ReadFile(device, bytes, size, count, overlapped)) return TRUE;
  if (GetLastError() == ERROR_BROKEN_PIPE) SetLastError(ERROR_DEVICE_NOT_CONNECTED);
  return FALSE;
}

class HidRules : public ReaderUsb {
 protected:
  // The path of an interface, counted from 0 in the order of plugging.
  static std::string Path(int index) {
    char path[MAX_PATH] = {};
    OfHid<int(int, int, char*, std::size_t)>("tavlyn_standin_path")(0, index, path, sizeof path);
    return path;
  }

  // The device's own interface; its keyboard is the other one.
  static std::string KeldaPath() {
    for (const int index : {0, 1}) {
      const Other other(Path(index), 0);
      PHIDP_PREPARSED_DATA parsed = nullptr;
      HIDP_CAPS caps{};
      if (!OfHid<decltype(HidD_GetPreparsedData)>("HidD_GetPreparsedData")(other.Native(), &parsed)) continue;
      OfHid<decltype(HidP_GetCaps)>("HidP_GetCaps")(parsed, &caps);
      OfHid<decltype(HidD_FreePreparsedData)>("HidD_FreePreparsedData")(parsed);
      if (caps.UsagePage == 0xFFA0) return Path(index);
    }
    return "";
  }

  void WhenCalledOff(std::function<BOOL(HANDLE)> what) {
    callOff = std::move(what);
    ASSERT_TRUE(Replace(GetModuleHandleA(TAVLYN_LIBRARY), {"CancelIo", reinterpret_cast<void*>(CallOff)}));
  }

  std::uint16_t ActiveId() {
    WaitForGate();
    std::array<std::uint8_t, 8> id{};
    return CALL(*library_, GetActiveID)(id.data(), 8);
  }
};

// The first connect's handle is no longer in any entry, and keeps out all others until the library is
// unloaded.
TEST_F(HidRules, ASecondConnectLosesAReaderThatIsReadAlone) {
  void* rack = LoadLibraryA("hid.dll");
  Do(kKelda);
  ASSERT_EQ(Connect(), 1u);
  Do("clear");
  EXPECT_EQ(Connect(), 0u);
  EXPECT_EQ(did_, kNotWritten);
  EXPECT_EQ(CALL(*library_, GetDevCnt)(), 1) << "it is found, and cannot be opened";
  EXPECT_EQ(Do("traffic"), "");
  CALL(*library_, USBDisconnect)();
  EXPECT_EQ(Connect(), 0u) << "a disconnect closes what is in the table";

  library_.reset();
  library_ = std::make_unique<Library>();
  TakeItsTime();
  CALL(*library_, SetDevTypeSrch)(0);
  EXPECT_EQ(Connect(), 1u);
  FreeLibrary(static_cast<HMODULE>(rack));
}

TEST_F(HidRules, ADisconnectGivesAReaderBack) {
  Do(kKelda);
  for (int i = 0; i < 3; ++i) {
    ASSERT_EQ(Connect(), 1u);
    EXPECT_FALSE(Other(KeldaPath(), kBoth).IsOpen());
    EXPECT_TRUE(Other(KeldaPath(), 0).IsOpen());
    CALL(*library_, USBDisconnect)();
    EXPECT_TRUE(Other(KeldaPath(), kBoth).IsOpen());
  }
}

TEST_F(HidRules, AReaderThatAnotherProgramReadsIsFoundButNotRead) {
  Do(kKelda);
  {
    const Other other(KeldaPath(), kBoth);
    ASSERT_TRUE(other.IsOpen());
    EXPECT_EQ(Connect(), 0u);
    EXPECT_EQ(CALL(*library_, GetDevCnt)(), 1);
    EXPECT_EQ(Do("traffic"), "");
    EXPECT_EQ(ActiveId(), 0);
  }
  CALL(*library_, USBDisconnect)();
  EXPECT_EQ(Connect(), 1u);
}

TEST_F(HidRules, FeatureReportsPassWhileAnotherProgramReads) {
  Do("plug reader");
  Do("card 0102:13");
  const Other other(Path(0), kBoth);
  ASSERT_TRUE(other.IsOpen());
  ASSERT_EQ(Connect(), 1u);
  EXPECT_EQ(did_, kDid);
  EXPECT_EQ(ActiveId(), 13);
  CALL(*library_, USBDisconnect)();
  EXPECT_EQ(Connect(), 1u) << "again";
}

// The error from a call with a report of that length.
DWORD ErrorOf(const char* call, HANDLE device, ULONG length) {
  std::array<std::uint8_t, 32> report{0, 0x80};
  const auto pass = OfHid<decltype(HidD_SetFeature)>(call);
  return pass(device, report.data(), length) ? ERROR_SUCCESS : GetLastError();
}

TEST_F(HidRules, OnlyReportsOfTheDevicesLengthPass) {
  Do("plug reader");
  Do("plug magstripe");
  const std::array<ULONG, 2> whole{9, 25};
  for (const int index : {0, 1}) {
    const Other other(Path(index), 0);
    for (ULONG length = 0; length <= 32; ++length) {
      SCOPED_TRACE(std::to_string(index) + " " + std::to_string(length));
      const bool fits = length == whole[static_cast<std::size_t>(index)];
      const DWORD error = fits ? ERROR_SUCCESS : ERROR_INVALID_PARAMETER;
      EXPECT_EQ(ErrorOf("HidD_SetFeature", other.Native(), length), error);
      EXPECT_EQ(ErrorOf("HidD_GetFeature", other.Native(), length), error);
    }
  }
}

// The only reports whose length is not the device's.
TEST_F(HidRules, BleKeysAreNotWrittenByReportsThatAreTooLong) {
  Do("plug plus:2");
  ASSERT_EQ(Connect(), 1u);
  ASSERT_EQ(CALL(*library_, WriteBLEKeyToFile)("key.ble"), 1u);
  const int before = Exchanges();
  EXPECT_EQ(CALL(*library_, WriteBLEKeyToReader)("key.ble"), 0u);
  EXPECT_EQ(CALL(*library_, GetLastLibErr)(), 0x30000203u);
  EXPECT_EQ(Exchanges(), before);
  EXPECT_EQ(CALL(*library_, ReadCfg)(), 1u);
  DeleteFileA("key.ble");
}

// Entry 0 gets the error word, whichever reader has gone.
TEST_F(HidRules, AReadOnAReaderThatIsGoneIsToldByAnErrorWord) {
  Do("plug reader");
  Do(kKelda);
  ASSERT_EQ(Connect(), 1u);
  ASSERT_EQ(CALL(*library_, GetDevCnt)(), 2);
  ASSERT_TRUE(Replace(GetModuleHandleA(TAVLYN_LIBRARY), {"ReadFile", reinterpret_cast<void*>(ReadDevice)}));
  ASSERT_EQ(CALL(*library_, SetActDev)(1), 1u);
  EXPECT_EQ(ActiveId(), 0);
  EXPECT_EQ(CALL(*library_, GetLastLibErr)(), 0u);
  Do("unplug");
  EXPECT_EQ(ActiveId(), 0);
  EXPECT_EQ(CALL(*library_, GetLastLibErr)(), 0u);
  ASSERT_EQ(CALL(*library_, SetActDev)(0), 1u);
  EXPECT_EQ(CALL(*library_, GetLastLibErr)(), 0x60000000u);
  EXPECT_EQ(CALL(*library_, ReadCfg)(), 1u) << "the other reader is still there";
}

TEST_F(HidRules, AReadThatEndsBeforeItIsCalledOffIsAReport) {
  Do(kKelda);
  Do("card AABB:16");
  ASSERT_EQ(Connect(), 1u);
  WhenCalledOff([this](HANDLE device) {
    Do(kInput);
    Do(kInput);
    return CancelIo(device);
  });
  EXPECT_EQ(ActiveId(), 16);
  WhenCalledOff(CancelIo);
  EXPECT_EQ(ActiveId(), 0) << "the second report went with the first";
}

// Windows reports nothing to cancel; the report is lost, and the next one is read as usual.
TEST_F(HidRules, NothingToCallOffIsNoReport) {
  Do(kKelda);
  Do("card AABB:16");
  ASSERT_EQ(Connect(), 1u);
  WhenCalledOff([this](HANDLE) {
    Do(kInput);
    SetLastError(ERROR_NOT_FOUND);
    return FALSE;
  });
  const int before = Exchanges();
  EXPECT_EQ(ActiveId(), 0);
  EXPECT_EQ(Exchanges(), before);
  EXPECT_EQ(CALL(*library_, GetLastLibErr)(), 0u);
  WhenCalledOff(CancelIo);
  EXPECT_EQ(ActiveId(), 0);
  Do(kInput);
  EXPECT_EQ(ActiveId(), 16);
}

TEST_F(HidRules, AReaderMayLeaveBeforeTheReadIsCalledOff) {
  Do(kKelda);
  ASSERT_EQ(Connect(), 1u);
  WhenCalledOff([this](HANDLE device) {
    Do("unplug");
    return CancelIo(device);
  });
  const int before = Exchanges();
  EXPECT_EQ(ActiveId(), 0);
  EXPECT_EQ(CALL(*library_, GetLastLibErr)(), 0u);
  EXPECT_EQ(Exchanges(), before);
}

}  // namespace
}  // namespace tavlyn::boundary
