// Serial ports: COM9 and COM12 are the two ends of one cable; another process carries the bytes, in its own
// time. Reads therefore wait for their bytes as long as it takes; ending them in time is the system's job,
// and what is requested of it is recorded here.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/platform.h"
#include "tests/boundary/imports_windows.h"

namespace tavlyn::platform {
namespace {

constexpr std::uint16_t kLeft = 9;
constexpr std::uint16_t kRight = 12;
constexpr std::uint16_t kNoSerialPort = 11;
constexpr std::uint16_t kMissing = 200;
constexpr ComTimeouts kPatient{0, 0, 60000, 50, 500};
constexpr ComTimeouts kAtOnce{0xFFFFFFFF, 0, 0, 50, 500};

std::unique_ptr<ComPort> Open(std::uint16_t number, const ComTimeouts& timeouts = kPatient) {
  return TheHost().ports.Open(number, {9600, 0, 0}, timeouts);
}

void Write(ComPort& port, const std::string& text) {
  ASSERT_EQ(port.Write({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}), text.size());
}

std::string Read(ComPort& port, std::size_t length) {
  std::vector<std::uint8_t> bytes(length);
  const std::uint32_t count = port.Read(bytes);
  return {bytes.begin(), bytes.begin() + count};
}

HANDLE OpenRight() {
  return CreateFileA("\\\\.\\COM12", GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
}

// Waits until everything written at the left end has arrived at the right one.
void AwaitArrival(std::size_t count) {
  HANDLE right = OpenRight();
  ASSERT_NE(INVALID_HANDLE_VALUE, right);
  constexpr int kLooks = 60'000;
  COMSTAT status{};
  for (int look = 0; look < kLooks && status.cbInQue < count; ++look) {
    Sleep(1);
    ASSERT_TRUE(ClearCommError(right, nullptr, &status));
  }
  CloseHandle(right);
  EXPECT_EQ(status.cbInQue, count);
}

TEST(ComPortTest, BytesPassBetweenShortAndLongName) {
  const auto left = Open(kLeft);
  const auto right = Open(kRight);
  ASSERT_NE(left, nullptr);
  ASSERT_NE(right, nullptr);
  Write(*left, "to the other end");
  EXPECT_EQ(Read(*right, 16), "to the other end");
  Write(*right, std::string("\0\r\n\x11\x13\xFF", 6));
  EXPECT_EQ(Read(*left, 6), std::string("\0\r\n\x11\x13\xFF", 6));
}

TEST(ComPortTest, WhatIsMissingOrNoSerialPortDoesNotOpen) {
  EXPECT_EQ(Open(kMissing), nullptr);
  EXPECT_EQ(Open(kNoSerialPort), nullptr);
}

// What the system is asked to open, which then opens nothing.
std::vector<std::string> askedNames;

HANDLE WINAPI NotedName(const char* name, DWORD, DWORD, SECURITY_ATTRIBUTES*, DWORD, DWORD, HANDLE) {
  askedNames.emplace_back(name);
  return INVALID_HANDLE_VALUE;
}

TEST(ComPortTest, FromCom10OnTheNameHasItsLongForm) {
  HMODULE program = GetModuleHandleA(nullptr);
  ASSERT_TRUE(boundary::Replace(program, {"CreateFileA", reinterpret_cast<void*>(NotedName)}));
  for (const std::uint16_t number : std::initializer_list<std::uint16_t>{1, 9, 10, 256})
    EXPECT_EQ(Open(number), nullptr);
  const auto original = boundary::Original<decltype(CreateFileA)>("kernel32", "CreateFileA");
  boundary::Replace(program, {"CreateFileA", reinterpret_cast<void*>(original)});
  EXPECT_EQ(askedNames, (std::vector<std::string>{"COM1", "COM9", "\\\\.\\COM10", "\\\\.\\COM256"}));
}

// All but the parity, which a pseudo-terminal does not store.
TEST(ComPortTest, LineIsSetWithoutFlowControl) {
  const auto port = TheHost().ports.Open(kRight, {19200, 2, 2}, kPatient);
  ASSERT_NE(port, nullptr);
  HANDLE other = OpenRight();
  ASSERT_NE(INVALID_HANDLE_VALUE, other);
  DCB line{};
  line.DCBlength = sizeof line;
  EXPECT_TRUE(GetCommState(other, &line));
  CloseHandle(other);
  EXPECT_EQ(line.BaudRate, 19200u);
  EXPECT_EQ(line.StopBits, TWOSTOPBITS);
  EXPECT_EQ(line.ByteSize, 8);
  EXPECT_FALSE(line.fOutxCtsFlow || line.fOutxDsrFlow || line.fOutX || line.fInX);
}

TEST(ComPortTest, SilenceEndsARead) {
  const auto port = Open(kLeft, {250, 5, 300, 50, 500});
  ASSERT_NE(port, nullptr);
  EXPECT_EQ(Read(*port, 10), "");
}

TEST(ComPortTest, SilenceBehindAByteEndsARead) {
  const auto left = Open(kLeft);
  const auto right = Open(kRight, {200, 0, 0, 50, 500});
  ASSERT_NE(left, nullptr);
  ASSERT_NE(right, nullptr);
  Write(*left, "a");
  EXPECT_EQ(Read(*right, 4), "a");
}

// What the system is asked for, on its way there.
std::vector<ComTimeouts> askedTimeouts;
std::vector<DWORD> askedReads;

BOOL WINAPI NotedTimeouts(HANDLE port, COMMTIMEOUTS* asked) {
  askedTimeouts.push_back({asked->ReadIntervalTimeout, asked->ReadTotalTimeoutMultiplier,
                           asked->ReadTotalTimeoutConstant, asked->WriteTotalTimeoutMultiplier,
                           asked->WriteTotalTimeoutConstant});
  return boundary::Original<decltype(SetCommTimeouts)>("kernel32", "SetCommTimeouts")(port, asked);
}

BOOL WINAPI NotedRead(HANDLE port, void* bytes, DWORD size, DWORD* count, OVERLAPPED* overlapped) {
  askedReads.push_back(size);
  return boundary::Original<decltype(ReadFile)>("kernel32", "ReadFile")(port, bytes, size, count, overlapped);
}

void ExpectAsked(const ComTimeouts& expected, const ComTimeouts& asked) {
  EXPECT_EQ(asked.readInterval, expected.readInterval);
  EXPECT_EQ(asked.readMultiplier, expected.readMultiplier);
  EXPECT_EQ(asked.readConstant, expected.readConstant);
  EXPECT_EQ(asked.writeMultiplier, expected.writeMultiplier);
  EXPECT_EQ(asked.writeConstant, expected.writeConstant);
}

// This program holds the backend and has its imports.
TEST(ComPortTest, SystemIsAskedForTheTimeouts) {
  HMODULE program = GetModuleHandleA(nullptr);
  ASSERT_TRUE(boundary::Replace(program, {"SetCommTimeouts", reinterpret_cast<void*>(NotedTimeouts)}));
  ASSERT_TRUE(boundary::Replace(program, {"ReadFile", reinterpret_cast<void*>(NotedRead)}));
  constexpr ComTimeouts kFirst{250, 5, 300, 50, 500};
  askedTimeouts.clear();
  askedReads.clear();
  const auto port = Open(kLeft, kFirst);
  ASSERT_NE(port, nullptr);
  port->SetTimeouts(kAtOnce);
  EXPECT_EQ(Read(*port, 40), "");
  ASSERT_EQ(askedTimeouts.size(), 2u);
  ExpectAsked(kFirst, askedTimeouts[0]);
  ExpectAsked(kAtOnce, askedTimeouts[1]);
  EXPECT_EQ(askedReads, std::vector<DWORD>{40}) << "the multiplier goes by the bytes asked for";
}

TEST(ComPortTest, PurgeAndFlushDropWhatHasArrived) {
  const auto left = Open(kLeft);
  const auto right = Open(kRight, kAtOnce);
  ASSERT_NE(left, nullptr);
  ASSERT_NE(right, nullptr);
  Write(*left, "first");
  AwaitArrival(5);
  right->PurgeInput();
  EXPECT_EQ(Read(*right, 8), "");
  Write(*left, "second");
  AwaitArrival(6);
  right->Flush();
  EXPECT_EQ(Read(*right, 8), "");
  Write(*left, "third");
  AwaitArrival(5);
  EXPECT_EQ(Read(*right, 8), "third");
}

TEST(ComPortTest, OpeningEmptiesTheQueue) {
  const auto left = Open(kLeft);
  ASSERT_NE(left, nullptr);
  ASSERT_NE(Open(kRight), nullptr);
  Write(*left, "for nobody");
  AwaitArrival(10);
  const auto right = Open(kRight, kAtOnce);
  ASSERT_NE(right, nullptr);
  EXPECT_EQ(Read(*right, 16), "");
}

TEST(ComPortTest, APortThatRefusesASettingDoesNotOpen) {
  const struct {
    const char* name;
    void* refusal;
  } kSettings[] = {
      {"SetCommMask", boundary::ConstantAnswer<FALSE>(SetCommMask)},
      {"SetupComm", boundary::ConstantAnswer<FALSE>(SetupComm)},
      {"SetCommTimeouts", boundary::ConstantAnswer<FALSE>(SetCommTimeouts)},
      {"SetCommState", boundary::ConstantAnswer<FALSE>(SetCommState)},
  };
  for (const auto& setting : kSettings) {
    const boundary::Redirected refused("kernel32", setting.name, setting.refusal);
    EXPECT_TRUE(refused.Done() && Open(kLeft) == nullptr) << setting.name;
  }
  EXPECT_NE(Open(kLeft), nullptr);
}

DCB askedLine;

BOOL WINAPI NotedLine(HANDLE port, DCB* asked) {
  askedLine = *asked;
  return boundary::Original<decltype(SetCommState)>("kernel32", "SetCommState")(port, asked);
}

TEST(ComPortTest, TheUsualLineNeedsNoHelpOfTheSystem) {
  const boundary::Redirected noted("kernel32", "SetCommState", reinterpret_cast<void*>(NotedLine));
  const boundary::Redirected refused("kernel32", "BuildCommDCBA",
                                     boundary::ConstantAnswer<FALSE>(BuildCommDCBA));
  ASSERT_TRUE(noted.Done() && refused.Done());
  EXPECT_NE(TheHost().ports.Open(kLeft, {19200, 2, 2}, kPatient), nullptr);
  EXPECT_EQ(askedLine.DCBlength, sizeof askedLine);
  EXPECT_EQ(askedLine.BaudRate, 19200u);
  EXPECT_EQ(askedLine.ByteSize, 8);
}

TEST(ComPortTest, AReadThatFailsGivesNothing) {
  const auto port = Open(kLeft);
  ASSERT_NE(port, nullptr);
  const boundary::Redirected refused("kernel32", "ReadFile", boundary::ConstantAnswer<FALSE>(ReadFile));
  EXPECT_TRUE(refused.Done());
  EXPECT_EQ(Read(*port, 4), "");
}

TEST(ComPortTest, AClosedPortMovesNothingAndOpensAgain) {
  const auto left = Open(kLeft);
  auto right = Open(kRight);
  ASSERT_NE(left, nullptr);
  ASSERT_NE(right, nullptr);
  left->CloseQuietly();
  std::array<std::uint8_t, 4> bytes{};
  EXPECT_EQ(left->Read(bytes), 0u);
  EXPECT_EQ(left->Write(bytes), 0u);
  right.reset();
  const auto leftAgain = Open(kLeft);
  right = Open(kRight);
  ASSERT_NE(leftAgain, nullptr);
  ASSERT_NE(right, nullptr);
  Write(*right, "back");
  EXPECT_EQ(Read(*leftAgain, 4), "back");
}

}  // namespace
}  // namespace tavlyn::platform
