// How a device is opened, and a read of input that does not wait: on a named pipe and on a file.
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "platform/platform.h"
#include "platform/windows/system.h"

namespace tavlyn::platform {
namespace {

constexpr char kPipe[] = "\\\\.\\pipe\\tavlyn-hid-test";

class HidTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(hid_.Load());
    pipe_ =
        CreateNamedPipeA(kPipe, PIPE_ACCESS_DUPLEX, PIPE_TYPE_MESSAGE | PIPE_READMODE_MESSAGE | PIPE_NOWAIT,
                         PIPE_UNLIMITED_INSTANCES, 4096, 4096, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, pipe_);
  }
  void TearDown() override {
    hid_.Close(device_);
    CloseHandle(pipe_);
    hid_.Unload();
  }

  void Open() {
    device_ = hid_.Open(kPipe, OpenMode::kOverlapped);
    ASSERT_NE(device_, kNoHandle);
  }

  void Queue(const std::string& report) {
    DWORD count = 0;
    EXPECT_TRUE(WriteFile(pipe_, report.data(), static_cast<DWORD>(report.size()), &count, nullptr));
  }

  Drain DrainAnew() {
    report_ = {1};
    return hid_.DrainInput(device_, report_);
  }

  HidSystem& hid_ = TheHost().hid;
  HANDLE pipe_ = nullptr;
  Handle device_ = kNoHandle;
  std::array<std::uint8_t, 9> report_{};
};

TEST_F(HidTest, PendingReadIsCalledOff) {
  Open();
  EXPECT_EQ(DrainAnew(), Drain::kNothing);
  EXPECT_EQ(DrainAnew(), Drain::kNothing);
  EXPECT_EQ(report_, (std::array<std::uint8_t, 9>{1}));
}

TEST_F(HidTest, QueuedReportIsTaken) {
  Open();
  Queue(
      "\x01"
      "ABCDEFGH");
  EXPECT_EQ(DrainAnew(), Drain::kDrained);
  EXPECT_EQ(report_, (std::array<std::uint8_t, 9>{1, 'A', 'B', 'C', 'D', 'E', 'F', 'G', 'H'}));
  EXPECT_EQ(DrainAnew(), Drain::kNothing);
}

// A cancelled read must not take a later report.
TEST_F(HidTest, ReportBehindACalledOffReadIsKept) {
  Open();
  EXPECT_EQ(DrainAnew(), Drain::kNothing);
  Queue(
      "\x01"
      "ijklmnop");
  EXPECT_EQ(DrainAnew(), Drain::kDrained);
  EXPECT_EQ(report_[1], 'i');
}

TEST_F(HidTest, ReadThatCannotBeginFindsNothing) {
  Open();
  CloseHandle(pipe_);
  pipe_ = INVALID_HANDLE_VALUE;
  EXPECT_EQ(DrainAnew(), Drain::kNothing);
  hid_.Close(device_);
  EXPECT_EQ(DrainAnew(), Drain::kNothing);
  EXPECT_EQ(hid_.Open("\\\\.\\pipe\\tavlyn-there-is-none", OpenMode::kOverlapped), kNoHandle);
}

TEST_F(HidTest, WhatIsNoHidDeviceHasNoUsage) {
  Open();
  EXPECT_EQ(hid_.TopUsage(device_, {1, 6}), UsageMatch::kUnreadable);
}

class HidOpenTest : public testing::Test {
 protected:
  void SetUp() override {
    char folder[MAX_PATH];
    ASSERT_NE(GetTempPathA(sizeof folder, folder), 0u);
    ASSERT_NE(GetTempFileNameA(folder, "hid", 0, file_), 0u);
  }
  void TearDown() override {
    for (const Handle one : opened_) hid_.Close(one);
    DeleteFileA(file_);
  }

  bool Opens(OpenMode mode) {
    const Handle device = hid_.Open(file_, mode);
    if (device != kNoHandle) opened_.push_back(device);
    return device != kNoHandle;
  }

  // Another program's handle, which the test closes.
  HANDLE Other(DWORD access, DWORD sharing) {
    return CreateFileA(file_, access, sharing, nullptr, OPEN_ALWAYS, 0, nullptr);
  }

  char file_[MAX_PATH] = {};
  HidSystem& hid_ = TheHost().hid;
  std::vector<Handle> opened_;
};

TEST_F(HidOpenTest, FeatureReportsNeedNoAccess) {
  HANDLE other = Other(GENERIC_READ | GENERIC_WRITE, 0);
  ASSERT_NE(INVALID_HANDLE_VALUE, other);
  EXPECT_TRUE(Opens(OpenMode::kShared)) << "somebody has the device for himself";
  EXPECT_FALSE(Opens(OpenMode::kOverlapped));
  CloseHandle(other);
}

TEST_F(HidOpenTest, InputIsReadAlone) {
  CloseHandle(Other(GENERIC_READ, 0));
  EXPECT_TRUE(Opens(OpenMode::kOverlapped));
  EXPECT_FALSE(Opens(OpenMode::kOverlapped));
  EXPECT_EQ(INVALID_HANDLE_VALUE, Other(GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE));
  EXPECT_TRUE(Opens(OpenMode::kShared));
}

}  // namespace
}  // namespace tavlyn::platform
