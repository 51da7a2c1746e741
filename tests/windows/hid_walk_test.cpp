// The walk over device interfaces when calls fail or throw.
#include "platform/windows/hid_walk.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "tests/boundary/imports_windows.h"

namespace tavlyn::platform {
namespace {

constexpr char kPath[] = "\\\\?\\HID#one";
constexpr DWORD kRequired = sizeof(DWORD) + sizeof kPath;

// What a call does: with an error of 0 it succeeds.
struct Answer {
  DWORD error = 0;
  bool throws = false;
};

// The simulated library, and what was asked of it.
struct Setup {
  Answer classSet, interfaces, length, detail;
  std::vector<std::string> calls;
  GUID cls{};
};
Setup setup;

BOOL Give(const Answer& answer) {
  SetLastError(answer.error);
  if (answer.throws) throw 1;
  return answer.error == 0;
}

HDEVINFO WINAPI ClassDevs(const GUID* cls, const char*, HWND, DWORD flags) {
  setup.calls.push_back("class " + std::to_string(flags));
  setup.cls = *cls;
  return Give(setup.classSet) ? &setup : INVALID_HANDLE_VALUE;
}

BOOL WINAPI Interfaces(HDEVINFO, SP_DEVINFO_DATA*, const GUID*, DWORD index, SP_DEVICE_INTERFACE_DATA* data) {
  setup.calls.push_back("interface " + std::to_string(index) + " " + std::to_string(data->cbSize));
  return Give(setup.interfaces);
}

BOOL WINAPI Detail(HDEVINFO, SP_DEVICE_INTERFACE_DATA*, SP_DEVICE_INTERFACE_DETAIL_DATA_A* detail, DWORD size,
                   DWORD* required, SP_DEVINFO_DATA*) {
  if (detail == nullptr) {
    setup.calls.emplace_back("length");
    *required = kRequired;
    return Give(setup.length);
  }
  setup.calls.push_back("detail " + std::to_string(detail->cbSize) + " " + std::to_string(size));
  if (!Give(setup.detail)) return FALSE;
  std::memcpy(detail->DevicePath, kPath, sizeof kPath);
  return TRUE;
}

BOOL WINAPI Destroy(HDEVINFO) {
  setup.calls.emplace_back("destroy");
  return TRUE;
}

class HidWalkTest : public testing::Test {
 protected:
  void SetUp() override {
    setup = {};
    setup.length.error = ERROR_INSUFFICIENT_BUFFER;
    libraries_.setup = GetModuleHandleA(nullptr);
    libraries_.getClassDevs = ClassDevs;
    libraries_.enumDeviceInterfaces = Interfaces;
    libraries_.getDeviceInterfaceDetail = Detail;
    libraries_.destroyDeviceInfoList = Destroy;
  }

  // The step at an index, with the calls that it made.
  WalkStep Step(int index = 0) {
    EXPECT_TRUE(walk_.Begin(libraries_, HidClass::kHid));
    setup.calls.clear();
    path_ = "";
    return walk_.Member(libraries_, index, path_);
  }

  HidLibraries libraries_;
  HidWalk walk_;
  const char* path_ = "";
};

using Calls = std::vector<std::string>;

TEST_F(HidWalkTest, PathIsTold) {
  EXPECT_EQ(Step(126), WalkStep::kPath);
  EXPECT_STREQ(path_, kPath);
  EXPECT_EQ(setup.calls, (Calls{"interface 126 32", "length", "detail 8 " + std::to_string(kRequired)}));
  walk_.End(libraries_);
  walk_.End(libraries_);
  EXPECT_EQ(setup.calls.back(), "destroy");
  EXPECT_EQ(setup.calls.size(), 4u) << "a set is given back once";
}

TEST_F(HidWalkTest, EachClassHasItsOwnSet) {
  EXPECT_TRUE(walk_.Begin(libraries_, HidClass::kHid));
  EXPECT_EQ(setup.cls.Data1, 0x4D1E55B2u);
  EXPECT_TRUE(walk_.Begin(libraries_, HidClass::kKeyboard));
  EXPECT_EQ(setup.cls.Data1, 0x884B96C3u);
  EXPECT_EQ(setup.calls, (Calls{"class 18", "class 18"}));
}

TEST_F(HidWalkTest, WithoutASetThereIsNoWalk) {
  for (const Answer& answer : {Answer{ERROR_INVALID_PARAMETER}, Answer{0, true}}) {
    setup.classSet = answer;
    setup.calls.clear();
    EXPECT_FALSE(walk_.Begin(libraries_, HidClass::kHid));
    walk_.End(libraries_);
    EXPECT_EQ(setup.calls, Calls{"class 18"}) << "nothing to give back";
  }
  EXPECT_FALSE(HidWalk().Begin({}, HidClass::kHid)) << "the library is missing";
}

TEST_F(HidWalkTest, FailedEnumerationEndsTheWalk) {
  for (const Answer& answer : {Answer{ERROR_NO_MORE_ITEMS}, Answer{ERROR_ACCESS_DENIED}, Answer{0, true}}) {
    setup.interfaces = answer;
    EXPECT_EQ(Step(), WalkStep::kEnd);
    EXPECT_EQ(setup.calls, Calls{"interface 0 32"});
  }
}

TEST_F(HidWalkTest, LengthThatIsNotToldEndsTheWalk) {
  for (const Answer& answer : {Answer{ERROR_INVALID_DATA}, Answer{ERROR_SUCCESS}}) {
    setup.length = answer;
    EXPECT_EQ(Step(), WalkStep::kEnd);
    EXPECT_EQ(setup.calls, (Calls{"interface 0 32", "length"}));
  }
}

TEST_F(HidWalkTest, ErrorWordDecidesWhenTheLengthCallThrows) {
  setup.length = {ERROR_SUCCESS, true};
  EXPECT_EQ(Step(), WalkStep::kEnd);
  EXPECT_EQ(setup.calls, (Calls{"interface 0 32", "length"}));
  setup.length = {ERROR_INSUFFICIENT_BUFFER, true};
  EXPECT_EQ(Step(), WalkStep::kPath);
}

TEST_F(HidWalkTest, WithoutMemoryTheWalkEnds) {
  const boundary::Redirected refused("kernel32", "LocalAlloc", boundary::ConstantAnswer<0>(LocalAlloc));
  EXPECT_TRUE(refused.Done());
  EXPECT_EQ(Step(), WalkStep::kEnd);
  EXPECT_EQ(setup.calls, (Calls{"interface 0 32", "length"}));
}

TEST_F(HidWalkTest, DetailThatIsNotToldIsPassedOver) {
  for (const Answer& answer : {Answer{ERROR_ACCESS_DENIED}, Answer{0, true}}) {
    setup.detail = answer;
    EXPECT_EQ(Step(), WalkStep::kSkip);
    EXPECT_STREQ(path_, "");
  }
  setup.detail = {};
  EXPECT_EQ(Step(1), WalkStep::kPath);
}

}  // namespace
}  // namespace tavlyn::platform
