// A system that lacks HID.DLL, SETUPAPI.DLL, or one of their functions.
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>

#include "platform/platform.h"
#include "tests/boundary/imports_windows.h"

namespace tavlyn::platform {
namespace {

std::string missing;
decltype(&GetProcAddress) addressOf = nullptr;

HMODULE WINAPI LoadAllBut(const char* file, HANDLE, DWORD flags) {
  return file == missing ? nullptr
                         : boundary::Original<decltype(LoadLibraryExA)>("kernel32", "LoadLibraryExA")(
                               file, nullptr, flags);
}

FARPROC WINAPI AddressOfAllBut(HMODULE library, const char* name) {
  return name == missing ? nullptr : addressOf(library, name);
}

class HidLibrariesTest : public testing::Test {
 protected:
  void SetUp() override { addressOf = GetProcAddress; }
  void TearDown() override {
    missing.clear();
    hid_.Unload();
  }

  // As an application would find it: no device is listed, and calls for one fail.
  void ExpectNoDevices() {
    std::array<std::uint8_t, 9> report{};
    EXPECT_FALSE(hid_.BeginWalk(HidClass::kHid)) << missing;
    EXPECT_FALSE(hid_.GetFeature(kNoHandle, report)) << missing;
    EXPECT_FALSE(hid_.SetFeature(kNoHandle, report)) << missing;
    EXPECT_EQ(hid_.Attributes(kNoHandle).vid, 0) << missing;
    EXPECT_EQ(hid_.TopUsage(kNoHandle, {1, 6}), UsageMatch::kUnreadable) << missing;
    EXPECT_EQ(hid_.Open("C:\\no-such-device", OpenMode::kOverlapped), kNoHandle) << missing;
  }

  HidSystem& hid_ = TheHost().hid;
};

TEST_F(HidLibrariesTest, WithoutALibraryThereAreNoDevices) {
  const boundary::Redirected load("kernel32", "LoadLibraryExA", reinterpret_cast<void*>(LoadAllBut));
  ASSERT_TRUE(load.Done());
  for (const char* file : {"HID.DLL", "SETUPAPI.DLL"}) {
    missing = file;
    EXPECT_FALSE(hid_.Load()) << missing;
    ExpectNoDevices();
    hid_.Unload();
  }
}

TEST_F(HidLibrariesTest, WithoutAFunctionThereAreNoDevices) {
  const boundary::Redirected address("kernel32", "GetProcAddress", reinterpret_cast<void*>(AddressOfAllBut));
  ASSERT_TRUE(address.Done());
  for (const char* name :
       {"HidD_GetAttributes", "HidD_GetFeature", "HidD_SetFeature", "HidD_GetHidGuid", "HidP_GetCaps",
        "HidD_GetPreparsedData", "HidD_SetNumInputBuffers", "SetupDiGetClassDevsA",
        "SetupDiEnumDeviceInterfaces", "SetupDiGetDeviceInterfaceDetailA", "SetupDiDestroyDeviceInfoList"}) {
    missing = name;
    EXPECT_FALSE(hid_.Load()) << missing;
    ExpectNoDevices();
    hid_.Unload();
  }
}

TEST_F(HidLibrariesTest, QueuesNeedNotBeFlushed) {
  const boundary::Redirected address("kernel32", "GetProcAddress", reinterpret_cast<void*>(AddressOfAllBut));
  missing = "HidD_FlushQueue";
  EXPECT_TRUE(hid_.Load());
  EXPECT_TRUE(hid_.BeginWalk(HidClass::kHid));
  hid_.EndWalk();
}

}  // namespace
}  // namespace tavlyn::platform
